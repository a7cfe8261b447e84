#include "workbench/documents/CellText.h"

#include <algorithm>
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

namespace {

constexpr int SignificantDigits = 4;

bool exponentForm(double magnitude) {
    return magnitude >= ExponentFrom || (magnitude < ExponentBelow && magnitude != 0.0);
}

// Decimals for four significant digits, but no more than the value needs to be exact.
int decimalsNeeded(double value) {
    const double magnitude = std::fabs(value);
    if (magnitude == 0.0 || exponentForm(magnitude))
        return 0;
    int exact = 0;
    for (double scaled = magnitude; exact < Decimals; ++exact, scaled *= 10)
        if (std::fabs(scaled - std::round(scaled)) < 1e-9 * std::max(1.0, scaled))
            break;
    const int significant =
        SignificantDigits - 1 - static_cast<int>(std::floor(std::log10(magnitude)));
    return std::clamp(std::min(significant, exact), 0, Decimals);
}

} // namespace

int columnDecimals(const TableDocument& table, std::size_t column) {
    if (column >= table.columns.size() || table.columns[column].format == ColumnFormat::Whole)
        return 0;
    int decimals = 0;
    for (const TableRow& row : table.rows)
        if (column < row.cells.size())
            if (const auto* number = std::get_if<double>(&row.cells[column]);
                number != nullptr && std::isfinite(*number))
                decimals = std::max(decimals, decimalsNeeded(*number));
    return decimals;
}

std::string cellText(const TableCell& cell, ColumnFormat format, int decimals) {
    const auto* number = std::get_if<double>(&cell);
    if (number == nullptr || format == ColumnFormat::Whole || !std::isfinite(*number) ||
        exponentForm(std::fabs(*number)))
        return cellText(cell, format);
    std::string text = printed("%.*f", decimals, *number);
    if (text.find_first_not_of("-0.") == std::string::npos && text.front() == '-')
        text.erase(0, 1); // never "-0.00"
    return text;
}

std::string cellText(const TableCell& cell, ColumnFormat format) {
    if (const auto* number = std::get_if<double>(&cell))
        return numberText(*number, format);
    if (const auto* text = std::get_if<std::string>(&cell))
        return *text;
    return {};
}

std::string shortNumber(double value) {
    if (!std::isfinite(value))
        return {};
    if (std::fabs(value - std::round(value)) < 1e-9 && std::fabs(value) < 1e15)
        return numberText(std::round(value), ColumnFormat::Whole);
    char text[32];
    std::snprintf(text, sizeof text, std::fabs(value) < 0.01 ? "%.2g" : "%.2f", value);
    std::string out = text;
    if (out.find('.') != std::string::npos && out.find('e') == std::string::npos) {
        while (out.back() == '0')
            out.pop_back();
        if (out.back() == '.')
            out.pop_back();
    }
    return out;
}

} // namespace wb
