#include "workbench/text/NumberText.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace wb {

namespace {

// More than a double ever carries; also bounds the work of the fitting loops.
constexpr int MaxSignificant = 17;
// Beyond this many decimals every double rounds the same way.
constexpr int MaxDecimals = 340;

std::string fixedText(double value, int decimals) {
    const int size = std::snprintf(nullptr, 0, "%.*f", decimals, value);
    std::string out(static_cast<std::size_t>(size), '\0');
    std::snprintf(out.data(), out.size() + 1, "%.*f", decimals, value);
    return out;
}

std::string exponentText(double value, int mantissaDecimals) {
    const int size = std::snprintf(nullptr, 0, "%.*e", mantissaDecimals, value);
    std::string out(static_cast<std::size_t>(size), '\0');
    std::snprintf(out.data(), out.size() + 1, "%.*e", mantissaDecimals, value);
    return out;
}

// Digits from the first non-zero one on: how much of the value a text carries.
int significantDigits(const std::string& text) {
    int count = 0;
    bool started = false;
    for (const char c : text) {
        if (c < '0' || c > '9')
            continue;
        started = started || c != '0';
        count += started ? 1 : 0;
    }
    return count;
}

void trimFraction(std::string& text, bool keepPoint) {
    if (text.find('.') == std::string::npos) {
        if (keepPoint)
            text += '.';
        return;
    }
    while (text.back() == '0')
        text.pop_back();
    if (text.back() == '.' && !keepPoint)
        text.pop_back();
}

void dropNegativeZero(std::string& text) {
    if (text.front() == '-' && text.find_first_of("123456789") == std::string::npos)
        text.erase(0, 1);
}

struct Candidate {
    std::string text;
    int precision = -1; // significant digits carried; -1: none fits
};

Candidate fittingFixed(double value, int decimals, bool keepPoint, int n) {
    for (int d = decimals; d >= 0; --d) {
        const std::string raw = fixedText(value, d);
        std::string text = raw;
        trimFraction(text, keepPoint);
        dropNegativeZero(text);
        // A whole number one character too wide can still do without its point.
        if (keepPoint && d == 0 && static_cast<int>(text.size()) == n + 1 && text.back() == '.')
            text.pop_back();
        if (static_cast<int>(text.size()) > n)
            continue;
        // A non-zero value rounded away entirely must not read as zero; fewer decimals
        // would not bring it back.
        const int precision = significantDigits(raw);
        if (precision == 0)
            return {};
        return {text, precision};
    }
    return {};
}

Candidate fittingExponent(double value, int digits, int n) {
    for (int m = digits - 1; m >= 0; --m) {
        std::string text = exponentText(value, m);
        const std::size_t e = text.find('e');
        std::string mantissa = text.substr(0, e);
        trimFraction(mantissa, false);
        text = mantissa + text.substr(e);
        if (static_cast<int>(text.size()) <= n)
            return {text, m + 1};
    }
    return {};
}

// The text of a finite non-zero value, at most n characters, or empty when none fits.
std::string numberText(double value, unsigned char format, int digits, int n) {
    const bool keepPoint = (format & RealFormat::FixedPoint) != 0;
    int decimals = 0;
    int wanted = 0;
    if ((format & RealFormat::Significant) != 0) {
        wanted = std::clamp(digits, 1, MaxSignificant);
        const std::string rounded = exponentText(value, wanted - 1);
        value = std::strtod(rounded.c_str(), nullptr);
        const int exponent = std::atoi(rounded.c_str() + rounded.find('e') + 1);
        decimals = std::clamp(wanted - 1 - exponent, 0, MaxDecimals);
    } else {
        decimals = std::clamp(digits, 0, MaxDecimals);
        wanted = std::clamp(significantDigits(fixedText(value, decimals)), 1, MaxSignificant);
    }
    const Candidate fixed = fittingFixed(value, decimals, keepPoint, n);
    const Candidate exponent = fittingExponent(value, wanted, n);
    if (fixed.precision < 0 && exponent.precision < 0)
        return {};
    // Prefer the plain form unless the exponent form keeps more of the digits asked for.
    if (fixed.precision >= 0 &&
        std::min(fixed.precision, wanted) >= std::min(exponent.precision, wanted))
        return fixed.text;
    return exponent.text;
}

int finish(std::string text, unsigned char format, int n, char* out) {
    if (static_cast<int>(text.size()) > n)
        text.resize(static_cast<std::size_t>(n));
    if ((format & RealFormat::PadRight) != 0)
        text.resize(static_cast<std::size_t>(n), ' ');
    std::memcpy(out, text.data(), text.size());
    out[text.size()] = '\0';
    return static_cast<int>(text.size());
}

} // namespace

int realToText(double value, unsigned char format, int width, int digits, char* text, int limit) {
    if (text == nullptr)
        return 0;
    const int n = std::min(width, limit);
    if (n <= 0) {
        text[0] = '\0';
        return 0;
    }
    if (!std::isfinite(value))
        return finish("--", format, n, text);
    if (value == 0.0) {
        std::string zero = (format & RealFormat::FixedPoint) != 0 ? "0." : "0";
        return finish(static_cast<int>(zero.size()) <= n ? zero : "0", format, n, text);
    }
    std::string number = numberText(value, format, digits, n);
    if (number.empty())
        number.assign(static_cast<std::size_t>(n), '#');
    return finish(std::move(number), format, n, text);
}

int intToText(long value, int width, char* text) {
    if (text == nullptr)
        return 0;
    if (width <= 0) {
        text[0] = '\0';
        return 0;
    }
    const std::string digits = std::to_string(value);
    if (static_cast<int>(digits.size()) <= width)
        return finish(digits, 0, width, text);
    return realToText(static_cast<double>(value), RealFormat::Significant, width, MaxSignificant,
                      text, width);
}

} // namespace wb
