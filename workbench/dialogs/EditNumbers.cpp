#include "workbench/dialogs/EditNumbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "workbench/text/Blanks.h"

namespace wb {

namespace {

constexpr int SignificantDigits = 15;

template <typename... Args> std::string printed(const char* format, Args... args) {
    const int length = std::snprintf(nullptr, 0, format, args...);
    std::string text(static_cast<std::size_t>(length), '\0');
    std::snprintf(text.data(), text.size() + 1, format, args...);
    return text;
}

// At most 15 significant digits, no trailing zeros; exponent form below 1e-4 and from 1e15.
std::string generalText(double value) {
    return printed("%.*g", SignificantDigits, value);
}

// from_chars takes a minus sign but no plus: drops a plus, unless a minus follows it.
bool dropPlus(std::string_view& text) {
    if (text.empty() || text.front() != '+')
        return true;
    text.remove_prefix(1);
    return text.empty() || text.front() != '-';
}

template <typename Number> std::optional<Number> parsed(std::string_view text) {
    Number value{};
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (text.empty() || error != std::errc() || stop != end)
        return std::nullopt;
    return value;
}

} // namespace

std::string editNumberText(double value, int digits) {
    if (!std::isfinite(value))
        return "--";
    if (value == 0)
        return "0"; // also for -0
    const double magnitude = std::fabs(value);
    if (digits <= 0 || magnitude >= 1e15)
        return generalText(value);
    // Decimals beyond the 15th significant digit would show noise, not the value.
    const int leading = static_cast<int>(std::floor(std::log10(magnitude)));
    const int decimals = std::min(digits, SignificantDigits - 1 - leading);
    std::string text = printed("%.*f", decimals, value);
    if (text.find_first_of("123456789") == std::string::npos)
        return generalText(value); // would read as 0
    if (text.find('.') != std::string::npos) {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.')
            text.pop_back();
    }
    return text;
}

std::optional<double> readEditNumber(std::string_view text) {
    // A decimal comma becomes a point. Text that then holds two points ("1,234.5", "1,2,3")
    // is rejected by from_chars: a thousands separator is never guessed.
    std::string number(withoutOuterBlanks(text));
    std::replace(number.begin(), number.end(), ',', '.');
    std::string_view digits = number;
    if (!dropPlus(digits))
        return std::nullopt;
    const auto value = parsed<double>(digits);
    if (!value || !std::isfinite(*value))
        return std::nullopt;
    return value;
}

std::optional<short> readEditShort(std::string_view text) {
    text = withoutOuterBlanks(text);
    if (!dropPlus(text))
        return std::nullopt;
    const auto value = parsed<int>(text);
    if (!value || *value < -32768 || *value > 32767)
        return std::nullopt;
    return static_cast<short>(*value);
}

} // namespace wb
