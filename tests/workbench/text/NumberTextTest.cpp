// Number text of fixed width: the layouts of the module's labels and their limits.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>

#include "workbench/services/TextService.h"
#include "workbench/text/NumberText.h"

namespace {

using wb::realToText;

// The callers' three forms: interval limits (0x84, 8, 8, limit 14), category values with
// significant digits (0x40, 8, 8) and with decimals (0x00, 8, 7).
const struct {
    double value;
    unsigned char format;
    int width;
    int digits;
    int limit;
    const char* expected;
    const char* comment;
} RealRows[] = {
    {0.25, 0x84, 8, 8, 14, "0.25    ", "limit: zeros cut, padded to 8"},
    {5.0, 0x84, 8, 8, 14, "5.      ", "limit: the point stays in fixed form"},
    {1234567.5, 0x84, 8, 8, 14, "1234568.", "limit: decimals dropped to fit"},
    {12345678.9, 0x84, 8, 8, 14, "12345679", "limit: the point dropped when nothing else fits"},
    {123456789.0, 0x84, 8, 8, 14, "1.23e+08", "limit: integer too wide, exponent form"},
    {1e-9, 0x84, 8, 8, 14, "1e-09   ", "limit: rounds to zero at 8 decimals, so exponent"},
    {-1e-12, 0x84, 8, 8, 14, "-1e-12  ", "limit: never a signed or unsigned 0 for non-zero"},
    {1.25, 0x40, 8, 8, 14, "1.25", "significant: trailing zeros and no padding"},
    {3.14159265358, 0x40, 8, 8, 14, "3.141593", "significant: cut to 8 characters"},
    {-1.234e-7, 0x40, 8, 8, 14, "-1.2e-07", "significant: tiny, exponent keeps more digits"},
    {0.0001234, 0x40, 8, 8, 14, "0.000123", "significant: fixed keeps as many as exponent"},
    {99999999.6, 0x40, 8, 8, 14, "1e+08", "significant: rounding to 8 digits carries over"},
    {123456789.0, 0x40, 14, 8, 14, "123456790", "significant: rounded to 8 digits in fixed form"},
    {9.9999999, 0x40, 8, 8, 14, "10", "significant: carry into a new digit"},
    {1e300, 0x40, 8, 8, 14, "1e+300", "significant: three-digit exponent"},
    {0.25, 0x00, 8, 7, 14, "0.25", "decimals: the category-value form"},
    {-0.0, 0x00, 8, 7, 14, "0", "decimals: never -0"},
    {-0.00000001, 0x00, 8, 7, 14, "-1e-08", "decimals: non-zero below the last decimal"},
    {0.0001, 0x00, 8, 2, 14, "1e-04", "decimals: 2 decimals would show 0"},
    {0.126, 0x00, 8, 2, 14, "0.13", "decimals: rounded to the decimals asked"},
    {12345.0, 0x00, 3, 2, 14, "###", "nothing fits into 3"},
    {5.0, 0x04, 1, 8, 14, "5", "fixed form: the point goes when it cannot fit"},
    {2.5, 0x84, 14, 8, 4, "2.5 ", "the limit narrows the field below the width"},
    {2.5, 0x84, 0, 8, 14, "", "no room at all"},
    {std::nan(""), 0x80, 8, 8, 14, "--      ", "not a number"},
};

TEST(RealToText, WritesTheDocumentedLayouts) {
    for (const auto& row : RealRows) {
        SCOPED_TRACE(row.comment);
        char text[64];
        std::memset(text, 'x', sizeof text);
        const int written =
            realToText(row.value, row.format, row.width, row.digits, text, row.limit);
        EXPECT_STREQ(text, row.expected);
        EXPECT_EQ(written, static_cast<int>(std::strlen(row.expected)));
    }
}

// Whatever the value, the text never exceeds n characters and its terminator stays in
// the caller's n + 1 bytes, and a non-zero value never reads as zero.
TEST(RealToText, NeverExceedsTheFieldAndNeverShowsZeroForNonZero) {
    const double values[] = {1e-300,    -7.77e-15,   0.5,   -0.049,         1.0,
                             99.999999, -123456.789, 4.2e9, -9.87654321e17, 1.7976931348623157e308};
    for (const int n : {1, 2, 5, 6, 8, 14}) {
        for (const double value : values) {
            for (const unsigned char format : {0x00, 0x04, 0x40, 0x84, 0xC4}) {
                SCOPED_TRACE(testing::Message()
                             << value << " n=" << n << " format=" << int(format));
                char text[16];
                std::memset(text, 'x', sizeof text);
                const int written = realToText(value, format, n, 8, text, 14);
                ASSERT_LE(written, n);
                EXPECT_EQ(text[written], '\0');
                EXPECT_EQ(text[n + 1], 'x');
                const std::string shown(text);
                if (shown.find('#') == std::string::npos) {
                    EXPECT_NE(std::strtod(text, nullptr), 0.0) << shown;
                }
            }
        }
    }
}

const struct {
    long value;
    short width;
    const char* expected;
    const char* comment;
} IntRows[] = {
    {42, 8, "42", "left-aligned, no padding"},
    {12345678, 8, "12345678", "exactly the width"},
    {-1234567, 8, "-1234567", "the sign counts"},
    {123456789, 8, "1.23e+08", "too wide: exponent form"},
    {-12345678, 8, "-1.2e+07", "negative, too wide"},
    {7, 0, "", "no room"},
};

TEST(IntToText, WritesDigitsOrAnExponentThatFits) {
    wb::TextService service;
    for (const auto& row : IntRows) {
        SCOPED_TRACE(row.comment);
        char text[16];
        std::memset(text, 'x', sizeof text);
        // 6 is the format the module passes; it does not change the layout.
        const short written = service.IntToText(row.value, 6, row.width, text);
        EXPECT_STREQ(text, row.expected);
        EXPECT_EQ(written, static_cast<short>(std::strlen(row.expected)));
    }
}

} // namespace
