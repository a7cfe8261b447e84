#pragma once
// The headless front end's view of the document store: every document of a session as
// files in one folder.
//
// For each table, as soon as it is made:
//   NNN-<slug>.json  the document for programs (TableJson.h)
//   NNN-<slug>.html  the table as a page of its own (TableHtml.h)
// for each graph:
//   NNN-<slug>.json  the document for programs (GraphJson.h)
//   NNN-<slug>.svg   the picture, with tooltips (workbench/render/GraphRenderer.h)
//   NNN-<slug>.png   the same picture as an image
// and after each change:
//   index.html       rewritten: the list of the session's live documents in window order,
//                    then all of them, tables and pictures, so that the whole session reads
//                    in a browser from one page.
// A replaced document's files are rewritten in place, under the names they had; a closed
// document's files go with it.
// NNN is the document's number, zero-padded to three digits; the slug comes from its title.
//
// Every file is written to a temporary file beside it and renamed into place, so a reader
// never sees half a file; a document whose files cannot all be written leaves none of the
// new ones, and the folder keeps its first failure for the command to report. The folder is created, with its parents, when missing. Files of
// an earlier session are neither listed nor removed; a document with the same file name
// replaces its file.

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/documents/DocumentStore.h"

namespace wb {

// A folder or file that could not be written; the message names it.
class OutputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class OutputFolder : public DocumentObserver {
public:
    static constexpr std::string_view DefaultFolder = "drilldown-out";

    explicit OutputFolder(std::filesystem::path folder = std::filesystem::path(DefaultFolder));

    // Documents that follow go to `folder`, with an index of their own.
    void setFolder(std::filesystem::path folder);
    const std::filesystem::path& folder() const { return m_folder; }

    // Write the document's files and the index; throw OutputError (RenderError when a
    // picture cannot be drawn). A document whose own files could not be written is left out
    // of the index (a replaced one keeps its former entry).
    void added(const Document& document) override;
    void replaced(const Document& document) override;
    void closed(const Document& document) override;
    // Nothing of a window's state shows in the files.
    void stateChanged(const Document&) override {}

    // The first write that failed in the current folder, as the OutputError said it; empty
    // while every write succeeded.
    const std::string& firstFailure() const { return m_firstFailure; }
    // "3 tables and 2 graphs": the documents whose files stand in the current folder.
    std::string writtenCount() const;

    // The base names (NNN-slug) of the documents written to the current folder, in order.
    std::vector<std::string> stems() const;
    // The file that shows each of them: NNN-slug.html for a table, NNN-slug.svg for a graph.
    std::vector<std::string> shownFiles() const;

private:
    struct Entry {
        int number;
        std::string title;
        std::string stem;
        std::string fragment; // the document's HTML, kept for rewriting the index
        std::string anchor;
        std::string links; // to the document's own files
        std::string shown; // the file that shows it
        bool table;
    };

    // Writes the document's files under `stem`, all or none of them; its entry in the index.
    // A failure is kept when it is the folder's first, and thrown on.
    Entry write(const Document& document, const std::string& stem);
    Entry writeTable(const TableDocument& table, const std::string& stem) const;
    Entry writeGraph(const GraphDocument& graph, const std::string& stem) const;
    void makeFolder() const;
    // Writes the files of one document; on a failure, removes those it wrote and throws.
    void writeFiles(const std::vector<std::pair<std::string, std::string>>& files) const;
    void writeFile(const std::string& name, std::string_view content) const;
    std::string indexHtml() const;
    void writeIndex();
    void keepFailure(const OutputError& error);

    std::filesystem::path m_folder;
    std::vector<Entry> m_entries;
    std::string m_firstFailure;
};

// Lower-case ASCII letters and digits of `title`, accented Latin letters folded to their
// base letters (é → e, œ → oe, ß → ss), every run of other characters one '-', none at
// either end, at most 48 characters; `fallback` when nothing remains.
std::string titleSlug(std::string_view title, std::string_view fallback = "table");
// "NNN-<slug>" of the document; "graph" is a graph's fallback.
std::string documentStem(const TableDocument& table);
std::string documentStem(const GraphDocument& graph);

} // namespace wb
