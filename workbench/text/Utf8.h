#pragma once
// UTF-8 text as the workbench handles it: every text it keeps is UTF-8, but bytes from a
// data file or the module may not be, and fields of fixed size must not cut a character.

#include <cstddef>
#include <string>
#include <string_view>

namespace wb {

// A byte 10xxxxxx, which continues the character before it.
inline bool isContinuationByte(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// The length of the longest prefix of `text` of at most `maxBytes` bytes that does not end
// inside a character.
std::size_t utf8PrefixLength(std::string_view text, std::size_t maxBytes);

// Characters of valid text: every byte but the continuation bytes.
std::size_t utf8CharacterCount(std::string_view text);

// Strictly valid: no overlong form, no surrogate, nothing above U+10FFFF, nothing cut.
bool isValidUtf8(std::string_view text);
// The offset of the first byte that starts no valid character; the size when none does.
std::size_t firstInvalidUtf8(std::string_view text);

// `text` with each byte that starts no valid character replaced by U+FFFD, and a character
// cut at the end dropped.
std::string toValidUtf8(std::string_view text);

// `text` as a message shows it whole: valid UTF-8 (see toValidUtf8), and control characters,
// NUL among them, written as \t, \n, \r or \xNN, so that none cuts the message short or
// moves the terminal's cursor.
std::string visibleText(std::string_view text);

} // namespace wb
