#include "workbench/session/DrillCondition.h"

#include <cctype>
#include <cstdio>
#include <iterator>
#include <vector>

namespace wb {

namespace {

std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.17g", value);
    return text;
}

// A name the condition's parser reads as a name: letters, digits and underscores, not
// starting with a digit, and no keyword; anything else by its number.
std::string variableText(const DataFile& file, int var) {
    const std::string& name = file.variable(var).name;
    bool plain = !name.empty() && !std::isdigit(static_cast<unsigned char>(name[0]));
    for (const char c : name)
        plain = plain && (std::isalnum(static_cast<unsigned char>(c)) || c == '_');
    std::string lower;
    for (const char c : name)
        lower += char(std::tolower(static_cast<unsigned char>(c)));
    if (plain && lower != "and" && lower != "or" && lower != "not" && lower != "missing")
        return name;
    return "#" + std::to_string(var);
}

// One drill step as the analysis tests it: exactly, with the value as it stands in the case.
std::string stepCondition(const Drill& record, const DataFile& file) {
    const std::string v = variableText(file, record.Variable);
    if (record.DrilledItem < 0 ||
        record.DrilledItem >= static_cast<int32_t>(record.Categories.size()))
        return "missing(" + v + ")";
    const Categories& pinned = *std::next(record.Categories.begin(), record.DrilledItem);
    const double lower = pinned.Lower, upper = pinned.Upper;
    std::string test;
    bool holdsMissingCode = false;
    const double code = file.variable(record.Variable).missingCode;
    switch (record.Method) {
    case MethodDistinctValues:
    case MethodIntegerValues:
        test = v + " >= " + number(upper) + " and " + v + " <= " + number(upper);
        holdsMissingCode = code == upper;
        break;
    case MethodFixedStep:
        test = number(lower) + " <= " + v + " and " + v + " < " + number(upper);
        holdsMissingCode = lower <= code && code < upper;
        break;
    default:
        test = number(lower) + " < " + v + " and " + v + " <= " + number(upper);
        holdsMissingCode = lower < code && code <= upper;
        break;
    }
    return holdsMissingCode ? "(" + test + " or missing(" + v + "))" : test;
}

} // namespace

std::string drillPathCondition(const CDrillDown& analysis, const DataFile& file,
                               bool parentLevel) {
    std::vector<std::string> parts;
    if (!file.selectionText().empty())
        parts.push_back("(" + file.selectionText() + ")");
    if (analysis.MD == 1) {
        const auto chosen = [&](const short* list, int count) {
            for (int i = 0; list != nullptr && i < count; ++i)
                parts.push_back("not missing(" + variableText(file, list[i]) + ")");
        };
        chosen(analysis.Categorical, analysis.NoCategorical);
        chosen(analysis.Continuous, analysis.NoContinuous);
    }
    // The newest step stands first in the set.
    if (const DrillSet* ups = analysis.GetDrillUps())
        for (auto record = std::next(ups->begin(), parentLevel && !ups->empty() ? 1 : 0);
             record != ups->end(); ++record)
            parts.push_back(stepCondition(*record, file));
    std::string condition;
    for (const std::string& part : parts)
        condition += (condition.empty() ? "" : " and ") + part;
    return condition;
}

} // namespace wb
