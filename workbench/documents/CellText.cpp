#include "workbench/documents/CellText.h"

#include <cmath>
#include <cstdio>

namespace wb {

namespace {

constexpr double ExponentFrom = 1e15;
constexpr double ExponentBelow = 1e-6;
constexpr int Decimals = 6;

std::string printed(const char* format, int precision, double value) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, format, precision, value);
    return buffer;
}

void dropTrailingZeros(std::string& text) {
    if (text.find('.') == std::string::npos)
        return;
    while (text.back() == '0')
        text.pop_back();
    if (text.back() == '.')
        text.pop_back();
}

} // namespace

std::string numberText(double value, ColumnFormat format) {
    if (!std::isfinite(value))
        return {};
    const double magnitude = std::fabs(value);
    if (magnitude >= ExponentFrom || (magnitude < ExponentBelow && format != ColumnFormat::Whole))
        return magnitude == 0.0 ? "0" : printed("%.*g", Decimals, value);
    if (format == ColumnFormat::Whole)
        return std::to_string(std::llround(value)); // llround(-0.2) is 0: no "-0"
    if (magnitude == 0.0)
        return "0";
    int decimals = Decimals;
    if (magnitude < 1.0) // 0.000125: floor(log10) is -4, so three more decimals
        decimals += -static_cast<int>(std::floor(std::log10(magnitude))) - 1;
    std::string text = printed("%.*f", decimals, value);
    dropTrailingZeros(text);
    return text;
}

std::string cellText(const TableCell& cell, ColumnFormat format) {
    if (const auto* number = std::get_if<double>(&cell))
        return numberText(*number, format);
    if (const auto* text = std::get_if<std::string>(&cell))
        return *text;
    return {};
}

} // namespace wb
