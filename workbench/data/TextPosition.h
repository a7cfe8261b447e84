#pragma once
// Positions in text for messages: 1-based lines, and 1-based columns that count characters
// (UTF-8 code points), so that an editor's "go to line and column" lands on the spot.

#include <cstddef>
#include <string>
#include <string_view>

namespace wb {

struct TextPosition {
    int line = 1;
    int column = 1;
};

// The position of byte `offset` of `text`, lines ending with LF, CRLF or CR; an offset past
// the end is the end.
TextPosition positionOf(std::string_view text, std::size_t offset);

// `text` in double quotes, as messages show names and field contents (see visibleText).
std::string inQuotes(std::string_view text);

// "NAME:LINE:COLUMN: message", the form of every message about a file's content.
std::string locatedMessage(const std::string& name, std::string_view text, std::size_t offset,
                           const std::string& message);

} // namespace wb
