#include "workbench/data/CsvDialect.h"

#include <array>

#include "workbench/text/Utf8.h"

namespace wb {

namespace {

constexpr char Separators[] = {',', ';', '\t'};
// The first lines are enough to tell how numbers are written.
constexpr std::size_t SampledLines = 200;

// Visits the fields of the line at `at`, cut at `separator` outside quotes; `at` becomes the
// offset after the line's break.
template <typename Visit>
void forEachField(std::string_view text, std::size_t& at, char separator, Visit visit) {
    std::size_t start = at;
    bool quoted = false;
    for (; at < text.size(); ++at) {
        const char c = text[at];
        if (c == '"')
            quoted = !quoted;
        else if (!quoted && (c == separator || c == '\n' || c == '\r')) {
            visit(text.substr(start, at - start));
            if (c != separator) {
                at += c == '\r' && at + 1 < text.size() && text[at + 1] == '\n' ? 2 : 1;
                return;
            }
            start = at + 1;
        }
    }
    visit(text.substr(start));
}

std::size_t firstLineStart(std::string_view text) {
    std::size_t at = 0;
    while (at < text.size() && (text[at] == '\n' || text[at] == '\r'))
        ++at;
    return at;
}

char guessSeparator(std::string_view text) {
    char best = ',';
    std::size_t most = 1;
    for (const char separator : Separators) {
        std::size_t at = firstLineStart(text), fields = 0;
        forEachField(text, at, separator, [&](std::string_view) { ++fields; });
        if (fields > most) {
            most = fields;
            best = separator;
        }
    }
    return best;
}

// Digits, one mark, digits: "3,5", "-0,25".
bool decimalWith(std::string_view field, char mark) {
    while (!field.empty() && (field.front() == ' ' || field.front() == '"'))
        field.remove_prefix(1);
    while (!field.empty() && (field.back() == ' ' || field.back() == '"'))
        field.remove_suffix(1);
    if (!field.empty() && (field.front() == '-' || field.front() == '+'))
        field.remove_prefix(1);
    const std::size_t at = field.find(mark);
    if (at == std::string_view::npos || at + 1 == field.size())
        return false;
    for (std::size_t i = 0; i < field.size(); ++i)
        if (i != at && (field[i] < '0' || field[i] > '9'))
            return false;
    return true;
}

char guessDecimal(std::string_view text, char separator) {
    if (separator == ',')
        return '.';
    std::size_t commas = 0, points = 0;
    std::size_t at = firstLineStart(text);
    for (std::size_t line = 0; line < SampledLines && at < text.size(); ++line)
        forEachField(text, at, separator, [&](std::string_view field) {
            commas += decimalWith(field, ',');
            points += decimalWith(field, '.');
        });
    return commas > points ? ',' : '.';
}

// Windows-1252's characters for 0x80 to 0x9F; 0 where it defines none.
constexpr std::array<char32_t, 32> Windows1252High = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

void appendUtf8(std::string& out, char32_t code) {
    if (code < 0x80) {
        out += char(code);
    } else if (code < 0x800) {
        out += char(0xC0 | (code >> 6));
        out += char(0x80 | (code & 0x3F));
    } else {
        out += char(0xE0 | (code >> 12));
        out += char(0x80 | ((code >> 6) & 0x3F));
        out += char(0x80 | (code & 0x3F));
    }
}

} // namespace

CsvDialect guessCsvDialect(std::string_view text) {
    CsvDialect dialect;
    dialect.separator = guessSeparator(text);
    dialect.decimal = guessDecimal(text, dialect.separator);
    dialect.encoding = isValidUtf8(text) ? TextEncoding::Utf8 : TextEncoding::Windows1252;
    return dialect;
}

std::string toUtf8(std::string_view text, TextEncoding encoding) {
    if (encoding == TextEncoding::Utf8)
        return std::string(text);
    std::string out;
    out.reserve(text.size() + text.size() / 8);
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        char32_t code = byte;
        if (encoding == TextEncoding::Windows1252 && byte >= 0x80 && byte < 0xA0 &&
            Windows1252High[byte - 0x80] != 0)
            code = Windows1252High[byte - 0x80];
        appendUtf8(out, code);
    }
    return out;
}

bool separatorNamed(std::string_view word, char& separator) {
    for (const char candidate : Separators)
        if (word == std::string_view(&candidate, 1)) {
            separator = candidate;
            return true;
        }
    return false;
}

bool decimalNamed(std::string_view word, char& decimal) {
    if (word != "." && word != ",")
        return false;
    decimal = word[0];
    return true;
}

bool encodingNamed(std::string_view word, TextEncoding& encoding) {
    constexpr std::pair<std::string_view, TextEncoding> Names[] = {
        {"UTF-8", TextEncoding::Utf8},
        {"Windows-1252", TextEncoding::Windows1252},
        {"Latin-1", TextEncoding::Latin1}};
    for (const auto& [name, value] : Names)
        if (word == name) {
            encoding = value;
            return true;
        }
    return false;
}

} // namespace wb
