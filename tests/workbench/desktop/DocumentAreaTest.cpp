// The window area: one window per document of the store, refreshed in place, moved by a
// macro, closed with its document either way.
#include <gtest/gtest.h>

#include <QMdiSubWindow>

#include "workbench/desktop/DocumentArea.h"
#include "workbench/desktop/DocumentViews.h"
#include "workbench/documents/CellText.h"
#include "workbench/documents/SampleTable.h"

namespace {

wb::GraphDocument sexHistogram() {
    wb::GraphDocument graph;
    graph.type = wb::GraphType::Histogram;
    graph.titles = {"Histogramme de la variable du drill-down : SEX"};
    graph.series.push_back({"", {1, 2}, {40, 60}, {}, 12, 0.9});
    graph.xAxis = {0, 3, 1, {{1, "Homme"}, {2, "Femme"}}};
    graph.yAxis = {0, 100, 10, {}};
    return graph;
}

class DocumentAreaTest : public ::testing::Test {
protected:
    DocumentAreaTest() {
        area.resize(1400, 1000);
        area.show();
    }
    static QString shown(const QAbstractItemModel& model, int row, int column) {
        return model.data(model.index(row, column), Qt::DisplayRole).toString();
    }

    wb::DocumentStore store;
    wb::desktop::DocumentArea area{store};
};

TEST_F(DocumentAreaTest, EachDocumentHasOneWindowThatFollowsIt) {
    const wb::TableDocument sample = wb::testing::sampleTable();
    const int table = store.add(wb::Document{sample});
    const int graph = store.add(wb::Document{sexHistogram()});
    ASSERT_EQ(area.subWindowList().size(), 2);
    QMdiSubWindow* window = area.windowOf(table);
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->windowTitle(), "Statistiques descriptives");
    const QAbstractItemModel& model =
        static_cast<const wb::desktop::TableView*>(window->widget())->model();
    ASSERT_EQ(model.rowCount(), 3);
    ASSERT_EQ(model.columnCount(), 3);
    EXPECT_EQ(shown(model, 0, 0), QString::fromStdString(wb::cellText(sample.rows[0].cells[0],
                                                                      wb::ColumnFormat::Real)));
    EXPECT_EQ(shown(model, 1, 2), "Très élevé & <plus>");
    EXPECT_EQ(model.headerData(1, Qt::Horizontal, Qt::DisplayRole).toString(), "Effectif\nCumulé");
    EXPECT_EQ(model.headerData(2, Qt::Vertical, Qt::DisplayRole).toString(), "POIDS");

    // Refreshed in place: the same window, where it was, with the new content.
    const QRect place = window->geometry();
    wb::TableDocument fewer = sample;
    fewer.title = "Statistiques descriptives après le filtre";
    fewer.rows.pop_back();
    store.replace(table, wb::Document{fewer});
    EXPECT_EQ(area.windowOf(table), window);
    EXPECT_EQ(window->geometry(), place);
    EXPECT_EQ(window->windowTitle(), "Statistiques descriptives après le filtre");
    EXPECT_EQ(model.rowCount(), 2);

    // A macro's Left, Top, Width and Height move the real window.
    const std::shared_ptr<wb::DocumentState> state = store.state(table);
    state->window = {30, 40, 500, 300, wb::NormalWindow};
    state->list->changed(table); // what the window object does after each put
    EXPECT_EQ(window->geometry(), QRect(30, 40, 500, 300));

    // The user closing a window closes its document; the store closing one closes its window.
    area.windowOf(graph)->close();
    EXPECT_EQ(store.find(graph), nullptr);
    EXPECT_EQ(area.windowOf(graph), nullptr);
    store.close(table);
    EXPECT_EQ(area.windowOf(table), nullptr);
    EXPECT_TRUE(state->closed);
}

TEST_F(DocumentAreaTest, AGraphWindowTellsTheBarUnderTheMouse) {
    const int id = store.add(wb::Document{sexHistogram()});
    const auto* view = static_cast<const wb::desktop::GraphView*>(area.windowOf(id)->widget());
    QStringList found;
    for (int x = 0; x < view->width(); x += 4)
        for (int y = 0; y < view->height(); y += 4)
            if (const QString tip = view->toolTipAt({x, y}); !tip.isEmpty() && !found.contains(tip))
                found << tip;
    ASSERT_EQ(found.size(), 2) << found.join(" / ").toStdString();
    EXPECT_TRUE(found[0].contains("Homme") && found[0].contains("40")) << found[0].toStdString();
    EXPECT_TRUE(found[1].contains("Femme") && found[1].contains("60")) << found[1].toStdString();
    EXPECT_TRUE(view->toolTipAt({0, 0}).isEmpty());
}

} // namespace
