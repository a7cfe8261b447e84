#include "workbench/documents/TableCsv.h"

#include "workbench/documents/CellText.h"

namespace wb {

namespace {

std::string field(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos)
        return text;
    std::string quoted = "\"";
    for (const char c : text)
        quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + "\"";
}

} // namespace

std::string tableCsv(const TableDocument& table) {
    std::string csv = field(table.rowHeading);
    for (const TableColumn& column : table.columns)
        csv += "," + field(column.head2.empty() ? column.head : column.head + " " + column.head2);
    csv += "\r\n";
    for (const TableRow& row : table.rows) {
        csv += field(row.name);
        for (std::size_t col = 0; col < table.columns.size(); ++col)
            csv += "," + field(col < row.cells.size()
                                   ? cellText(row.cells[col], table.columns[col].format)
                                   : std::string());
        csv += "\r\n";
    }
    return csv;
}

} // namespace wb
