#include "VariableList.h"

#include <algorithm>
#include <charconv>
#include <sstream>

#include "workbench/text/Spelling.h"

namespace wb {

namespace {

bool parseNumber(const std::string& text, int& number) {
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end;
}

// The variables of one item: a number, a name, or a range of either.
std::vector<short> itemVariables(const std::string& item, const DataFile& file) {
    const auto dash = item.find('-', 1);
    if (file.findVariable(item) == 0 && dash != std::string::npos) {
        const short first = parseVariable(item.substr(0, dash), file);
        const short last = parseVariable(item.substr(dash + 1), file);
        if (last < first)
            throw DataError("variable list: the range \"" + item + "\" runs backwards");
        std::vector<short> range;
        for (int v = first; v <= last; ++v)
            range.push_back(static_cast<short>(v));
        return range;
    }
    return {parseVariable(item, file)};
}

std::vector<short> parseHalf(const std::string& text, const DataFile& file) {
    std::istringstream items(text);
    std::vector<short> variables;
    for (std::string item; items >> item;)
        for (short v : itemVariables(item, file))
            variables.push_back(v);
    return variables;
}

} // namespace

short parseVariable(const std::string& item, const DataFile& file) {
    int number = 0;
    if (parseNumber(item, number)) {
        if (number < 1 || number > file.variableCount())
            throw DataError("variable list: there is no variable " + item + " (the file has " +
                            std::to_string(file.variableCount()) + ")");
        return static_cast<short>(number);
    }
    const int found = file.findVariable(item);
    if (found == 0) {
        std::vector<std::string> names;
        for (int var = 1; var <= file.variableCount(); ++var)
            names.push_back(file.variable(var).name);
        const std::string closest = closestWord(item, names);
        throw DataError("variable list: there is no variable named \"" + item + "\"" +
                        (closest.empty() ? "" : "; did you mean \"" + closest + "\"?"));
    }
    return static_cast<short>(found);
}

VariableChoice parseVariableList(const std::string& text, const DataFile& file) {
    const auto bar = text.find('|');
    if (bar != std::string::npos && text.find('|', bar + 1) != std::string::npos)
        throw DataError("variable list: \"" + text + "\" has more than one \"|\"");
    VariableChoice choice{parseHalf(text.substr(0, bar), file),
                          bar == std::string::npos ? std::vector<short>{}
                                                   : parseHalf(text.substr(bar + 1), file)};
    std::vector<short> all = choice.categorical;
    all.insert(all.end(), choice.continuous.begin(), choice.continuous.end());
    std::sort(all.begin(), all.end());
    const auto twice = std::adjacent_find(all.begin(), all.end());
    if (twice != all.end())
        throw DataError("variable list: variable " + file.variable(*twice).name +
                        " is given twice");
    return choice;
}

std::string formatVariableList(const VariableChoice& choice, const DataFile& file) {
    const auto names = [&](const std::vector<short>& variables) {
        std::string text;
        for (const short v : variables)
            text += (text.empty() ? "" : " ") + file.variable(v).name;
        return text;
    };
    const std::string continuous = names(choice.continuous);
    return names(choice.categorical) + " |" + (continuous.empty() ? "" : " " + continuous);
}

} // namespace wb
