#pragma once
// One document of a session: a table or a graph. Both share one numbering (their ids: 1, 2,
// 3... in the order the session made them, never reused) and one list, so that a reader
// sees them in order. The store (DocumentStore.h) gives each its id, the command that made
// it and its output number within that command's run.

#include <string>
#include <variant>
#include <vector>

#include "workbench/documents/GraphDocument.h"
#include "workbench/documents/TableDocument.h"

namespace wb {

struct Document {
    std::variant<TableDocument, GraphDocument> content;
    int id = 0;      // stable; the content's number
    int command = 0; // control id of the result button that made it, 0 for none
    int output = 0;  // 1, 2, 3... within one run of that command; 0 outside a command

    bool isTable() const { return std::holds_alternative<TableDocument>(content); }
    bool isGraph() const { return std::holds_alternative<GraphDocument>(content); }
    // Throw std::bad_variant_access for the other kind.
    const TableDocument& table() const { return std::get<TableDocument>(content); }
    const GraphDocument& graph() const { return std::get<GraphDocument>(content); }

    // What a macro reads as the document's Name: a table's title, a graph's first title line.
    std::string name() const;
};

// "3 tables", "1 graph", "2 tables and 1 graph", "no document".
std::string documentCount(std::size_t tables, std::size_t graphs);

} // namespace wb
