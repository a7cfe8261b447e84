// The panel's brushing command: a pass of brushing on the graph of the current drill-down
// variable, then the drill step the user chose there; the command posts itself again while
// a variable is left, so brushing is a loop that the user ends by leaving the graph.

#include "../core/CDrillDown.h"
#include "../dialogs/StartupPanel.h"
#include "../outputs/OutputTracker.h"
#include "../resources/ControlIds.h"

namespace {

constexpr int RecordingStep = 101;
constexpr int RecordingKind = 3;
// The brushing graph's key among the tracked outputs.
constexpr COutputKey BrushingGraphKey{CommandBrushingGraph, 1};

} // namespace

void CDDNStartupDlg::EndBrushing() {
    m_pDrill->Outputs->Remove(BrushingGraphKey, true);
    ReallyRestoreResults();
}

long CDDNStartupDlg::BrushingCommand(HWND dialog) {
    CDrillDown& drill = *m_pDrill;
    if (drill.StandAloneResults != 0) {
        // Drawn as a tracked output, so that the graph follows each step in its window.
        if (!drill.OutputExists(BrushingGraphKey.command, BrushingGraphKey.number)) {
            drill.SetNextOutputID(BrushingGraphKey.command, BrushingGraphKey.number);
            Controls().SendMessageA(dialog, WM_COMMAND, CommandBrushingGraph, 0);
        }
    } else {
        drill.DDNGraphForBrushing(nullptr);
    }
    if (IsChecked(dialog, RadioUserLimits) && drill.GetCurrentNU() == 0) {
        Controls().SendMessageA(dialog, WM_COMMAND, ButtonLimits, 0);
        return 1;
    }
    ApplyCategorisation(dialog);
    int picked = -1;
    int direction = -1;
    if (drill.DDNBrushing(&picked, &direction) != 1) {
        EndBrushing();
        return 0;
    }
    if (direction == 1) {
        const short up = drill.GetCurrentUpItem();
        if (up != -1) {
            drill.SetCurrentUpItem(up);
            FinishRecordingDialog(RecordingStep, RecordingKind, ButtonDrillUp);
            drill.MoveBackToDrillDowns();
            drill.RefreshListBoxes(dialog);
            SyncCurrentDrillDown(dialog, 0);
            SyncCurrentDrillUp(dialog, 0);
            UpdateControls(dialog, 0);
            drill.ReadAfterDrill(0);
        }
    } else {
        if (picked == -1 || direction != 0)
            return 0;
        FinishRecordingDialog(RecordingStep, RecordingKind, ButtonDrillDown);
        drill.MoveToDrillUps();
        drill.RefreshListBoxes(dialog);
        SyncCurrentDrillUp(dialog, 0);
        UpdateControls(dialog, 0);
        drill.ReadAfterDrill(0);
    }
    UpdateControls(dialog, 0);
    drill.AutoUpdate(0);
    if (drill.GetDrillDownsSize() > 0) {
        Controls().PostCommand(dialog, ButtonBrushing);
        return 0;
    }
    if (direction == 1)
        ReallyRestoreResults();
    else
        EndBrushing();
    return 1;
}
