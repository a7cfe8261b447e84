// The dialog host: controls through handles, numbers in edit controls, the variable dialog
// answered by the headless front end's presets, and keywords.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <filesystem>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "workbench/data/DataFile.h"
#include "workbench/dialogs/DialogHost.h"
#include "workbench/headless/HeadlessFrontEnd.h"
#include "workbench/services/KeywordStore.h"

namespace {

constexpr int Id = 9053;

class DialogHostTest : public ::testing::Test {
protected:
    DialogHostTest() : dialogs(headless, keywords, &file), panel(dialogs.model().createDialog(4813)) {
        for (const char* name : {"AGE", "REVENU", "RÉGION", "REVENU_ANNUEL"})
            file.addVariable({name, "", -999.0, {}, wb::DisplayFormat::Plain});
    }

    std::string text(int id = Id) const { return dialogs.model().text(panel, id); }
    void setText(const std::string& text) { dialogs.model().setText(panel, Id, text); }
    HWND list() { return dialogs.GetDlgItem(panel, Id); }

    wb::DataFile file;
    wb::KeywordStore keywords{std::filesystem::path(), nullptr}; // in memory
    wb::HeadlessFrontEnd headless{nullptr, nullptr};
    wb::DialogHost dialogs;
    HWND panel;
};

TEST_F(DialogHostTest, DeadHandlesChangeNothing) {
    const HWND dialog = dialogs.model().createDialog(4813);
    const HWND control = dialogs.GetDlgItem(dialog, Id);
    dialogs.model().destroyDialog(dialog);
    EXPECT_EQ(dialogs.GetDlgItem(dialog, Id), nullptr);
    EXPECT_EQ(dialogs.EnableWindow(control, 1), 0);
    EXPECT_EQ(dialogs.SendMessageA(control, LB_GETCURSEL, 0, 0), LB_ERR);
    EXPECT_EQ(dialogs.SendMessageA(panel, LB_GETCURSEL, 0, 0), LB_ERR); // a dialog is no list
    EXPECT_EQ(dialogs.SetDlgItemTextA(dialog, Id, "x"), 0);
    char buffer[8] = "garbage";
    EXPECT_EQ(dialogs.GetDlgItemTextA(dialog, Id, buffer, sizeof buffer), 0);
    EXPECT_STREQ(buffer, "");
    short value = 7;
    EXPECT_EQ(dialogs.GetDlgItemInteger(dialog, Id, &value), 0);
    EXPECT_EQ(value, 7);
}

// Consecutive calls with one argument on three controls. EnableWindow gives non-zero when the
// control was disabled, ShowWindow when it was visible.
const struct {
    int argument, enableResult, showResult;
    bool after; // enabled, shown and checked
    const char* comment;
} ToggleRows[] = {
    {0, 0, 1, false, "off: it was on"},
    {1, 1, 0, true, "on: it was off"},
    {5, 0, 1, true, "any non-zero is on: it was on"},
};

TEST_F(DialogHostTest, EnableShowAndCheck) {
    const HWND enabled = dialogs.GetDlgItem(panel, 1);
    const HWND shown = dialogs.GetDlgItem(panel, 2);
    for (const auto& row : ToggleRows) {
        SCOPED_TRACE(row.comment);
        EXPECT_EQ(dialogs.EnableWindow(enabled, row.argument), row.enableResult);
        EXPECT_EQ(dialogs.ShowWindow(shown, row.argument), row.showResult);
        EXPECT_EQ(dialogs.CheckDlgButton(panel, 3, unsigned(row.argument)), 1);
        EXPECT_EQ(dialogs.model().isEnabled(panel, 1), row.after);
        EXPECT_EQ(dialogs.model().isShown(panel, 2), row.after);
        EXPECT_EQ(dialogs.IsDlgButtonChecked(panel, 3), row.after ? 1u : 0u);
    }
    EXPECT_TRUE(dialogs.model().isShown(panel, 1)); // each call touched its own control only
}

constexpr unsigned long MinusOne = static_cast<unsigned long>(-1);

// On a list of `rows` rows with row `before` selected (-1 none).
const struct {
    int rows, before;
    unsigned message;
    unsigned long wParam;
    long result;
    int after;
    const char* comment;
} SelectionRows[] = {
    {3, -1, LB_GETCURSEL, 0, LB_ERR, -1, "no selection"},
    {3, 2, LB_GETCURSEL, 0, 2, 2, "the selected row"},
    {3, 1, LB_SETCURSEL, 3, LB_ERR, 1, "past the end: LB_ERR, selection kept"},
    {3, 1, LB_SETCURSEL, MinusOne, LB_ERR, -1, "-1 clears, and gives LB_ERR"},
    {3, 1, LB_SETCURSEL, 0xFFFFFFFFul, LB_ERR, -1, "-1 as a 32-bit word clears too"},
    {3, 1, LB_SETCURSEL, MinusOne - 1, LB_ERR, 1, "-2 is out of range"},
    {3, 1, 0x0180, 0, 0, 1, "other messages give 0"},
};

TEST_F(DialogHostTest, ListSelection) {
    for (const auto& row : SelectionRows) {
        SCOPED_TRACE(row.comment);
        dialogs.model().setRows(panel, Id, std::vector<std::string>(std::size_t(row.rows), "v"));
        ASSERT_TRUE(dialogs.model().select(panel, Id, row.before));
        EXPECT_EQ(dialogs.SendMessageA(list(), row.message, row.wParam, 0), row.result);
        EXPECT_EQ(dialogs.model().selection(panel, Id), row.after);
    }
}

TEST_F(DialogHostTest, InitStaticListBoxReplacesRowsAndDropsTheSelection) {
    const char* const names[] = {"AGE", "RÉGION", nullptr};
    dialogs.InitStaticListBox(list(), names);
    dialogs.model().select(panel, Id, 1); // the user clicks "RÉGION"
    const char* const fewer[] = {"X", nullptr};
    dialogs.InitStaticListBox(list(), fewer);
    EXPECT_EQ(dialogs.model().rows(panel, Id), std::vector<std::string>{"X"});
    EXPECT_EQ(dialogs.SendMessageA(list(), LB_GETCURSEL, 0, 0), LB_ERR);
    dialogs.InitStaticListBox(list(), nullptr);
    EXPECT_TRUE(dialogs.model().rows(panel, Id).empty());
}

// The control's text, the buffer size given, what arrives.
const struct {
    const char* text;
    int size;
    const char *expected, *comment;
} TruncationRows[] = {
    {"abc", 4, "abc", "fits with its terminator"},
    {"abc", 3, "ab", "one byte short"},
    {"aé", 3, "a", "é (2 bytes) is not cut"},
    {"a€", 3, "a", "€ (3 bytes): one of three would fit"},
    {"\xF0\x9F\x98\x80z", 4, "", "a 4-byte character, three would fit"},
    {"\x80\x80\x80\x80", 3, "\x80\x80", "stray continuation bytes count one by one"},
};

TEST_F(DialogHostTest, GetTextNeverCutsACharacter) {
    for (const auto& row : TruncationRows) {
        SCOPED_TRACE(row.comment);
        ASSERT_EQ(dialogs.SetDlgItemTextA(panel, Id, row.text), 1);
        std::vector<char> buffer(std::size_t(row.size) + 1, '#');
        EXPECT_EQ(dialogs.GetDlgItemTextA(panel, Id, buffer.data(), row.size),
                  int(std::strlen(row.expected)));
        EXPECT_STREQ(buffer.data(), row.expected);
        EXPECT_EQ(buffer.back(), '#'); // nothing written past `size`
    }
    char untouched = '#';
    EXPECT_EQ(dialogs.GetDlgItemTextA(panel, Id, &untouched, 0), 0);
    EXPECT_EQ(untouched, '#');
}

// Text in the control, and the number read from it as a 16-bit integer or as a real; `ok`
// false leaves the target at 7.
const struct {
    bool real;
    const char* text;
    bool ok;
    double value;
    const char* comment;
} NumberReadRows[] = {
    {false, " -32768 ", true, -32768, "the least, blanks around"},
    {false, "+32767", true, 32767, "the greatest, plus sign"},
    {false, "32768", false, 7, "above 16 bits"},
    {false, "99999999999", false, 7, "beyond int as well"},
    {false, "", false, 7, "empty"},
    {false, "12a", false, 7, "trailing letters"},
    {true, " 2,5 ", true, 2.5, "decimal comma, blanks around"},
    {true, "-1e-3", true, -0.001, "exponent"},
    {true, "+.5", true, 0.5, "plus sign, no whole part"},
    {true, "1,234.5", false, 7, "a thousands separator is not guessed"},
    {true, "--", false, 7, "what a value that is not finite shows"},
    {true, "1e999", false, 7, "overflows"},
    {true, "0x10", false, 7, "hexadecimal"},
};

TEST_F(DialogHostTest, NumbersAreRead) {
    for (const auto& row : NumberReadRows) {
        SCOPED_TRACE(row.comment);
        setText(row.text);
        short whole = 7;
        double real = 7;
        EXPECT_EQ(row.real ? dialogs.GetDlgItemDouble(panel, Id, &real)
                           : dialogs.GetDlgItemInteger(panel, Id, &whole),
                  row.ok ? 1 : 0);
        EXPECT_EQ(row.real ? real : whole, row.value);
    }
    dialogs.SetDlgItemInt(panel, Id, static_cast<unsigned>(-5), 1);
    EXPECT_EQ(text(), "-5");
    dialogs.SetDlgItemInt(panel, Id, static_cast<unsigned>(-5), 0);
    EXPECT_EQ(text(), "4294967291"); // unsigned: the word as it is
}

const struct {
    double value;
    int digits;
    const char *text, *comment;
} DoubleTextRows[] = {
    {1.0, 2, "1", "no trailing zeros, no trailing point"},
    {1e14, 2, "100000000000000", "no room for decimals: the zeros are digits"},
    {-2.0 / 3, 2, "-0.67", "digits caps the decimals"},
    {1.0 / 3, 0, "0.333333333333333", "no cap: 15 significant digits"},
    {123456789012.345678, 6, "123456789012.346", "15 significant digits cap the decimals"},
    {1e20, 3, "1e+20", "large: exponent form"},
    {0.00001, 0, "1e-05", "small: exponent form"},
    {-0.004, 2, "-0.004", "rounding to 0 would lose the value"},
    {-0.0, 2, "0", "no negative zero"},
    {std::numeric_limits<double>::quiet_NaN(), 2, "--", "not a number"},
};

TEST_F(DialogHostTest, RealsAreShownShort) {
    for (const auto& row : DoubleTextRows) {
        SCOPED_TRACE(row.comment);
        EXPECT_EQ(dialogs.SetDlgItemDouble(panel, Id, row.value, 3, row.digits), 1);
        EXPECT_EQ(text(), row.text);
        if (std::isnan(row.value))
            continue; // "--" is no number: see NumbersAreRead
        double back = 7;
        ASSERT_EQ(dialogs.GetDlgItemDouble(panel, Id, &back), 1);
        EXPECT_EQ(back, std::stod(row.text)); // what is shown is what is read back
    }
}

TEST_F(DialogHostTest, WriteVarListToCaption) {
    const struct {
        std::vector<short> vars;
        int count;
        const char* caption;
    } rows[] = {
        {{1, 3, 4}, 3, "AGE RÉGION REVENU_ANNUEL"}, // names longer than 8 bytes whole
        {{1, 9, 0, 2, 4}, 4, "AGE REVENU"},         // only `count`; no variable's number left out
        {{1}, 0, ""},                               // count 0 empties the caption
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.caption);
        setText("old");
        dialogs.WriteVarListToCaption(panel, Id, row.count, row.vars.data());
        EXPECT_EQ(text(), row.caption);
    }
}

