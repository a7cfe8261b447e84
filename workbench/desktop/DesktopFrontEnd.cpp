#include "workbench/desktop/DesktopFrontEnd.h"

#include <QApplication>
#include <QCloseEvent>
#include <QEventLoop>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QTimer>

#include <cstdio>
#include <string>

#include "drilldown/resources/Dialogs.h"
#include "workbench/desktop/BrushingMode.h"
#include "workbench/desktop/DataDialogs.h"
#include "workbench/desktop/DocumentArea.h"
#include "workbench/desktop/NextDrillPane.h"
#include "workbench/desktop/QtText.h"
#include "workbench/desktop/VariableDialog.h"

namespace wb::desktop {

namespace {

constexpr const char* Caption = "Drill-Down";
// A break is asked for once per case: the dialog is looked at once every so many.
constexpr unsigned long CallsBetweenRedraws = 4096;

} // namespace

DesktopFrontEnd::DesktopFrontEnd(QWidget* owner) : m_owner(owner) {}

TemplateDialog* DesktopFrontEnd::windowOf(HWND dialog) const {
    const auto found = m_windows.find(dialog);
    return found == m_windows.end() ? nullptr : found->second.data();
}

void DesktopFrontEnd::opened(HWND dialog, int, bool modal) {
    auto* window = new TemplateDialog(m_session->dialogs(), dialog, m_owner);
    window->setWindowFlag(modal ? Qt::Dialog : Qt::Tool);
    window->setAttribute(Qt::WA_DeleteOnClose, false);
    m_windows[dialog] = window;
    if (m_session->dialogs().model().resourceId(dialog) == DlgStartupPanel)
        placeNextDrillPane(*window);
    if (!modal)
        window->show();
}

namespace {
constexpr int PaneWidth = 240, PaneMargin = 6;
} // namespace

// On the panel's right, the full height: where to drill next.
void DesktopFrontEnd::placeNextDrillPane(TemplateDialog& panel) {
    const QSize size = panel.size();
    auto* pane = new NextDrillPane(*m_session, &panel);
    pane->setObjectName(QStringLiteral("nextDrill"));
    pane->setGeometry(size.width() + PaneMargin, PaneMargin, PaneWidth,
                      size.height() - 2 * PaneMargin);
    pane->setVisible(false);
    showNextDrillPane(panel, m_nextDrillShown);
}

void DesktopFrontEnd::showNextDrillPane(TemplateDialog& panel, bool shown) {
    auto* pane = panel.findChild<NextDrillPane*>(QStringLiteral("nextDrill"));
    if (pane == nullptr || pane->isVisibleTo(&panel) == shown)
        return;
    const int width = PaneWidth + 2 * PaneMargin;
    panel.setFixedSize(panel.width() + (shown ? width : -width), panel.height());
    pane->setVisible(shown);
}

void DesktopFrontEnd::setNextDrillShown(bool shown) {
    m_nextDrillShown = shown;
    if (TemplateDialog* panel = m_session != nullptr ? windowOf(m_session->panel()) : nullptr)
        showNextDrillPane(*panel, shown);
}

void DesktopFrontEnd::closed(HWND dialog, int, bool) {
    if (TemplateDialog* window = windowOf(dialog))
        window->deleteLater(); // the window may be inside the action that ended it
    m_windows.erase(dialog);
}

void DesktopFrontEnd::runModal(HWND dialog, int) {
    TemplateDialog* window = windowOf(dialog);
    if (window == nullptr)
        return;
    DialogHost& host = m_session->dialogs();
    QEventLoop loop;
    window->setAfterAction([&] {
        if (host.hasEnded(dialog))
            loop.quit();
    });
    // Closing the window by hand leaves the dialog to the host, which cancels it.
    QObject::connect(window, &QObject::destroyed, &loop, &QEventLoop::quit);
    window->setWindowModality(Qt::ApplicationModal);
    window->show();
    loop.exec();
    if (TemplateDialog* still = windowOf(dialog)) {
        still->hide();
        still->deleteLater();
    }
    m_windows.erase(dialog);
}

std::optional<VariableChoice> DesktopFrontEnd::chooseVariables(const VariableDialogCall& call) {
    VariableDialog dialog(call, m_session->file(), m_owner);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.choice();
}

// The workbench's own dialogs on the session's file; a scripted run has nobody to answer
// them, so they are cancelled.
int DesktopFrontEnd::defineSelection(HWND) {
    if (m_scripted || m_session == nullptr)
        return 0;
    SelectionDialog dialog(*m_session, m_owner);
    return dialog.exec() == QDialog::Accepted ? 1 : 0;
}

int DesktopFrontEnd::defineWeight(HWND) {
    if (m_scripted || m_session == nullptr)
        return 0;
    WeightDialog dialog(*m_session, m_owner);
    return dialog.exec() == QDialog::Accepted ? 1 : 0;
}

int DesktopFrontEnd::openFile(HWND) {
    if (m_scripted || m_session == nullptr)
        return 0;
    return openOtherDataFile(*m_session, m_owner) ? 1 : 0;
}

void DesktopFrontEnd::post(std::function<void()> task) {
    QTimer::singleShot(0, m_owner, std::move(task));
}

void DesktopFrontEnd::dsplst(int, const char* text) {
    const char* shown = text == nullptr ? "" : text;
    if (m_scripted)
        std::fprintf(stderr, "drilldown-desktop: %s\n", shown);
    else
        QMessageBox::information(m_owner, Caption, qtext(shown));
}

void DesktopFrontEnd::d_pbar(const char* text) {
    if (m_progress)
        m_progress->setLabelText(qtext(text == nullptr ? "" : text));
}

void DesktopFrontEnd::dstart(unsigned long total) {
    m_total = total;
    m_calls = 0;
    m_progress = new QProgressDialog(m_owner);
    m_progress->setWindowTitle(Caption);
    m_progress->setWindowModality(Qt::ApplicationModal);
    m_progress->setMinimumDuration(500);
    m_progress->setRange(0, 1000);
}

void DesktopFrontEnd::dstop() {
    if (m_progress)
        m_progress->deleteLater();
    m_progress = nullptr;
}

int DesktopFrontEnd::lookbr() { return PollBreaks(1) == 1 ? 0 : 1; }

int DesktopFrontEnd::PollBreaks(int count) {
    // Only every so many calls look at the dialog; the others only count.
    for (int passed = 0; passed < count;) {
        const unsigned long toNext = CallsBetweenRedraws - m_calls % CallsBetweenRedraws;
        if (toNext > static_cast<unsigned long>(count - passed)) {
            m_calls += count - passed;
            break;
        }
        m_calls += toNext;
        passed += static_cast<int>(toNext);
        if (cancelledAtRedraw())
            return passed - 1;
    }
    return count;
}

bool DesktopFrontEnd::cancelledAtRedraw() {
    if (!m_progress)
        return false;
    if (m_total > 0)
        m_progress->setValue(int(std::min<unsigned long>(1000, m_calls * 1000 / m_total)));
    // The progress dialog is application modal: the events it lets through reach no command
    // that touches the analysis.
    QApplication::processEvents();
    return m_progress->wasCanceled();
}

std::optional<BrushingChoice> DesktopFrontEnd::brush(const BrushingCall& call) {
    QMdiSubWindow* window = m_area != nullptr ? m_area->windowOf(call.document) : nullptr;
    auto* view = window != nullptr ? dynamic_cast<GraphView*>(window->widget()) : nullptr;
    if (view == nullptr || m_scripted)
        return std::nullopt;
    m_area->setActiveSubWindow(window);
    BrushingMode mode(*view, call);
    m_brushing = &mode;
    const std::optional<BrushingChoice> choice = mode.run();
    m_brushing = nullptr;
    return choice;
}

} // namespace wb::desktop
