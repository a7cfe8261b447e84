// Frequency tables: one table per variable with the count of each category, the cumulative
// count and both as percentages of all cases, missing ones included.

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "../core/CDrillDown.h"
#include "../host/framework/CScrollTable.h"
#include "../resources/StringIds.h"
#include "ResultText.h"

namespace {

constexpr int CountColumns = 4;
constexpr int DescriptionColumn = 4;
constexpr int TokenBytes = 9;

std::string RowText(const Drill& record, const Categories& category) {
    if (!category.Name.empty())
        return category.Name;
    if (record.Type == 1)
        return FormatText("%f<x<=%f", category.Lower, category.Upper);
    return FormatText("%f", category.Upper);
}

} // namespace

short CDrillDown::FrequencyTables(DrillSet& records, bool reviews) {
    RescanIfNeeded();
    if (std::any_of(records.begin(), records.end(), [](const Drill& d) { return d.Isset == 0; }))
        ReadBeforeDrill(0);
    // Once one variable has fractional counts, its columns and those of every later table
    // of this call are shown as reals.
    bool fractional = false;
    for (const Drill& record : records) {
        const double total = record.WeightedN + record.MCount;
        const bool missingRow = CountMD == 1 && record.MCount != 0;
        const int rows = static_cast<int>(record.Categories.size()) + (missingRow ? 1 : 0);
        const bool describe =
            (reviews ? LongDescriptionReviews(record.Variable, record.Type)
                     : LongDescription(record.Variable, record.Type)) == 1;
        CScrollTable table(*this, rows, describe ? CountColumns + 1 : CountColumns);
        if (!table.Allocated())
            return 0;
        const std::string name = VariableLabel(*this, record.Variable, reviews ? " : " : ": ");
        std::string title = FormatText(GetResourceString(StrFrequencyTitle), name.c_str());
        Get8CharHash(title);
        table.SetTableTitle(title);
        table.SetTableSubtitle(DrillString());
        for (int col = 0; col < CountColumns; ++col)
            table.SetColumnHead(col, GetResourceString(StrCountHeading + col));
        if (describe)
            table.SetColumnHead(DescriptionColumn, "Description");

        double cumulated = 0;
        int row = 0;
        auto putCounts = [&](double count) {
            cumulated += count;
            fractional = fractional || count != std::floor(count);
            table.SetCellValue(row, 0, count);
            table.SetCellValue(row, 1, cumulated);
            if (total != 0) {
                table.SetCellValue(row, 2, count / total * 100.0);
                table.SetCellValue(row, 3, cumulated / total * 100.0);
            }
            ++row;
        };
        for (const Categories& category : record.Categories) {
            char token[TokenBytes] = {};
            if (describe &&
                RetrieveLongTextLabelAsHashedString(token, record.Variable - 1, category.Upper))
                table.SetCellText(row, DescriptionColumn, token);
            table.SetRowName(row, RowText(record, category));
            putCounts(category.Count);
        }
        if (missingRow) {
            table.SetRowName(row, GetResourceString(StrMissingRow));
            putCounts(record.MCount);
        }
        if (!fractional) {
            table.SetWholeColumn(0);
            table.SetWholeColumn(1);
        }
        table.EmitTable();
    }
    return 1;
}

short CDrillDown::DDNFrequency(HWND) { return FrequencyTables(*DrillDowns, false); }

short CDrillDown::RVFrequency(HWND) { return FrequencyTables(*Reviews, true); }
