#include "workbench/stats/ParentShares.h"

#include <cmath>
#include <iterator>
#include <optional>

#include "drilldown/host/RealNumbers.h"
#include "drilldown/resources/ControlIds.h"
#include "workbench/stats/SubsetContrast.h"

namespace wb {

namespace {

// The record whose table output `output` of `command` is; null for any other document.
const Drill* recordOf(int command, int output, const CDrillDown& analysis) {
    const DrillSet* set = command == ButtonFrequencies         ? analysis.GetDrillDowns()
                          : command == ButtonReviewFrequencies ? analysis.GetReviews()
                                                               : nullptr;
    if (set == nullptr || output < 1 || output > static_cast<int>(set->size()))
        return nullptr;
    return &*std::next(set->begin(), output - 1);
}

// The parent's shares of the record's categories, in the set's order, then of the missing
// cases; none when the parent's values would change the record's method (too many values).
std::optional<std::vector<double>>
sharesOf(const Drill& record, const std::vector<LevelCase>& cases, const DataFile& file) {
    Drill parent = record;
    for (const Categories& category : parent.Categories)
        Mutable(category).Count = 0;
    const bool values =
        record.Method == MethodDistinctValues || record.Method == MethodIntegerValues;
    double missing = 0, total = 0;
    for (const LevelCase& c : cases) {
        const double x = file.value(c.caseNo, record.Variable);
        total += c.weight;
        if (file.isMissing(record.Variable, x))
            missing += c.weight;
        else if (!values)
            parent.AddToInterval(x, c.weight);
        else if (record.Method == MethodDistinctValues || RealEqual(std::floor(x), x))
            parent.AddValue(x, record.Type, c.weight, std::string());
    }
    if (parent.Method != record.Method || !(total > 0))
        return std::nullopt;
    std::vector<double> shares;
    for (const Categories& category : record.Categories) {
        const auto found = parent.Categories.lower_bound(category.Upper);
        const bool same =
            found != parent.Categories.end() && RealEqual(found->Upper, category.Upper);
        shares.push_back((same ? found->Count : 0) / total * 100);
    }
    shares.push_back(missing / total * 100);
    return shares;
}

} // namespace

void addParentShares(Document& document, int command, int output, const CDrillDown& analysis,
                     const DataFile& file) {
    const Drill* record = recordOf(command, output, analysis);
    const DrillSet* steps = analysis.GetDrillUps();
    if (record == nullptr || !document.isTable() || steps == nullptr || steps->empty())
        return;
    TableDocument& table = std::get<TableDocument>(document.content);
    const std::size_t categories = record->Categories.size();
    if (table.rows.size() != categories && table.rows.size() != categories + 1)
        return;
    const std::optional<std::vector<double>> shares =
        sharesOf(*record, parentLevelCases(analysis, file), file);
    if (!shares)
        return;
    table.columns.push_back({"Niveau", "précédent (%)", ColumnFormat::Real});
    for (std::size_t row = 0; row < table.rows.size(); ++row)
        table.rows[row].cells.emplace_back(std::in_place_type<double>, (*shares)[row]);
}

} // namespace wb
