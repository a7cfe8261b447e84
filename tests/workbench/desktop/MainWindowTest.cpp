// The whole desktop driven as a person drives it: open the sample, start the analysis, choose
// the variables in the variable dialog, drill down by choosing a row in the category dialog,
// ask for a result, see it in its window.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QCheckBox>
#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiSubWindow>
#include <QProgressDialog>
#include <QPushButton>
#include <QClipboard>
#include <QGuiApplication>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <cstring>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>

#include "drilldown/core/ModuleEntry.h"
#include "drilldown/resources/ControlIds.h"
#include "support/AnalysisFixture.h"
#include "support/TempDir.h"
#include "workbench/data/DataFileLoader.h"
#include "workbench/session/DrillCondition.h"
#include "workbench/stats/SubsetContrast.h"
#include "workbench/desktop/BrushingMode.h"
#include "workbench/desktop/DataDialogs.h"
#include "workbench/desktop/DataView.h"
#include "workbench/desktop/MainWindow.h"
#include "workbench/desktop/VariableDialog.h"
#include "workbench/documents/GraphJson.h"
#include "workbench/documents/TableJson.h"
#include "workbench/headless/HeadlessFrontEnd.h"
#include "workbench/session/PanelMacro.h"

namespace {

// Plays `user` in the modal window that the next action opens, once it is up.
void whenModalOpens(std::function<void(QWidget&)> user) {
    QTimer::singleShot(0, [user] {
        QWidget* modal = QApplication::activeModalWidget();
        ASSERT_NE(modal, nullptr) << "no modal window opened";
        user(*modal);
    });
}

QAbstractButton* button(const wb::desktop::TemplateDialog& dialog, int id) {
    return qobject_cast<QAbstractButton*>(dialog.widgets(id).at(0));
}

void selectVariables(QListWidget& offered, const std::vector<QString>& names) {
    offered.clearSelection();
    for (int row = 0; row < offered.count(); ++row)
        for (const QString& name : names)
            if (offered.item(row)->text().startsWith(name + " "))
                offered.item(row)->setSelected(true);
}

// The main window on the sample data, with an analysis started: its panel is open.
class SampleWindow : public ::testing::Test {
protected:
    void SetUp() override {
        window.show();
        ASSERT_TRUE(window.openFile(DD_SOURCE_DIR "/examples/sample.csv"));
        window.startAnalysis();
    }
    wb::testing::TempDir dir;
    wb::desktop::MainWindow window{test::linkedModule(dir.path("out"))};
};

TEST_F(SampleWindow, AUserDrillsTheSampleByMouseAndSeesTheResultInItsWindow) {
    wb::AnalysisSession& session = window.session();
    wb::desktop::TemplateDialog* panel = window.frontEnd().windowOf(session.panel());
    ASSERT_NE(panel, nullptr) << "the panel has its window";

    whenModalOpens([](QWidget& modal) {
        auto& variables = dynamic_cast<wb::desktop::VariableDialog&>(modal);
        selectVariables(*variables.offered(), {"REGION", "SEX"});
        QTest::mouseClick(variables.addButton(0), Qt::LeftButton);
        selectVariables(*variables.offered(), {"AGE"});
        QTest::mouseClick(variables.addButton(1), Qt::LeftButton);
        QTest::mouseClick(variables.okButton(), Qt::LeftButton);
    });
    QTest::mouseClick(button(*panel, ButtonDrillVariables), Qt::LeftButton);
    ASSERT_EQ(session.analysis().GetDrillDownsSize(), 3);

    auto* downs = qobject_cast<QListWidget*>(panel->widgets(ListDrillDowns).at(0));
    QTest::mouseClick(downs->viewport(), Qt::LeftButton, {},
                      downs->visualItemRect(downs->item(1)).center()); // SEX
    whenModalOpens([](QWidget& modal) {
        auto& categories = dynamic_cast<wb::desktop::TemplateDialog&>(modal);
        auto* rows = qobject_cast<QTreeWidget*>(categories.widgets(9102).at(0));
        ASSERT_GE(rows->topLevelItemCount(), 2);
        rows->setCurrentItem(rows->topLevelItem(1)); // the second category
        QTest::mouseClick(button(categories, 1), Qt::LeftButton);
    });
    QTest::mouseClick(button(*panel, ButtonDrillDown), Qt::LeftButton);
    ASSERT_EQ(session.analysis().GetDrillUpsSize(), 1);
    EXPECT_EQ(session.analysis().GetDrillUps()->begin()->DrilledItem, 1);

    // Beside the lists, the two variables left ranked by how far the step moved them.
    auto* next = panel->findChild<QTreeWidget*>("nextDrill");
    ASSERT_NE(next, nullptr);
    EXPECT_TRUE(QTest::qWaitFor([&] { return next->topLevelItemCount() == 2; }, 2000));
    const wb::SubsetContrast contrast = wb::contrastSubset(session.analysis(), session.file());
    for (int row = 0; row < 2; ++row)
        EXPECT_EQ(next->topLevelItem(row)->text(0).toStdString(), contrast.nextDrill[row].name);
    // It can be put away, and the panel takes its own width again.
    const int withPane = panel->width();
    window.frontEnd().setNextDrillShown(false);
    EXPECT_FALSE(next->isVisibleTo(panel));
    EXPECT_LT(panel->width(), withPane);
    window.frontEnd().setNextDrillShown(true);
    EXPECT_EQ(panel->width(), withPane);

    QTest::mouseClick(button(*panel, ButtonSummary), Qt::LeftButton);
    ASSERT_EQ(session.documents().documents().size(), 1u);
    const wb::Document& summary = session.documents().documents().front();
    EXPECT_EQ(summary.command, ButtonSummary);
    QMdiSubWindow* shown = window.documents().windowOf(summary.id);
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(shown->windowTitle().toStdString(), summary.name());
    EXPECT_EQ(session.dialogs().resultsLockDepth(session.panel()), 0);
}

// Drilling by clicking bars: three levels, one step undone from the graph on the way; the
// loop offers the next variable's graph after each step and ends by itself when none is left.
// The steps recorded meanwhile are written where the user asks (that such a recording replays
// to the same state: MacroCommand.ARecordingReplaysToTheSameStateAndDocuments).
TEST_F(SampleWindow, AUserDrillsByClickingBarsUntilNoVariableIsLeft) {
    wb::AnalysisSession& session = window.session();
    window.startRecording();
    session.chooseVariables("REGION SEX CHANNEL");
    wb::desktop::TemplateDialog* panel = window.frontEnd().windowOf(session.panel());
    ASSERT_NE(panel, nullptr);

    // Each pass: the bar to click (from 0; -1 none) and the command button to press.
    const std::vector<std::pair<int, int>> passes = {{1, 0}, {0, 0}, {-1, 1}, {1, 0}, {0, 0}};
    std::size_t seen = 0;
    std::vector<int> commandsOffered;
    std::function<void()> play = [&] {
        wb::desktop::BrushingMode* mode = window.frontEnd().brushingMode();
        if (mode == nullptr || seen == passes.size()) {
            QTimer::singleShot(10, play);
            return;
        }
        const auto [bar, command] = passes[seen++];
        commandsOffered.push_back(static_cast<int>(mode->commandButtons().size()));
        if (bar >= 0) {
            const QPoint centre = mode->outline(bar).boundingRect().center().toPoint();
            QTest::mouseClick(mode, Qt::LeftButton, {}, centre);
            EXPECT_EQ(mode->selected(), bar);
        }
        if (seen < passes.size())
            QTimer::singleShot(10, play);
        mode->commandButtons().at(static_cast<std::size_t>(command))->click();
    };
    QTimer::singleShot(0, play);
    QTest::mouseClick(button(*panel, ButtonBrushing), Qt::LeftButton);
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return seen == passes.size() && window.frontEnd().brushingMode() == nullptr &&
               session.analysis().GetDrillDownsSize() == 0;
    }, 5000));
    EXPECT_EQ(session.analysis().GetDrillUpsSize(), 3);
    EXPECT_EQ(commandsOffered, (std::vector<int>{1, 2, 2, 2, 2}));
    EXPECT_EQ(session.dialogs().resultsLockDepth(session.panel()), 0);

    // The path reached is copied as a condition (DrillCondition.KeepsExactlyTheCasesOfTheSubset
    // checks that the condition keeps the subset).
    const QString condition = window.copySubsetCondition();
    EXPECT_FALSE(condition.isEmpty());
    EXPECT_EQ(QGuiApplication::clipboard()->text(), condition);
    EXPECT_EQ(condition.toStdString(), wb::drillPathCondition(session.analysis(), session.file()));

    const std::string recording = dir.path("brushed.ddm");
    ASSERT_TRUE(window.stopRecording(QString::fromStdString(recording)));
    EXPECT_FALSE(window.recording());
    std::ostringstream recorded;
    recorded << std::ifstream(recording).rdbuf();
    EXPECT_NE(recorded.str().find("\nDrillDown\n"), std::string::npos) << recorded.str();
}

