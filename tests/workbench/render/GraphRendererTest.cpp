// The pictures of graph documents: what the SVG holds (titles, one shape per bar or slice
// with its full label as tooltip) and that the PNG is an image of the picture's size.
#include <gtest/gtest.h>

#include <map>
#include <set>

#include <cstdint>
#include <regex>
#include <string>
#include <vector>

#include "workbench/documents/CellText.h"
#include "workbench/render/GraphPainter.h"
#include "workbench/render/GraphRenderer.h"
#include "workbench/render/SampleGraphs.h"
#include "workbench/render/TextBoxes.h"

namespace {

std::size_t occurrences(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

// The first group of every match of `pattern` in the SVG, in order.
std::vector<std::string> captures(const std::string& svg, const char* pattern) {
    std::vector<std::string> found;
    const std::regex form(pattern);
    for (auto it = std::sregex_iterator(svg.begin(), svg.end(), form); it != std::sregex_iterator(); ++it)
        found.push_back((*it)[1]);
    return found;
}
// The tooltips of the hotspots, in order.
std::vector<std::string> tooltips(const std::string& svg) {
    return captures(svg, R"re(<polygon class="hotspot" points="[^"]*"><title>([^<]*)</title>)re");
}
// The texts the picture draws (the SVG generator writes each drawn string as one element).
std::vector<std::string> drawnTexts(const std::string& svg) {
    return captures(svg, R"re(<text[^>]*>([^<]*)</text>)re");
}

bool contains(const std::vector<std::string>& texts, const std::string& text) {
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

class GraphRendererTest : public ::testing::Test {
protected:
    GraphRendererTest() : file(wb::testing::sampleSurvey()) {
        output.setDataFile(&file);
    }
    const wb::GraphDocument& made(int result) {
        EXPECT_NE(result, 0) << output.lastError();
        return output.documents().back().graph();
    }

    wb::TokenTable tokens;
    wb::DocumentStore store;
    wb::OutputService output{store, tokens};
    wb::DataFile file;
};

TEST_F(GraphRendererTest, HistogramSvgHoldsTitlesAndOneShapePerBar) {
    const wb::GraphDocument& graph = made(wb::testing::sendSampleHistogram(output, tokens));
    const std::string svg = wb::graphSvg(graph);
    const std::vector<std::string> texts = drawnTexts(svg);

    EXPECT_TRUE(contains(texts, "Histogramme de la variable du drill-down : REGION: Région de résidence"))
        << "the title, accents and all";
    EXPECT_TRUE(contains(texts, wb::testing::SampleDrill)) << "the drill string under it";
    for (const char* tick : {"0", "100", "200"})
        EXPECT_TRUE(contains(texts, tick)) << "count axis label " << tick;

    const std::vector<std::string> tips = tooltips(svg);
    const auto& regions = wb::testing::sampleRegions();
    ASSERT_EQ(tips.size(), regions.size()) << "one shape per bar";
    for (std::size_t k = 0; k < regions.size(); ++k)
        EXPECT_EQ(tips[k], regions[k] + " : " +
                               std::to_string(static_cast<int>(wb::testing::sampleRegionCounts()[k])));
    // The longest labels are shortened where they are drawn, never in their tooltip.
    EXPECT_FALSE(contains(texts, "Provence-Alpes-Côte d'Azur"));
    EXPECT_TRUE(std::any_of(texts.begin(), texts.end(), [](const std::string& t) {
        return t.rfind("Provence-Alpes", 0) == 0 && t.find("…") != std::string::npos;
    }));
    EXPECT_TRUE(contains(texts, "Bretagne")) << "a short label stays whole";
}

// A count axis that the module tops far above the tallest bar (500 for 187) is drawn fitted
// to the bars; one that fits already keeps the module's labels (the test above).
TEST_F(GraphRendererTest, ACountAxisFarAboveTheBarsIsFittedToThem) {
    wb::GraphDocument graph = made(wb::testing::sendSampleHistogram(output, tokens));
    graph.yAxis.max = 500;
    graph.yAxis.labels.clear();
    for (int k = 0; k <= 10; ++k)
        graph.yAxis.labels.push_back({50.0 * k, std::to_string(50 * k)});
    const std::vector<std::string> texts = drawnTexts(wb::graphSvg(graph));
    EXPECT_TRUE(contains(texts, "150"));
    EXPECT_TRUE(contains(texts, "200")) << "the first neat tick above the tallest bar, 187";
    for (const char* beyond : {"250", "300", "500"})
        EXPECT_FALSE(contains(texts, beyond)) << beyond;
}

// Width and height of a PNG, from its header.
std::pair<std::uint32_t, std::uint32_t> pngSize(const std::string& png) {
    const auto word = [&](std::size_t at) {
        return std::uint32_t(static_cast<unsigned char>(png[at])) << 24 |
               std::uint32_t(static_cast<unsigned char>(png[at + 1])) << 16 |
               std::uint32_t(static_cast<unsigned char>(png[at + 2])) << 8 |
               std::uint32_t(static_cast<unsigned char>(png[at + 3]));
    };
    return {word(16), word(20)};
}

// Every kind of graph draws its title, one shape per bar, slice, band, box or cell, and a text
// of its own; its PNG is the picture at its size; and no text covers another: labels, ticks,
// values and titles each keep their own place.
TEST_F(GraphRendererTest, EveryKindDrawsItsShapesAndNoTextCoversAnother) {
    const auto bars3D = [](const wb::GraphDocument& graph) {
        std::size_t bars = 0;
        for (double count : graph.histogram3d->counts)
            bars += count > 0;
        return bars;
    };
    const auto regions = [](const wb::GraphDocument&) { return wb::testing::sampleRegions().size(); };
    const auto boxes = [](const wb::GraphDocument& g) { return g.boxes->variables.size(); };
    const struct {
        const char* kind;
        int result;
        std::size_t (*expected)(const wb::GraphDocument&);
        const char* text; // drawn somewhere
    } cases[] = {
        {"histogram", wb::testing::sendSampleHistogram(output, tokens), regions, "Effectif"},
        {"pie", wb::testing::sendSamplePie(output, tokens), regions, "17.9 %"},
        {"stacked", wb::testing::sendSampleStacked(output, tokens),
         [](const wb::GraphDocument&) -> std::size_t { return 3 + 3 + 4; }, "CHANNEL"},
        {"boxplot", wb::testing::sendSampleBoxes(output, file, 52), boxes, "SATISFACTION"},
        {"boxplot", wb::testing::sendSampleBoxes(output, file, 54), boxes, // it says what it shows
         "◆ moyenne — boîte : ± erreur-type — moustaches : ± écart-type"},
        {"scatter-matrix", wb::testing::sendSampleScatter(output, file) == 0 ? 1 : 0,
         [](const wb::GraphDocument&) -> std::size_t { return 4 * 4; }, "Âge (années révolues)"},
        {"histogram3d", wb::testing::sendSample3D(output, file), bars3D, "SATISFACTION"},
        {"histogram3d", wb::testing::sendSample3D(output, file, "AGEGROUP", "CHANNEL"), bars3D,
         "CHANNEL"},
    };
    ASSERT_EQ(output.documents().size(), std::size(cases));
    for (std::size_t k = 0; k < std::size(cases); ++k) {
        SCOPED_TRACE(cases[k].kind);
        ASSERT_NE(cases[k].result, 0) << output.lastError();
        const wb::GraphDocument& graph = output.documents()[k].graph();
        EXPECT_EQ(wb::graphTypeName(graph.type), cases[k].kind);
        const std::string svg = wb::graphSvg(graph);
        EXPECT_EQ(tooltips(svg).size(), cases[k].expected(graph));
        EXPECT_TRUE(contains(drawnTexts(svg), cases[k].text)) << cases[k].text;
        EXPECT_TRUE(contains(drawnTexts(svg), graph.titles.front()));

        // The renderer starts the application that the fonts below need.
        const std::string png = wb::graphPng(graph);
        const wb::PictureSize size = wb::pictureSize(graph);
        ASSERT_GT(png.size(), 24u);
        EXPECT_EQ(png.substr(0, 8), std::string("\x89PNG\r\n\x1a\n", 8));
        EXPECT_EQ(png.substr(12, 4), "IHDR");
        EXPECT_EQ(pngSize(png), std::make_pair(std::uint32_t(size.width), std::uint32_t(size.height)));

        wb::testing::TextBoxDevice device(size.width, size.height);
        {
            QPainter painter(&device);
            wb::GraphPainter(painter, graph, QSizeF(size.width, size.height)).paint();
        }
        const std::vector<wb::testing::TextBox>& texts = device.boxes();
        ASSERT_FALSE(texts.empty());
        for (std::size_t a = 0; a < texts.size(); ++a)
            for (std::size_t b = a + 1; b < texts.size(); ++b) {
                const QRectF common = texts[a].outline.intersected(texts[b].outline).boundingRect();
                EXPECT_FALSE(common.width() > 1 && common.height() > 1)
                    << "\"" << texts[a].text.toStdString() << "\" covers \""
                    << texts[b].text.toStdString() << "\"";
            }
    }
    EXPECT_GT(wb::pictureSize(output.documents()[5].graph()).height,
              wb::pictureSize(output.documents()[0].graph()).height)
        << "a matrix of four variables is drawn larger";
}

// A band of a stacked plot tells its variable, its place in the stack from the bottom, and
// its share.
TEST_F(GraphRendererTest, StackedBandsTellTheirPlaceAndShare) {
    const wb::GraphDocument& graph = made(wb::testing::sendSampleStacked(output, tokens));
    const std::vector<std::string> tips = tooltips(wb::graphSvg(graph));
    ASSERT_EQ(tips.size(), 10u);
    const std::regex form(R"((\S+) — bande (\d) sur (\d) : [0-9.]+ %)");
    std::map<std::string, std::set<int>> places;
    for (const std::string& tip : tips) {
        std::smatch parts;
        ASSERT_TRUE(std::regex_match(tip, parts, form)) << tip;
        places[parts[1]].insert(std::stoi(parts[2]));
        EXPECT_LE(std::stoi(parts[2]), std::stoi(parts[3])) << tip;
    }
    for (const auto& [variable, seen] : places)
        EXPECT_EQ(*seen.begin(), 1) << variable << ": the bottom band is band 1";
}

TEST(GraphRendererTextTest, TooltipsAreEscaped) {
    wb::GraphDocument graph;
    graph.titles = {"R&D <2024>"};
    graph.series.push_back({"", {1}, {3}, {}, 12, 0.9});
    graph.xAxis = {0, 2, 1, {{1, "Recherche & \"Développement\""}}};
    graph.yAxis = {0, 5, 1, {}};
    const std::string svg = wb::graphSvg(graph);
    EXPECT_EQ(tooltips(svg), std::vector<std::string>{
                                 "Recherche &amp; &quot;Développement&quot; : 3"});
    EXPECT_EQ(occurrences(svg, "R&amp;D &lt;2024&gt;"), 2u) << "document title and drawn title";
    EXPECT_EQ(occurrences(svg, "R&D"), 0u);
}

// Values on the outer panels of the scatterplot matrix: each variable gets neat ticks that
// lie within its range; and a 3D histogram of few bars writes the bars' counts on them.
TEST_F(GraphRendererTest, ScatterValuesAndBarCountsAreWritten) {
    ASSERT_EQ(wb::testing::sendSampleScatter(output, file), 0) << output.lastError();
    const wb::GraphDocument& scatter = output.documents().back().graph();
    const std::vector<std::string> texts = drawnTexts(wb::graphSvg(scatter));
    for (const wb::GraphVariable& variable : scatter.scatter->columns) {
        SCOPED_TRACE(variable.name);
        int inRange = 0;
        for (const std::string& text : texts) {
            char* end = nullptr;
            const double value = std::strtod(text.c_str(), &end);
            // Strictly inside: the diagonal writes the range's ends themselves.
            inRange += end != text.c_str() && *end == '\0' && value > variable.min &&
                       value < variable.max;
        }
        EXPECT_GE(inRange, 2) << "ticks within " << variable.min << " to " << variable.max;
    }

    const wb::GraphDocument& bars =
        made(wb::testing::sendSample3D(output, file, "AGEGROUP", "CHANNEL"));
    std::vector<std::string> drawn = drawnTexts(wb::graphSvg(bars));
    std::size_t shown = 0, positive = 0;
    for (double count : bars.histogram3d->counts) {
        if (!(count > 0))
            continue;
        ++positive;
        const auto found = std::find(drawn.begin(), drawn.end(), wb::shortNumber(count));
        if (found != drawn.end()) {
            drawn.erase(found);
            ++shown;
        }
    }
    ASSERT_LE(positive, 40u) << "few enough bars to carry their counts";
    // A count that would cover another is left to the tooltip.
    EXPECT_GE(shown, positive * 3 / 4) << positive << " bars";
}

} // namespace
