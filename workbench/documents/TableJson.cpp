#include "workbench/documents/TableJson.h"

#include <cmath>
#include <cstdint>

namespace wb {

namespace {

using Json = nlohmann::ordered_json;

Json cellJson(const TableCell& cell, ColumnFormat format) {
    if (const auto* text = std::get_if<std::string>(&cell))
        return *text;
    const auto* number = std::get_if<double>(&cell);
    if (number == nullptr || !std::isfinite(*number))
        return nullptr;
    // Beyond 2^53 a double has no fraction anyway, and int64 ends at 2^63.
    constexpr double Exact = 9007199254740992.0;
    if (format == ColumnFormat::Whole && std::floor(*number) == *number &&
        std::fabs(*number) <= Exact)
        return static_cast<std::int64_t>(*number);
    return *number;
}

} // namespace

nlohmann::ordered_json tableJson(const TableDocument& table) {
    Json columns = Json::array();
    for (const TableColumn& column : table.columns)
        columns.push_back({{"head", column.head},
                           {"head2", column.head2},
                           {"format", std::string(formatName(column.format))}});

    Json rows = Json::array();
    for (const TableRow& row : table.rows) {
        Json cells = Json::array();
        for (std::size_t col = 0; col < row.cells.size(); ++col) {
            const ColumnFormat format =
                col < table.columns.size() ? table.columns[col].format : ColumnFormat::Real;
            cells.push_back(cellJson(row.cells[col], format));
        }
        rows.push_back({{"name", row.name}, {"cells", std::move(cells)}});
    }

    Json json;
    json["kind"] = "table";
    json["command"] = table.command;
    json["number"] = table.number;
    json["title"] = table.title;
    json["subtitle"] = table.subtitle;
    json["rowHeading"] = table.rowHeading;
    json["columns"] = std::move(columns);
    json["rows"] = std::move(rows);
    if (!table.note.empty())
        json["note"] = table.note;
    return json;
}

std::string tableJsonText(const TableDocument& table) {
    return tableJson(table).dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace wb
