#include "StateJson.h"

#include <cmath>

namespace wb {

namespace {

nlohmann::ordered_json number(double value) {
    if (std::isnan(value))
        return "NaN";
    if (std::isinf(value))
        return value > 0 ? "Infinity" : "-Infinity";
    return value;
}

nlohmann::ordered_json categoryToJson(const Categories& c) {
    return {{"Kind", c.Kind}, {"Count", number(c.Count)}, {"Upper", number(c.Upper)},
            {"Name", c.Name}, {"Lower", number(c.Lower)}};
}

nlohmann::ordered_json recordToJson(const Drill& d) {
    nlohmann::ordered_json record;
    record["Variable"] = d.Variable;
    record["Type"] = d.Type;
    record["Name"] = d.Name;
    record["N"] = d.N;
    record["WeightedN"] = number(d.WeightedN);
    record["MissingN"] = d.MissingN;
    record["MCount"] = number(d.MCount);
    record["Min"] = number(d.Min);
    record["Max"] = number(d.Max);
    record["Mean"] = number(d.Mean);
    record["SS"] = number(d.SS);
    record["Method"] = d.Method;
    record["ExactN"] = d.ExactN;
    record["NeatN"] = d.NeatN;
    record["Step"] = number(d.Step);
    record["Start"] = number(d.Start);
    record["AtMinimum"] = d.AtMinimum;
    nlohmann::ordered_json limits = nlohmann::ordered_json::array();
    for (int k = 0; k < d.NU; ++k)
        limits.push_back(number(d.UserInterv[k]));
    record["UserInterv"] = std::move(limits);
    record["NU"] = d.NU;
    record["Isset"] = d.Isset;
    record["Order"] = d.Order;
    record["DrilledItem"] = d.DrilledItem;
    nlohmann::ordered_json categories = nlohmann::ordered_json::array();
    for (const Categories& c : d.Categories)
        categories.push_back(categoryToJson(c));
    record["Categories"] = std::move(categories);
    return record;
}

nlohmann::ordered_json recordsToJson(const DrillSet* records) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    if (records != nullptr)
        for (const Drill& d : *records)
            list.push_back(recordToJson(d));
    return list;
}

} // namespace

nlohmann::ordered_json stateToJson(const CDrillDown& analysis) {
    nlohmann::ordered_json state;
    state["ValidVar"] = analysis.GetValidVar();
    state["DrillDowns"] = recordsToJson(analysis.GetDrillDowns());
    state["DrillUps"] = recordsToJson(analysis.GetDrillUps());
    state["Reviews"] = recordsToJson(analysis.GetReviews());
    return state;
}

std::string stateText(const CDrillDown& analysis) {
    return stateToJson(analysis).dump(2, ' ', false, nlohmann::json::error_handler_t::replace);
}

} // namespace wb
