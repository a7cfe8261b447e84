// Labels of value categories: text labels, dates, whole numbers and real numbers.

#include <gtest/gtest.h>

#include <cstring>

#include "drilldown/categories/CategoryNames.h"
#include "support/AnalysisFixture.h"

namespace {

// Records the arguments of every RealToText call before it writes the text.
class RecordingText : public wb::TextService {
public:
    using wb::TextService::TextService;
    short RealToText(double value, unsigned char format, short width, short digits, char* text,
                     short limit) override {
        calls.push_back({format, digits});
        return wb::TextService::RealToText(value, format, width, digits, text, limit);
    }
    struct Call {
        unsigned char format;
        short digits;
    };
    std::vector<Call> calls;
};

const std::string LongLabel = "Provence-Alpes-Côte d'Azur et au-delà";

class CategoryNames : public test::AnalysisFixture {
protected:
    CategoryNames() {
        open(test::makeFile({{"REGION", -9, {{1, "Nord"}, {2, " Sud "}, {3, LongLabel},
                                             {3.5, "never"}}},
                             {"BORN", -9, {}, wb::DisplayFormat::Date},
                             {"SIZE", -9}},
                            {{1, 36525, 3}}));
        HostServices services = session.services();
        services.Text = &recorder;
        ModuleContext()->Host = services;
    }
    ~CategoryNames() override { ModuleContext()->Host = session.services(); }

    // The name SetCategoriesName gives to `value` of a categorical drill-down variable.
    std::string nameOf(short variable, double value) {
        Drill record(variable, 0, 0, "V");
        record.AddValue(value, 0, 1.0, "");
        analysis->GetDrillDowns()->insert(record);
        EXPECT_EQ(analysis->SetCategoriesName(variable), 1);
        std::string name = analysis->GetDrillDowns()->begin()->Categories.begin()->Name;
        analysis->GetDrillDowns()->clear();
        return name;
    }

    RecordingText recorder{wb::TokenTable::shared()};
};

TEST_F(CategoryNames, LabelsByKindOfValue) {
    struct Case {
        const char* what;
        short variable;
        double value;
        std::string expected;
    };
    const std::vector<Case> cases = {
        {"a text label", 1, 1, "Nord"},
        {"a text label loses its blanks", 1, 2, "Sud"},
        {"a long text label comes back whole", 1, 3, LongLabel},
        {"a fraction never takes a text label", 1, 3.5, "3.5"},
        {"a whole number without label", 3, 42, "42"},
        {"a negative half is not whole", 3, -2.5, "-2.5"},
        {"a date", 2, 36526, "01/01/00"},
        {"a whole number too large for a label", 1, 3e9, "3e+09"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(nameOf(c.variable, c.value), c.expected);
    }
}

TEST_F(CategoryNames, SmallNumbersLoseOneDigit) {
    struct Case {
        double value;
        unsigned char format;
        short digits;
    };
    for (const Case& c : {Case{0.25, 0x00, 7}, Case{-0.5, 0x00, 7}, Case{1.25, 0x40, 8},
                          Case{0.0005, 0x40, 8}}) {
        recorder.calls.clear();
        char buffer[9] = {};
        int16_t position = 0;
        EXPECT_EQ(WriteCategoryValue(2, c.value, &position, buffer), 0);
        ASSERT_EQ(recorder.calls.size(), 1u) << c.value;
        EXPECT_EQ(recorder.calls[0].format, c.format) << c.value;
        EXPECT_EQ(recorder.calls[0].digits, c.digits) << c.value;
        EXPECT_EQ(position, static_cast<int16_t>(std::strlen(buffer))) << c.value;
    }
}

TEST_F(CategoryNames, InvalidNumbersAreDashes) {
    char buffer[9] = {};
    EXPECT_EQ(WriteRealText(std::nan(""), 0x40, 8, 8, buffer, 14), 2);
    EXPECT_STREQ(buffer, "--");
}

TEST_F(CategoryNames, MemoryFailureLeavesNamesAlone) {
    Drill record(3, 0, 0, "V");
    record.AddValue(42, 0, 1.0, "");
    analysis->GetDrillDowns()->insert(record);
    session.memory().failAllocation(1);
    EXPECT_EQ(analysis->SetCategoriesName(3), 0);
    EXPECT_EQ(analysis->GetDrillDowns()->begin()->Categories.begin()->Name, "");
    EXPECT_TRUE(takeMessages().empty());
}

} // namespace
