#pragma once
// One analysis session: a data file, the module's host services, the plug-in and at most one
// analysis on the file. Every front end (the command line, the tests, the benchmark, the
// desktop) makes its analysis here, so that the services are wired, and torn down, in one
// order and one place.
//
//   1. make it with the parts that differ between front ends (FrontEnd) and the options;
//   2. open(file) gives it the data file, ending any analysis on the file before;
//   3. startAnalysis() loads the module on first use and starts an analysis: step 100 binds
//      the file, step 101 opens its panel;
//   4. drive the panel: through its automation object (panelObject(), as macros do), through
//      the dialog host's user actions, or with the drill steps below, which set the panel's
//      members and press its buttons through that same object, so that every way of
//      drilling runs the panel's own commands;
//   5. closeAnalysis(), open() or the destructor ends the analysis before its services.

#include <filesystem>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "drilldown/core/CDrillDown.h"
#include "workbench/automation/AutomationRuntime.h"
#include "workbench/data/DataFile.h"
#include "workbench/dialogs/DialogHost.h"
#include "workbench/services/DataService.h"
#include "workbench/services/KeywordStore.h"
#include "workbench/services/MemoryService.h"
#include "workbench/services/NewFileService.h"
#include "workbench/services/OutputService.h"
#include "workbench/services/TextService.h"
#include "workbench/session/AnalysisDocument.h"
#include "workbench/session/BrushingHost.h"
#include "workbench/session/ModuleLoader.h"

namespace wb {

// A drill step that the analysis cannot take; the message names the variable or the row.
class DrillError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// What a front end brings: the parts that show things to its user and play the user. The
// front end owns them and keeps them alive while the session exists.
struct FrontEnd {
    HostMessages& messages;
    HostProgress& progress;
    DialogFrontEnd& dialogs;
    // Follows the session's documents (an output folder); null: they stay in the session.
    DocumentObserver* documents = nullptr;
};

struct SessionOptions {
    // The plug-in at this path, or the module linked into the program.
    std::variant<std::string, ModuleEntryPoints> module = ModuleLoader::defaultModulePath();
    // Where saved subsets go.
    std::filesystem::path outputFolder = "drilldown-out";
    // The user's keywords; an empty path keeps them in memory for this session.
    std::filesystem::path keywordFile = KeywordStore::defaultPath();
    // Frequency tables show, beside the subset's, the shares of the level above it
    // (ParentShares.h).
    bool parentShares = true;
};

class AnalysisSession {
public:
    AnalysisSession(FrontEnd frontEnd, SessionOptions options = {});
    // The services point into the session: it stays where it is.
    AnalysisSession(const AnalysisSession&) = delete;
    AnalysisSession& operator=(const AnalysisSession&) = delete;

    void open(DataFile file);
    const DataFile& file() const { return m_file; }
    // Changes the open file in place (weight, selection) and has the module's blocks follow.
    template <typename Change> void changeFile(Change&& change) {
        change(m_file);
        m_data.setDataFile(&m_file);
    }

    // Throws ModuleError when the module cannot be loaded or the analysis does not start.
    CDrillDown& startAnalysis();
    void closeAnalysis();
    bool hasAnalysis() const { return m_analysis != nullptr; }
    // Throws std::logic_error without an analysis.
    CDrillDown& analysis() const;
    // The panel's window and automation object; null when it is not open.
    HWND panel() const;
    IDispatch* panelObject() const;

    // ---- Drill steps through the panel's automation object ----
    // The variables to drill and to review, in the list syntax of VariableList.h; an empty
    // review list leaves the review variables as they are.
    void chooseVariables(const std::string& drillDown, const std::string& review = {});
    // The rows that the category dialog offers for `variable`: its categories with cases in
    // order, then the missing-data row when missing data are counted and it has some.
    std::vector<std::string> categoryRows(short variable);
    // Drills `variable` into row `row` of its category dialog.
    void drillDown(short variable, int row);
    // Undoes the step at row `position` of the drill-up list.
    void drillUp(int position);

    HostServices services();
    MemoryService& memory() { return m_memory; }
    DataService& data() { return m_data; }
    TextService& text() { return m_text; }
    DialogHost& dialogs() { return m_dialogs; }
    OutputService& output() { return m_output; }
    DocumentStore& documents() { return m_documents; }
    AnalysisDocument& analysisDocument() { return m_analysisDocument; }
    BrushingHost& brushing() { return m_brushing; }
    NewFileService& newFile() { return m_newFile; }
    AutomationRuntime& automation() { return m_automation; }
    KeywordStore& keywords() { return m_keywords; }

    // Why a document or a saved file could not be made since the last call, and forgets
    // it; empty when nothing failed.
    std::string takeFailure();

    // Sets a member of the panel, or presses a button with no value; DrillError on failure.
    void setPanelMember(const std::string& member, const VARIANT& value);

private:
    void pressPanelButton(const std::string& member);
    // Names the variable in the panel's drill-down list; DrillError when it is not there.
    void makeCurrentDrillDown(short variable);

    FrontEnd m_frontEnd;
    SessionOptions m_options;
    DataFile m_file;
    KeywordStore m_keywords;
    MemoryService m_memory;
    DataService m_data;
    TextService m_text;
    AutomationRuntime m_automation;
    DialogHost m_dialogs;
    NewFileService m_newFile;
    DocumentStore m_documents;
    OutputService m_output{m_documents};
    AnalysisDocument m_analysisDocument{m_documents, m_automation};
    BrushingHost m_brushing{m_frontEnd.dialogs};
    // Last, so that it ends the analysis before the services it uses go.
    ModuleLoader m_loader;
    CDrillDown* m_analysis = nullptr;
};

} // namespace wb
