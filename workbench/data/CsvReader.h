#pragma once
// Reads CSV text field by field, in place: a field is a view into the text, except a quoted
// field with doubled quotes, which is unquoted into a buffer the reader reuses. The rules
// are those of DataFileLoader.h; a row ends with LF, CRLF or a CR alone.

#include <cstddef>
#include <string>
#include <string_view>

namespace wb {

class CsvReader {
public:
    struct Field {
        std::string_view text;  // valid until the next readField
        std::size_t offset = 0; // of its first character, or of its opening quote
    };

    // `text` without a byte order mark; `name` names it in messages. Fields are cut at
    // `separator` (',', ';' or tab).
    CsvReader(std::string_view text, std::string name, char separator = ',');

    std::string_view text() const { return m_text; }
    // Offset of what is read next.
    std::size_t position() const { return m_pos; }

    // Goes on reading at `offset`, the start of a row.
    void skipTo(std::size_t offset) { m_pos = offset; }
    // Skips empty lines; false at the end of the text.
    bool startRow();
    // Reads the next field of the current row; true when the row goes on after it.
    bool readField(Field& field);
    // Offset at which the row just read ends: its line break, or the end of the text.
    std::size_t rowEnd() const { return m_rowEnd; }

    [[noreturn]] void fail(std::size_t offset, const std::string& message) const;

private:
    void skipBlanks();
    bool isBlank(char c) const { return c == ' ' || (c == '\t' && m_separator != '\t'); }
    void readQuoted(Field& field);
    bool finishField();

    std::string_view m_text;
    std::string m_name;
    char m_separator;
    std::size_t m_pos = 0;
    std::size_t m_rowEnd = 0;
    std::string m_unquoted;
};

} // namespace wb
