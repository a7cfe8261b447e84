#include "Caption.h"

#include <cstdint>

namespace {

constexpr char32_t ReplacementCharacter = 0xFFFD;
constexpr int LargestIconNumber = 65535; // icons are resources, numbered in 16 bits

// The code point that starts at text[at], and its length in bytes. A malformed or cut
// sequence reads as U+FFFD of one byte, so that the caller moves on by one byte.
char32_t DecodeUtf8(std::string_view text, std::size_t at, std::size_t& length) {
    const auto lead = static_cast<std::uint8_t>(text[at]);
    length = 1;
    if (lead < 0x80)
        return lead;
    std::size_t count = 0;
    char32_t value = 0;
    char32_t smallest = 0; // below it the sequence is overlong
    if ((lead & 0xE0) == 0xC0) {
        count = 2, value = lead & 0x1F, smallest = 0x80;
    } else if ((lead & 0xF0) == 0xE0) {
        count = 3, value = lead & 0x0F, smallest = 0x800;
    } else if ((lead & 0xF8) == 0xF0) {
        count = 4, value = lead & 0x07, smallest = 0x10000;
    } else {
        return ReplacementCharacter;
    }
    if (at + count > text.size())
        return ReplacementCharacter;
    for (std::size_t i = 1; i < count; ++i) {
        const auto next = static_cast<std::uint8_t>(text[at + i]);
        if ((next & 0xC0) != 0x80)
            return ReplacementCharacter;
        value = (value << 6) | (next & 0x3F);
    }
    if (value < smallest || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF))
        return ReplacementCharacter;
    length = count;
    return value;
}

bool IsIconLetter(char c) {
    return (c >= 'a' && c <= 'z') || c == '`';
}

// Whether what follows a would-be icon letter lets it be one: the end, a mnemonic mark or
// the capital that starts the real text.
bool EndsIconLetter(std::string_view rest) {
    if (rest.empty() || rest[0] == '&' || (rest[0] >= 'A' && rest[0] <= 'Z'))
        return true;
    std::size_t length = 0;
    const char32_t next = DecodeUtf8(rest, 0, length);
    return next >= 0xC0 && next <= 0xDE && next != 0xD7; // À to Þ without ×
}

// Takes the icon off the front of `caption` into `parts`; gives what is left.
std::string_view TakeIcon(std::string_view caption, CaptionParts& parts) {
    if (caption.size() >= 2 && caption[0] == '!' && caption[1] >= '0' && caption[1] <= '9') {
        std::size_t end = 1;
        long number = 0;
        while (end < caption.size() && caption[end] >= '0' && caption[end] <= '9') {
            number = number * 10 + (caption[end] - '0');
            if (number > LargestIconNumber)
                return caption;
            ++end;
        }
        parts.IconNumber = static_cast<int>(number);
        return caption.substr(end);
    }
    if (!caption.empty() && IsIconLetter(caption[0]) && EndsIconLetter(caption.substr(1))) {
        parts.IconLetter = caption[0];
        return caption.substr(1);
    }
    return caption;
}

} // namespace

CaptionParts ParseCaption(std::string_view caption) {
    CaptionParts parts;
    const std::string_view text = TakeIcon(caption, parts);
    parts.Text.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '&' || i + 1 == text.size()) {
            parts.Text += text[i];
            continue;
        }
        ++i; // the mark goes; what it marks is copied below
        if (text[i] != '&' && parts.Mnemonic == 0) {
            std::size_t length = 0;
            parts.Mnemonic = DecodeUtf8(text, i, length);
            parts.MnemonicOffset = parts.Text.size();
        }
        parts.Text += text[i];
    }
    return parts;
}
