#pragma once
// Numbers as text for labels and table cells of fixed width.
//
// realToText writes a double into a field of n = min(width, limit) characters. The format
// byte combines RealFormat bits:
//   Significant (0x40)  `digits` is the number of significant digits; the value is first
//                       rounded to them. Without it `digits` is the number of decimals.
//   FixedPoint  (0x04)  trailing zeros of the fraction are removed but the decimal point
//                       stays (5 -> "5.", 2.50 -> "2.5"). Without it a trailing point goes
//                       too (5 -> "5", 2.50 -> "2.5").
//   PadRight    (0x80)  blanks on the right up to n characters.
// Other bits are ignored. When the text does not fit into n characters decimals are
// dropped first; the exponent form ("1.23e+15", "-1.2e-07", mantissa zeros removed) is
// taken instead when it keeps more of the wanted digits than the fixed form that fits. A
// non-zero value is never written as "0": when it rounds to zero at the requested
// decimals it takes the exponent form. A value that fits in neither form is n '#'.
// Zero is never written with a sign. A value that is not finite is written "--".
// The result is the number of characters written, padding included; a terminator follows
// them, so the caller's buffer holds n + 1 bytes.
//
// intToText writes a whole number as its digits, with '-' for negatives, left-aligned and
// unpadded; a number with more than `width` characters is written in the exponent form
// that fits.

namespace wb {

struct RealFormat {
    static constexpr unsigned char FixedPoint = 0x04;
    static constexpr unsigned char Significant = 0x40;
    static constexpr unsigned char PadRight = 0x80;
};

int realToText(double value, unsigned char format, int width, int digits, char* text, int limit);
int intToText(long value, int width, char* text);

} // namespace wb
