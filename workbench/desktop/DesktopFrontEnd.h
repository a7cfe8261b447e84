#pragma once
// The desktop front end: a person at real windows plays the user. The module's dialogs are
// TemplateDialog windows over the dialog host, the variable dialog is a VariableDialog, the
// host's messages are message boxes and its progress a progress dialog with a Cancel button,
// and posted commands are events of Qt's loop.
//
//   1. make it with the window that owns the dialogs, give bundle() to an AnalysisSession,
//      then attach(session) so that it can reach the dialog host and the open file;
//   2. a modeless dialog (the panel) gets its window when the module makes it and loses it
//      when the dialog ends; a modal one runs in a local event loop until the dialog ends or
//      the user closes its window (the host then cancels it);
//   3. the host's own dialogs (selection condition, weight, opening a file) are not shown
//      yet: they answer as a cancel does, and say so in a message.

#include <cstdio>
#include <map>

#include <QPointer>
#include <QProgressDialog>

#include "workbench/desktop/TemplateDialog.h"
#include "workbench/session/AnalysisSession.h"

namespace wb::desktop {

class BrushingMode;
class DocumentArea;

class DesktopFrontEnd : public DialogFrontEnd, public HostMessages, public HostProgress {
public:
    explicit DesktopFrontEnd(QWidget* owner);
    DesktopFrontEnd(const DesktopFrontEnd&) = delete;
    DesktopFrontEnd& operator=(const DesktopFrontEnd&) = delete;

    FrontEnd bundle(DocumentObserver* documents) {
        return FrontEnd{*this, *this, *this, documents};
    }
    void attach(AnalysisSession& session) { m_session = &session; }
    // The window area where the graphs that brushing works on stand.
    void showDocumentsIn(DocumentArea* area) { m_area = area; }
    // The brushing mode running now; null when none is.
    BrushingMode* brushingMode() const { return m_brushing; }
    // A scripted run has nobody to answer a message box: messages go to standard error.
    void setScripted(bool scripted) { m_scripted = scripted; }
    bool scripted() const { return m_scripted; }
    // The window of a dialog of the module; null when it has none.
    TemplateDialog* windowOf(HWND dialog) const;
    // Shows or hides, beside the panel, where to drill next (shown at first).
    void setNextDrillShown(bool shown);

    // Dialogs.
    void runModal(HWND dialog, int resourceId) override;
    std::optional<VariableChoice> chooseVariables(const VariableDialogCall& call) override;
    int defineSelection(HWND parent) override;
    int defineWeight(HWND parent) override;
    int openFile(HWND parent) override;
    // The brushing mode on the graph's window (BrushingMode.h).
    std::optional<BrushingChoice> brush(const BrushingCall& call) override;
    void opened(HWND dialog, int resourceId, bool modal) override;
    void closed(HWND dialog, int result, bool closeAnalysis) override;
    void post(std::function<void()> task) override;
    void deliveryFinished() override {}

    // Messages: a message box with the module's text.
    void dsplst(int code, const char* text) override;

    // Progress: a dialog that a scan opens and closes; Cancel asks for a break. The dialog
    // is redrawn, and the user heard, once every few thousand cases.
    void d_pbar(const char* text) override;
    void dstart(unsigned long total) override;
    void dstop() override;
    int lookbr() override;
    int PollBreaks(int count) override;

private:
    QWidget* m_owner;
    void placeNextDrillPane(TemplateDialog& panel);
    // Redraws the progress dialog, lets its events through; true when the user cancelled.
    bool cancelledAtRedraw();
    void showNextDrillPane(TemplateDialog& panel, bool shown);
    bool m_nextDrillShown = true;

    AnalysisSession* m_session = nullptr;
    DocumentArea* m_area = nullptr;
    BrushingMode* m_brushing = nullptr;
    std::map<HWND, QPointer<TemplateDialog>> m_windows;
    QPointer<QProgressDialog> m_progress;
    unsigned long m_total = 0;
    unsigned long m_calls = 0;
    bool m_scripted = false;
};

} // namespace wb::desktop
