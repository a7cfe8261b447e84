#pragma once
// The JSON text of a data file's dictionary, parsed, with the means to point a message at
// any of its members. nlohmann's tree keeps no positions, so a position is found again in
// the text, along the member's path, only when a message needs it.

#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

namespace wb {

class Dictionary {
public:
    // A member's path from the root: object keys, and array indices in decimal.
    using Path = std::vector<std::string>;

    // Parses `text`; bad JSON throws DataError at the place of the fault.
    Dictionary(std::string_view text, std::string name);

    // Members keep the order of the text, so that checks report the first fault first.
    const nlohmann::json& root() const { return m_root; }

    // Throws DataError located at the member at `path`: at its key, or at its value.
    enum class At { Key, Value };
    [[noreturn]] void fail(const Path& path, At at, const std::string& message) const;

private:
    std::string_view m_text;
    std::string m_name;
    nlohmann::json m_root;
};

} // namespace wb
