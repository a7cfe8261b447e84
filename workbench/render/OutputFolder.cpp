#include "workbench/render/OutputFolder.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <system_error>
#include <utility>

#include "workbench/data/WholeFile.h"
#include "workbench/documents/GraphJson.h"
#include "workbench/documents/TableHtml.h"
#include "workbench/documents/TableJson.h"
#include "workbench/render/GraphRenderer.h"

namespace wb {

namespace {

constexpr std::size_t MaxSlugLength = 48;
constexpr const char* IndexName = "index.html";

// Latin-1 letters and Latin Extended-A, by ranges of code points that fold alike.
struct Folding {
    char32_t first;
    char32_t last;
    const char* ascii; // null: not a letter
};

constexpr Folding Foldings[] = {
    {0xC0, 0xC5, "a"},     {0xC6, 0xC6, "ae"},   {0xC7, 0xC7, "c"},     {0xC8, 0xCB, "e"},
    {0xCC, 0xCF, "i"},     {0xD0, 0xD0, "d"},    {0xD1, 0xD1, "n"},     {0xD2, 0xD6, "o"},
    {0xD7, 0xD7, nullptr}, {0xD8, 0xD8, "o"},    {0xD9, 0xDC, "u"},     {0xDD, 0xDD, "y"},
    {0xDE, 0xDE, "th"},    {0xDF, 0xDF, "ss"},   {0xE0, 0xE5, "a"},     {0xE6, 0xE6, "ae"},
    {0xE7, 0xE7, "c"},     {0xE8, 0xEB, "e"},    {0xEC, 0xEF, "i"},     {0xF0, 0xF0, "d"},
    {0xF1, 0xF1, "n"},     {0xF2, 0xF6, "o"},    {0xF7, 0xF7, nullptr}, {0xF8, 0xF8, "o"},
    {0xF9, 0xFC, "u"},     {0xFD, 0xFD, "y"},    {0xFE, 0xFE, "th"},    {0xFF, 0xFF, "y"},
    {0x100, 0x105, "a"},   {0x106, 0x10D, "c"},  {0x10E, 0x111, "d"},   {0x112, 0x11B, "e"},
    {0x11C, 0x123, "g"},   {0x124, 0x127, "h"},  {0x128, 0x131, "i"},   {0x132, 0x133, "ij"},
    {0x134, 0x135, "j"},   {0x136, 0x138, "k"},  {0x139, 0x142, "l"},   {0x143, 0x14B, "n"},
    {0x14C, 0x151, "o"},   {0x152, 0x153, "oe"}, {0x154, 0x159, "r"},   {0x15A, 0x161, "s"},
    {0x162, 0x167, "t"},   {0x168, 0x173, "u"},  {0x174, 0x175, "w"},   {0x176, 0x178, "y"},
    {0x179, 0x17E, "z"},   {0x17F, 0x17F, "s"},
};

const char* folded(char32_t code) {
    for (const Folding& folding : Foldings)
        if (code >= folding.first && code <= folding.last)
            return folding.ascii;
    return nullptr;
}

// The code point starting at text[pos] and its length in bytes; a byte that starts no
// valid two-byte sequence counts as one unknown character.
std::pair<char32_t, std::size_t> codePoint(std::string_view text, std::size_t pos) {
    const auto lead = static_cast<unsigned char>(text[pos]);
    if (lead < 0x80)
        return {lead, 1};
    if (lead < 0xC2) // a continuation byte, or an overlong form
        return {0xFFFD, 1};
    std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (pos + length > text.size())
        return {0xFFFD, 1};
    if (length == 2 && (static_cast<unsigned char>(text[pos + 1]) & 0xC0) == 0x80)
        return {char32_t((lead & 0x1F) << 6 | (text[pos + 1] & 0x3F)), 2};
    // Nothing beyond two bytes folds: skip the sequence whole.
    std::size_t end = pos + 1;
    while (end < text.size() && end < pos + length &&
           (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
        ++end;
    return {0xFFFD, end - pos};
}

std::string numbered(int number) {
    char text[16];
    std::snprintf(text, sizeof text, "%03d", number);
    return text;
}

std::string link(const std::string& stem, const char* extension, const char* text) {
    return "<a href=\"" + htmlText(stem) + extension + "\">" + text + "</a>";
}

// The graph's section of the index: number and first title, the other title lines, and
// the picture (the SVG with its tooltips, the PNG where SVG cannot be shown).
std::string graphHtml(const GraphDocument& graph, const std::string& stem) {
    const PictureSize size = pictureSize(graph);
    std::string html = "<section class=\"graph\" id=\"graph-" + std::to_string(graph.number) + "\">\n";
    html += "<h2><span class=\"number\">" + std::to_string(graph.number) + ".</span> ";
    html += htmlText(graph.name()) + "</h2>\n";
    if (graph.titles.size() > 1) {
        std::string rest;
        for (std::size_t k = 1; k < graph.titles.size(); ++k)
            rest += (k > 1 ? "\n" : "") + graph.titles[k];
        html += "<p class=\"subtitle\">" + htmlText(rest) + "</p>\n";
    }
    const std::string width = std::to_string(size.width), height = std::to_string(size.height);
    html += "<figure><object data=\"" + htmlText(stem) + ".svg\" type=\"image/svg+xml\" width=\"" +
            width + "\" height=\"" + height + "\"><img src=\"" + htmlText(stem) + ".png\" alt=\"" +
            htmlText(graph.name()) + "\" width=\"" + width + "\" height=\"" + height +
            "\"></object></figure>\n";
    html += "</section>\n";
    return html;
}

} // namespace

std::string titleSlug(std::string_view title, std::string_view fallback) {
    std::string slug;
    bool pendingDash = false;
    for (std::size_t pos = 0; pos < title.size() && slug.size() < MaxSlugLength;) {
        const auto [code, length] = codePoint(title, pos);
        pos += length;
        std::string piece;
        if ((code >= 'a' && code <= 'z') || (code >= '0' && code <= '9'))
            piece = char(code);
        else if (code >= 'A' && code <= 'Z')
            piece = char(code - 'A' + 'a');
        else if (const char* ascii = folded(code))
            piece = ascii;
        if (piece.empty()) {
            pendingDash = !slug.empty();
            continue;
        }
        if (pendingDash)
            slug += '-';
        pendingDash = false;
        slug += piece;
    }
    if (slug.size() > MaxSlugLength)
        slug.resize(MaxSlugLength);
    while (!slug.empty() && slug.back() == '-')
        slug.pop_back();
    return slug.empty() ? std::string(fallback) : slug;
}

std::string documentStem(const TableDocument& table) {
    return numbered(table.number) + "-" + titleSlug(table.title);
}

std::string documentStem(const GraphDocument& graph) {
    return numbered(graph.number) + "-" + titleSlug(graph.name(), "graph");
}

OutputFolder::OutputFolder(std::filesystem::path folder) : m_folder(std::move(folder)) {}

void OutputFolder::setFolder(std::filesystem::path folder) {
    m_folder = std::move(folder);
    m_entries.clear();
    m_firstFailure.clear();
}

std::string OutputFolder::writtenCount() const {
    const auto tables = static_cast<std::size_t>(
        std::count_if(m_entries.begin(), m_entries.end(), [](const Entry& e) { return e.table; }));
    return documentCount(tables, m_entries.size() - tables);
}

std::vector<std::string> OutputFolder::shownFiles() const {
    std::vector<std::string> files;
    for (const Entry& entry : m_entries)
        files.push_back(entry.shown);
    return files;
}

std::vector<std::string> OutputFolder::stems() const {
    std::vector<std::string> stems;
    for (const Entry& entry : m_entries)
        stems.push_back(entry.stem);
    return stems;
}

void OutputFolder::writeFile(const std::string& name, std::string_view content) const {
    if (const std::string reason = writeWholeFile(m_folder / name, content); !reason.empty())
        throw OutputError("cannot write " + name + " in the output folder '" + m_folder.string() +
                          "': " + reason);
}

void OutputFolder::writeFiles(
    const std::vector<std::pair<std::string, std::string>>& files) const {
    for (std::size_t k = 0; k < files.size(); ++k) {
        try {
            writeFile(files[k].first, files[k].second);
        } catch (const OutputError&) {
            for (std::size_t written = 0; written < k; ++written) {
                std::error_code ignored;
                std::filesystem::remove(m_folder / files[written].first, ignored);
            }
            throw;
        }
    }
}

void OutputFolder::makeFolder() const {
    std::error_code created;
    std::filesystem::create_directories(m_folder, created);
    if (created)
        throw OutputError("cannot create the output folder '" + m_folder.string() +
                          "': " + created.message());
}

OutputFolder::Entry OutputFolder::writeTable(const TableDocument& table,
                                             const std::string& stem) const {
    Entry entry{table.number, table.title, stem, tableHtml(table), tableAnchor(table),
                link(stem, ".html", "page") + ", " + link(stem, ".json", "JSON"), stem + ".html",
                true};
    writeFiles({{stem + ".json", tableJsonText(table)},
                {stem + ".html", htmlPage(table.title, entry.fragment)}});
    return entry;
}

OutputFolder::Entry OutputFolder::writeGraph(const GraphDocument& graph,
                                             const std::string& stem) const {
    // Both pictures are drawn before anything is written, so a failure leaves no file.
    Entry entry{graph.number, graph.name(), stem, graphHtml(graph, stem),
                "graph-" + std::to_string(graph.number),
                link(stem, ".svg", "SVG") + ", " + link(stem, ".png", "PNG") + ", " +
                    link(stem, ".json", "JSON"),
                stem + ".svg", false};
    writeFiles({{stem + ".json", graphJsonText(graph)},
                {stem + ".svg", graphSvg(graph)},
                {stem + ".png", graphPng(graph)}});
    return entry;
}

OutputFolder::Entry OutputFolder::write(const Document& document, const std::string& stem) {
    try {
        makeFolder();
        return document.isTable() ? writeTable(document.table(), stem)
                                  : writeGraph(document.graph(), stem);
    } catch (const OutputError& error) {
        keepFailure(error);
        throw;
    }
}

void OutputFolder::writeIndex() {
    try {
        writeFile(IndexName, indexHtml());
    } catch (const OutputError& error) {
        keepFailure(error);
        throw;
    }
}

void OutputFolder::keepFailure(const OutputError& error) {
    if (m_firstFailure.empty())
        m_firstFailure = error.what();
}

void OutputFolder::added(const Document& document) {
    const std::string stem =
        document.isTable() ? documentStem(document.table()) : documentStem(document.graph());
    m_entries.push_back(write(document, stem));
    writeIndex();
}

void OutputFolder::replaced(const Document& document) {
    const auto entry = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&](const Entry& e) { return e.number == document.id; });
    if (entry == m_entries.end())
        return;
    *entry = write(document, entry->stem);
    writeIndex();
}

// The folder shows the session as it stands: a closed document's files go with it.
void OutputFolder::closed(const Document& document) {
    const auto entry = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&](const Entry& e) { return e.number == document.id; });
    if (entry == m_entries.end())
        return;
    for (const char* extension : {".json", ".html", ".svg", ".png"}) {
        std::error_code ignored; // a file that is not there is gone already
        std::filesystem::remove(m_folder / (entry->stem + extension), ignored);
    }
    m_entries.erase(entry);
    writeIndex();
}

std::string OutputFolder::indexHtml() const {
    std::string body = "<h1>Drill-down output</h1>\n<nav>\n<ol>\n";
    for (const Entry& entry : m_entries) {
        body += "<li value=\"" + std::to_string(entry.number) + "\"><a href=\"#" + entry.anchor +
                "\">" + htmlText(entry.title.empty() ? entry.stem : entry.title) + "</a>";
        body += " (" + entry.links + ")</li>\n";
    }
    body += "</ol>\n</nav>\n<main>\n";
    for (const Entry& entry : m_entries)
        body += entry.fragment;
    body += "</main>\n";
    return htmlPage("Drill-down output", body);
}

} // namespace wb
