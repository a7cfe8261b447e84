// The output folder: file names, the files of each table and the index of the session.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>

#include "support/TempDir.h"
#include "workbench/documents/GraphJson.h"
#include "workbench/render/OutputFolder.h"
#include "workbench/documents/SampleTable.h"
#include "workbench/documents/TableHtml.h"
#include "workbench/documents/TableJson.h"

namespace {

namespace fs = std::filesystem;

std::string readFile(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

std::set<std::string> fileNames(const fs::path& folder) {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
        names.insert(entry.path().filename().string());
    return names;
}

wb::TableDocument titled(int number, const std::string& title) {
    wb::TableDocument table = wb::testing::sampleTable();
    table.number = number;
    table.title = title;
    return table;
}

TEST(OutputFolderTest, Slugs) {
    const struct {
        const char* title;
        const char* expected;
    } rows[] = {
        {"Tableau de fréquence de AGE: Âge", "tableau-de-frequence-de-age-age"}, // accents fold
        {"Cœur, Æther & Straße", "coeur-aether-strasse"},                        // ligatures
        {"  --Pourcentage(%)--  ", "pourcentage"}, // no dash at either end
        {"Ελληνικά 2024", "2024"},                 // letters that do not fold are separators
        {"%%%", "table"},                          // nothing left
        {"a\377b", "a-b"},                         // a byte that is no UTF-8
        {"Répartition des revenus annuels bruts par région et catégorie", // cut at 48
         "repartition-des-revenus-annuels-bruts-par-region"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(wb::titleSlug(row.title), row.expected) << row.title;
    EXPECT_EQ(wb::documentStem(titled(7, "Résumé")), "007-resume");
    EXPECT_EQ(wb::documentStem(titled(1234, "")), "1234-table");
}

wb::GraphDocument graphTitled(int number, const std::string& title) {
    wb::GraphDocument graph;
    graph.number = number;
    graph.titles = {title, "SEX = Femme"};
    graph.series.push_back({"", {1, 2}, {4, 6}, {}, 12, 0.9});
    graph.xAxis = {0, 3, 1, {{1, "Homme"}, {2, "Femme"}}};
    graph.yAxis = {0, 10, 1, {}};
    return graph;
}

// A table has its JSON and HTML, a graph its JSON, SVG and PNG; the index lists the documents,
// then shows each (a table as its HTML, a graph as its picture), in the session's order.
TEST(OutputFolderTest, WritesEachDocumentAndIndexesTheSessionInOrder) {
    wb::testing::TempDir dir;
    const fs::path folder = fs::path(dir.path("session")) / "out"; // created with its parent
    wb::OutputFolder output(folder);
    const wb::TableDocument first = titled(1, "Résumé"), third = titled(3, "Fréquences");
    const wb::GraphDocument graph = graphTitled(2, "Histogramme de la variable étudiée : SEX");
    for (const wb::Document& document : {wb::Document{first}, wb::Document{graph},
                                         wb::Document{third}, wb::Document{graphTitled(4, "")}})
        output.added(document);

    const std::string stem = "002-histogramme-de-la-variable-etudiee-sex";
    EXPECT_EQ(fileNames(folder),
              (std::set<std::string>{"001-resume.json", "001-resume.html", stem + ".json",
                                     stem + ".svg", stem + ".png", "003-frequences.json",
                                     "003-frequences.html", "004-graph.json", "004-graph.svg",
                                     "004-graph.png", "index.html"}))
        << "no temporary file stays behind";
    EXPECT_EQ(readFile(folder / "003-frequences.json"), wb::tableJsonText(third));
    EXPECT_EQ(readFile(folder / (stem + ".json")), wb::graphJsonText(graph));
    EXPECT_EQ(readFile(folder / (stem + ".png")).substr(1, 3), "PNG");
    EXPECT_NE(readFile(folder / (stem + ".svg")).find("<svg"), std::string::npos);
    EXPECT_EQ(output.shownFiles(), (std::vector<std::string>{"001-resume.html", stem + ".svg",
                                                             "003-frequences.html",
                                                             "004-graph.svg"}));

    const std::string index = readFile(folder / "index.html");
    const struct {
        std::string link, section;
    } listed[] = {
        {"#" + wb::tableAnchor(first) + "\">" + wb::htmlText(first.title), wb::tableHtml(first)},
        {"#graph-2\">Histogramme de la variable étudiée : SEX", "<object data=\"" + stem + ".svg\""},
        {"#" + wb::tableAnchor(third) + "\">" + wb::htmlText(third.title), wb::tableHtml(third)},
        {"#graph-4\">", "<object data=\"004-graph.svg\""},
    };
    std::size_t link = 0, section = 0;
    for (const auto& entry : listed) {
        SCOPED_TRACE(entry.link);
        const std::size_t nextLink = index.find("<a href=\"" + entry.link);
        const std::size_t nextSection = index.find(entry.section);
        ASSERT_NE(nextLink, std::string::npos);
        ASSERT_NE(nextSection, std::string::npos);
        EXPECT_GT(nextLink, link);
        EXPECT_GT(nextSection, section);
        link = nextLink;
        section = nextSection;
    }
    EXPECT_LT(link, index.find("<main>")) << "the list comes before the documents";
    EXPECT_NE(index.find("<img src=\"" + stem + ".png\"", index.find("<object data=\"" + stem)),
              std::string::npos)
        << "the PNG where the SVG cannot be shown";
    EXPECT_NE(index.find("<p class=\"subtitle\">SEX = Femme</p>"), std::string::npos);
}

// A document refreshed in place keeps its files' names, whatever its new title; a closed one
// leaves the index, and its files go.
TEST(OutputFolderTest, ReplacedDocumentsAreRewrittenInPlaceAndClosedOnesLeaveTheIndex) {
    wb::testing::TempDir dir;
    const fs::path folder = dir.path("out");
    wb::OutputFolder output(folder);
    const wb::Document first{titled(1, "Résumé"), 1};
    output.added(first);
    output.added(wb::Document{titled(2, "Fréquences"), 2});
    const wb::Document refreshed{titled(1, "Résumé après le filtre"), 1};
    output.replaced(refreshed);
    output.closed(wb::Document{titled(2, "Fréquences"), 2});

    EXPECT_EQ(readFile(folder / "001-resume.json"), wb::tableJsonText(refreshed.table()));
    EXPECT_EQ(output.shownFiles(), std::vector<std::string>{"001-resume.html"});
    const std::string index = readFile(folder / "index.html");
    EXPECT_NE(index.find("Résumé après le filtre"), std::string::npos);
    EXPECT_EQ(index.find("Fréquences"), std::string::npos);
    EXPECT_FALSE(fs::exists(folder / "002-frequences.json"));
    EXPECT_FALSE(fs::exists(folder / "002-frequences.html"));
}

std::string failureOf(wb::OutputFolder& output) {
    try {
        output.added(wb::Document{titled(1, "x")});
    } catch (const wb::OutputError& error) {
        return error.what();
    }
    return "no error";
}

TEST(OutputFolderTest, FailuresNameTheFolder) {
    wb::testing::TempDir dir;
    const fs::path underFile = fs::path(dir.write("plain", "x")) / "out";
    wb::OutputFolder output(underFile);
    EXPECT_EQ(failureOf(output),
              "cannot create the output folder '" + underFile.string() + "': Not a directory");

    const fs::path folder = dir.path("blocked");
    fs::create_directories(folder / "001-x.json"); // a directory where the file would go
    output.setFolder(folder);
    EXPECT_EQ(failureOf(output), "cannot write 001-x.json in the output folder '" +
                                     folder.string() + "': Is a directory");
    EXPECT_EQ(fileNames(folder), std::set<std::string>{"001-x.json"}) << "no temporary file left";
    EXPECT_TRUE(output.stems().empty()) << "a table whose files failed is not indexed";
}

} // namespace
