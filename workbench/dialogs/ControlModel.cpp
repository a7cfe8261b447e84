#include "workbench/dialogs/ControlModel.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace wb {

namespace {

// What a control reads as before anything was done to it.
const ControlState DefaultState{};

} // namespace

HWND ControlModel::newHandle() {
    // Handles are never dereferenced; a counter keeps them distinct for the model's lifetime.
    return reinterpret_cast<HWND>(++m_lastHandle);
}

HWND ControlModel::createDialog(int resourceId, ControlCreation creation) {
    const HWND handle = newHandle();
    m_dialogs.emplace(handle, Dialog{resourceId, creation, {}});
    return handle;
}

void ControlModel::destroyDialog(HWND dialog) {
    const auto found = m_dialogs.find(dialog);
    if (found == m_dialogs.end())
        return;
    for (const auto& [id, control] : found->second.controls)
        m_controls.erase(control.handle);
    m_dialogs.erase(found);
}

bool ControlModel::isDialog(HWND dialog) const {
    return m_dialogs.contains(dialog);
}

int ControlModel::resourceId(HWND dialog) const {
    return dialogAt(dialog).resourceId;
}

ControlModel::Dialog& ControlModel::dialogAt(HWND dialog) {
    const auto found = m_dialogs.find(dialog);
    if (found == m_dialogs.end())
        throw std::out_of_range("ControlModel: no such dialog");
    return found->second;
}

const ControlModel::Dialog& ControlModel::dialogAt(HWND dialog) const {
    const auto found = m_dialogs.find(dialog);
    if (found == m_dialogs.end())
        throw std::out_of_range("ControlModel: no such dialog");
    return found->second;
}

HWND ControlModel::addControl(HWND dialog, int id, ControlKind kind) {
    Dialog& owner = dialogAt(dialog);
    auto [position, added] = owner.controls.try_emplace(id);
    Control& control = position->second;
    if (added) {
        control.handle = newHandle();
        m_controls.emplace(control.handle, ControlRef{dialog, id});
    }
    control.state.kind = kind;
    return control.handle;
}

HWND ControlModel::controlHandle(HWND dialog, int id) {
    const auto found = m_dialogs.find(dialog);
    if (found == m_dialogs.end())
        return nullptr;
    const auto control = found->second.controls.find(id);
    if (control != found->second.controls.end())
        return control->second.handle;
    if (found->second.creation == ControlCreation::Declared)
        return nullptr;
    return addControl(dialog, id, ControlKind::Undeclared);
}

std::optional<ControlRef> ControlModel::controlOf(HWND control) const {
    const auto found = m_controls.find(control);
    if (found == m_controls.end())
        return std::nullopt;
    return found->second;
}

const ControlState& ControlModel::state(HWND dialog, int id) const {
    const Dialog& owner = dialogAt(dialog);
    const auto control = owner.controls.find(id);
    if (control != owner.controls.end())
        return control->second.state;
    if (owner.creation == ControlCreation::Declared)
        throw std::out_of_range("ControlModel: the dialog has no control " + std::to_string(id));
    return DefaultState;
}

ControlState& ControlModel::mutableState(HWND dialog, int id) {
    if (controlHandle(dialog, id) == nullptr) {
        if (!isDialog(dialog))
            throw std::out_of_range("ControlModel: no such dialog");
        throw std::out_of_range("ControlModel: the dialog has no control " + std::to_string(id));
    }
    return m_dialogs.at(dialog).controls.at(id).state;
}

template <typename Change> void ControlModel::change(HWND dialog, int id, Change&& apply) {
    if (!std::forward<Change>(apply)(mutableState(dialog, id)))
        return;
    // Observers may subscribe, unsubscribe or change controls while they are told, which
    // would invalidate an iteration over m_observers itself.
    const auto observers = m_observers;
    for (const auto& [subscription, observer] : observers)
        observer(dialog, id);
}

void ControlModel::setEnabled(HWND dialog, int id, bool enabled) {
    change(dialog, id,
           [&](ControlState& state) { return std::exchange(state.enabled, enabled) != enabled; });
}

void ControlModel::setShown(HWND dialog, int id, bool shown) {
    change(dialog, id,
           [&](ControlState& state) { return std::exchange(state.shown, shown) != shown; });
}

