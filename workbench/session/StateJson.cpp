#include "StateJson.h"

namespace wb {

namespace {

nlohmann::ordered_json categoryToJson(const Categories& c) {
    return {{"Kind", c.Kind}, {"Count", c.Count}, {"Upper", c.Upper}, {"Name", c.Name},
            {"Lower", c.Lower}};
}

nlohmann::ordered_json recordToJson(const Drill& d) {
    nlohmann::ordered_json record;
    record["Variable"] = d.Variable;
    record["Type"] = d.Type;
    record["Name"] = d.Name;
    record["N"] = d.N;
    record["WeightedN"] = d.WeightedN;
    record["MissingN"] = d.MissingN;
    record["MCount"] = d.MCount;
    record["Min"] = d.Min;
    record["Max"] = d.Max;
    record["Mean"] = d.Mean;
    record["SS"] = d.SS;
    record["Method"] = d.Method;
    record["ExactN"] = d.ExactN;
    record["NeatN"] = d.NeatN;
    record["Step"] = d.Step;
    record["Start"] = d.Start;
    record["AtMinimum"] = d.AtMinimum;
    record["UserInterv"] = std::vector<double>(d.UserInterv.begin(),
                                               d.UserInterv.begin() + std::max(0, d.NU));
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

} // namespace wb
