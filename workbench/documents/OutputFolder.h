#pragma once
// The headless host's output: every document of a session as files in one folder.
//
// For each table, as soon as it is made:
//   NNN-<slug>.json  the document for programs (TableJson.h)
//   NNN-<slug>.html  the table as a page of its own (TableHtml.h)
//   index.html       rewritten: the list of the session's documents in order, then all of
//                    them, so that the whole session reads in a browser from one page.
// NNN is the document's number, zero-padded to three digits; the slug comes from its title.
//
// Every file is written to a temporary file beside it and renamed into place, so a reader
// never sees half a file. The folder is created, with its parents, when missing. Files of
// an earlier session are neither listed nor removed; a document with the same file name
// replaces its file.

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/documents/DocumentSink.h"

namespace wb {

// A folder or file that could not be written; the message names it.
class OutputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class OutputFolder : public DocumentSink {
public:
    static constexpr std::string_view DefaultFolder = "drilldown-out";

    explicit OutputFolder(std::filesystem::path folder = std::filesystem::path(DefaultFolder));

    // Documents that follow go to `folder`, with an index of their own.
    void setFolder(std::filesystem::path folder);
    const std::filesystem::path& folder() const { return m_folder; }

    // Writes the table's two files and the index; throws OutputError. A table whose own
    // files could not be written is left out of the index.
    void addTable(const TableDocument& table) override;

    // The base names (NNN-slug) of the documents written to the current folder, in order.
    std::vector<std::string> stems() const;

private:
    struct Entry {
        int number;
        std::string title;
        std::string stem;
        std::string fragment; // the table's HTML, kept for rewriting the index
        std::string anchor;
    };

    void writeFile(const std::string& name, std::string_view content) const;
    std::string indexHtml() const;

    std::filesystem::path m_folder;
    std::vector<Entry> m_entries;
};

// Lower-case ASCII letters and digits of `title`, accented Latin letters folded to their
// base letters (é → e, œ → oe, ß → ss), every run of other characters one '-', none at
// either end, at most 48 characters; "table" when nothing remains.
std::string titleSlug(std::string_view title);
// "NNN-<slug>" of the document.
std::string documentStem(const TableDocument& table);

} // namespace wb
