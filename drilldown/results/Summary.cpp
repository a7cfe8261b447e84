// Where the drill-down stands: the summary table of the drill steps, and the drill string that
// every other result shows as its second title line.

#include <iterator>

#include "../core/CDrillDown.h"
#include "../host/framework/CScrollTable.h"
#include "../host/framework/HostArray.h"
#include "../host/RealNumbers.h"
#include "../resources/StringIds.h"
#include "ResultText.h"

namespace {

constexpr int TokenBytes = 9;

bool OnMissingRow(const Drill& record) {
    return record.DrilledItem == static_cast<int32_t>(record.Categories.size());
}

const Categories& PinnedCategory(const Drill& record) {
    return *std::next(record.Categories.begin(), record.DrilledItem);
}

// The line of one drill step: its variable and the limits or the value of its category.
std::string StepLine(const Drill& record, const std::string& variable, const char* missingText) {
    if (OnMissingRow(record))
        return "\n" + variable + " = " + missingText;
    const Categories& c = PinnedCategory(record);
    const bool first = record.DrilledItem == 0;
    const bool last = record.DrilledItem == static_cast<int32_t>(record.Categories.size()) - 1;
    const std::string lower = TrimmedNumber(c.Lower);
    const std::string upper = TrimmedNumber(c.Upper);
    switch (record.Method) {
    case MethodDistinctValues:
    case MethodIntegerValues:
        return "\n" + variable + " = " + c.Name;
    case MethodExactIntervals:
    case MethodNeatIntervals:
        if (RealEqual(record.Min, record.Max))
            return "\n" + variable + " = " + upper;
        return "\n" + lower + " < " + variable + " <= " + upper;
    case MethodFixedStep:
        if (last)
            return "\n" + variable + " >= " + lower;
        return "\n" + lower + " <= " + variable + " < " + upper;
    case MethodUserLimits:
        if (first)
            return "\n" + variable + " <= " + upper;
        if (last)
            return "\n" + variable + " > " + lower;
        return "\n" + lower + " < " + variable + " <= " + upper;
    default:
        return {};
    }
}

} // namespace

int CDrillDown::SelectedCount() const {
    if (!DrillDowns->empty())
        return DrillDowns->begin()->N;
    if (!Reviews->empty())
        return Reviews->begin()->N;
    if (DrillUps->empty())
        return 0;
    const Drill& newest = *DrillUps->begin();
    return OnMissingRow(newest) ? newest.MissingN
                                : static_cast<int>(PinnedCategory(newest).Count);
}

std::string CDrillDown::DescribeSteps(bool expandedNames) {
    RescanIfNeeded();
    std::string text = FormatText(GetResourceString(StrTotalAndSelected),
                                  ModuleBlocks().Vmk.NCases, SelectedCount());
    const std::string missing = GetResourceString(StrMissingRow);
    for (const Drill& record : *DrillUps) {
        std::string name = RawShortName(*this, record.Variable);
        if (expandedNames) {
            name = ShortName(*this, record.Variable);
            StripFormatting(name);
        }
        text += StepLine(record, name, missing.c_str());
    }
    Get8CharHash(text);
    return text;
}

std::string CDrillDown::DrillString() { return DescribeSteps(false); }

std::string CDrillDown::ScatterDrillString() { return DescribeSteps(true); }

bool CDrillDown::HasLongLabel(int variable, double value) {
    char token[TokenBytes] = {};
    return RetrieveLongTextLabelAsHashedString(token, variable - 1, value) != 0;
}

short CDrillDown::AnyLongLabel(DrillSet& records, short variable, short type) {
    if (type == 1)
        return 0;
    const auto record = LookFor(variable, &records);
    if (record == records.end())
        return 0;
    for (const Categories& category : record->Categories)
        if (HasLongLabel(variable, category.Upper))
            return 1;
    return 0;
}

short CDrillDown::LongDescription(short variable, short type) {
    return AnyLongLabel(*DrillDowns, variable, type);
}

short CDrillDown::LongDescriptionReviews(short variable, short type) {
    return AnyLongLabel(*Reviews, variable, type);
}

short CDrillDown::DDNSummary(HWND) {
    bool describe = false;
    for (const Drill& record : *DrillUps)
        for (const Categories& category : record.Categories)
            describe = describe || HasLongLabel(record.Variable, category.Upper);
    CScrollTable table(*this, static_cast<int>(DrillUps->size()), describe ? 2 : 1);
    if (!table.Allocated())
        return 0;
    table.SetTableTitle(GetResourceString(StrSummaryTitle));
    table.SetRowHeading(GetResourceString(StrVariableHeading));
    table.SetColumnHead(0, GetResourceString(StrCategoryHeading));
    if (describe)
        table.SetColumnHead(1, GetResourceString(StrDescriptionHeading));
    int row = 0;
    for (const Drill& record : *DrillUps) {
        table.SetRowName(row, ShortName(*this, record.Variable));
        if (OnMissingRow(record)) {
            table.SetCellText(row, 0, GetResourceString(StrMissingRow));
        } else {
            const Categories& category = PinnedCategory(record);
            table.SetCellText(row, 0, category.Name);
            char token[TokenBytes] = {};
            if (describe &&
                RetrieveLongTextLabelAsHashedString(token, record.Variable - 1, category.Upper))
                table.SetCellText(row, 1, token);
        }
        ++row;
    }
    if (row > 0)
        table.EmitTable();
    return 1;
}