// The panel's Weights and Selection buttons open the workbench's dialogs on the file: taking
// the weight off and selecting cases change the file the analysis counts; a condition that
// does not compile is shown and the dialog stays until it does.
TEST_F(SampleWindow, ThePanelsWeightAndSelectionDialogsChangeTheFile) {
    wb::AnalysisSession& session = window.session();
    session.chooseVariables("REGION | AGE");
    wb::desktop::TemplateDialog* panel = window.frontEnd().windowOf(session.panel());
    ASSERT_GT(session.file().weightVariable(), 0);

    whenModalOpens([](QWidget& modal) {
        auto& weights = dynamic_cast<wb::desktop::WeightDialog&>(modal);
        weights.variables()->setCurrentRow(0); // "(aucune)"
        weights.accept();
    });
    QTest::mouseClick(button(*panel, ButtonWeights), Qt::LeftButton);
    EXPECT_EQ(session.file().weightVariable(), 0);
    EXPECT_EQ(session.analysis().NeedsRescan, 1);

    QString refused;
    whenModalOpens([&refused](QWidget& modal) {
        auto& selection = dynamic_cast<wb::desktop::SelectionDialog&>(modal);
        selection.condition()->setText("AGE >");
        selection.accept();
        refused = selection.problem();
        EXPECT_TRUE(selection.isVisible());
        selection.condition()->setText("AGE > 40");
        selection.accept();
    });
    QTest::mouseClick(button(*panel, ButtonSelection), Qt::LeftButton);
    EXPECT_FALSE(refused.isEmpty());
    EXPECT_EQ(session.file().selectionText(), "AGE > 40");
}

