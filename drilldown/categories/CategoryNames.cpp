#include "CategoryNames.h"

#include <cmath>
#include <cstring>
#include <string>

#include "../core/CDrillDown.h"
#include "../host/framework/CAnalysisSupport.h"
#include "../host/RealNumbers.h"

namespace {

// Width of a value text in the data file's format, and of the label buffer without its
// terminator.
constexpr int ValueTextWidth = 8;

double NearestWhole(double value) {
    if (value < 0)
        return std::ceil(value - 0.5);
    if (value == 0)
        return 0.0;
    return std::floor(value + 0.5);
}

std::string Trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string::npos)
        return {};
    const auto last = text.find_last_not_of(" \t");
    return text.substr(first, last - first + 1);
}

} // namespace

short WriteRealText(double value, unsigned char flags, short a, short b, char* buffer, short c) {
    if (!RealIsValid(&value)) {
        std::memcpy(buffer, "--", 2);
        return 2;
    }
    const double size = std::fabs(value);
    if (a == b && (flags & 0x40) != 0 && size >= 0.001 && size < 1.0) {
        --b;
        flags &= static_cast<unsigned char>(~0x40);
    }
    return RealToText(value, flags, a, b, buffer, c);
}

short WriteCategoryValue(int var0, double value, int16_t* position, char* buffer) {
    if (*position < 0)
        *position = 0;
    char* target = buffer + *position;
    const double whole = NearestWhole(value);
    if (!RealEqual(whole, value) || RealGreater(std::fabs(value), 2147483648.0)) {
        *position = static_cast<int16_t>(*position + WriteRealText(value, 0x40, 8, 8, target, 14));
        return 0;
    }
    float single = static_cast<float>(value);
    if (vvlcod(0, var0 + 1, target, &single) == 0) {
        *position = static_cast<int16_t>(*position + ValueTextWidth);
        return 1;
    }
    if (IsSpecialFormatVariable(var0 + 1) == 0) {
        *position = static_cast<int16_t>(
            *position + IntToText(static_cast<long>(value), 6, ValueTextWidth, target));
        return 0;
    }
    WriteSpecialFormatVariable(var0 + 1, value, target, ValueTextWidth);
    *position = static_cast<int16_t>(*position + ValueTextWidth);
    return 0;
}

int CDrillDown::SetCategoriesName(short variable) {
    return NameValueCategories(*DrillDowns, variable);
}

int CDrillDown::SetReviewCategoriesName(short variable) {
    return NameValueCategories(*Reviews, variable);
}

int CDrillDown::NameValueCategories(DrillSet& records, short variable) {
    const auto record = LookFor(variable, &records);
    if (record == records.end())
        return 1;
    char* buffer = nullptr;
    if (AllocMem(reinterpret_cast<void**>(&buffer), ValueTextWidth + 1) != 0)
        return 0;
    for (const Categories& category : record->Categories) {
        std::memset(buffer, 0, ValueTextWidth + 1);
        int16_t position = 0;
        std::string label;
        if (WriteCategoryValue(variable - 1, category.Upper, &position, buffer) != 0) {
            // A text label: the 8 characters that end at the position, possibly a token.
            const int start = std::max(0, position - ValueTextWidth);
            label = Trimmed(std::string(buffer + start, std::strlen(buffer + start)));
            ExpandPossible8CharHash(label);
            StripFormatting(label);
        } else {
            label = buffer;
        }
        Mutable(category).Name = std::move(label);
    }
    FreeMem(buffer);
    return 1;
}
