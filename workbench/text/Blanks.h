#pragma once
// Text without the blanks around it, as every reader of the user's text takes it: macro
// lines, values written into edits, variants read as text, command-line arguments.

#include <string_view>

namespace wb {

// Spaces, tabs and line ends (a line read without its LF still has the CR of a CRLF).
inline constexpr std::string_view Blanks = " \t\r\n";

inline std::string_view withoutOuterBlanks(std::string_view text) {
    const auto first = text.find_first_not_of(Blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

} // namespace wb
