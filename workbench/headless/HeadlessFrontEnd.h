#pragma once
// The headless front end: nobody sits at its windows, so whoever drives it (the command
// line, a test, the benchmark) says beforehand what the user would do. Messages are kept
// and echoed as lines, progress goes to the terminal, and the dialogs answer from queues:
//
//   1. make it (silent with null streams) and give bundle() to an AnalysisSession;
//   2. before a step that opens a dialog, queue its answer: presetVariableChoice or
//      presetVariableCancel for the variable dialog, setModalResponder for modal dialogs,
//      setSelectionDialog and the like for the host's own dialogs; unanswered, each cancels;
//   3. posted commands run as soon as the host has delivered the action that posted them.

#include <cstdio>
#include <deque>
#include <functional>
#include <optional>
#include <vector>

#include "workbench/dialogs/DialogFrontEnd.h"
#include "workbench/headless/HeadlessMessages.h"
#include "workbench/headless/HeadlessProgress.h"
#include "workbench/session/AnalysisSession.h"

namespace wb {

class HeadlessFrontEnd : public DialogFrontEnd {
public:
    // Messages are echoed to `messageEcho`, progress drawn on `terminal` (null: nowhere).
    HeadlessFrontEnd(std::FILE* messageEcho, std::FILE* terminal)
        : m_messages(messageEcho), m_progress(terminal) {}
    HeadlessFrontEnd(const HeadlessFrontEnd&) = delete;
    HeadlessFrontEnd& operator=(const HeadlessFrontEnd&) = delete;

    // The parts a session takes; `documents` follows the session's documents (null: none).
    FrontEnd bundle(DocumentObserver* documents = nullptr) {
        return FrontEnd{m_messages, m_progress, *this, documents};
    }
    HeadlessMessages& messages() { return m_messages; }
    HeadlessProgress& progress() { return m_progress; }

    // Queues the answer of one later variable dialog: the two lists of 1-based variable
    // numbers that the user picks, taken in the order queued. Lists the dialog cannot take
    // are an error of whoever queued them: the host throws std::invalid_argument.
    void presetVariableChoice(std::vector<short> first, std::vector<short> second);
    // Queues a cancel.
    void presetVariableCancel();
    std::size_t pendingVariableChoices() const { return m_choices.size(); }

    // Plays the user of each modal dialog, once the dialog has had WM_INITDIALOG; a dialog
    // it leaves open is cancelled by the host. Without a responder every modal dialog is.
    using ModalResponder = std::function<void(HWND dialog, int resourceId)>;
    void setModalResponder(ModalResponder responder) { m_responder = std::move(responder); }
    // The host's own dialogs: each gives the dialog's answer, 0 for cancelled. Without a
    // handler the user cancels.
    using HostDialog = std::function<int()>;
    void setSelectionDialog(HostDialog dialog) { m_selectionDialog = std::move(dialog); }
    void setWeightDialog(HostDialog dialog) { m_weightDialog = std::move(dialog); }
    void setOpenFileDialog(HostDialog dialog) { m_openFileDialog = std::move(dialog); }

    struct ClosedDialog {
        HWND dialog = nullptr;
        int result = 0;
        bool closeAnalysis = false;
    };
    // The modeless dialogs that have ended, oldest first.
    const std::vector<ClosedDialog>& closedDialogs() const { return m_closed; }

    void runModal(HWND dialog, int resourceId) override;
    std::optional<VariableChoice> chooseVariables(const VariableDialogCall& call) override;
    int defineSelection(HWND) override { return answer(m_selectionDialog); }
    int defineWeight(HWND) override { return answer(m_weightDialog); }
    int openFile(HWND) override { return answer(m_openFileDialog); }
    // Nobody brushes headless: a macro's brushing steps are answered by the session.
    std::optional<BrushingChoice> brush(const BrushingCall&) override { return std::nullopt; }
    void opened(HWND, int, bool) override {}
    void closed(HWND dialog, int result, bool closeAnalysis) override;
    void post(std::function<void()> task) override { m_posted.push_back(std::move(task)); }
    void deliveryFinished() override;

private:
    static int answer(const HostDialog& dialog) { return dialog ? dialog() : 0; }

    HeadlessMessages m_messages;
    HeadlessProgress m_progress;
    std::deque<std::optional<VariableChoice>> m_choices; // nothing: cancel
    ModalResponder m_responder;
    HostDialog m_selectionDialog, m_weightDialog, m_openFileDialog;
    std::vector<ClosedDialog> m_closed;
    std::deque<std::function<void()>> m_posted;
};

} // namespace wb
