// Reading macros: each form of statement, values, comments, and the messages of wrong lines.
#include <gtest/gtest.h>

#include <sstream>

#include "workbench/automation/AutomationRuntime.h"
#include "workbench/automation/Macro.h"

namespace {

using Kind = wb::MacroStatement::Kind;

class MacroTest : public ::testing::Test {
protected:
    std::vector<wb::MacroStatement> parse(const std::string& text) {
        std::istringstream input(text);
        return wb::parseMacro(input, "tour.ddm", automation);
    }
    wb::AutomationRuntime automation;
};

TEST_F(MacroTest, StatementsOfEachForm) {
    const struct {
        const char* line;
        Kind kind;
        const char* member;
        const char* value; // as Print shows it; empty for none
        VARTYPE type;
    } cases[] = {
        {"Variables = \"REGION SEX | AGE\"", Kind::Put, "Variables", "REGION SEX | AGE", VT_BSTR},
        {"  DrillDownCategory=\"Say \"\"hi\"\"\" ' quoted", Kind::Put, "DrillDownCategory",
         "Say \"hi\"", VT_BSTR},
        {"Note = \"it's\"", Kind::Put, "Note", "it's", VT_BSTR},
        {"ValueNoOfExactIntervals = 12", Kind::Put, "ValueNoOfExactIntervals", "12", VT_I4},
        {"ValueStepSize = -2.5e1", Kind::Put, "ValueStepSize", "-25", VT_R8},
        {"ValueStartingFrom = +3", Kind::Put, "ValueStartingFrom", "3", VT_I4},
        {"CountMD = true", Kind::Put, "CountMD", "True", VT_BOOL},
        {"CountMD = FALSE", Kind::Put, "CountMD", "False", VT_BOOL},
        {"DrillDown", Kind::Call, "DrillDown", "", VT_EMPTY},
        {"print  CategorySelections", Kind::Print, "CategorySelections", "", VT_EMPTY},
        {"DUMP", Kind::Dump, "", "", VT_EMPTY},
        {"contrast", Kind::Contrast, "", "", VT_EMPTY},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.line);
        const auto statements = parse(std::string("' header\n\n") + c.line + "\n");
        ASSERT_EQ(statements.size(), 1u);
        EXPECT_EQ(statements[0].kind, c.kind);
        EXPECT_EQ(statements[0].member, c.member);
        EXPECT_EQ(statements[0].line, 3);
        EXPECT_EQ(statements[0].value.vt, c.type);
        EXPECT_EQ(wb::macroValueText(statements[0].value), c.value);
    }
}

TEST_F(MacroTest, WrongLinesNameTheMacroLineAndStatement) {
    const struct {
        std::string line;
        const char* message;
    } cases[] = {
        {std::string("Drill\0Down", 10), "tour.ddm:2: Drill\\x00Down: \"Drill\\x00Down\" is no member name"},
        {"Variables = \"REGION", "tour.ddm:2: Variables = \"REGION: the text has no closing quote"},
        {"Variables = \"A\" B", "tour.ddm:2: Variables = \"A\" B: something follows the closing quote"},
        {"Count =", "tour.ddm:2: Count =: a value is missing after \"=\""},
        {"Count = ten", "tour.ddm:2: Count = ten: \"ten\" is no value: write text in double "
                        "quotes, a number, True or False"},
        {"Count = 1e999", "tour.ddm:2: Count = 1e999: \"1e999\" is no value: write text in double "
                          "quotes, a number, True or False"},
        {"Drill Down", "tour.ddm:2: Drill Down: \"Drill Down\" is no member name"},
        {"= 3", "tour.ddm:2: = 3: \"\" is no member name"},
        {"Print", "tour.ddm:2: Print: Print needs a member"},
        {"Print A B", "tour.ddm:2: Print A B: \"A B\" is no member name"},
    };
    for (const auto& c : cases) {
        try {
            parse("DrillDown\n" + c.line + "\nDrillUp\n");
            ADD_FAILURE() << c.line << " was accepted";
        } catch (const wb::MacroError& error) {
            EXPECT_EQ(std::string(error.what()), c.message);
        }
    }
}

} // namespace