// The module's lists, filled with -1 so that what the dialog wrote shows.
struct Lists {
    short first[8] = {-1, -1, -1, -1, -1, -1, -1, -1};
    short firstCount = -1;
    short second[8] = {-1, -1, -1, -1, -1, -1, -1, -1};
    short secondCount = -1;

    std::vector<short> firstList() const { return {first, first + firstCount}; }
    std::vector<short> secondList() const { return {second, second + secondCount}; }
    bool untouched() const { return firstCount == -1 && secondCount == -1 && first[0] == -1; }
};

int ask(wb::DialogHost& dialogs, Lists& lists, const short* choices = nullptr) {
    // The dialog takes 0 to 2 first, 1 to 2 second and 3 in all.
    return dialogs.DoubleVarListDialog(nullptr, 1, "Choose", choices, 0, 2, 1, 2, 3, lists.first,
                                       &lists.firstCount, lists.second, &lists.secondCount,
                                       "Categorical", "Continuous", 0);
}

TEST_F(DialogHostTest, VariableDialogAnswersPresetsInOrder) {
    headless.presetVariableChoice({1, 3}, {2});
    headless.presetVariableCancel();
    headless.presetVariableChoice({}, {2, 4}); // an empty list writes no entry
    headless.presetVariableChoice({2}, {2});   // one variable may stand in both lists
    const std::vector<std::vector<short>> expected[] = {
        {{1, 3}, {2}}, {}, {{}, {2, 4}}, {{2}, {2}}, {}};
    for (const auto& answer : expected) {
        Lists lists;
        EXPECT_EQ(ask(dialogs, lists), answer.empty() ? 0 : 1);
        if (answer.empty()) {
            EXPECT_TRUE(lists.untouched()); // cancelled, or nothing left in the queue
            continue;
        }
        EXPECT_EQ(lists.firstList(), answer[0]);
        EXPECT_EQ(lists.secondList(), answer[1]);
        EXPECT_EQ(lists.first[answer[0].size()], -1);
    }
    ASSERT_EQ(dialogs.variableDialogCalls().size(), 5u);
    const wb::VariableDialogCall& call = dialogs.variableDialogCalls().back();
    EXPECT_EQ(call.title, "Choose");
    EXPECT_EQ(call.caption1, "Categorical");
    EXPECT_EQ(call.caption2, "Continuous");
    EXPECT_EQ(call.total, 3);
}

