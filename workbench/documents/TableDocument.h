#pragma once
// A result table as the workbench keeps it: plain data, no drawing.
//
// The output service makes one from the module's arrays (OutputService::looka4); the
// renderers (TableJson.h, TableHtml.h, later a desktop window) read it and never change it.
//
//   1. every text is final: tokens expanded, trailing blanks gone, valid UTF-8; a "\n"
//      inside a text is a line break that a renderer shows as such;
//   2. every row has one cell per column;
//   3. a cell is empty, a finite number or a text, whatever its column's format: the
//      format says how numbers are shown (whole or real) and that a column carries texts,
//      but a text column may hold numbers too (a "-" among means).

#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace wb {

enum class ColumnFormat { Whole, Real, Text };

// "whole", "real" or "text".
std::string_view formatName(ColumnFormat format);

struct TableColumn {
    std::string head;
    std::string head2; // a second heading line of its own; empty for most tables
    ColumnFormat format = ColumnFormat::Real;
};

// Empty, a number, or a text.
using TableCell = std::variant<std::monostate, double, std::string>;

struct TableRow {
    std::string name;
    std::vector<TableCell> cells;
};

struct TableDocument {
    int command = 0; // control id of the result button that made the table, 0 for none
    int number = 0;  // 1, 2, 3... in the order the session made its documents
    std::string title;
    std::string subtitle;
    std::string rowHeading; // the text above the row names
    // The workbench's word under the table on what its numbers are (their weighting), where
    // the module's headings do not say it; empty for none.
    std::string note;
    std::vector<TableColumn> columns;
    std::vector<TableRow> rows;
};

} // namespace wb
