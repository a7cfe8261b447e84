// The module's panel as real widgets: the user drills through them, and every widget follows
// the control model after each step.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QListWidget>
#include <QTabWidget>
#include <QTest>

#include <string>

#include "support/PanelFixture.h"
#include "support/RecordingDialog.h"
#include "workbench/desktop/DialogUnits.h"
#include "workbench/desktop/TemplateDialog.h"

namespace {

class TemplateDialogTest : public test::PanelFixture {
protected:
    template <typename Widget> Widget* only(const wb::desktop::TemplateDialog& panel, int id) {
        const std::vector<QWidget*> found = panel.widgets(id);
        EXPECT_EQ(found.size(), 1u) << id;
        return found.empty() ? nullptr : qobject_cast<Widget*>(found.front());
    }
    void click(const wb::desktop::TemplateDialog& panel, int id) {
        QTest::mouseClick(only<QAbstractButton>(panel, id), Qt::LeftButton);
    }
    void clickRow(const wb::desktop::TemplateDialog& panel, int id, int row) {
        auto* list = only<QListWidget>(panel, id);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualItemRect(list->item(row)).center());
    }

    // Every widget of the panel and its pages shows its control's enabled, shown and checked
    // state, and a list its rows and selection.
    void expectWidgetsFollowTheModel(const wb::desktop::TemplateDialog& panel) {
        const wb::ControlModel& model = dialogs.model();
        std::vector<const DialogTemplate*> sources{FindDialogTemplate(DlgStartupPanel)};
        for (const int page : sources.front()->Pages)
            sources.push_back(FindDialogTemplate(page));
        for (const DialogTemplate* source : sources)
            for (const DialogControl& control : source->Controls)
                for (QWidget* widget : panel.widgets(control.Id)) {
                    const int id = control.Id;
                    EXPECT_EQ(widget->isEnabled(), model.isEnabled(window, id)) << id;
                    EXPECT_EQ(!widget->isHidden(), model.isShown(window, id)) << id;
                    auto* button = qobject_cast<QAbstractButton*>(widget);
                    if (button != nullptr && button->isCheckable()) {
                        EXPECT_EQ(button->isChecked(), model.isChecked(window, id)) << id;
                    }
                    if (auto* list = qobject_cast<QListWidget*>(widget)) {
                        ASSERT_EQ(list->count(), int(model.rows(window, id).size())) << id;
                        EXPECT_EQ(list->currentRow(), model.selection(window, id)) << id;
                    }
                }
    }
};

TEST_F(TemplateDialogTest, TheUserDrillsThroughTheWidgetsAndEveryWidgetFollowsTheModel) {
    openPanel(survey());
    wb::desktop::TemplateDialog panel(dialogs, window);
    panel.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&panel));
    const wb::desktop::DialogUnits units(panel.font());
    EXPECT_EQ(panel.size(), QSize(units.x(FindDialogTemplate(DlgStartupPanel)->Width),
                                  units.y(FindDialogTemplate(DlgStartupPanel)->Height)));
    auto* tabs = only<QTabWidget>(panel, 200);
    ASSERT_NE(tabs, nullptr);
    EXPECT_EQ(tabs->count(), 4);
    expectWidgetsFollowTheModel(panel);

    headless.presetVariableChoice({1, 2}, {3, 4});
    click(panel, 9050); // the variables button
    EXPECT_EQ(analysis->GetDrillDownsSize(), 4);
    EXPECT_EQ(only<QListWidget>(panel, 9053)->item(1)->text(), "SEX");
    expectWidgetsFollowTheModel(panel);

    clickRow(panel, 9053, 1); // SEX becomes the current drill-down variable
    EXPECT_EQ(analysis->GetCurrentDown(), 2);
    headless.setModalResponder([this](HWND categories, int) {
        dialogs.chooseRow(categories, 9102, 0);
        dialogs.click(categories, 1);
    });
    click(panel, 9056); // drill down
    headless.setModalResponder(nullptr);
    ASSERT_EQ(analysis->GetDrillUpsSize(), 1);
    EXPECT_EQ(analysis->GetDrillUps()->begin()->Variable, 2);
    EXPECT_EQ(only<QListWidget>(panel, 9054)->count(), 1);
    expectWidgetsFollowTheModel(panel);

    clickRow(panel, 9054, 0);
    click(panel, 9057); // drill up
    EXPECT_EQ(analysis->GetDrillUpsSize(), 0);
    expectWidgetsFollowTheModel(panel);
    EXPECT_EQ(dialogs.resultsLockDepth(window), 0);
}

