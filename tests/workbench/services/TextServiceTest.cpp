// Tokens for long strings and the removal of formatting marks.
#include <gtest/gtest.h>

#include <cctype>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "workbench/services/TextService.h"
#include "workbench/text/TokenTable.h"

namespace {

using wb::TextService;
using wb::TokenTable;

bool hasTokenForm(const std::string& text) {
    if (text.size() != 8 || text.front() != '~' || text.back() != '~')
        return false;
    for (std::size_t i = 1; i < 7; ++i)
        if (!std::isdigit(static_cast<unsigned char>(text[i])) &&
            !std::isupper(static_cast<unsigned char>(text[i])))
            return false;
    return true;
}

TEST(Tokens, ShortTextStaysAndLongTextRoundTrips) {
    TokenTable table;
    TextService text(table);
    const std::vector<std::string> originals = {
        "",                             // empty
        "12345678",                     // exactly 8 bytes
        "123456789",                    // one byte too many
        "Température moyenne de l'été", // UTF-8, kept whole
        "<b>Revenu</b> annuel",         // marks are kept in the table
    };
    for (const std::string& original : originals) {
        SCOPED_TRACE(original);
        std::string shortForm = original;
        text.Get8CharHash(shortForm);
        if (original.size() <= 8) {
            EXPECT_EQ(shortForm, original);
            continue;
        }
        EXPECT_TRUE(hasTokenForm(shortForm)) << shortForm;
        std::string back = shortForm;
        text.ExpandPossible8CharHash(back);
        EXPECT_EQ(back, original);
    }
}

TEST(Tokens, DataAndTextServicesShareTheProcessTable) {
    wb::TextService text;
    std::string viaText = "une étiquette partagée entre services";
    text.Get8CharHash(viaText);
    EXPECT_EQ(TokenTable::shared().tokenFor("une étiquette partagée entre services"), viaText);
}

// Tokens expanded where they stand alone (Expand), inside text (Grow), or in a field of fixed
// width (Fixed); and the host's formatting marks removed (Strip).
TEST(TextService, ExpandsTokensAndStripsMarks) {
    TokenTable table;
    TextService text(table);
    const std::string token = table.tokenFor("Chiffre d'affaires");
    const std::string a = table.tokenFor("Région administrative");
    const std::string b = table.tokenFor("aÉÉÉÉÉ long"); // 'É' is two bytes
    const std::string nested = table.tokenFor("Fréquences de " + a + " : long");
    enum Op { Expand, Grow, Fixed, Strip };
    const struct {
        Op op;
        std::string input, expected;
        const char* comment;
    } rows[] = {
        {Expand, token, "Chiffre d'affaires", "the token alone"},
        {Expand, "  " + token + " ", "Chiffre d'affaires", "blanks around it"},
        {Expand, "~ZZZZZZ~", "~ZZZZZZ~", "token form but never registered"},
        {Expand, "~000000~", "~000000~", "number 0 is no token"},
        {Expand, "x" + token, "x" + token, "more than the token"},
        {Grow, "V=" + a + " (x)", "V=Région administrative (x)", "one token inside text"},
        {Grow, "~" + a + b, "~Région administrativeaÉÉÉÉÉ long", "stray tilde, two tokens"},
        {Grow, "~ZZZZZZ~" + a, "~ZZZZZZ~Région administrative", "unknown token left alone"},
        {Fixed, "[" + a + "]", "[Région ]", "fixed width: first 8 bytes, 'é' is two"},
        {Fixed, "[" + b + "]", "[aÉÉÉ ]", "fixed width: no character cut in two"},
        {Grow, a.substr(0, 7), a.substr(0, 7), "a cut token is no token"},
        {Grow, nested, "Fréquences de Région administrative : long", "a token inside a token"},
        {Strip, "<b>Âge</b>", "Âge", "bold"},
        {Strip, "x<SUP>2</SUP> + H<sub>2</sub>O", "x2 + H2O", "super- and subscript, any case"},
        {Strip, "<I><u>a</U></i>", "a", "italic and underline, nested"},
        {Strip, "a < b > c", "a < b > c", "comparison signs stay"},
        {Strip, "<br>x<bold>", "<br>x<bold>", "other tags stay"},
        {Strip, "<b", "<b", "an unclosed mark stays"},
        {Strip, "<<b>>", "<>", "a mark inside angle brackets"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.comment);
        std::string value = row.input;
        if (row.op == Expand)
            text.ExpandPossible8CharHash(value);
        else if (row.op == Strip)
            text.StripFormatting(value);
        else
            text.Replace8CharGrow(value, row.op == Grow);
        EXPECT_EQ(value, row.expected);
    }
}

TEST(Tokens, OneTokenPerStringEvenWhenRegisteredConcurrently) {
    TokenTable table;
    std::vector<std::vector<std::string>> seen(4);
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < seen.size(); ++t)
        threads.emplace_back([&table, &seen, t] {
            for (int i = 0; i < 200; ++i)
                seen[t].push_back(table.tokenFor("chaîne numéro " + std::to_string(i)));
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(table.size(), 200u);
    EXPECT_EQ(std::set<std::string>(seen[0].begin(), seen[0].end()).size(), 200u)
        << "different strings, different tokens";
    for (std::size_t t = 1; t < seen.size(); ++t)
        EXPECT_EQ(seen[t], seen[0]) << "the same string, the same token";
}

} // namespace
