#include "workbench/stats/ParentShares.h"

#include <cmath>
#include <iterator>
#include <optional>

#include "drilldown/host/RealNumbers.h"
#include "drilldown/resources/ControlIds.h"
#include "workbench/stats/SubsetContrast.h"

namespace wb {

namespace {

// The record whose table or histogram output `output` of `command` is; null for any other
// document.
const Drill* recordOf(int command, int output, const CDrillDown& analysis) {
    const bool downs = command == ButtonFrequencies || command == ButtonHistograms;
    const bool reviews = command == ButtonReviewFrequencies || command == ButtonReviewHistograms;
    const DrillSet* set = downs     ? analysis.GetDrillDowns()
                          : reviews ? analysis.GetReviews()
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
    if (record == nullptr || steps == nullptr || steps->empty())
        return;
    // Rows or bars: one per category, then one for the missing data when they show.
    const std::size_t categories = record->Categories.size();
    const auto fits = [&](std::size_t count) {
        return count == categories || count == categories + 1;
    };
    const auto shares = [&] { return sharesOf(*record, parentLevelCases(analysis, file), file); };
    if (document.isTable()) {
        TableDocument& table = std::get<TableDocument>(document.content);
        const std::optional<std::vector<double>> found =
            fits(table.rows.size()) ? shares() : std::nullopt;
        if (!found)
            return;
        table.columns.push_back({"Niveau", "précédent (%)", ColumnFormat::Real});
        for (std::size_t row = 0; row < table.rows.size(); ++row)
            table.rows[row].cells.emplace_back(std::in_place_type<double>, (*found)[row]);
        return;
    }
    GraphDocument& graph = std::get<GraphDocument>(document.content);
    if (graph.type != GraphType::Histogram || graph.series.empty() ||
        !fits(graph.series.front().y.size()))
        return;
    const std::optional<std::vector<double>> found = shares();
    if (!found)
        return;
    // The subset's total as its percentages count it: valid and missing cases.
    const double total = record->WeightedN + record->MCount;
    for (std::size_t bar = 0; bar < graph.series.front().y.size(); ++bar)
        graph.levelAbove.push_back((*found)[bar] / 100 * total);
}

} // namespace wb
