#include "workbench/data/CsvReader.h"

#include "workbench/data/DataFile.h"
#include "workbench/data/TextPosition.h"

namespace wb {

CsvReader::CsvReader(std::string_view text, std::string name, char separator)
    : m_text(text), m_name(std::move(name)), m_separator(separator) {}

void CsvReader::fail(std::size_t offset, const std::string& message) const {
    throw DataError(locatedMessage(m_name, m_text, offset, message));
}

bool CsvReader::startRow() {
    while (m_pos < m_text.size()) {
        if (m_text[m_pos] != '\n' && m_text[m_pos] != '\r')
            return true;
        ++m_pos;
    }
    return false;
}

void CsvReader::skipBlanks() {
    while (m_pos < m_text.size() && isBlank(m_text[m_pos]))
        ++m_pos;
}

bool CsvReader::readField(Field& field) {
    skipBlanks();
    field.offset = m_pos;
    if (m_pos < m_text.size() && m_text[m_pos] == '"') {
        readQuoted(field);
        skipBlanks();
        return finishField();
    }
    const std::size_t start = m_pos;
    while (m_pos < m_text.size()) {
        const char c = m_text[m_pos];
        if (c == m_separator || c == '\n' || c == '\r')
            break;
        if (c == '"')
            fail(m_pos, "quote inside an unquoted field; enclose the field in quotes and double "
                        "the quotes inside it");
        ++m_pos;
    }
    std::size_t end = m_pos;
    while (end > start && isBlank(m_text[end - 1]))
        --end;
    field.text = m_text.substr(start, end - start);
    return finishField();
}

// The common case, no doubled quote, gives a view into the text; only a field with doubled
// quotes is copied, into a buffer that keeps its capacity from field to field.
void CsvReader::readQuoted(Field& field) {
    const std::size_t open = m_pos;
    const std::size_t start = open + 1;
    std::size_t quote = m_text.find('"', start);
    if (quote == std::string_view::npos)
        fail(open, "unterminated quoted field");
    if (quote + 1 >= m_text.size() || m_text[quote + 1] != '"') {
        field.text = m_text.substr(start, quote - start);
        m_pos = quote + 1;
        return;
    }
    m_unquoted.clear();
    m_pos = start;
    while (quote + 1 < m_text.size() && m_text[quote + 1] == '"') {
        m_unquoted.append(m_text.substr(m_pos, quote + 1 - m_pos));
        m_pos = quote + 2;
        quote = m_text.find('"', m_pos);
        if (quote == std::string_view::npos)
            fail(open, "unterminated quoted field");
    }
    m_unquoted.append(m_text.substr(m_pos, quote - m_pos));
    m_pos = quote + 1;
    field.text = m_unquoted;
}

bool CsvReader::finishField() {
    if (m_pos == m_text.size()) {
        m_rowEnd = m_pos;
        return false;
    }
    const char c = m_text[m_pos];
    if (c == m_separator) {
        ++m_pos;
        return true;
    }
    if (c == '\n' || c == '\r') {
        m_rowEnd = m_pos;
        m_pos += c == '\r' && m_text.compare(m_pos, 2, "\r\n") == 0 ? 2 : 1;
        return false;
    }
    fail(m_pos, "unexpected text after a closing quote");
}

} // namespace wb
