#pragma once
// Records what the user (or a macro) does on the panel of the session's analysis as a macro,
// one statement a line in the order of the actions, in the language of drilldown run
// (Macro.h), so that replaying it takes the analysis to the same state.
//
//   MacroRecorder recorder(session);
//   recorder.start();            // from now on the dialog host tells it of every action
//   ...                          // the user works, or a macro runs
//   recorder.stop();
//   recorder.lines();            // "Variables = \"REGION SEX | AGE\"", "Frequencies", ...
//
// What becomes a line follows the panel's table of recordable controls: a result button is
// its member ("Histograms"), a control that holds a value is "Member = value" with the value
// read after the action through the panel's automation object (or given by the panel, for
// the lists' current variables and the category); a drill step, by the panel's buttons or by
// brushing, is the variable, the category and "DrillDown" (or "DrillUpVariable = ..." and
// "DrillUp"), written when the panel finishes the step.

#include <map>
#include <string>
#include <vector>

#include "drilldown/host/framework/AnalysisDialog.h"
#include "workbench/dialogs/DialogHost.h"

namespace wb {

class AnalysisSession;

class MacroRecorder final : public DialogHost::Recorder {
public:
    explicit MacroRecorder(AnalysisSession& session) : m_session(session) {}
    ~MacroRecorder() override;
    MacroRecorder(const MacroRecorder&) = delete;
    MacroRecorder& operator=(const MacroRecorder&) = delete;

    void start();
    void stop();
    bool recording() const { return m_recording; }
    const std::vector<std::string>& lines() const { return m_lines; }
    // The macro as a file holds it: a comment naming what it was recorded on, then the lines.
    std::string text(const std::string& recordedOn) const;

    void acted(HWND dialog, int id) override;
    void earlyState(HWND dialog, int id) override;
    void finished(HWND dialog, int id) override;

private:
    // The table entry of control `id` of a recorded dialog; null when it is not recorded.
    const CDialogControlDescr* entryOf(HWND dialog, int id) const;
    // "Member = value" of a control that holds a value; empty when it has none to give.
    std::string valueLine(HWND dialog, const CDialogControlDescr& entry);
    // The value the dialog gives for control `id`, as a macro value; empty for none.
    std::string givenValue(HWND dialog, int id);
    // Names the current drill-down variable when the macro has not named it yet.
    void nameDrillVariable(HWND dialog);
    void record(std::string line);

    AnalysisSession& m_session;
    bool m_recording = false;
    std::vector<std::string> m_lines;
    // Values taken early in a drill step, by control, for the step's end.
    std::map<int, std::string> m_early;
    // The drill-down variable the recorded lines last named, as a macro value.
    std::string m_drillVariable;
};

} // namespace wb
