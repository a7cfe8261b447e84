#pragma once
// One headless Drill-Down analysis on a data file, for the commands that run one: the
// workbench's services, the module loaded as a plug-in, the analysis started with its
// panel, tables and saved subsets going into an output folder.

#include <memory>
#include <optional>
#include <string>

#include "drilldown/core/CDrillDown.h"
#include "workbench/automation/HeadlessAutomation.h"
#include "workbench/data/DataFile.h"
#include "workbench/documents/OutputFolder.h"
#include "workbench/host/HeadlessDialogs.h"
#include "workbench/host/HeadlessHost.h"
#include "workbench/host/HeadlessNewFile.h"
#include "workbench/host/HeadlessOutput.h"
#include "workbench/host/KeywordStore.h"
#include "workbench/host/ModuleLoader.h"

namespace wb::cli {

struct RunSetup {
    std::string file;
    std::string out = "drilldown-out";
    std::optional<std::string> weight;    // a variable, by name or number
    std::optional<std::string> selection; // a selection condition
};

class HeadlessRun {
public:
    // Throws DataError for a file, weight or selection that cannot be used.
    explicit HeadlessRun(const RunSetup& setup);
    ~HeadlessRun();
    HeadlessRun(const HeadlessRun&) = delete;
    HeadlessRun& operator=(const HeadlessRun&) = delete;

    const DataFile& file() const { return m_file; }
    CDrillDown& analysis() { return *m_analysis; }
    // The start-up panel's window and automation object.
    HWND panel() const;
    IDispatch* panelObject() { return m_analysis->GetDialogAutomationInterface(); }
    HeadlessDialogs& dialogs() { return m_dialogs; }
    HeadlessAutomation& automation() { return m_automation; }
    HeadlessOutput& output() { return m_output; }
    HeadlessNewFile& newFile() { return m_newFile; }
    const OutputFolder& folder() const { return m_folder; }
    const std::vector<std::string>& messages() { return m_host.messages().messages(); }

private:
    DataFile m_file;
    HeadlessHost m_host;
    KeywordStore m_keywords;
    HeadlessAutomation m_automation;
    HeadlessDialogs m_dialogs;
    HeadlessNewFile m_newFile;
    HeadlessOutput m_output;
    OutputFolder m_folder;
    std::unique_ptr<ModuleLoader> m_loader;
    CDrillDown* m_analysis = nullptr;
};

} // namespace wb::cli
