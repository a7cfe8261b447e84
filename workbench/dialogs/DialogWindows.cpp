// The dialog host's windows: the module's dialogs made from their templates, the messages a
// window system would deliver to them, modal dialogs handed to the front end, and the user's
// actions on controls.

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "drilldown/host/framework/AnalysisDialog.h"
#include "drilldown/resources/Dialogs.h"
#include "workbench/dialogs/DialogTemplates.h"
#include "workbench/dialogs/EditNumbers.h"
#include "workbench/dialogs/DialogHost.h"

namespace wb {

namespace {

constexpr int OptionsCommand = 10710;
// The text of lists and captions: dark blue.
constexpr unsigned long ListTextColour = 0x800000;

long handleParam(HWND control) {
    return static_cast<long>(reinterpret_cast<std::intptr_t>(control));
}

} // namespace

DialogHost::Window* DialogHost::window(HWND dialog) {
    const auto found = m_windows.find(dialog);
    return found == m_windows.end() ? nullptr : &found->second;
}

const DialogHost::Window* DialogHost::window(HWND dialog) const {
    const auto found = m_windows.find(dialog);
    return found == m_windows.end() ? nullptr : &found->second;
}

// ---- Delivery ------------------------------------------------------------------------------

template <typename Action> auto DialogHost::dispatch(Action&& action) {
    struct Depth {
        DialogHost& host;
        explicit Depth(DialogHost& h) : host(h) { ++host.m_deliveries; }
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

long DialogHost::deliver(HWND dialog, unsigned message, unsigned long wParam, long lParam) {
    Window* target = window(dialog);
    if (target == nullptr)
        return 0;
    CAnalysisDialog* owner = target->owner;
    if (message != WM_COMMAND)
        return dispatch([&] { return owner->EventHandler(dialog, message, wParam, lParam); });
    // The documents a command makes carry it: the command runs as one run of the store's.
    return dispatch([&] {
        struct CommandRun {
            DialogHost& host;
            std::pair<HWND, int> previous;
            CommandRun(DialogHost& h, std::pair<HWND, int> command)
                : host(h), previous(h.m_command) {
                host.m_command = command;
                if (host.m_output != nullptr)
                    host.m_output->store().beginCommand(command.second);
            }
            ~CommandRun() {
                if (host.m_output != nullptr)
                    host.m_output->store().endCommand();
                host.m_command = previous;
            }
        } run(*this, {dialog, LowWord(wParam)});
        return owner->EventHandler(dialog, message, wParam, lParam);
    });
}

void DialogHost::finishDispatch() {
    m_frontEnd.deliveryFinished();
    while (!m_ended.empty()) {
        const HWND dialog = m_ended.front();
        m_ended.erase(m_ended.begin());
        destroyWindow(dialog);
    }
}

void DialogHost::destroyWindow(HWND dialog) {
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
    m_frontEnd.closed(dialog, ended.result.value_or(0), ended.closeAnalysis);
}

// ---- Windows ---------------------------------------------------------------------------------

HWND DialogHost::CreateDialogWindow(CAnalysisDialog* owner, int resourceId, HWND) {
    if (owner == nullptr || FindDialogTemplate(resourceId) == nullptr)
        return nullptr;
    const HWND dialog = createDialogFromTemplate(m_model, resourceId);
    m_windows[dialog].owner = owner;
    owner->AttachWindow(dialog);
    m_frontEnd.opened(dialog, resourceId, false);
    deliver(dialog, WM_INITDIALOG, 0, 0);
    return dialog;
}

int DialogHost::RunModalDialog(CAnalysisDialog* owner, int resourceId, HWND) {
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
        DialogHost& host;
        HWND dialog;
        CAnalysisDialog* owner;
        ~Close() {
            host.m_windows.erase(dialog);
            host.m_model.destroyDialog(dialog);
            owner->AttachWindow(nullptr);
        }
    } close{*this, dialog, owner};
    const auto ended = [&] { return window(dialog)->result.has_value(); };
    m_frontEnd.opened(dialog, resourceId, true);
    deliver(dialog, WM_INITDIALOG, 0, 0);
    if (!ended())
        m_frontEnd.runModal(dialog, resourceId);
    if (!ended())
        deliver(dialog, WM_COMMAND, MakeWParam(IDCANCEL, BN_CLICKED), 0);
    return window(dialog)->result.value_or(0);
}

void DialogHost::EndDialogWindow(HWND dialog, int result, int closeAnalysis) {
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

void DialogHost::PostCommand(HWND dialog, int id) {
    if (!isOpen(dialog))
        return;
    m_frontEnd.post([this, dialog, id] {
        if (isOpen(dialog))
            deliver(dialog, WM_COMMAND, MakeWParam(id, BN_CLICKED), 0);
    });
}

void DialogHost::AddDlgTabs(HWND dialog, int tabId, const int* pages, int count) {
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

std::vector<int> DialogHost::tabPages(HWND dialog, int tabId) const {
    const Window* shown = window(dialog);
    if (shown == nullptr || !shown->tabs.contains(tabId))
        return {};
    return shown->tabs.at(tabId);
}

unsigned long DialogHost::AttributeColour(int) { return ListTextColour; }

void DialogHost::SetIntEditRange(HWND control, int low, int high) {
    if (const auto ref = m_model.controlOf(control))
        m_model.setRange(ref->dialog, ref->id, EditRange{double(low), double(high)});
}

void DialogHost::SetRealEditRange(HWND control, double low, double high, int) {
    if (const auto ref = m_model.controlOf(control))
        m_model.setRange(ref->dialog, ref->id, EditRange{low, high});
}

void DialogHost::SubclassListBox(HWND control, CReorderListBox* box) {
    if (box == nullptr)
        m_reorderBoxes.erase(control);
    else if (m_model.controlOf(control))
        m_reorderBoxes[control] = box;
}

int DialogHost::InsertListColumn(HWND control, int column, const char* heading, int width,
                                 int rightAligned) {
    const auto ref = m_model.controlOf(control);
    if (!ref)
        return -1;
    m_model.insertColumn(ref->dialog, ref->id, column,
                         ListColumn{heading == nullptr ? "" : heading, width, rightAligned != 0});
    return column;
}

int DialogHost::InsertListRow(HWND control, int row, const char* text) {
    const auto ref = m_model.controlOf(control);
    if (!ref)
        return -1;
    return m_model.insertRow(ref->dialog, ref->id, row, text == nullptr ? "" : text);
}

int DialogHost::SetListCell(HWND control, int row, int column, const char* text) {
    const auto ref = m_model.controlOf(control);
    if (!ref)
        return 0;
    return m_model.setCell(ref->dialog, ref->id, row, column, text == nullptr ? "" : text) ? 1
                                                                                          : 0;
}

// ---- Results and recording -------------------------------------------------------------------

int DialogHost::IsResultsMsg(HWND, unsigned message, unsigned long wParam, long) {
    return message == WM_COMMAND && LowWord(wParam) == OptionsCommand ? 1 : 0;
}

void DialogHost::ResultsChange(HWND dialog, ResultsEvent event) {
    Window* panel = window(dialog);
    if (panel == nullptr)
        return;
    if (event == ResultsEvent::Lock)
        ++panel->locks;
    else if (event == ResultsEvent::Unlock)
        --panel->locks;
}

bool DialogHost::hasEnded(HWND dialog) const {
    const Window* shown = window(dialog);
    return shown == nullptr || shown->result.has_value();
}

int DialogHost::resultsLockDepth(HWND dialog) const {
    const Window* panel = window(dialog);
    return panel == nullptr ? 0 : panel->locks;
}

void DialogHost::EnableStartupMenus(HWND dialog, int enable) {
    if (Window* panel = window(dialog))
        panel->menus = enable;
}

int DialogHost::startupMenusEnabled(HWND dialog) const {
    const Window* panel = window(dialog);
    return panel == nullptr ? -1 : panel->menus;
}

void DialogHost::EarlyRecordState(HWND dialog, int id) {
    if (m_recorder != nullptr)
        m_recorder->earlyState(dialog, id);
}

void DialogHost::FinishRecordingDialog(HWND dialog, int, int, int id) {
    if (m_recorder != nullptr)
        m_recorder->finished(dialog, id);
}

int DialogHost::DefineSelCond(int, HWND parent) { return m_frontEnd.defineSelection(parent); }

int DialogHost::DefineWeight(int, HWND parent) { return m_frontEnd.defineWeight(parent); }

int DialogHost::OpenVmkFile(HWND parent) { return m_frontEnd.openFile(parent); }

// ---- The user --------------------------------------------------------------------------------

bool DialogHost::actionable(HWND dialog, int id) const {
    const Window* shown = window(dialog);
    if (shown != nullptr && shown->result)
        return false; // the dialog has ended
    const ControlState& control = m_model.state(dialog, id);
    return control.enabled && control.shown;
}

bool DialogHost::isListView(HWND dialog, int id) const {
    const DialogTemplate* source = FindDialogTemplate(m_model.resourceId(dialog));
    if (source == nullptr)
        return false;
    const DialogControlPlace place = FindDialogControl(*source, id);
    return place.Control != nullptr && place.Control->Kind == DialogControlKind::ListView;
}

void DialogHost::clickControl(HWND dialog, int id) {
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
    tellRecorder(dialog, id);
}

void DialogHost::tellRecorder(HWND dialog, int id) {
    if (m_recorder != nullptr && isOpen(dialog))
        m_recorder->acted(dialog, id);
}

CAnalysisDialog* DialogHost::ownerOf(HWND dialog) const {
    const Window* found = window(dialog);
    return found != nullptr ? found->owner : nullptr;
}

bool DialogHost::click(HWND dialog, int id) {
    if (!actionable(dialog, id))
        return false;
    clickControl(dialog, id);
    return true;
}

bool DialogHost::chooseRow(HWND dialog, int id, int row) {
    if (!actionable(dialog, id) || !m_model.select(dialog, id, row))
        return false;
    if (isListView(dialog, id)) {
        NMLISTVIEW change{{m_model.controlHandle(dialog, id), unsigned(id), LVN_ITEMCHANGED}, row};
        deliver(dialog, WM_NOTIFY, unsigned(id), reinterpret_cast<long>(&change));
    } else {
        deliver(dialog, WM_COMMAND, MakeWParam(id, LBN_SELCHANGE),
                handleParam(m_model.controlHandle(dialog, id)));
    }
    tellRecorder(dialog, id);
    return true;
}

bool DialogHost::doubleClickRow(HWND dialog, int id, int row) {
    if (!actionable(dialog, id) || !isListView(dialog, id) || !m_model.select(dialog, id, row))
        return false;
    NMLISTVIEW click{{m_model.controlHandle(dialog, id), unsigned(id), NM_DBLCLK}, row};
    deliver(dialog, WM_NOTIFY, unsigned(id), reinterpret_cast<long>(&click));
    return true;
}

bool DialogHost::dragRow(HWND dialog, int id, int source, int target) {
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

bool DialogHost::typeText(HWND dialog, int id, std::string text) {
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
    tellRecorder(dialog, id);
    return true;
}

long DialogHost::send(HWND dialog, unsigned message, unsigned long wParam, long lParam) {
    return deliver(dialog, message, wParam, lParam);
}

} // namespace wb
