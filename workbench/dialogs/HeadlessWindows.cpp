// The headless host's windows: the module's dialogs made from their templates, the messages
// a window system would deliver to them, modal dialogs answered by a responder, and the
// user's actions on controls.

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "drilldown/host/framework/AnalysisDialog.h"
#include "drilldown/resources/Dialogs.h"
#include "workbench/dialogs/DialogTemplates.h"
#include "workbench/dialogs/EditNumbers.h"
#include "workbench/dialogs/HeadlessDialogs.h"

namespace wb {

namespace {

constexpr int OptionsCommand = 10710;
// The text of lists and captions: dark blue.
constexpr unsigned long ListTextColour = 0x800000;

long handleParam(HWND control) {
    return static_cast<long>(reinterpret_cast<std::intptr_t>(control));
}

} // namespace

HeadlessDialogs::Window* HeadlessDialogs::window(HWND dialog) {
    const auto found = m_windows.find(dialog);
    return found == m_windows.end() ? nullptr : &found->second;
}

const HeadlessDialogs::Window* HeadlessDialogs::window(HWND dialog) const {
    const auto found = m_windows.find(dialog);
    return found == m_windows.end() ? nullptr : &found->second;
}

// ---- Delivery ------------------------------------------------------------------------------

template <typename Action> auto HeadlessDialogs::dispatch(Action&& action) {
    struct Depth {
        HeadlessDialogs& host;
        explicit Depth(HeadlessDialogs& h) : host(h) { ++host.m_deliveries; }
        ~Depth() { --host.m_deliveries; }
    };
    auto answer = [&] {
        Depth depth(*this);
        return std::forward<Action>(action)();
    }();
    if (m_deliveries == 0)
        finishDispatch();
    return answer;
}

long HeadlessDialogs::deliver(HWND dialog, unsigned message, unsigned long wParam, long lParam) {
    Window* target = window(dialog);
    if (target == nullptr)
        return 0;
    CAnalysisDialog* owner = target->owner;
    return dispatch([&] {
        const auto previous = m_command;
        if (message == WM_COMMAND) {
            m_command = {dialog, LowWord(wParam)};
            if (m_output != nullptr)
                m_output->setCurrentCommand(m_command.second);
        }
        struct Restore {
            HeadlessDialogs& host;
            std::pair<HWND, int> previous;
            ~Restore() {
                host.m_command = previous;
                if (host.m_output != nullptr)
                    host.m_output->setCurrentCommand(previous.second);
            }
        } restore{*this, previous};
        return owner->EventHandler(dialog, message, wParam, lParam);
    });
}

void HeadlessDialogs::finishDispatch() {
    while (!m_posted.empty()) {
        const auto [dialog, id] = m_posted.front();
        m_posted.pop_front();
        deliver(dialog, WM_COMMAND, MakeWParam(id, BN_CLICKED), 0);
    }
    while (!m_ended.empty()) {
        const HWND dialog = m_ended.front();
        m_ended.erase(m_ended.begin());
        destroyWindow(dialog);
    }
}

void HeadlessDialogs::destroyWindow(HWND dialog) {
    const auto found = m_windows.find(dialog);
    if (found == m_windows.end())
        return;
    const Window ended = found->second;
    m_windows.erase(found);
    std::erase_if(m_reorderBoxes, [&](const auto& entry) {
        const auto ref = m_model.controlOf(entry.first);
        return !ref || ref->dialog == dialog;
    });
    m_model.destroyDialog(dialog);
    ended.owner->AttachWindow(nullptr);
    ended.owner->PostNcDestroy();
    if (m_onClose)
        m_onClose(dialog, ended.result.value_or(0), ended.closeAnalysis);
}

// ---- Windows ---------------------------------------------------------------------------------

HWND HeadlessDialogs::CreateDialogWindow(CAnalysisDialog* owner, int resourceId, HWND) {
    if (owner == nullptr || FindDialogTemplate(resourceId) == nullptr)
        return nullptr;
    const HWND dialog = createDialogFromTemplate(m_model, resourceId);
    m_windows[dialog].owner = owner;
    owner->AttachWindow(dialog);
    deliver(dialog, WM_INITDIALOG, 0, 0);
    return dialog;
}

int HeadlessDialogs::RunModalDialog(CAnalysisDialog* owner, int resourceId, HWND) {
    if (owner == nullptr || FindDialogTemplate(resourceId) == nullptr)
        return -1;
    const HWND dialog = createDialogFromTemplate(m_model, resourceId);
    Window& opened = m_windows[dialog];
    opened.owner = owner;
    opened.modal = true;
    owner->AttachWindow(dialog);
    m_modalsOpened.push_back(resourceId);
    // The window goes whichever way the dialog ends, an exception included.
    struct Close {
        HeadlessDialogs& host;
        HWND dialog;
        CAnalysisDialog* owner;
        ~Close() {
            host.m_windows.erase(dialog);
            host.m_model.destroyDialog(dialog);
            owner->AttachWindow(nullptr);
        }
    } close{*this, dialog, owner};
    const auto ended = [&] { return window(dialog)->result.has_value(); };
    deliver(dialog, WM_INITDIALOG, 0, 0);
    if (!ended() && m_responder)
        m_responder(dialog, resourceId);
    if (!ended())
        deliver(dialog, WM_COMMAND, MakeWParam(IDCANCEL, BN_CLICKED), 0);
    return window(dialog)->result.value_or(0);
}

void HeadlessDialogs::EndDialogWindow(HWND dialog, int result, int closeAnalysis) {
    Window* ending = window(dialog);
    if (ending == nullptr || ending->result)
        return;
    ending->result = result;
    ending->closeAnalysis = closeAnalysis != 0;
    if (ending->modal)
        return;
    m_ended.push_back(dialog);
    if (m_deliveries == 0)
        finishDispatch();
}

void HeadlessDialogs::PostCommand(HWND dialog, int id) {
    if (isOpen(dialog))
        m_posted.emplace_back(dialog, id);
}

void HeadlessDialogs::AddDlgTabs(HWND dialog, int tabId, const int* pages, int count) {
    Window* target = window(dialog);
    if (target == nullptr || !hasControl(dialog, tabId))
        return;
    std::vector<std::string> titles;
    for (int i = 0; i < count; ++i) {
        const DialogTemplate* page = FindDialogTemplate(pages[i]);
        if (page == nullptr)
            continue;
        target->tabs[tabId].push_back(pages[i]);
        titles.emplace_back(page->Title);
    }
    m_model.setRows(dialog, tabId, std::move(titles));
}

std::vector<int> HeadlessDialogs::tabPages(HWND dialog, int tabId) const {
    const Window* shown = window(dialog);
    if (shown == nullptr || !shown->tabs.contains(tabId))
        return {};
    return shown->tabs.at(tabId);
}

unsigned long HeadlessDialogs::AttributeColour(int) { return ListTextColour; }

void HeadlessDialogs::SetIntEditRange(HWND control, int low, int high) {
    if (const auto ref = m_model.controlOf(control))
        m_model.setRange(ref->dialog, ref->id, EditRange{double(low), double(high)});
}

void HeadlessDialogs::SetRealEditRange(HWND control, double low, double high, int) {
    if (const auto ref = m_model.controlOf(control))
        m_model.setRange(ref->dialog, ref->id, EditRange{low, high});
}

void HeadlessDialogs::SubclassListBox(HWND control, CReorderListBox* box) {
    if (box == nullptr)
        m_reorderBoxes.erase(control);
    else if (m_model.controlOf(control))
        m_reorderBoxes[control] = box;
}

int HeadlessDialogs::InsertListColumn(HWND control, int column, const char* heading, int width,
                                      int rightAligned) {
    const auto ref = m_model.controlOf(control);
    if (!ref)
        return -1;
    m_model.insertColumn(ref->dialog, ref->id, column,
                         ListColumn{heading == nullptr ? "" : heading, width, rightAligned != 0});
    return column;
}

int HeadlessDialogs::InsertListRow(HWND control, int row, const char* text) {
    const auto ref = m_model.controlOf(control);
    if (!ref)
        return -1;
    return m_model.insertRow(ref->dialog, ref->id, row, text == nullptr ? "" : text);
}

int HeadlessDialogs::SetListCell(HWND control, int row, int column, const char* text) {
    const auto ref = m_model.controlOf(control);
    if (!ref)
        return 0;
    return m_model.setCell(ref->dialog, ref->id, row, column, text == nullptr ? "" : text) ? 1
                                                                                          : 0;
}

// ---- Results and recording -------------------------------------------------------------------

int HeadlessDialogs::IsResultsMsg(HWND, unsigned message, unsigned long wParam, long) {
    return message == WM_COMMAND && LowWord(wParam) == OptionsCommand ? 1 : 0;
}

void HeadlessDialogs::ResultsChange(HWND dialog, ResultsEvent event) {
    Window* panel = window(dialog);
    if (panel == nullptr)
        return;
    if (event == ResultsEvent::Lock)
        ++panel->locks;
    else if (event == ResultsEvent::Unlock)
        --panel->locks;
}

int HeadlessDialogs::resultsLockDepth(HWND dialog) const {
    const Window* panel = window(dialog);
    return panel == nullptr ? 0 : panel->locks;
}

void HeadlessDialogs::EnableStartupMenus(HWND dialog, int enable) {
    if (Window* panel = window(dialog))
        panel->menus = enable;
}

int HeadlessDialogs::startupMenusEnabled(HWND dialog) const {
    const Window* panel = window(dialog);
    return panel == nullptr ? -1 : panel->menus;
}

void HeadlessDialogs::EarlyRecordState(HWND, int id) { m_recording.push_back({0, id}); }

void HeadlessDialogs::FinishRecordingDialog(HWND, int, int, int id) {
    m_recording.push_back({1, id});
}

int HeadlessDialogs::DefineSelCond(int, HWND) {
    return m_selectionDialog ? m_selectionDialog() : 0;
}

int HeadlessDialogs::DefineWeight(int, HWND) { return m_weightDialog ? m_weightDialog() : 0; }

int HeadlessDialogs::OpenVmkFile(HWND) { return m_openFileDialog ? m_openFileDialog() : 0; }

// ---- The user --------------------------------------------------------------------------------

bool HeadlessDialogs::actionable(HWND dialog, int id) const {
    const Window* shown = window(dialog);
    if (shown != nullptr && shown->result)
        return false; // the dialog has ended
    const ControlState& control = m_model.state(dialog, id);
    return control.enabled && control.shown;
}

bool HeadlessDialogs::isListView(HWND dialog, int id) const {
    const DialogTemplate* source = FindDialogTemplate(m_model.resourceId(dialog));
    if (source == nullptr)
        return false;
    const DialogControlPlace place = FindDialogControl(*source, id);
    return place.Control != nullptr && place.Control->Kind == DialogControlKind::ListView;
}

void HeadlessDialogs::clickControl(HWND dialog, int id) {
    const ControlKind kind = m_model.kind(dialog, id);
    if (kind == ControlKind::CheckBox)
        m_model.setChecked(dialog, id, !m_model.isChecked(dialog, id));
    if (kind == ControlKind::Radio) {
        // A radio clears the other radios of its page, or of its dialog when it has no page.
        const DialogTemplate* source = FindDialogTemplate(m_model.resourceId(dialog));
        const DialogControlPlace place =
            source == nullptr ? DialogControlPlace{} : FindDialogControl(*source, id);
        if (place.Owner != nullptr)
            for (const DialogControl& other : place.Owner->Controls)
                if (other.Kind == DialogControlKind::RadioButton && other.Id != id)
                    m_model.setChecked(dialog, other.Id, false);
        m_model.setChecked(dialog, id, true);
    }
    deliver(dialog, WM_COMMAND, MakeWParam(id, BN_CLICKED),
            handleParam(m_model.controlHandle(dialog, id)));
}

bool HeadlessDialogs::click(HWND dialog, int id) {
    if (!actionable(dialog, id))
        return false;
    clickControl(dialog, id);
    return true;
}

bool HeadlessDialogs::chooseRow(HWND dialog, int id, int row) {
    if (!actionable(dialog, id) || !m_model.select(dialog, id, row))
        return false;
    if (isListView(dialog, id)) {
        NMLISTVIEW change{{m_model.controlHandle(dialog, id), unsigned(id), LVN_ITEMCHANGED}, row};
        deliver(dialog, WM_NOTIFY, unsigned(id), reinterpret_cast<long>(&change));
    } else {
        deliver(dialog, WM_COMMAND, MakeWParam(id, LBN_SELCHANGE),
                handleParam(m_model.controlHandle(dialog, id)));
    }
    return true;
}

bool HeadlessDialogs::doubleClickRow(HWND dialog, int id, int row) {
    if (!actionable(dialog, id) || !isListView(dialog, id) || !m_model.select(dialog, id, row))
        return false;
    NMLISTVIEW click{{m_model.controlHandle(dialog, id), unsigned(id), NM_DBLCLK}, row};
    deliver(dialog, WM_NOTIFY, unsigned(id), reinterpret_cast<long>(&click));
    return true;
}

bool HeadlessDialogs::dragRow(HWND dialog, int id, int source, int target) {
    if (!actionable(dialog, id))
        return false;
    const auto box = m_reorderBoxes.find(m_model.controlHandle(dialog, id));
    const int rows = static_cast<int>(m_model.rows(dialog, id).size());
    if (box == m_reorderBoxes.end() || target < 0 || target > rows ||
        !m_model.select(dialog, id, source) || source < 0)
        return false;
    CReorderListBox* list = box->second;
    dispatch([&] {
        list->ReorderItem(target);
        return 0;
    });
    return true;
}

bool HeadlessDialogs::typeText(HWND dialog, int id, std::string text) {
    if (!actionable(dialog, id) || m_model.kind(dialog, id) != ControlKind::Edit)
        return false;
    // An edit of numbers takes only a number within its range, as its edit class would.
    const std::optional<EditRange> range = m_model.state(dialog, id).range;
    if (range) {
        const std::optional<double> number = readEditNumber(text);
        if (!number || *number < range->low || *number > range->high)
            return false;
    }
    m_model.setText(dialog, id, std::move(text));
    return true;
}

long HeadlessDialogs::send(HWND dialog, unsigned message, unsigned long wParam, long lParam) {
    return deliver(dialog, message, wParam, lParam);
}

} // namespace wb
