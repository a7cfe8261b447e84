#include "workbench/documents/TableHtml.h"

#include <algorithm>

#include "workbench/documents/CellText.h"
#include "workbench/text/Markup.h"

namespace wb {

namespace {

constexpr std::string_view StyleSheet =
    R"(body { font-family: system-ui, sans-serif; color: #222; margin: 2em; line-height: 1.4; }
h1 { font-size: 1.4em; }
h2 { font-size: 1.15em; margin-bottom: 0.2em; }
h2 .number { color: #888; font-weight: normal; }
.subtitle { color: #555; margin-top: 0; }
.note { color: #555; font-size: 90%; }
section.table, section.graph { margin-bottom: 2.5em; }
figure { margin: 0; }
figure object, figure img { max-width: 100%; height: auto; }
table { border-collapse: collapse; }
th, td { padding: 0.2em 0.7em; border-bottom: 1px solid #ddd; }
thead th { border-bottom: 2px solid #555; vertical-align: bottom; text-align: center; }
tbody th { text-align: left; font-weight: normal; }
td.num { text-align: right; font-variant-numeric: tabular-nums; white-space: nowrap; }
td.text { text-align: left; }
nav ol { padding-left: 1.5em; }
)";

void appendHeadingRow(std::string& html, const TableDocument& table, bool second) {
    html += "<tr><th class=\"row-heading\">";
    if (!second)
        html += htmlText(table.rowHeading);
    html += "</th>";
    for (const TableColumn& column : table.columns) {
        html += "<th>";
        html += htmlText(second ? column.head2 : column.head);
        html += "</th>";
    }
    html += "</tr>\n";
}

void appendCell(std::string& html, const TableCell& cell, ColumnFormat format, int decimals) {
    if (std::holds_alternative<std::monostate>(cell)) {
        html += "<td></td>";
        return;
    }
    html += std::holds_alternative<double>(cell) ? "<td class=\"num\">" : "<td class=\"text\">";
    html += htmlText(cellText(cell, format, decimals));
    html += "</td>";
}

} // namespace

std::string htmlText(std::string_view text) {
    std::string html;
    std::size_t lineStart = 0;
    for (std::size_t end; (end = text.find('\n', lineStart)) != std::string_view::npos;
         lineStart = end + 1)
        html += escapeMarkup(text.substr(lineStart, end - lineStart)) + "<br>";
    return html + escapeMarkup(text.substr(lineStart));
}

std::string tableAnchor(const TableDocument& table) {
    return "table-" + std::to_string(table.number);
}

std::string tableHtml(const TableDocument& table) {
    std::string html = "<section class=\"table\" id=\"" + tableAnchor(table) + "\">\n";
    html += "<h2><span class=\"number\">" + std::to_string(table.number) + ".</span> ";
    html += htmlText(table.title) + "</h2>\n";
    if (!table.subtitle.empty())
        html += "<p class=\"subtitle\">" + htmlText(table.subtitle) + "</p>\n";

    html += "<table>\n<thead>\n";
    appendHeadingRow(html, table, false);
    if (std::any_of(table.columns.begin(), table.columns.end(),
                    [](const TableColumn& column) { return !column.head2.empty(); }))
        appendHeadingRow(html, table, true);
    html += "</thead>\n<tbody>\n";
    std::vector<int> decimals;
    for (std::size_t col = 0; col < table.columns.size(); ++col)
        decimals.push_back(columnDecimals(table, col));
    for (const TableRow& row : table.rows) {
        html += "<tr><th scope=\"row\">" + htmlText(row.name) + "</th>";
        for (std::size_t col = 0; col < row.cells.size(); ++col) {
            const bool described = col < table.columns.size();
            appendCell(html, row.cells[col], described ? table.columns[col].format : ColumnFormat::Real,
                       described ? decimals[col] : 0);
        }
        html += "</tr>\n";
    }
    html += "</tbody>\n</table>\n";
    if (!table.note.empty())
        html += "<p class=\"note\">" + htmlText(table.note) + "</p>\n";
    html += "</section>\n";
    return html;
}

std::string htmlPage(std::string_view title, std::string_view body) {
    std::string html = "<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n";
    html += "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n";
    std::string oneLine(title); // a page title has no line breaks
    std::replace(oneLine.begin(), oneLine.end(), '\n', ' ');
    html += "<title>" + htmlText(oneLine) + "</title>\n<style>\n";
    html += StyleSheet;
    html += "</style>\n</head>\n<body>\n";
    html += body;
    html += "</body>\n</html>\n";
    return html;
}

} // namespace wb