// The active document exported in each format its kind takes; a format it does not take
// is refused with a message.
TEST_F(SampleWindow, TheActiveDocumentIsExportedInTheFormatItsNameAsks) {
    wb::AnalysisSession& session = window.session();
    session.chooseVariables("REGION SEX | AGE");
    ASSERT_TRUE(session.dialogs().click(session.panel(), ButtonFrequencies));
    ASSERT_TRUE(session.dialogs().click(session.panel(), ButtonHistograms));
    const int table = session.documents().documents().front().id;
    const int graph = session.documents().documents().back().id;
    const struct {
        int id;
        const char* file;
        const char* begins;
    } cases[] = {
        {table, "t.csv", ",Effectif"}, {table, "t.html", "<!DOCTYPE html>"},
        {graph, "g.svg", "<?xml"},    {graph, "g.png", "\x89PNG"},
        {graph, "g.csv", nullptr},    {0, "none.csv", nullptr},
    };
    window.frontEnd().setScripted(true); // refusals go to standard error
    for (const auto& c : cases) {
        SCOPED_TRACE(c.file);
        const std::string path = dir.path(c.file);
        EXPECT_EQ(window.exportDocument(c.id, QString::fromStdString(path)), c.begins != nullptr);
        if (c.begins != nullptr) {
            std::ifstream written(path, std::ios::binary);
            std::string start(std::strlen(c.begins), '\0');
            written.read(start.data(), static_cast<std::streamsize>(start.size()));
            EXPECT_EQ(start, c.begins);
        }
    }
}

// The recent files and the window's geometry outlast the window, beside the keyword file.
TEST(MainWindow, RecentFilesAndGeometryAreKeptBesideTheKeywords) {
    wb::testing::TempDir dir;
    wb::SessionOptions options = test::linkedModule(dir.path("out"));
    options.keywordFile = dir.path("config/settings.json");
    std::filesystem::create_directories(dir.path("config"));
    const QString sample = DD_SOURCE_DIR "/examples/sample.csv";
    {
        wb::desktop::MainWindow window(options);
        window.setGeometry(40, 50, 900, 700);
        ASSERT_TRUE(window.openFile(sample));
        window.close();
    }
    wb::desktop::MainWindow again(options);
    EXPECT_EQ(again.settings().recentFiles(), QStringList{sample});
    EXPECT_EQ(again.size(), QSize(900, 700));
}

