#pragma once
// A table document as CSV (RFC 4180): a heading row (the row heading, then the columns'
// headings), then one row per table row (its name, then its cells with the precision that
// programs reading the file want, numberText of CellText.h). A field holding a comma, a quote or a line break is quoted, its quotes
// doubled. Lines end in CRLF, as the format asks.

#include <string>

#include "workbench/documents/TableDocument.h"

namespace wb {

std::string tableCsv(const TableDocument& table);

} // namespace wb
