// Text as messages show it: whole, valid UTF-8, with control characters written out.

#include "workbench/text/Utf8.h"

#include <gtest/gtest.h>

namespace {

TEST(Utf8Test, VisibleTextShowsEveryByte) {
    const struct {
        const char* what;
        std::string text;
        std::string shown;
    } cases[] = {
        {"plain and accented text stays", "Île-de-France", "Île-de-France"},
        {"a NUL no longer cuts the text short", std::string("A\0B", 3), "A\\x00B"},
        {"line ends and tabs are written out", "a\tb\r\nc", "a\\tb\\r\\nc"},
        {"escape and delete are control characters too", "\x1B[2J\x7F", "\\x1B[2J\\x7F"},
        {"a broken byte becomes the replacement character", "x\xFFy", "x\xEF\xBF\xBDy"},
        {"a character cut at the end is dropped", "ab\xC3", "ab"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(wb::visibleText(c.text), c.shown) << c.what;
}

} // namespace
