#pragma once
// Numbers as the edit controls of the dialog host show and read them.
//
//   - editNumberText shows at most 15 significant digits and no trailing zeros; a positive
//     `digits` caps the decimals. Values from 1e15 on, those below 1e-4 when there is no
//     cap, and those that the cap would round to 0 take the exponent form. A value that is
//     not finite shows as "--".
//   - readEditNumber reads the C locale's form, or the same with a decimal comma instead of
//     the point, blanks around allowed: "2.5", " 2,5 ", "-1e-3". Text with both a point and
//     a comma, more than one comma, or that is not finite is no number.
//   - readEditShort reads an optional sign and decimal digits, blanks around allowed, with a
//     value from -32768 to 32767.

#include <optional>
#include <string>
#include <string_view>

namespace wb {

std::string editNumberText(double value, int digits);
std::optional<double> readEditNumber(std::string_view text);
std::optional<short> readEditShort(std::string_view text);

} // namespace wb
