#include "workbench/text/Utf8.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace wb {

namespace {

constexpr const char* Replacement = "\xEF\xBF\xBD"; // U+FFFD

// Bytes of the valid character that starts at text[pos]; 0 when none starts there, -1 when
// one starts but runs past the end of the text.
int characterLength(std::string_view text, std::size_t pos) {
    const auto lead = static_cast<unsigned char>(text[pos]);
    if (lead < 0x80)
        return 1;
    int length = 0;
    unsigned char low = 0x80, high = 0xBF; // range of the second byte
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        if (lead == 0xE0)
            low = 0xA0; // no overlong forms
        if (lead == 0xED)
            high = 0x9F; // no surrogates
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        if (lead == 0xF0)
            low = 0x90;
        if (lead == 0xF4)
            high = 0x8F; // nothing above U+10FFFF
    } else {
        return 0;
    }
    for (int k = 1; k < length; ++k) {
        if (pos + k >= text.size())
            return -1;
        const auto byte = static_cast<unsigned char>(text[pos + k]);
        if (k == 1 ? (byte < low || byte > high) : !isContinuationByte(text[pos + k]))
            return 0;
    }
    return length;
}

} // namespace

std::size_t utf8PrefixLength(std::string_view text, std::size_t maxBytes) {
    if (text.size() <= maxBytes)
        return text.size();
    // Back to the lead byte of the character at the cut (at most three steps), and cut
    // before it only when it runs past the cut: bytes that are not UTF-8 (a continuation
    // byte with no lead) are taken one by one rather than dropped.
    std::size_t start = maxBytes;
    while (start > 0 && maxBytes - start < 3 && isContinuationByte(text[start]))
        --start;
    const auto lead = static_cast<unsigned char>(text[start]);
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
    return start < maxBytes && start + length > maxBytes ? start : maxBytes;
}

std::size_t utf8CharacterCount(std::string_view text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return !isContinuationByte(c); }));
}

std::size_t firstInvalidUtf8(std::string_view text) {
    for (std::size_t pos = 0; pos < text.size();) {
        // Data files are mostly ASCII: eight bytes without a high bit are passed at once.
        std::uint64_t word;
        if (pos + sizeof word <= text.size()) {
            std::memcpy(&word, text.data() + pos, sizeof word);
            if ((word & 0x8080808080808080ull) == 0) {
                pos += sizeof word;
                continue;
            }
        }
        const int length = characterLength(text, pos);
        if (length <= 0)
            return pos;
        pos += static_cast<std::size_t>(length);
    }
    return text.size();
}

bool isValidUtf8(std::string_view text) {
    return firstInvalidUtf8(text) == text.size();
}

std::string toValidUtf8(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t pos = 0; pos < text.size();) {
        const int length = characterLength(text, pos);
        if (length < 0)
            break;
        if (length == 0) {
            out += Replacement;
            ++pos;
            continue;
        }
        out.append(text, pos, static_cast<std::size_t>(length));
        pos += static_cast<std::size_t>(length);
    }
    return out;
}

std::string visibleText(std::string_view text) {
    std::string out;
    for (const char c : toValidUtf8(text)) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte != 0x7F) {
            out += c;
            continue;
        }
        switch (c) {
        case '\t':
            out += "\\t";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        default: {
            static constexpr char Hex[] = "0123456789ABCDEF";
            out += "\\x";
            out += Hex[byte >> 4];
            out += Hex[byte & 0xF];
        }
        }
    }
    return out;
}

} // namespace wb
