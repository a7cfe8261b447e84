#include "ResultText.h"

#include <cstdarg>
#include <cstdio>
#include <vector>

#include "../host/framework/CAnalysisSupport.h"

std::string FormatText(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    va_list copy;
    va_copy(copy, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, copy);
    va_end(copy);
    std::vector<char> buffer(static_cast<std::size_t>(length) + 1);
    std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
    va_end(arguments);
    return std::string(buffer.data(), length);
}

std::string TrimmedNumber(double value) {
    std::string text = FormatText("%f", value);
    while (!text.empty() && text.back() == '0')
        text.pop_back();
    while (!text.empty() && text.back() == '.')
        text.pop_back();
    return text;
}

std::string RawShortName(CAnalysisSupport& host, int variable) {
    char buffer[9] = {};
    host.getvn5(variable, buffer);
    return buffer;
}

std::string ShortName(CAnalysisSupport& host, int variable) {
    std::string name = RawShortName(host, variable);
    const auto first = name.find_first_not_of(' ');
    name = first == std::string::npos ? std::string()
                                      : name.substr(first, name.find_last_not_of(' ') - first + 1);
    host.ExpandPossible8CharHash(name);
    return name;
}

std::string VariableLabel(CAnalysisSupport& host, int variable, const char* separator) {
    std::string label = ShortName(host, variable);
    char longName[128] = {};
    host.WriteVarLongName(longName, variable);
    if (longName[0] != '\0')
        label += separator + std::string(longName);
    return label;
}
