#pragma once
// One document of a session: a table or a graph. Both share one numbering (1, 2, 3... in
// the order the session made them) and one list, so that a reader sees them in order.

#include <string>
#include <variant>
#include <vector>

#include "workbench/documents/GraphDocument.h"
#include "workbench/documents/TableDocument.h"

namespace wb {

struct Document {
    std::variant<TableDocument, GraphDocument> content;

    bool isTable() const { return std::holds_alternative<TableDocument>(content); }
    bool isGraph() const { return std::holds_alternative<GraphDocument>(content); }
    // Throw std::bad_variant_access for the other kind.
    const TableDocument& table() const { return std::get<TableDocument>(content); }
    const GraphDocument& graph() const { return std::get<GraphDocument>(content); }

    int number() const {
        return std::visit([](const auto& document) { return document.number; }, content);
    }
    int command() const {
        return std::visit([](const auto& document) { return document.command; }, content);
    }
    // What a macro reads as the document's Name: a table's title, a graph's first title line.
    std::string name() const;
};

// "3 tables", "1 graph", "2 tables and 1 graph", "no document".
std::string documentCount(const std::vector<Document>& documents);

} // namespace wb
