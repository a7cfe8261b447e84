#include "workbench/services/TextService.h"

#include <array>
#include <cctype>
#include <string_view>

#include "workbench/text/NeatScale.h"
#include "workbench/text/NumberText.h"

namespace wb {

namespace {

// The length of the formatting mark that starts at `pos`, 0 when there is none.
std::size_t markLength(std::string_view text, std::size_t pos) {
    static constexpr std::array<std::string_view, 5> Names = {"b", "i", "u", "sub", "sup"};
    std::size_t nameStart = pos + 1;
    if (nameStart < text.size() && text[nameStart] == '/')
        ++nameStart;
    for (const std::string_view name : Names) {
        const std::size_t close = nameStart + name.size();
        if (close >= text.size() || text[close] != '>')
            continue;
        bool same = true;
        for (std::size_t i = 0; i < name.size() && same; ++i)
            same = std::tolower(static_cast<unsigned char>(text[nameStart + i])) == name[i];
        if (same)
            return close + 1 - pos;
    }
    return 0;
}

} // namespace

std::string stripFormatting(const std::string& text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t pos = 0; pos < text.size();) {
        const std::size_t mark = text[pos] == '<' ? markLength(text, pos) : 0;
        if (mark > 0) {
            pos += mark;
            continue;
        }
        out += text[pos++];
    }
    return out;
}

void TextService::Get8CharHash(std::string& text) {
    text = m_tokens.shortForm(text);
}

void TextService::ExpandPossible8CharHash(std::string& text) {
    text = m_tokens.expand(text);
}

void TextService::Replace8CharGrow(std::string& text, bool grow) {
    text = m_tokens.replaceAll(text, grow);
}

void TextService::StripFormatting(std::string& text) {
    text = stripFormatting(text);
}

short TextService::RealToText(double value, unsigned char format, short width, short digits,
                              char* text, short limit) {
    return static_cast<short>(realToText(value, format, width, digits, text, limit));
}

short TextService::IntToText(long value, unsigned char, short width, char* text) {
    return static_cast<short>(intToText(value, width, text));
}

void TextService::scling_double_QUA(double* lo, double* hi, double* step, short, short wanted) {
    if (lo == nullptr || hi == nullptr || step == nullptr)
        return;
    const Scale scale = neatScale(*lo, *hi, wanted);
    *lo = scale.lo;
    *hi = scale.hi;
    *step = scale.step;
}

} // namespace wb