// The data view shows each case's values: a label or its code as the user asks, a missing
// value marked, a case that the selection leaves out in grey.
TEST_F(SampleWindow, TheDataViewShowsLabelsOrCodesAndMarksMissingValues) {
    window.showData();
    ASSERT_NE(window.dataView(), nullptr);
    wb::desktop::DataModel& model = window.dataView()->model();
    const wb::DataFile& file = window.session().file();
    ASSERT_EQ(model.rowCount(), file.caseCount());
    const int region = file.findVariable("REGION"), age = file.findVariable("AGE");
    const auto shown = [&](int caseNo, int var, int role = Qt::DisplayRole) {
        return model.data(model.index(caseNo - 1, var - 1), role);
    };
    const double code = file.value(1, region);
    EXPECT_EQ(shown(1, region).toString().toStdString(), file.variable(region).labels.at(code));
    window.dataView()->labelsBox()->setChecked(false);
    EXPECT_EQ(shown(1, region).toString(), QString::number(code));
    int missing = 1;
    while (missing <= file.caseCount() && !file.isMissing(age, file.value(missing, age)))
        ++missing;
    ASSERT_LE(missing, file.caseCount());
    EXPECT_EQ(shown(missing, age).toString(), "·");
    EXPECT_TRUE(shown(missing, age, Qt::BackgroundRole).isValid());

    window.session().changeFile([](wb::DataFile& data) { data.setSelection("AGE > 200"); });
    EXPECT_TRUE(shown(1, region, Qt::ForegroundRole).isValid()) << "left out: grey";
}

// Cancel in the progress dialog breaks the scan off; a scan of the chosen variables broken
// off keeps no half-counted records.
TEST(MainWindow, CancelDuringTheScanBreaksItOff) {
    wb::testing::TempDir dir;
    wb::desktop::MainWindow window(test::linkedModule(dir.path("out")));
    std::vector<std::vector<double>> cases;
    for (int c = 0; c < 20000; ++c)
        cases.push_back({double(c % 3 + 1), double(c)});
    wb::AnalysisSession& session = window.session();
    session.open(test::makeFile({{"A"}, {"X"}}, cases));
    session.startAnalysis();
    bool cancelled = false;
    QTimer::singleShot(0, [&] {
        if (auto* progress = window.findChild<QProgressDialog*>()) {
            progress->cancel();
            cancelled = true;
        }
    });
    try {
        session.chooseVariables("A | X");
    } catch (const wb::DrillError&) {
        // the panel may report the choice as not taken
    }
    EXPECT_TRUE(cancelled);
    EXPECT_EQ(session.analysis().GetDrillDownsSize(), 0);
}

// The scripted run drives the analysis by a macro through the same panel and writes every
// window as a picture; a wrong statement gives status 1 and still leaves the pictures.
TEST(MainWindow, AScriptedRunWritesEveryWindowAndGivesTheMacrosStatus) {
    const struct {
        const char* macro;
        int status;
        int documents;
    } cases[] = {
        {"Variables = \"REGION SEX | AGE\"\nDrillDownVariable = \"SEX\"\n"
         "DrillDownCategory = 0\nDrillDown\nPrint Summary\nPrint Descriptives\n",
         0, 2},
        {"Variables = \"REGION | AGE\"\nNoSuchMember = 1\n", 1, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.macro);
        wb::testing::TempDir dir;
        wb::desktop::MainWindow window(test::linkedModule(dir.path("out")));
        ASSERT_TRUE(window.openFile(DD_SOURCE_DIR "/examples/sample.csv"));
        const std::string macro = dir.write("tour.ddm", c.macro);
        EXPECT_EQ(window.runScript(QString::fromStdString(macro),
                                   QString::fromStdString(dir.path("shots"))),
                  c.status);
        const QStringList pictures = QDir(QString::fromStdString(dir.path("shots")))
                                         .entryList({"*.png"}, QDir::Files, QDir::Name);
        // The main window, the panel's four pages, and one picture per document.
        EXPECT_EQ(pictures.size(), 5 + c.documents) << pictures.join(" ").toStdString();
    }
}

