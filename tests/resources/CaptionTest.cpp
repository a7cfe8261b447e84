// Visible text, mnemonic and icon of control captions.

#include <gtest/gtest.h>

#include <string>

#include "drilldown/resources/Caption.h"

namespace {

constexpr auto None = std::string::npos;

struct Case {
    const char* caption;
    const char* text;
    char32_t mnemonic;
    std::size_t offset;
    int iconNumber;
    char iconLetter;
    const char* why;
};

const Case Cases[] = {
    {"", "", 0, None, -1, '\0', "empty"},
    {"&OK", "OK", U'O', 0, -1, '\0', "mnemonic first"},
    {"Observations à &VM ignorées", "Observations à VM ignorées", U'V', 16, -1, '\0',
     "offset counts bytes after an accent"},
    {"&été", "été", U'é', 0, -1, '\0', "two-byte mnemonic"},
    {"&😀x", "😀x", U'😀', 0, -1, '\0', "four-byte mnemonic"},
    {"A && B", "A & B", 0, None, -1, '\0', "&& is a literal"},
    {"&& &x", "& x", U'x', 2, -1, '\0', "mark after a literal"},
    {"&a&b", "ab", U'a', 0, -1, '\0', "first mark wins"},
    {"fin &", "fin &", 0, None, -1, '\0', "trailing & marks nothing"},
    {"!373Ha&ut", "Haut", U'u', 2, 373, '\0', "offset after the icon"},
    {"!65535x", "x", 0, None, 65535, '\0', "largest icon number"},
    {"!65536x", "!65536x", 0, None, -1, '\0', "too large: text"},
    {"!abc", "!abc", 0, None, -1, '\0', "! without digits"},
    {"j&Ordre", "Ordre", U'O', 0, -1, 'j', "code letter before &"},
    {"eTables de &fréquence", "Tables de fréquence", U'f', 10, -1, 'e', "before a capital"},
    {"`O&uvrir", "Ouvrir", U'u', 1, -1, '`', "backquote code"},
    {"j", "", 0, None, -1, 'j', "icon alone"},
    {"eÉtendue", "Étendue", 0, None, -1, 'e', "before an accented capital"},
    {"ou", "ou", 0, None, -1, '\0', "a short word is no code"},
    {"dépôt", "dépôt", 0, None, -1, '\0', "before an accented small letter"},
    {"x×y", "x×y", 0, None, -1, '\0', "× is no capital"},
    {"&\xFF", "\xFF", 0xFFFD, 0, -1, '\0', "malformed byte kept, reads as U+FFFD"},
    {"&\xC3", "\xC3", 0xFFFD, 0, -1, '\0', "cut sequence"},
};

TEST(ParseCaption, Cases) {
    for (const Case& c : Cases) {
        SCOPED_TRACE(c.why);
        const CaptionParts parts = ParseCaption(c.caption);
        EXPECT_EQ(parts.Text, c.text);
        EXPECT_EQ(parts.Mnemonic, c.mnemonic);
        EXPECT_EQ(parts.MnemonicOffset, c.offset);
        EXPECT_EQ(parts.IconNumber, c.iconNumber);
        EXPECT_EQ(parts.IconLetter, c.iconLetter);
    }
}

} // namespace