void ControlModel::setChecked(HWND dialog, int id, bool checked) {
    change(dialog, id,
           [&](ControlState& state) { return std::exchange(state.checked, checked) != checked; });
}

void ControlModel::setText(HWND dialog, int id, std::string text) {
    change(dialog, id, [&](ControlState& state) {
        if (state.text == text)
            return false;
        state.text = std::move(text);
        return true;
    });
}

void ControlModel::setRows(HWND dialog, int id, std::vector<std::string> rows) {
    change(dialog, id, [&](ControlState& state) {
        if (state.rows == rows && state.selection == -1 && state.cells.empty())
            return false;
        state.rows = std::move(rows);
        state.cells.clear();
        state.selection = -1;
        return true;
    });
}

std::string ControlModel::cell(HWND dialog, int id, int row, int column) const {
    const ControlState& list = state(dialog, id);
    if (row < 0 || row >= static_cast<int>(list.rows.size()) || column < 0)
        return {};
    if (column == 0)
        return list.rows[row];
    if (row >= static_cast<int>(list.cells.size()) ||
        column > static_cast<int>(list.cells[row].size()))
        return {};
    return list.cells[row][column - 1];
}

int ControlModel::insertRow(HWND dialog, int id, int row, std::string text) {
    int place = -1;
    change(dialog, id, [&](ControlState& state) {
        const int count = static_cast<int>(state.rows.size());
        if (row < -1 || row > count)
            return false;
        place = row == -1 ? count : row;
        state.rows.insert(state.rows.begin() + place, std::move(text));
        if (!state.cells.empty() || !state.columns.empty()) {
            state.cells.resize(count);
            state.cells.insert(state.cells.begin() + place, std::vector<std::string>{});
        }
        if (state.selection >= place)
            ++state.selection;
        return true;
    });
    return place;
}

bool ControlModel::deleteRow(HWND dialog, int id, int row) {
    bool done = false;
    change(dialog, id, [&](ControlState& state) {
        if (row < 0 || row >= static_cast<int>(state.rows.size()))
            return false;
        state.rows.erase(state.rows.begin() + row);
        if (row < static_cast<int>(state.cells.size()))
            state.cells.erase(state.cells.begin() + row);
        if (state.selection == row)
            state.selection = -1;
        else if (state.selection > row)
            --state.selection;
        done = true;
        return true;
    });
    return done;
}

void ControlModel::insertColumn(HWND dialog, int id, int column, ListColumn heading) {
    change(dialog, id, [&](ControlState& state) {
        const auto place = std::min<std::size_t>(std::max(column, 0), state.columns.size());
        state.columns.insert(state.columns.begin() + static_cast<std::ptrdiff_t>(place),
                             std::move(heading));
        return true;
    });
}

bool ControlModel::setCell(HWND dialog, int id, int row, int column, std::string text) {
    bool done = false;
    change(dialog, id, [&](ControlState& state) {
        if (row < 0 || row >= static_cast<int>(state.rows.size()) || column < 0 ||
            (column > 0 && column >= static_cast<int>(state.columns.size())))
            return false;
        done = true;
        if (column == 0)
            return std::exchange(state.rows[row], std::move(text)) != state.rows[row];
        state.cells.resize(state.rows.size());
        std::vector<std::string>& rowCells = state.cells[row];
        if (rowCells.size() < static_cast<std::size_t>(column))
            rowCells.resize(column);
        return std::exchange(rowCells[column - 1], std::move(text)) != rowCells[column - 1];
    });
    return done;
}

void ControlModel::setRange(HWND dialog, int id, EditRange range) {
    change(dialog, id, [&](ControlState& state) {
        if (state.range == range)
            return false;
        state.range = range;
        return true;
    });
}

bool ControlModel::select(HWND dialog, int id, int row) {
    bool inRange = true;
    change(dialog, id, [&](ControlState& state) {
        inRange = row >= -1 && row < static_cast<int>(state.rows.size());
        return inRange && std::exchange(state.selection, row) != row;
    });
    return inRange;
}

std::size_t ControlModel::subscribe(Observer observer) {
    m_observers.emplace_back(++m_lastSubscription, std::move(observer));
    return m_lastSubscription;
}

void ControlModel::unsubscribe(std::size_t subscription) {
    std::erase_if(m_observers, [&](const auto& entry) { return entry.first == subscription; });
}

} // namespace wb
