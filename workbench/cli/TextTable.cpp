#include "workbench/cli/TextTable.h"

#include <algorithm>
#include <stdexcept>

#include "workbench/text/Utf8.h"

namespace wb::cli {

namespace {

void printRow(std::ostream& out, const std::vector<TextTable::Column>& columns,
              const std::vector<std::string>& cells, const std::vector<std::size_t>& widths) {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const std::string padding(widths[i] - utf8CharacterCount(cells[i]), ' ');
        if (i > 0)
            line += "  ";
        if (columns[i].align == TextTable::Align::Right)
            line += padding + cells[i];
        else
            line += cells[i] + padding;
    }
    // The last column may be left aligned: no blanks at the end of the line.
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << '\n';
}

} // namespace

TextTable::TextTable(std::vector<Column> columns) : m_columns(std::move(columns)) {}

void TextTable::addRow(std::vector<std::string> cells) {
    if (cells.size() != m_columns.size())
        throw std::invalid_argument("TextTable::addRow: one cell per column expected");
    m_rows.push_back(std::move(cells));
}

void TextTable::print(std::ostream& out) const {
    std::vector<std::string> titles;
    std::vector<std::size_t> widths;
    for (const Column& column : m_columns) {
        titles.push_back(column.title);
        widths.push_back(utf8CharacterCount(column.title));
    }
    for (const auto& row : m_rows)
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], utf8CharacterCount(row[i]));
    const bool titled = std::any_of(titles.begin(), titles.end(),
                                    [](const std::string& title) { return !title.empty(); });
    if (titled)
        printRow(out, m_columns, titles, widths);
    for (const auto& row : m_rows)
        printRow(out, m_columns, row, widths);
}

} // namespace wb::cli
