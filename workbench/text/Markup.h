#pragma once
// Text inside HTML, SVG or XML: the characters with a meaning there become entities. The
// workbench writes every attribute in double quotes, so an apostrophe stays as it is.

#include <string>
#include <string_view>

namespace wb {

inline std::string escapeMarkup(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (const char c : text) {
        switch (c) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '"':
            out += "&quot;";
            break;
        default:
            out += c;
        }
    }
    return out;
}

} // namespace wb
