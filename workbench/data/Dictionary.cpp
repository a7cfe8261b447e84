#include "workbench/data/Dictionary.h"

#include "workbench/data/DataFile.h"
#include "workbench/data/TextPosition.h"
#include "workbench/text/Utf8.h"

namespace wb {

namespace {

// Walks text that nlohmann has accepted, so it can skip without checking. Skipping a
// container counts brackets instead of recursing, whatever the depth of the document.
class JsonLocator {
public:
    explicit JsonLocator(std::string_view text) : m_text(text) {}

    // Offset of the key or the value of the member at `path`. Of duplicate keys the last
    // counts, as in nlohmann's tree.
    std::size_t find(const Dictionary::Path& path, Dictionary::At at) {
        std::size_t keyOffset = 0;
        skipSpace();
        for (const std::string& step : path) {
            if (m_text[m_pos] == '[') {
                enterElement(std::stoul(step));
                keyOffset = m_pos;
            } else {
                keyOffset = enterMember(step);
            }
        }
        return at == Dictionary::At::Key ? keyOffset : m_pos;
    }

private:
    std::size_t enterMember(const std::string& key) {
        std::size_t keyOffset = m_pos;
        std::size_t valueOffset = m_pos;
        ++m_pos;
        skipSpace();
        while (m_text[m_pos] != '}') {
            const std::size_t start = m_pos;
            skipString();
            const bool match =
                nlohmann::json::parse(m_text.substr(start, m_pos - start)).get<std::string>() ==
                key;
            skipSpace();
            ++m_pos; // ':'
            skipSpace();
            if (match) {
                keyOffset = start;
                valueOffset = m_pos;
            }
            skipValue();
            skipSpace();
            if (m_text[m_pos] == ',')
                ++m_pos;
            skipSpace();
        }
        m_pos = valueOffset;
        return keyOffset;
    }

    void enterElement(std::size_t index) {
        ++m_pos;
        skipSpace();
        for (std::size_t i = 0; i < index; ++i) {
            skipValue();
            skipSpace();
            ++m_pos; // ','
            skipSpace();
        }
    }

    void skipSpace() {
        while (m_pos < m_text.size() && (m_text[m_pos] == ' ' || m_text[m_pos] == '\t' ||
                                         m_text[m_pos] == '\n' || m_text[m_pos] == '\r'))
            ++m_pos;
    }

    void skipString() {
        ++m_pos;
        while (m_text[m_pos] != '"')
            m_pos += m_text[m_pos] == '\\' ? 2 : 1;
        ++m_pos;
    }

    void skipValue() {
        const char first = m_text[m_pos];
        if (first == '"') {
            skipString();
            return;
        }
        if (first != '{' && first != '[') {
            while (m_pos < m_text.size() &&
                   std::string_view(",}] \t\r\n").find(m_text[m_pos]) == std::string_view::npos)
                ++m_pos;
            return;
        }
        int depth = 0;
        do {
            const char c = m_text[m_pos];
            if (c == '"') {
                skipString();
                continue;
            }
            if (c == '{' || c == '[')
                ++depth;
            else if (c == '}' || c == ']')
                --depth;
            ++m_pos;
        } while (depth > 0);
    }

    std::string_view m_text;
    std::size_t m_pos = 0;
};

// nlohmann's message reads "[json.exception.parse_error.101] parse error at line 2, column
// 7: syntax error while parsing value - invalid literal; last read: '...'": keep what
// follows the position, which is ours to give in the usual form. What was last read may
// hold the broken bytes that stopped the parser.
std::string parseErrorText(const std::string& what) {
    const std::size_t column = what.find("column ");
    const std::size_t colon = column == std::string::npos ? column : what.find(": ", column);
    return toValidUtf8(colon == std::string::npos ? what : what.substr(colon + 2));
}

// Where the number of nlohmann's "number overflow parsing '1e400'" stands in the text, and
// the number; nlohmann gives no position for it.
std::pair<std::size_t, std::string> overflowingNumber(std::string_view text,
                                                      const std::string& what) {
    const std::size_t open = what.find('\'');
    const std::size_t close = open == std::string::npos ? open : what.find('\'', open + 1);
    if (close == std::string::npos)
        return {0, "a number"};
    const std::string literal = what.substr(open + 1, close - open - 1);
    const std::size_t offset = text.find(literal);
    return {offset == std::string_view::npos ? 0 : offset, literal};
}

} // namespace

Dictionary::Dictionary(std::string_view text, std::string name)
    : m_text(text), m_name(std::move(name)) {
    try {
        m_root = nlohmann::json::parse(m_text);
    } catch (const nlohmann::json::parse_error& error) {
        // `byte` counts the characters read, the faulty one included.
        const std::size_t offset = error.byte > 0 ? error.byte - 1 : 0;
        throw DataError(locatedMessage(m_name, m_text, offset,
                                       "invalid JSON: " + parseErrorText(error.what())));
    } catch (const nlohmann::json::out_of_range& error) {
        const auto [offset, number] = overflowingNumber(m_text, error.what());
        throw DataError(locatedMessage(m_name, m_text, offset,
                                       number + " is beyond the range of a number"));
    }
}

void Dictionary::fail(const Path& path, At at, const std::string& message) const {
    const std::size_t offset = JsonLocator(m_text).find(path, at);
    throw DataError(locatedMessage(m_name, m_text, offset, message));
}

} // namespace wb
