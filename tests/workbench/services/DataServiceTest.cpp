// The module's view of a data file: blocks, the case loop, names, labels and formats.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "drilldown/host/HostBlocks.h"
#include "workbench/data/DataFile.h"
#include "workbench/services/DataService.h"
#include "workbench/text/TokenTable.h"

namespace {

constexpr double Missing = -99999999.0;

enum Var { Age = 1, Income, Weight, Day, Clock, VarCount = Clock };

const std::string LongShortName = "REVENU_ANNUEL";
const std::string LongLabel = "Très élevé et au-delà";

wb::DataFile makeFile() {
    wb::DataFile file;
    file.setHeaderText("Enquête 2024");
    file.addVariable({"AGE", "", Missing, {}, wb::DisplayFormat::Plain});
    file.addVariable({LongShortName, "Revenu annuel brut", Missing,
                      {{1.0, "Bas"}, {2.0, LongLabel}}, wb::DisplayFormat::Plain});
    file.addVariable({"POIDS", "", Missing, {}, wb::DisplayFormat::Plain});
    file.addVariable({"DATE", "", Missing, {}, wb::DisplayFormat::Date});
    file.addVariable({"HEURE", "", Missing, {}, wb::DisplayFormat::Time});
    file.appendCase({34, 1, 2.5, 45000, 3661}, "Dupont");
    file.appendCase({51, 2, Missing, 45001, 0}, "Martin-Lefebvre");
    file.appendCase({27, 2, -1.0, 45002, 60}, "Roy");
    file.setWeightVariable(Weight);
    return file;
}

class DataServiceTest : public testing::Test {
protected:
    void SetUp() override {
        m_file = makeFile();
        m_data.setDataFile(&m_file);
    }
    wb::TokenTable m_tokens;
    wb::DataFile m_file;
    wb::DataService m_data{m_tokens};
};

TEST_F(DataServiceTest, InitCommonsFillsTheBlocksAndSetDataFileRefillsThem) {
    // Blocks full of rubbish, as static storage never is, to see every field written.
    HostBlocks blocks;
    std::memset(static_cast<void*>(&blocks), 0x5A, sizeof blocks);
    m_data.InitCommons(&blocks.Vmk, &blocks.Vmk88, &blocks.B1, &blocks.Wght, nullptr);
    EXPECT_EQ(int16_t{blocks.Vmk.NVars}, VarCount);
    EXPECT_EQ(int32_t{blocks.Vmk.NCases}, 3); // a copy: the field is packed
    const std::string header(blocks.Vmk.HeaderText, sizeof blocks.Vmk.HeaderText);
    EXPECT_EQ(header, "Enquête 2024" + std::string(80 - std::strlen("Enquête 2024"), ' '));
    EXPECT_EQ(blocks.Vmk.RowHeading[0], '\0');
    EXPECT_EQ(blocks.Vmk.RowHeading[63], '\0');
    EXPECT_EQ(blocks.Vmk88.CaseNameLen, static_cast<int16_t>(std::strlen("Martin-Lefebvre")));
    EXPECT_EQ(blocks.B1.CaseName[0], '\0');
    EXPECT_EQ(blocks.B1.CaseNamePos, 0);
    EXPECT_EQ(blocks.Wght.WeightOn, 0);
    EXPECT_EQ(blocks.Wght.WeightValue, 0.0);

    wb::DataFile other;
    other.addVariable({"X", "", Missing, {}, wb::DisplayFormat::Plain});
    other.appendCase({1.0});
    m_data.setDataFile(&other);
    EXPECT_EQ(int16_t{blocks.Vmk.NVars}, 1);
    EXPECT_EQ(int32_t{blocks.Vmk.NCases}, 1);
    EXPECT_EQ(blocks.Vmk88.CaseNameLen, 0);
    EXPECT_EQ(std::string(blocks.Vmk.HeaderText, 80), std::string(80, ' '));

    m_data.setDataFile(nullptr);
    EXPECT_EQ(int16_t{blocks.Vmk.NVars}, 0);
    EXPECT_EQ(int32_t{blocks.Vmk.NCases}, 0);
}

// Case `caseNo` under the weight variable `weighting` and the selection `selection`.
const struct {
    int caseNo, breakAt, weighting; // breakAt: the breakAtCase hook, 0 for none
    const char* selection;
    short result;
    double weight;
    const char* comment;
} Cases[] = {
    {1, 0, Weight, "", 0, 2.5, "delivered with its weight"},
    {2, 0, Weight, "", 0, 0.0, "a missing weight counts as 0"},
    {3, 0, Weight, "", 0, -1.0, "a negative weight stays for the module to drop"},
    {2, 0, 0, "", 0, 1.0, "without a weight variable every case weighs 1"},
    {1, 0, Weight, "AGE > 30", 0, 2.5, "kept by the selection"},
    {3, 0, Weight, "AGE > 30", 1, -1.0, "left out by the selection: 1, with its weight"},
    {2, 2, Weight, "", 2, -7.0, "reading broken off at that case: outputs untouched"},
    {1, 2, Weight, "", 0, 2.5, "the break hook concerns its case only"},
    {4, 0, Weight, "", 2, -7.0, "beyond the last case"},
    {0, 0, Weight, "", 2, -7.0, "before the first case"},
};

TEST_F(DataServiceTest, CstrtwDeliversTheRowAndTheWeight) {
    for (const auto& row : Cases) {
        SCOPED_TRACE(row.comment);
        m_data.breakAtCase(row.breakAt);
        m_file.setWeightVariable(row.weighting);
        m_file.setSelection(row.selection);
        std::vector<double> values(VarCount + 2, -7.0);
        int hasWeight = -7, weightVar = -7;
        double weight = -7.0;
        const short result =
            m_data.cstrtw(row.caseNo, values.data(), &hasWeight, &weight, &weightVar);
        EXPECT_EQ(result, row.result);
        EXPECT_EQ(weight, row.weight);
        EXPECT_EQ(values[VarCount + 1], -7.0) << "wrote past NVars + 1 values";
        if (result == 2) {
            EXPECT_EQ(values[Age], -7.0);
            EXPECT_EQ(hasWeight, -7);
            continue;
        }
        for (int var = 1; var <= VarCount; ++var)
            EXPECT_EQ(values[var], m_file.value(row.caseNo, var)) << "variable " << var;
        EXPECT_EQ(hasWeight, row.weighting != 0 ? 1 : 0);
        EXPECT_EQ(weightVar, row.weighting);
    }
    EXPECT_EQ(m_data.cstrtw(2, nullptr, nullptr, nullptr, nullptr), 0) << "outputs may be null";
}

// A stretch read at once gives, case by case, what cstrtw gives, up to the first case given 2.
TEST_F(DataServiceTest, ReadCaseRowsReadsAsCstrtwDoes) {
    const struct {
        int first, count, breakAt, weighting;
        const char* selection;
    } stretches[] = {
        {1, 3, 0, Weight, ""},        {1, 3, 0, 0, ""},  {2, 2, 0, Weight, "AGE > 30"},
        {1, 3, 2, Weight, ""},        {2, 4, 0, Weight, ""},  // runs past the last case
        {0, 2, 0, Weight, ""},        {4, 1, 0, Weight, ""},
    };
    for (const auto& stretch : stretches) {
        SCOPED_TRACE(testing::Message() << "cases " << stretch.first << " on, " << stretch.count
                                        << ", break at " << stretch.breakAt);
        m_data.breakAtCase(stretch.breakAt);
        m_file.setWeightVariable(stretch.weighting);
        m_file.setSelection(stretch.selection);
        std::vector<double> buffer(stretch.count * (VarCount + 1));
        std::vector<short> results(stretch.count);
        std::vector<double> weights(stretch.count);
        ::CaseRows rows{stretch.first, stretch.count, buffer.data(), VarCount + 1,
                        results.data(), weights.data()};
        m_data.ReadCaseRows(rows);
        for (int i = 0; i < stretch.count; ++i) {
            std::vector<double> values(VarCount + 1);
            int hasWeight = 0, weightVar = 0;
            double weight = 0;
            const short result =
                m_data.cstrtw(stretch.first + i, values.data(), &hasWeight, &weight, &weightVar);
            ASSERT_EQ(rows.results[i], result) << "case " << stretch.first + i;
            if (result == 2)
                break;
            EXPECT_EQ(rows.weights[i], weight);
            EXPECT_EQ(rows.hasWeight, hasWeight);
            EXPECT_EQ(rows.weightVar, weightVar);
            for (int var = 1; var <= VarCount; ++var)
                EXPECT_EQ(rows.values[i * rows.stride + var], values[var]) << "variable " << var;
        }
    }
}

// Short names padded to 8 or as tokens; long names whole in their buffer of 128 bytes, or cut
// before the character that does not fit.
TEST_F(DataServiceTest, ShortAndLongNames) {
    // 126 ASCII bytes then 'é': 128 bytes, so the cut at 127 falls inside the 'é'.
    m_file.variable(Age).longName = std::string(126, 'a') + "é";
    const struct {
        int var;
        std::string shortName, longName;
        const char* comment;
    } rows[] = {
        {Age, "AGE     ", std::string(126, 'a'), "padded to 8; long name cut"},
        {Income, m_tokens.tokenFor(LongShortName), "Revenu annuel brut", "token; whole"},
        {Weight, "POIDS   ", "", "no long name"},
        {99, "        ", "", "no such variable"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.comment);
        char name[9];
        std::memset(name, 'x', sizeof name);
        m_data.getvn5(row.var, name);
        EXPECT_EQ(std::string(name, 8), row.shortName);
        EXPECT_EQ(name[8], '\0');
        char text[128];
        std::memset(text, 'x', sizeof text);
        EXPECT_EQ(m_data.WriteVarLongName(text, row.var), static_cast<int>(row.longName.size()));
        EXPECT_STREQ(text, row.longName.c_str());
    }
}

// vvlcod gives a value's label in 8 characters (a token for a longer one);
// RetrieveLongTextLabelAsHashedString, whose variable counts from 0, only the long labels.
TEST_F(DataServiceTest, LabelsAsEightCharactersOrLongLabelsAsTokens) {
    const struct {
        int var;
        float value;
        std::string expected; // of vvlcod; "xxxxxxxx" when it finds none
        bool longLabel;
        const char* comment;
    } rows[] = {
        {Income, 1.0f, "Bas     ", false, "short label, blank padded; no long label"},
        {Income, 2.0f, m_tokens.tokenFor(LongLabel), true, "long label: its token"},
        {Income, 3.0f, "xxxxxxxx", false, "no label for the value"},
        {Weight, 2.0f, "xxxxxxxx", false, "the next variable has none: counted from 0 or 1"},
        {0, 1.0f, "xxxxxxxx", false, "no such variable"},
    };
    for (auto row : rows) {
        SCOPED_TRACE(row.comment);
        char text[9];
        std::memset(text, 'x', sizeof text);
        const int result = m_data.vvlcod(0, row.var, text, &row.value);
        EXPECT_EQ(result == 0, row.expected != "xxxxxxxx");
        EXPECT_EQ(std::string(text, 8), row.expected);
        EXPECT_EQ(text[8], 'x') << "no terminator is written";
        char token[9] = "unused!!";
        EXPECT_EQ(m_data.RetrieveLongTextLabelAsHashedString(token, row.var - 1, row.value) != 0,
                  row.longLabel);
        if (row.longLabel) {
            EXPECT_EQ(m_tokens.expand(token), LongLabel);
        }
    }
}

TEST_F(DataServiceTest, DatesAndTimesInTheirFormat) {
    for (const int var :
         {int(Day), int(Clock), int(Age), 42}) // date, time, plain, no such variable
        EXPECT_EQ(m_data.IsSpecialFormatVariable(var) != 0, var == Day || var == Clock) << var;
    const struct {
        int var;
        double value;
        int width;
        const char* expected;
        const char* comment;
    } rows[] = {
        {Day, 0, 8, "30/12/99", "the epoch"},
        {Day, 61, 8, "01/03/00", "1900 has no 29 February"},
        {Day, 45000.75, 8, "15/03/23", "the fraction of the day is ignored"},
        {Day, -1, 8, "29/12/99", "before the epoch"},
        {Day, 1e9, 8, "--      ", "no such date"},
        {Clock, 86399.6, 8, "00:00:00", "rounded to the next day's midnight"},
        {Clock, -60, 8, "23:59:00", "taken modulo a day, negative wraps back"},
        {Clock, 3661, 5, "01:01", "h:m:s, cut to the width"},
        {Clock, 3661, 10, "01:01:01  ", "padded to the width"},
        {Clock, std::nan(""), 8, "--      ", "not a number"},
        {Age, 2.5, 8, "2.5     ", "a plain variable gets its number"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.comment);
        char text[16];
        std::memset(text, 'x', sizeof text);
        m_data.WriteSpecialFormatVariable(row.var, row.value, text, row.width);
        EXPECT_STREQ(text, row.expected);
    }
}

TEST_F(DataServiceTest, CellsCaseNamesAndMissingCodes) {
    double value = 0;
    m_data.GetCell(Age - 1, 1, &value);
    EXPECT_EQ(value, 51.0);
    m_data.GetCell(Age - 1, 3, &value);
    EXPECT_TRUE(std::isnan(value));
    m_data.GetCell(VarCount, 0, &value);
    EXPECT_TRUE(std::isnan(value));

    std::string name = "stale";
    m_data.GetCaseName(1, name);
    EXPECT_EQ(name, "Martin-Lefebvre");
    m_data.GetCaseName(3, name);
    EXPECT_EQ(name, "");

    m_file.variable(Weight).missingCode = -1.0;
    double code = 0;
    m_data.getmd5(Weight, &code);
    EXPECT_EQ(code, -1.0);
    m_data.getmd5(0, &code);
    EXPECT_TRUE(std::isnan(code));
}

} // namespace
