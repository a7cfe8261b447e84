// Descriptive statistics of the continuous variables: one row per variable with its mean,
// standard deviation, range and counts, all collected by the scans.

#include <array>
#include <cmath>
#include <vector>

#include "../core/CDrillDown.h"
#include "../host/framework/CScrollTable.h"
#include "../resources/StringIds.h"
#include "ResultText.h"

namespace {

constexpr int Columns = 6;
// Numbers beyond these are shown as reals even when whole, so that they keep their size.
constexpr double WholeLimit = 10000000000.0;

bool NeedsRealFormat(double x) { return x > WholeLimit || x < -WholeLimit || x != std::floor(x); }

} // namespace

short CDrillDown::DescriptiveTable(const std::vector<const Drill*>& rows, bool trimNames) {
    CScrollTable table(*this, static_cast<int>(rows.size()), Columns);
    if (!table.Allocated())
        return 0;
    table.SetTableTitle(GetResourceString(StrDescriptivesTitle));
    table.SetTableSubtitle(DrillString());
    const int heads[Columns] = {StrMeanHeading,
                                StrStdDevHeading,
                                StrMinimumHeading,
                                StrMaximumHeading,
                                ModuleBlocks().Wght.WeightOn != 0 ? StrWeightedCasesHeading
                                                                  : StrCasesHeading,
                                StrMissingRow};
    for (int col = 0; col < Columns; ++col)
        table.SetColumnHead(col, GetResourceString(heads[col]));

    std::array<bool, Columns> real{};
    int row = 0;
    for (const Drill* record : rows) {
        table.SetRowName(row, trimNames ? ShortName(*this, record->Variable)
                                        : RawShortName(*this, record->Variable));
        const double cells[Columns] = {record->Mean, record->StdDev(), record->Min,
                                       record->Max,  record->WeightedN, record->MCount};
        for (int col = 0; col < Columns; ++col)
            real[col] = real[col] || NeedsRealFormat(cells[col]);
        // Without a case the moments mean nothing: they show as "-".
        const bool empty = record->WeightedN == 0;
        for (int col = 0; col < Columns; ++col) {
            if (empty && col < 4) {
                table.SetCellText(row, col, "-");
                real[col] = true;
            } else {
                table.SetCellValue(row, col, cells[col]);
            }
        }
        ++row;
    }
    for (int col = 0; col < Columns; ++col)
        if (!real[col])
            table.SetWholeColumn(col);
    if (row > 0)
        table.EmitTable();
    return 1;
}

short CDrillDown::DDNDescriptive(HWND) {
    RescanIfNeeded();
    if (ValidVar == 0) {
        dsplst(0, GetResourceString(StrNoCases));
        return 0;
    }
    std::vector<const Drill*> rows;
    for (const Drill& record : *DrillDowns)
        if (record.Type == 1)
            rows.push_back(&record);
    return DescriptiveTable(rows, true);
}

short CDrillDown::RVSummary(HWND) {
    RescanIfNeeded();
    // Without drill-down variables ValidVar is never counted, so the table is made anyway.
    if (ValidVar == 0 && NoContinuous + NoCategorical != 0) {
        dsplst(0, GetResourceString(StrNoCases));
        return 0;
    }
    std::vector<const Drill*> rows;
    for (const Drill& record : *Reviews)
        if (record.Method == MethodNeatIntervals)
            rows.push_back(&record);
    return DescriptiveTable(rows, false);
}