const struct {
    std::vector<short> first, second;
    std::vector<short> choices; // empty: null, all variables
    const char* message;
} ChoiceErrorRows[] = {
    {{1, 2, 3}, {4}, {}, "the first list has 3 variables; the dialog takes 0 to 2"},
    {{1}, {}, {}, "the second list has 0 variables; the dialog takes 1 to 2"},
    {{1, 2}, {3, 4}, {}, "4 variables in both lists; the dialog takes at most 3"},
    {{5}, {1}, {}, "variable 5 of the first list is not a variable of the file (1 to 4)"},
    {{}, {0}, {}, "variable 0 of the second list is not a variable of the file (1 to 4)"},
    {{2, 2}, {1}, {}, "variable REVENU of the first list stands in it twice"},
    {{3}, {1}, {1, 2, 0}, "variable RÉGION of the first list is not among the choices"},
    // The choices end at their 0; what follows is no choice.
    {{2}, {1}, {2, 3, 0, 1}, "variable AGE of the second list is not among the choices"},
};

TEST_F(DialogHostTest, VariableDialogRejectsImpossiblePresets) {
    for (const auto& row : ChoiceErrorRows) {
        SCOPED_TRACE(row.message);
        headless.presetVariableChoice(row.first, row.second);
        headless.presetVariableChoice({1}, {2});
        Lists lists;
        try {
            ask(dialogs, lists, row.choices.empty() ? nullptr : row.choices.data());
            ADD_FAILURE() << "no exception";
        } catch (const std::invalid_argument& error) {
            EXPECT_EQ(error.what(), "variable dialog \"Choose\": " + std::string(row.message));
        }
        EXPECT_TRUE(lists.untouched());
        EXPECT_EQ(ask(dialogs, lists), 1); // the bad preset is used up
        EXPECT_EQ(lists.firstList(), std::vector<short>{1});
    }
}

TEST_F(DialogHostTest, Keywords) {
    int first = 0, second = 9;
    EXPECT_EQ(dialogs.GetInitKeyword(0, "StandAloneResults", &first, &second), 0);
    EXPECT_EQ(second, 9); // not found: untouched
    second = 1;           // the in-memory store keeps the value but cannot save it
    EXPECT_EQ(dialogs.PutInitKeyword(0, "StandAloneResults", &first, &second), 0);
    second = 9;
    EXPECT_EQ(dialogs.GetInitKeyword(0, "StandAloneResults", &first, &second), 1);
    EXPECT_EQ(second, 1);
    EXPECT_EQ(dialogs.GetInitKeyword(1, "StandAloneResults", &first, &second), 0);
}

} // namespace
