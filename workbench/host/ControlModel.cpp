#include "workbench/host/ControlModel.h"

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
        if (state.rows == rows && state.selection == -1)
            return false;
        state.rows = std::move(rows);
        state.selection = -1;
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