// The user moves the stand-alone windows, saves their layout, starts a new analysis that
// takes the same steps and restores the layout: the windows come back where they were, in the
// same stacking order, and a layout file that is no layout is refused with its name.
TEST(MainWindow, AWindowLayoutSavedAndRestoredPutsTheRealWindowsBack) {
    wb::testing::TempDir dir;
    wb::desktop::MainWindow window(test::linkedModule(dir.path("out")));
    window.show();
    ASSERT_TRUE(window.openFile(DD_SOURCE_DIR "/examples/sample.csv"));
    ASSERT_EQ(window.runScript(DD_SOURCE_DIR "/examples/standalone.ddm", {}), 0);
    wb::DocumentStore& store = window.session().documents();
    // The geometry of each window, by its document's command and output.
    const auto places = [&] {
        std::map<std::pair<int, int>, QRect> all;
        for (const wb::Document& document : store.documents())
            all[{document.command, document.output}] =
                window.documents().windowOf(document.id)->geometry();
        return all;
    };
    for (int shift = 0; const wb::Document& document : store.documents()) {
        window.documents().windowOf(document.id)->setGeometry(20 * shift, 15 * shift, 320, 240);
        ++shift;
    }
    window.documents().setActiveSubWindow(window.documents().windowOf(store.documents()[1].id));
    const auto moved = places();
    const int front = store.documents()[1].command;
    const QString layout = QString::fromStdString(dir.path("windows.ddl"));
    ASSERT_TRUE(window.saveLayout(layout));

    const std::string steps = dir.write(
        "steps.ddm", "Variables = \"REGION SEX CHANNEL | AGE SPEND\"\n"
                     "DrillDownVariable = \"REGION\"\nDrillDownCategory = \"Bretagne\"\nDrillDown\n"
                     "DrillDownVariable = \"SEX\"\nDrillDownCategory = \"Femme\"\nDrillDown\n");
    ASSERT_EQ(window.runScript(QString::fromStdString(steps), {}), 0);
    ASSERT_TRUE(store.documents().empty()) << "the first analysis took its windows along";
    ASSERT_TRUE(window.restoreLayout(layout));
    EXPECT_EQ(places(), moved);
    const int active = store.activeDocument();
    EXPECT_EQ(store.find(active)->command, front);
    EXPECT_EQ(window.documents().activeSubWindow(), window.documents().windowOf(active));

    EXPECT_FALSE(window.restoreLayout(QString::fromStdString(steps)));
}

// The documents of the documents' store as JSON, in order.
std::vector<std::string> documentsAsJson(const wb::DocumentStore& store) {
    std::vector<std::string> texts;
    for (const wb::Document& document : store.documents())
        texts.push_back(document.isTable() ? wb::tableJsonText(document.table())
                                           : wb::graphJsonText(document.graph()));
    return texts;
}

// A macro through the desktop and through the headless front end: the same documents. The
// stand-alone example also refreshes windows in place and closes one.
TEST(MainWindow, TheDesktopAndTheHeadlessFrontEndMakeTheSameDocuments) {
    const std::string sample = DD_SOURCE_DIR "/examples/sample.csv";
    for (const auto& [name, documents] : {std::pair{"tour.ddm", 21u}, {"standalone.ddm", 6u}}) {
        SCOPED_TRACE(name);
        const std::string macroPath = std::string(DD_SOURCE_DIR "/examples/") + name;
        wb::testing::TempDir dir;
        const wb::SessionOptions options = test::linkedModule(dir.path("out"));
        std::vector<std::string> desktop;
        {
            wb::desktop::MainWindow window(options);
            ASSERT_TRUE(window.openFile(QString::fromStdString(sample)));
            ASSERT_EQ(window.runScript(QString::fromStdString(macroPath), {}), 0);
            desktop = documentsAsJson(window.session().documents());
        }
        wb::HeadlessFrontEnd headless(nullptr, nullptr);
        wb::AnalysisSession session(headless.bundle(), options);
        session.open(wb::loadDataFile(sample));
        session.startAnalysis();
        std::ifstream macro(macroPath);
        std::ostringstream printed;
        wb::runPanelMacro(session, macro, macroPath, printed);
        EXPECT_EQ(desktop.size(), documents);
        EXPECT_EQ(desktop, documentsAsJson(session.documents()));
    }
}

} // namespace
