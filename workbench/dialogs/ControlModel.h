#pragma once
// The workbench's model of dialogs and their controls: the one place where the state of
// every control lives. The dialog host (DialogHost.h) reads and writes it for the module; a
// desktop front end mirrors it in real widgets and feeds the user's input back into it.
//
// A dialog is made from a resource id and has a handle. Its controls are kept by id, each
// with a handle of its own; every handle is a distinct opaque value that is never given out
// twice, so a handle kept past the end of its dialog finds nothing instead of another
// control. Controls on the pages of a tab control are controls of the dialog itself: one
// id space per dialog.
//
// To use the model:
//   1. createDialog(resourceId) gives the dialog's handle;
//   2. declare controls with addControl, or let a dialog made with ControlCreation::OnFirstUse
//      create each control, with default state, the first time an id is used;
//   3. subscribe to hear of every change of a control, whoever made it;
//   4. destroyDialog when the dialog ends; its handles and those of its controls go dead.
//
// The calls taking (dialog, id) are for front ends and tests: a dialog that does not exist,
// or an id that a dialog made with ControlCreation::Declared does not have, is the caller's
// error and throws std::out_of_range. controlHandle() and controlOf() are the forgiving
// lookups that the host services use, answering null or nothing instead.
//
// The model does not hold a control to its kind: a check box can have rows. The kind only
// tells a front end which widget to show.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "drilldown/host/HostDialogs.h"

namespace wb {

enum class ControlKind { Undeclared, Button, CheckBox, Radio, Edit, Static, ListBox, Tab };

// Whether a dialog creates a control for an id that it has not seen.
enum class ControlCreation { OnFirstUse, Declared };

// A column of a list view.
struct ListColumn {
    std::string heading;
    int width = 0; // dialog units
    bool rightAligned = false;
    bool operator==(const ListColumn&) const = default;
};

// The range of numbers that an edit accepts.
struct EditRange {
    double low = 0;
    double high = 0;
    bool operator==(const EditRange&) const = default;
};

struct ControlState {
    ControlKind kind = ControlKind::Undeclared;
    bool enabled = true;
    bool shown = true;
    bool checked = false;
    std::string text;
    std::vector<std::string> rows;
    int selection = -1; // row of a list box, -1 for none
    // A list view: its columns, and per row the texts of the columns after the first (the
    // first is the row's text in rows).
    std::vector<ListColumn> columns;
    std::vector<std::vector<std::string>> cells;
    std::optional<EditRange> range; // an edit of numbers
    bool operator==(const ControlState&) const = default;
};

// Where a control handle leads.
struct ControlRef {
    HWND dialog = nullptr;
    int id = 0;
    bool operator==(const ControlRef&) const = default;
};

class ControlModel {
public:
    // Called after a control has changed, with its dialog and id. An observer may read the
    // model and may change it; changes it makes are reported in turn.
    using Observer = std::function<void(HWND dialog, int id)>;

    ControlModel() = default;
    ControlModel(const ControlModel&) = delete;
    ControlModel& operator=(const ControlModel&) = delete;

    HWND createDialog(int resourceId, ControlCreation creation = ControlCreation::OnFirstUse);
    // Forgets the dialog and its controls; an unknown handle is ignored.
    void destroyDialog(HWND dialog);
    bool isDialog(HWND dialog) const;
    int resourceId(HWND dialog) const;

    // Declares control `id` of the dialog as a control of that kind and gives its handle. A
    // control that exists already keeps its state and takes the kind.
    HWND addControl(HWND dialog, int id, ControlKind kind);

    // The handle of control `id`, created now if the dialog creates on first use; null when
    // the dialog does not exist or does not have the control.
    HWND controlHandle(HWND dialog, int id);
    // The dialog and id of a control handle, or nothing for a handle that is not a live
    // control's.
    std::optional<ControlRef> controlOf(HWND control) const;

    // The whole state of a control; one that would be created on first use reads as the
    // default state without being created.
    const ControlState& state(HWND dialog, int id) const;
    ControlKind kind(HWND dialog, int id) const { return state(dialog, id).kind; }
    bool isEnabled(HWND dialog, int id) const { return state(dialog, id).enabled; }
    bool isShown(HWND dialog, int id) const { return state(dialog, id).shown; }
    bool isChecked(HWND dialog, int id) const { return state(dialog, id).checked; }
    const std::string& text(HWND dialog, int id) const { return state(dialog, id).text; }
    const std::vector<std::string>& rows(HWND dialog, int id) const {
        return state(dialog, id).rows;
    }
    int selection(HWND dialog, int id) const { return state(dialog, id).selection; }
    const std::vector<ListColumn>& columns(HWND dialog, int id) const {
        return state(dialog, id).columns;
    }
    // The cell of a list view row; column 0 is the row's text. Empty for a cell not set.
    std::string cell(HWND dialog, int id, int row, int column) const;

    // Changes. Observers hear only of changes that alter the state.
    void setEnabled(HWND dialog, int id, bool enabled);
    void setShown(HWND dialog, int id, bool shown);
    void setChecked(HWND dialog, int id, bool checked);
    void setText(HWND dialog, int id, std::string text);
    // Replaces the rows; the selection goes with the old rows.
    void setRows(HWND dialog, int id, std::vector<std::string> rows);
    // Selects a row, -1 for none, as a click of the user would. A row out of range gives
    // false and leaves the selection as it was.
    bool select(HWND dialog, int id, int row);
    // Inserts a row before `row` (-1 or the row count: at the end); the selection moves with
    // its row. Gives the row's place, -1 when `row` is out of range.
    int insertRow(HWND dialog, int id, int row, std::string text);
    // Deletes a row; a selected row leaves no selection. False when out of range.
    bool deleteRow(HWND dialog, int id, int row);
    // Inserts a list view column before `column` (at the end when past it).
    void insertColumn(HWND dialog, int id, int column, ListColumn heading);
    // Sets the text of cell (row, column) of a list view; column 0 is the row's text. False
    // when row or column is out of range.
    bool setCell(HWND dialog, int id, int row, int column, std::string text);
    void setRange(HWND dialog, int id, EditRange range);

    // Gives a number for unsubscribe.
    std::size_t subscribe(Observer observer);
    void unsubscribe(std::size_t subscription);

private:
    struct Control {
        HWND handle = nullptr;
        ControlState state;
    };
    struct Dialog {
        int resourceId = 0;
        ControlCreation creation = ControlCreation::OnFirstUse;
        std::map<int, Control> controls;
    };

    HWND newHandle();
    Dialog& dialogAt(HWND dialog);
    const Dialog& dialogAt(HWND dialog) const;
    // The control, created on first use where the dialog allows it; throws otherwise.
    ControlState& mutableState(HWND dialog, int id);
    // Applies `change` to the control and tells the observers when it altered the state.
    template <typename Change> void change(HWND dialog, int id, Change&& apply);

    std::unordered_map<HWND, Dialog> m_dialogs;
    std::unordered_map<HWND, ControlRef> m_controls;
    std::uintptr_t m_lastHandle = 0;
    std::vector<std::pair<std::size_t, Observer>> m_observers;
    std::size_t m_lastSubscription = 0;
};

} // namespace wb
