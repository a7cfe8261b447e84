#include "TextHelpers.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstring>
#include <locale>
#include <stdexcept>
#include <system_error>

namespace {

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v';
}
bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsLineEnd(char c) {
    return c == '\r' || c == '\n';
}
// A character that may go on a word: ASCII letters and digits, '_' and any byte of a
// non-ASCII UTF-8 character.
bool IsWordChar(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return IsDigit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' ||
           byte >= 0x80;
}

// Length of the numeric literal at the start of text (sign, digits, fraction, exponent),
// with `point` as decimal point; 0 when there is none.
std::size_t NumberLength(std::string_view text, char point) {
    std::size_t i = 0;
    if (i < text.size() && (text[i] == '+' || text[i] == '-'))
        ++i;
    std::size_t digits = 0;
    while (i < text.size() && IsDigit(text[i])) {
        ++i;
        ++digits;
    }
    if (i < text.size() && text[i] == point) {
        ++i;
        while (i < text.size() && IsDigit(text[i])) {
            ++i;
            ++digits;
        }
    }
    if (digits == 0)
        return 0;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        std::size_t j = i + 1;
        if (j < text.size() && (text[j] == '+' || text[j] == '-'))
            ++j;
        if (j < text.size() && IsDigit(text[j])) {
            while (j < text.size() && IsDigit(text[j]))
                ++j;
            i = j;
        }
    }
    return i;
}

// The value of a literal that NumberLength accepted with '.' as point; false when it is
// out of the range of double.
bool ParseLiteral(std::string_view literal, double* value) {
    if (!literal.empty() && literal.front() == '+')
        literal.remove_prefix(1); // from_chars takes no plus sign
    double parsed = 0;
    const auto [end, error] = std::from_chars(literal.data(), literal.data() + literal.size(),
                                              parsed, std::chars_format::general);
    if (error != std::errc() || end != literal.data() + literal.size())
        return false;
    *value = parsed;
    return true;
}

void AppendNumber(std::string& text, double value) {
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    text.append(buffer, result.ptr);
}

void AppendNumber(std::string& text, LONG value) {
    char buffer[16];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    text.append(buffer, result.ptr);
}

bool AppendItems(const VARIANT& value, std::string& text) {
    std::string item;
    switch (value.vt) {
    case VT_EMPTY:
    case VT_NULL:
        return true;
    case VT_I4:
        AppendNumber(item, value.lVal);
        break;
    case VT_R8:
        AppendNumber(item, value.dblVal);
        break;
    case VT_BOOL:
        item = value.boolVal != VARIANT_FALSE ? "1" : "0";
        break;
    case VT_BSTR:
        item = BstrView(value.bstrVal);
        break;
    case VT_ARRAY | VT_VARIANT:
        if (value.parray != nullptr)
            for (const VARIANT& element : value.parray->Items)
                if (!AppendItems(element, text))
                    return false;
        return true;
    default:
        return false;
    }
    if (item.empty())
        return true;
    if (!text.empty())
        text += ' ';
    text += item;
    return true;
}

} // namespace

CLittleParser::CLittleParser(int, const char* text, const char*, int)
    : m_text(text != nullptr ? text : "") {}

unsigned char CLittleParser::GetSymbol() {
    while (m_pos < m_text.size() && IsBlank(m_text[m_pos]))
        ++m_pos;
    if (m_pos >= m_text.size())
        return SymEnd;
    const char c = m_text[m_pos];
    if (c == '"' || c == '\'') {
        if (readQuoted())
            return SymString;
        ++m_pos;
        return static_cast<unsigned char>(c);
    }
    if (readNumber())
        return SymNumber;
    if (IsWordChar(c)) {
        readWord();
        return SymWord;
    }
    ++m_pos;
    return static_cast<unsigned char>(c);
}

long CLittleParser::GetLastNumber() const {
    if (std::isnan(m_number))
        return 0;
    if (m_number >= static_cast<double>(LONG_MAX))
        return LONG_MAX;
    if (m_number <= static_cast<double>(LONG_MIN))
        return LONG_MIN;
    return static_cast<long>(m_number);
}

