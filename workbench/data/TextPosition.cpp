#include "workbench/data/TextPosition.h"

#include <algorithm>

#include "workbench/text/Utf8.h"

namespace wb {

TextPosition positionOf(std::string_view text, std::size_t offset) {
    offset = std::min(offset, text.size());
    TextPosition position;
    for (std::size_t i = 0; i < offset; ++i) {
        const char c = text[i];
        // A line ends with LF, CRLF or a CR alone.
        if (c == '\n' || (c == '\r' && (i + 1 == text.size() || text[i + 1] != '\n'))) {
            ++position.line;
            position.column = 1;
        } else if (!isContinuationByte(c)) {
            ++position.column;
        }
    }
    return position;
}

std::string inQuotes(std::string_view text) {
    std::string quoted(1, '"');
    quoted.append(visibleText(text));
    quoted.push_back('"');
    return quoted;
}

std::string locatedMessage(const std::string& name, std::string_view text, std::size_t offset,
                           const std::string& message) {
    const TextPosition position = positionOf(text, offset);
    return name + ":" + std::to_string(position.line) + ":" + std::to_string(position.column) +
           ": " + message;
}

} // namespace wb
