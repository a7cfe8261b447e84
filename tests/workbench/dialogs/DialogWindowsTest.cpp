// The dialog host's windows: message delivery to a dialog's owner, what it asks of its front
// end, modal dialogs played by the headless responder, the end of a modeless dialog, the
// user's actions, and automation access to controls.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "drilldown/host/framework/AnalysisDialog.h"
#include "support/AnalysisFixture.h"
#include "support/RecordingDialog.h"
#include "workbench/automation/AutomationRuntime.h"

namespace {

using test::Message;
using Modeless = test::RecordingDialog<CAnalysisModelessDialog>;
using Modal = test::RecordingDialog<CAnalysisModalDialog>;

class DialogWindowsTest : public test::AnalysisFixture {
protected:
    DialogWindowsTest() {
        open(test::makeFile({{"A"}, {"B"}}, {{1, 2}}));
    }

    // The panel made as a window of its own.
    HWND openPanel(Modeless& owner) {
        EXPECT_EQ(owner.CreateAnalysisDialog(), 1);
        return owner.GetSafeHwnd();
    }

    wb::AutomationRuntime& automation = session.automation();
};

TEST_F(DialogWindowsTest, ModelessDialogGetsInitAndEndsAfterTheMessage) {
    Modeless owner(analysis, 4813);
    const HWND window = openPanel(owner);
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(owner.messages, std::vector<Message>{{WM_INITDIALOG}});

    std::vector<bool> openWhileHandling;
    owner.onCommand = [&](HWND, int id) {
        if (id == IDCANCEL) {
            owner.ExitDialog(0, 1, 0);
            openWhileHandling.push_back(dialogs.isOpen(window));
        }
    };
    EXPECT_TRUE(dialogs.click(window, IDCANCEL));
    EXPECT_EQ(openWhileHandling, std::vector<bool>{true});
    EXPECT_FALSE(dialogs.isOpen(window));
    EXPECT_EQ(owner.GetSafeHwnd(), nullptr);
    EXPECT_EQ(owner.destroyed, 1);
    ASSERT_EQ(headless.closedDialogs().size(), 1u);
    EXPECT_EQ(headless.closedDialogs()[0].dialog, window);
    EXPECT_EQ(headless.closedDialogs()[0].result, 0);
    EXPECT_TRUE(headless.closedDialogs()[0].closeAnalysis);
    EXPECT_THROW(owner.ThrowIfClosed(), CException);
}

// What the host asks of its front end, and when: a dialog's opening before its
// WM_INITDIALOG, a modal dialog's turn after it, a posted command left to the front end's
// loop, a modeless dialog's end after its window is gone.
TEST_F(DialogWindowsTest, TheHostAsksItsFrontEndAtTheRightMoments) {
    struct Recorder : wb::HeadlessFrontEnd {
        Recorder() : HeadlessFrontEnd(nullptr, nullptr) {}
        std::vector<std::string> events;
        std::vector<std::function<void()>> posted;
        void runModal(HWND, int id) override { events.push_back("turn " + std::to_string(id)); }
        void opened(HWND, int id, bool modal) override {
            events.push_back((modal ? "modal " : "modeless ") + std::to_string(id));
        }
        void closed(HWND, int result, bool) override {
            events.push_back("closed " + std::to_string(result));
        }
        void post(std::function<void()> task) override {
            events.push_back("post");
            posted.push_back(std::move(task));
        }
        void deliveryFinished() override { events.push_back("done"); }
    } frontEnd;
    wb::DialogHost host(frontEnd, session.keywords());

    Modeless panel(analysis, 4813);
    panel.onCommand = [&](HWND dialog, int id) {
        if (id == 9056)
            host.PostCommand(dialog, 9077);
    };
    const HWND window = host.CreateDialogWindow(&panel, 4813, nullptr);
    host.click(window, 9056);
    EXPECT_EQ(panel.messages.size(), 2u) << "the posted command waits for the front end";
    ASSERT_EQ(frontEnd.posted.size(), 1u);
    frontEnd.posted[0]();
    ASSERT_EQ(panel.messages.size(), 3u);
    EXPECT_EQ(panel.messages[2].id, 9077);

    Modal modal(analysis, 4818);
    EXPECT_EQ(host.RunModalDialog(&modal, 4818, window), 0);
    host.EndDialogWindow(window, 5, 0);
    EXPECT_EQ(frontEnd.events,
              (std::vector<std::string>{"modeless 4813", "done", "post", "done", "done",
                                        "modal 4818", "done", "turn 4818", "done", "done",
                                        "closed 5"}));
}

// How a modal dialog ends: the responder's choice, or IDCANCEL when it leaves the dialog open.
TEST_F(DialogWindowsTest, ModalDialogsEndAsTheirResponderLeavesThem) {
    const struct {
        const char* name;
        std::function<void(HWND)> play;
        int result;
        std::vector<int> commands;
    } cases[] = {
        {"accepted", [&](HWND d) { dialogs.click(d, IDOK); }, 1, {IDOK}},
        {"left open", [](HWND) {}, 0, {IDCANCEL}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Modal dialog(analysis, 4818);
        dialog.onCommand = [&](HWND, int id) {
            if (id == IDOK)
                dialog.ExitDialog(1, 0, 0);
        };
        headless.setModalResponder([&](HWND d, int resource) {
            EXPECT_EQ(resource, 4818);
            c.play(d);
        });
        COpDllResource resource(nullptr);
        EXPECT_EQ(dialog.DoModal(resource), c.result);
        std::vector<int> commands;
        for (const Message& m : dialog.messages)
            if (m.message == WM_COMMAND)
                commands.push_back(m.id);
        EXPECT_EQ(commands, c.commands);
        EXPECT_EQ(dialog.GetSafeHwnd(), nullptr);
    }
    EXPECT_EQ(dialogs.modalDialogsOpened(), (std::vector<int>{4818, 4818}));
}

TEST_F(DialogWindowsTest, UserActionsSendWhatAWindowSystemSends) {
    Modeless owner(analysis, 4813);
    const HWND window = openPanel(owner);
    dialogs.InitStaticListBox(dialogs.GetDlgItem(window, 9053), std::vector<const char*>{"A", "B", nullptr}.data());

    // A radio clears the other radios of its page; a check box toggles.
    dialogs.model().setChecked(window, 9064, true);
    EXPECT_TRUE(dialogs.click(window, 9066));
    EXPECT_FALSE(dialogs.model().isChecked(window, 9064));
    EXPECT_TRUE(dialogs.model().isChecked(window, 9066));
    EXPECT_TRUE(dialogs.click(window, 9128));
    EXPECT_TRUE(dialogs.model().isChecked(window, 9128));
    EXPECT_TRUE(dialogs.chooseRow(window, 9053, 1));
    EXPECT_EQ(dialogs.model().selection(window, 9053), 1);

    // Disabled and hidden controls take nothing.
    dialogs.model().setEnabled(window, 9056, false);
    EXPECT_FALSE(dialogs.click(window, 9056));
    EXPECT_FALSE(dialogs.click(window, 9121)); // hidden by its resource
    EXPECT_FALSE(dialogs.chooseRow(window, 9053, 5));

    const std::vector<Message> expected{{WM_INITDIALOG},
                                        {WM_COMMAND, 9066, BN_CLICKED},
                                        {WM_COMMAND, 9128, BN_CLICKED},
                                        {WM_COMMAND, 9053, LBN_SELCHANGE}};
    EXPECT_EQ(owner.messages, expected);
}

TEST_F(DialogWindowsTest, ListViewRowsNotifyTheirItem) {
    Modal dialog(analysis, 4818);
    headless.setModalResponder([&](HWND d, int) {
        const HWND list = dialogs.GetDlgItem(d, 9102);
        dialogs.InsertListColumn(list, 0, "Category", 120, 0);
        dialogs.InsertListColumn(list, 1, "Count", 60, 1);
        for (const char* row : {"a", "b", "c"})
            dialogs.InsertListRow(list, 99, row); // past the end: refused
        EXPECT_TRUE(dialogs.model().rows(d, 9102).empty());
        for (const char* row : {"a", "b", "c"})
            dialogs.InsertListRow(list, static_cast<int>(dialogs.model().rows(d, 9102).size()), row);
        EXPECT_EQ(dialogs.SetListCell(list, 1, 1, "12.5"), 1);
        EXPECT_EQ(dialogs.SetListCell(list, 1, 2, "x"), 0); // no third column
        EXPECT_EQ(dialogs.model().cell(d, 9102, 1, 1), "12.5");
        EXPECT_EQ(dialogs.model().cell(d, 9102, 1, 0), "b");
        dialogs.chooseRow(d, 9102, 2);
        dialogs.doubleClickRow(d, 9102, 0);
    });
    COpDllResource resource(nullptr);
    dialog.DoModal(resource);
    ASSERT_GE(dialog.messages.size(), 3u);
    EXPECT_EQ(dialog.messages[1], (Message{WM_NOTIFY, 9102, unsigned(-LVN_ITEMCHANGED), 2}));
    EXPECT_EQ(dialog.messages[2], (Message{WM_NOTIFY, 9102, unsigned(-NM_DBLCLK), 0}));
}

// LB_INSERTSTRING and LB_DELETESTRING, with the selection following its row.
TEST_F(DialogWindowsTest, ListBoxRowsMoveWithTheirSelection) {
    const HWND list = dialogs.GetDlgItem(panel, 9053);
    dialogs.InitStaticListBox(list, std::vector<const char*>{"a", "b", "c", nullptr}.data());
    dialogs.SendMessageA(list, LB_SETCURSEL, 1, 0);
    EXPECT_EQ(dialogs.SendMessageA(list, LB_INSERTSTRING, 0, reinterpret_cast<long>("z")), 0);
    EXPECT_EQ(dialogs.SendMessageA(list, LB_GETCURSEL, 0, 0), 2);
    char text[8] = {};
    EXPECT_EQ(dialogs.SendMessageA(list, LB_GETTEXT, 2, reinterpret_cast<long>(text)), 1);
    EXPECT_STREQ(text, "b");
    EXPECT_EQ(dialogs.SendMessageA(list, LB_DELETESTRING, 2, 0), 3);
    EXPECT_EQ(dialogs.SendMessageA(list, LB_GETCURSEL, 0, 0), LB_ERR);
    EXPECT_EQ(dialogs.SendMessageA(list, LB_DELETESTRING, 3, 0), LB_ERR);
    EXPECT_EQ(dialogs.model().rows(panel, 9053), (std::vector<std::string>{"z", "a", "c"}));
}

TEST_F(DialogWindowsTest, ControlValuesForAutomation) {
    Modeless owner(analysis, 4813);
    const HWND window = openPanel(owner);
    dialogs.SetIntEditRange(dialogs.GetDlgItem(window, 9070), 2, 999);
    dialogs.SetDlgItemInt(window, 9070, 10, 0);

    // A check box written with its own state is not clicked; another state clicks it.
    EXPECT_EQ(owner.SetOleProperty(9128, 0), S_OK);
    EXPECT_EQ(owner.messages.size(), 1u);
    EXPECT_EQ(owner.SetOleProperty(9128, 1), S_OK);
    EXPECT_EQ(owner.messages.back(), (Message{WM_COMMAND, 9128, BN_CLICKED}));
    int checked = 0;
    EXPECT_EQ(owner.GetOleProperty(9128, &checked), S_OK);
    EXPECT_EQ(checked, 1);

    // An edit of numbers takes a number in its range only.
    const struct {
        double value;
        HRESULT result;
        const char* shown;
    } edits[] = {{25, S_OK, "25"}, {1, E_INVALIDARG, "25"}, {1000, E_INVALIDARG, "25"}, {999, S_OK, "999"}};
    for (const auto& e : edits) {
        EXPECT_EQ(owner.SetOleProperty(9070, e.value), e.result) << e.value;
        EXPECT_EQ(dialogs.model().text(window, 9070), e.shown);
    }
    double shown = 0;
    EXPECT_EQ(owner.GetOleProperty(9070, &shown), S_OK);
    EXPECT_EQ(shown, 999);

    // Pressing: a hidden button can be pressed, a disabled one cannot.
    EXPECT_EQ(owner.SetOleProperty(9121), S_OK);
    EXPECT_EQ(owner.messages.back().id, 9121);
    dialogs.model().setEnabled(window, 9056, false);
    EXPECT_EQ(owner.SetOleProperty(9056), E_FAIL);
    EXPECT_EQ(owner.SetOleProperty(4242), DISP_E_MEMBERNOTFOUND);
    IErrorInfo* info = nullptr;
    ASSERT_EQ(automation.GetErrorInfo(0, &info), S_OK);
    BSTR description = nullptr;
    info->GetDescription(&description);
    EXPECT_EQ(BstrView(description), "The dialog has no control 4242.");
    SysFreeString(description);
    info->Release();
}

// A button that opens the variable dialog takes the lists as text and reads as the lists it
// last answered with.
TEST_F(DialogWindowsTest, VariableButtonsTakeListsAsText) {
    Modeless owner(analysis, 4813);
    openPanel(owner);
    const int nv = file.variableCount();
    owner.onCommand = [&](HWND dialog, int id) {
        if (id == 9050)
            analysis->SetDDNVariable(dialog, 1, 0, nv, 0, nv, nv);
    };
    const COleVariant lists = COleVariant::Text(automation, "B | A");
    EXPECT_EQ(owner.SetOleProperty(9050, lists), S_OK);
    EXPECT_EQ(analysis->GetNoCategorical(), 1);
    EXPECT_EQ(analysis->GetCategorical()[0], 2);
    BSTR read = nullptr;
    EXPECT_EQ(owner.GetOleProperty(9050, &read), S_OK);
    EXPECT_EQ(BstrView(read), "B | A");
    SysFreeString(read);

    const COleVariant unknown = COleVariant::Text(automation, "C");
    EXPECT_EQ(owner.SetOleProperty(9050, unknown), E_INVALIDARG);
    EXPECT_EQ(headless.pendingVariableChoices(), 0u);
}

} // namespace
