#pragma once
// What differs between front ends in the module's dialogs: who plays the user. The dialog
// host (DialogHost.h) does everything else (windows from templates, message delivery,
// control state, automation values) and asks its front end only for these.
//
// A front end implements this interface and hands it to the host; the headless front end
// answers from what its caller queued, a desktop front end from a person at real windows.
// Every call comes on the user-interface thread, from inside the host; the front end may
// call the host's user actions (click, chooseRow, ...) from runModal and from posted tasks.

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "drilldown/host/HostBrushing.h"
#include "drilldown/host/HostDialogs.h"
#include "workbench/data/VariableList.h"

namespace wb {

// One call of the variable dialog as the module made it.
struct VariableDialogCall {
    HWND parent = nullptr;
    unsigned short mode = 0;
    std::string title;
    std::vector<short> choices; // empty for all variables
    int min1 = 0, max1 = 0, min2 = 0, max2 = 0, total = 0;
    std::string caption1, caption2;
    unsigned short flag = 0;
};

// One pass of brushing as the module asks for it: the graph document (its id in the store),
// the bars' regions with their tool tips, the region offered selected (-1 for none), and the
// commands (drill down, and drill up when a step can be undone), in the module's captions.
struct BrushingCall {
    int document = 0;
    std::vector<CBrushRegion> regions;
    int selected = -1;
    std::vector<std::string> commands;
};

// What the user chose: the region selected (-1 for none) and the command's index.
struct BrushingChoice {
    int selected = -1;
    int command = 0;
};

class DialogFrontEnd {
public:
    virtual ~DialogFrontEnd() = default;

    // The user's turn in modal dialog `dialog` (made from template `resourceId`, which has
    // had WM_INITDIALOG): returns when the dialog has ended or the user has left it. The
    // host then cancels a dialog still open, as Escape would.
    virtual void runModal(HWND dialog, int resourceId) = 0;
    // The variable dialog: the two lists the user picked (1-based variable numbers), or
    // nothing when the user cancelled. The host checks the lists against the call.
    virtual std::optional<VariableChoice> chooseVariables(const VariableDialogCall& call) = 0;
    // The host's own dialogs (selection condition, case weight, opening a file): each gives
    // the dialog's answer, 0 when the user cancelled.
    virtual int defineSelection(HWND parent) = 0;
    virtual int defineWeight(HWND parent) = 0;
    virtual int openFile(HWND parent) = 0;
    // The modal brushing on a graph's window: what the user chose, or nothing when the user
    // left it.
    virtual std::optional<BrushingChoice> brush(const BrushingCall& call) = 0;
    // A dialog window has been made, before its WM_INITDIALOG.
    virtual void opened(HWND dialog, int resourceId, bool modal) = 0;
    // A modeless dialog has ended and its window is gone; `closeAnalysis` when it asked
    // for its analysis to close.
    virtual void closed(HWND dialog, int result, bool closeAnalysis) = 0;
    // Runs `task` later, as an event of the front end's loop, after the message being
    // handled and every message it causes.
    virtual void post(std::function<void()> task) = 0;
    // The host has finished delivering the user's action. A front end without an event
    // loop of its own runs what was posted now; one with a loop leaves that to the loop.
    virtual void deliveryFinished() = 0;
};

} // namespace wb
