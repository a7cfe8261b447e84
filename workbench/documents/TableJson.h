#pragma once
// A table document as JSON, for programs that read a session's output:
//
//   {"kind":"table","command":ID,"number":N,"title":...,"subtitle":...,"rowHeading":...,
//    "columns":[{"head":...,"head2":...,"format":"whole"|"real"|"text"}],
//    "rows":[{"name":...,"cells":[number|string|null,...]}]}
//
// Keys stand in that order. Numbers keep their full value (the rounding of the display is
// the reader's business), except that a whole number in a whole-number column is written
// without a fraction: 3, not 3.0. An empty cell is null.

#include <string>

#include <nlohmann/json.hpp>

#include "workbench/documents/TableDocument.h"

namespace wb {

nlohmann::ordered_json tableJson(const TableDocument& table);
// Indented by two, ending in a line feed; bytes that are not UTF-8 become U+FFFD.
std::string tableJsonText(const TableDocument& table);

} // namespace wb
