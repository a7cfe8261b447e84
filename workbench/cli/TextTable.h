#pragma once
// A plain-text table for the terminal: columns as wide as their widest cell, counted in
// characters so that accented names line up, numbers aligned to the right. A table whose
// titles are all empty has no title line.

#include <ostream>
#include <string>
#include <vector>

namespace wb::cli {

class TextTable {
public:
    enum class Align { Left, Right };
    struct Column {
        std::string title;
        Align align = Align::Left;
    };

    explicit TextTable(std::vector<Column> columns);

    // One cell per column.
    void addRow(std::vector<std::string> cells);
    void print(std::ostream& out) const;

private:
    std::vector<Column> m_columns;
    std::vector<std::vector<std::string>> m_rows;
};

} // namespace wb::cli