// A check box clicked by the user changes the module's flag once: the model toggles it and the
// widget shows the model, so no second toggle comes back from the widget's own update.
TEST_F(TemplateDialogTest, ACheckBoxTogglesTheModuleOnce) {
    openPanel(survey());
    wb::desktop::TemplateDialog panel(dialogs, window);
    const int before = analysis->StandAloneResults;
    for (QWidget* widget : panel.widgets(9106)) // on the panel and on the "Options" page
        widget->setVisible(true);
    QTest::mouseClick(qobject_cast<QAbstractButton*>(panel.widgets(9106).front()), Qt::LeftButton);
    EXPECT_EQ(analysis->StandAloneResults, 1 - before);
    for (QWidget* widget : panel.widgets(9106))
        EXPECT_EQ(qobject_cast<QAbstractButton*>(widget)->isChecked(),
                  dialogs.model().isChecked(window, 9106));
}

// Changes the module makes reach the widgets and never come back as actions of the user.
TEST_F(TemplateDialogTest, ModelChangesNeverComeBackAsUserActions) {
    open(survey());
    test::RecordingDialog<CAnalysisModelessDialog> owner(analysis, DlgStartupPanel);
    ASSERT_EQ(owner.CreateAnalysisDialog(), 1);
    const HWND dialog = owner.GetSafeHwnd();
    wb::desktop::TemplateDialog widgets(dialogs, dialog);
    const char* const rows[] = {"REGION", "SEX", nullptr};
    HWND list = dialogs.GetDlgItem(dialog, 9053);
    dialogs.InitStaticListBox(list, rows);
    dialogs.SendMessageA(list, LB_SETCURSEL, 1, 0);
    dialogs.SendMessageA(list, LB_SETCURSEL, static_cast<unsigned long>(-1), 0);
    dialogs.CheckDlgButton(dialog, 9106, 1);
    dialogs.SetDlgItemTextA(dialog, 9070, "12");
    EXPECT_EQ(owner.messages, std::vector<test::Message>{{WM_INITDIALOG}});
    EXPECT_EQ(only<QListWidget>(widgets, 9053)->count(), 2);
    owner.ExitDialog(0, 0, 0);
}

// The user drags a drill-down variable to another place: the module reorders its list, and
// the widget shows the model's new order. A drop below an item's middle goes after it.
TEST_F(TemplateDialogTest, DraggingARowReordersTheDrillDownVariables) {
    openPanel(survey());
    wb::desktop::TemplateDialog panel(dialogs, window);
    panel.show();
    choose({1, 2}, {3, 4});
    auto* list = dynamic_cast<wb::desktop::ReorderList*>(only<QListWidget>(panel, 9053));
    ASSERT_NE(list, nullptr);
    const QRect second = list->visualItemRect(list->item(1));
    EXPECT_EQ(list->dropRow(second.center() - QPoint(0, 2)), 1);
    EXPECT_EQ(list->dropRow(second.center() + QPoint(0, 2)), 2);

    clickRow(panel, 9053, 0);
    list->drop(0, 2);
    EXPECT_EQ(rows(9053), (std::vector<std::string>{"SEX", "REGION", "AGE", "INCOME"}));
    QStringList shown;
    for (int row = 0; row < list->count(); ++row)
        shown << list->item(row)->text();
    EXPECT_EQ(shown, (QStringList{"SEX", "REGION", "AGE", "INCOME"}));
}

} // namespace
