#pragma once
// A table document as HTML, for people.
//
// tableHtml gives a fragment that stands on its own inside any page made by htmlPage, so
// that one table can be a page of its own and many can share one page (the output
// folder's index). Texts are escaped and their "\n" become line breaks. Numbers are
// right-aligned and shown as CellText.h says, texts left-aligned, empty cells empty.
// Second column headings, when a table has any, make a second heading row.

#include <string>
#include <string_view>

#include "workbench/documents/TableDocument.h"

namespace wb {

// <section class="table" id="table-N"> with the number and title, the subtitle and the table.
std::string tableHtml(const TableDocument& table);
// A complete UTF-8 page with the tables' style sheet; `title` is plain text, `body` HTML.
std::string htmlPage(std::string_view title, std::string_view body);
// `text` with & < > " ' escaped and each "\n" as <br>.
std::string htmlText(std::string_view text);
// The id of the table's section, "table-N", for links into a page.
std::string tableAnchor(const TableDocument& table);

} // namespace wb
