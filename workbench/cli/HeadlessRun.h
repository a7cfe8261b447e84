#pragma once
// One headless Drill-Down analysis on a data file, for the commands that run one: the
// workbench's services, the module loaded as a plug-in, the analysis started with its
// panel, tables and saved subsets going into an output folder.

#include <memory>
#include <optional>
#include <string>

#include "drilldown/core/CDrillDown.h"
#include "workbench/automation/AutomationRuntime.h"
#include "workbench/data/DataFile.h"
#include "workbench/render/OutputFolder.h"
#include "workbench/dialogs/HeadlessDialogs.h"
#include "workbench/headless/HeadlessHost.h"
#include "workbench/services/NewFileService.h"
#include "workbench/services/OutputService.h"
#include "workbench/services/KeywordStore.h"
#include "workbench/session/ModuleLoader.h"

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
    AutomationRuntime& automation() { return m_automation; }
    OutputService& output() { return m_output; }
    NewFileService& newFile() { return m_newFile; }
    const OutputFolder& folder() const { return m_folder; }
    const std::vector<std::string>& messages() { return m_host.messages().messages(); }

private:
    DataFile m_file;
    HeadlessHost m_host;
    KeywordStore m_keywords;
    AutomationRuntime m_automation;
    HeadlessDialogs m_dialogs;
    NewFileService m_newFile;
    OutputService m_output;
    OutputFolder m_folder;
    std::unique_ptr<ModuleLoader> m_loader;
    CDrillDown* m_analysis = nullptr;
};

} // namespace wb::cli
