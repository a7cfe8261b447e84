#include "UserLimits.h"

#include <string>

#include "../host/framework/TextHelpers.h"

namespace {
constexpr int TooManyValues = 10011;
constexpr int NotANumber = 10012;
constexpr int NotAscending = 10013;
constexpr int NoValue = 10014;
} // namespace

ParsedLimits ParseUserLimits(std::string_view text, char listSeparator, bool ascending) {
    const std::string owned(text);
    const char separators[] = {' ', listSeparator, '\0'};
    ParsedLimits parsed;
    const char* p = owned.c_str();
    while (true) {
        while (*p == ' ' || *p == listSeparator)
            ++p;
        if (*p == '\0')
            break;
        const auto length = static_cast<int>(wstrcspn(p, separators));
        if (static_cast<int>(parsed.values.size()) >= MaxEnteredLimits)
            return {TooManyValues, {}};
        double value = 0;
        if (GetDouble(5, p, length, &value) != 0)
            return {NotANumber, {}};
        if (ascending && !parsed.values.empty() && value <= parsed.values.back())
            return {NotAscending, {}};
        parsed.values.push_back(value);
        p += length;
    }
    if (parsed.values.empty())
        return {NoValue, {}};
    return parsed;
}