bool CLittleParser::readNumber() {
    const std::string_view rest = std::string_view(m_text).substr(m_pos);
    const std::size_t length = NumberLength(rest, '.');
    if (length == 0)
        return false;
    // A literal glued to a word ("3x", "2nd") is part of that word.
    if (length < rest.size() && IsWordChar(rest[length]))
        return false;
    double value = 0;
    if (!ParseLiteral(rest.substr(0, length), &value))
        return false;
    m_number = value;
    m_pos += length;
    return true;
}

void CLittleParser::readWord() {
    std::size_t end = m_pos;
    while (end < m_text.size() && !IsLineEnd(m_text[end]))
        ++end;
    std::size_t last = end;
    while (last > m_pos && IsBlank(m_text[last - 1]))
        --last;
    m_textVal.assign(m_text, m_pos, last - m_pos);
    m_pos = end;
}

bool CLittleParser::readQuoted() {
    const char quote = m_text[m_pos];
    std::string value;
    for (std::size_t i = m_pos + 1; i < m_text.size(); ++i) {
        if (m_text[i] != quote) {
            value += m_text[i];
            continue;
        }
        if (i + 1 < m_text.size() && m_text[i + 1] == quote) {
            value += quote;
            ++i;
            continue;
        }
        m_textVal = std::move(value);
        m_pos = i + 1;
        return true;
    }
    return false;
}

int ReadNumberText(std::string_view text, char decimalSeparator, double* value) {
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    // Try '.' first; then the user's separator, read as a '.'.
    std::size_t length = NumberLength(text, '.');
    std::string literal(text.substr(0, length));
    if (length != text.size() && decimalSeparator != '.') {
        length = NumberLength(text, decimalSeparator);
        literal.assign(text.substr(0, length));
        const std::size_t point = literal.find(decimalSeparator);
        if (point != std::string::npos)
            literal[point] = '.';
    }
    if (length == 0 || length != text.size())
        return 1;
    return ParseLiteral(literal, value) ? 0 : 1;
}

int GetDouble(int, const char* text, int length, double* value) {
    if (text == nullptr || value == nullptr || length < 0)
        return 1;
    return ReadNumberText(std::string_view(text, static_cast<std::size_t>(length)),
                          UserDecimalSeparator(), value);
}

char UserDecimalSeparator() {
    static const char separator = [] {
        try {
            const char point = std::use_facet<std::numpunct<char>>(std::locale("")).decimal_point();
            return point != '\0' ? point : '.';
        } catch (const std::runtime_error&) {
            return '.'; // the environment names a locale that is not installed
        }
    }();
    return separator;
}

char ListSeparatorFor(char decimalSeparator) {
    return decimalSeparator == ',' ? ';' : ',';
}

char GetListSep() {
    return ListSeparatorFor(UserDecimalSeparator());
}

std::size_t wstrcspn(const char* text, const char* stops) {
    if (text == nullptr)
        return 0;
    if (stops == nullptr)
        return std::strlen(text);
    // Bytes of the UTF-8 character that starts with `lead`.
    const auto width = [](char lead) -> std::size_t {
        const auto byte = static_cast<unsigned char>(lead);
        if (byte >= 0xF0)
            return 4;
        if (byte >= 0xE0)
            return 3;
        if (byte >= 0xC0)
            return 2;
        return 1;
    };
    const std::string_view all(text);
    const std::string_view stopSet(stops);
    std::size_t i = 0;
    while (i < all.size()) {
        const std::size_t size = std::min(width(all[i]), all.size() - i);
        const std::string_view character = all.substr(i, size);
        for (std::size_t s = 0; s < stopSet.size();) {
            const std::size_t stopSize = std::min(width(stopSet[s]), stopSet.size() - s);
            if (stopSet.substr(s, stopSize) == character)
                return i;
            s += stopSize;
        }
        i += size;
    }
    return i;
}

bool VariantToTextList(const VARIANT& value, std::string& text) {
    text.clear();
    if (!AppendItems(value, text)) {
        text.clear();
        return false;
    }
    return true;
}
