#include "workbench/desktop/MainWindow.h"

#include <QApplication>
#include <QClipboard>
#include <QStatusBar>
#include <QCloseEvent>
#include <QFileInfo>
#include <QDir>
#include <QFileDialog>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QSignalBlocker>
#include <QMessageBox>
#include <QTabWidget>

#include "drilldown/resources/ControlIds.h"
#include "workbench/data/DataFileLoader.h"
#include "workbench/data/WholeFile.h"
#include "workbench/desktop/DataDialogs.h"
#include "workbench/desktop/DataView.h"
#include "workbench/documents/TableCsv.h"
#include "workbench/documents/TableHtml.h"
#include "workbench/render/GraphRenderer.h"
#include "workbench/desktop/QtText.h"
#include "workbench/session/DrillCondition.h"
#include "workbench/session/PanelMacro.h"
#include "workbench/session/WindowLayout.h"

#include <fstream>
#include <iostream>

namespace wb::desktop {

MainWindow::MainWindow(SessionOptions options)
    : m_settings(options.keywordFile), m_session(m_frontEnd.bundle(nullptr), std::move(options)),
      m_area(new DocumentArea(m_session.documents(), this)) {
    m_frontEnd.attach(m_session);
    m_frontEnd.showDocumentsIn(m_area);
    setCentralWidget(m_area);
    setWindowTitle(QStringLiteral("Drill-Down"));
    if (!restoreGeometry(m_settings.geometry()))
        resize(1280, 860);
    buildMenus();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    m_settings.setGeometry(saveGeometry());
    QMainWindow::closeEvent(event);
}

MainWindow::~MainWindow() {
    m_session.closeAnalysis();
    // The dialog windows that the analysis's end let go, and the window area, watch the
    // session: they go while it stands.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    delete takeCentralWidget();
}

void MainWindow::buildMenus() {
    QMenu* file = menuBar()->addMenu(QStringLiteral("&Fichier"));
    file->addAction(QStringLiteral("&Ouvrir…"), QKeySequence::Open, this, [this] {
        const QString path = QFileDialog::getOpenFileName(
            this, QStringLiteral("Ouvrir un fichier de données"), {},
            QStringLiteral("Données (*.csv *.ddf *.sav *.zsav *.por *.dta *.sas7bdat);;Tous (*)"));
        if (!path.isEmpty())
            openFile(path);
    });
    QMenu* recent = file->addMenu(QStringLiteral("Fichiers &récents"));
    connect(recent, &QMenu::aboutToShow, this, [this, recent] { fillRecentFiles(*recent); });
    file->addAction(QStringLiteral("&Exporter le document actif…"), this, [this] {
        const int id = m_session.documents().activeDocument();
        const Document* document = m_session.documents().find(id);
        if (document == nullptr) {
            QMessageBox::information(this, windowTitle(), QStringLiteral("Aucun document n'est actif."));
            return;
        }
        const QString path = QFileDialog::getSaveFileName(
            this, QStringLiteral("Exporter le document"), qtext(document->name()),
            document->isTable() ? QStringLiteral("CSV (*.csv);;HTML (*.html)")
                                : QStringLiteral("SVG (*.svg);;PNG (*.png)"));
        if (!path.isEmpty())
            exportDocument(id, path);
    });
    file->addSeparator();
    file->addAction(QStringLiteral("&Quitter"), QKeySequence::Quit, this, &QWidget::close);

    QMenu* data = menuBar()->addMenu(QStringLiteral("&Données"));
    data->addAction(QStringLiteral("&Afficher les données"), this, &MainWindow::showData);
    data->addAction(QStringLiteral("&Pondération…"), this, [this] {
        if (dataMenuOpen()) {
            WeightDialog dialog(m_session, this);
            dialog.exec();
        }
    });
    data->addAction(QStringLiteral("&Sélection des observations…"), this, [this] {
        if (dataMenuOpen()) {
            SelectionDialog dialog(m_session, this);
            dialog.exec();
        }
    });

    QMenu* analysis = menuBar()->addMenu(QStringLiteral("&Analyse"));
    analysis->addAction(QStringLiteral("&Drill-down"), this, &MainWindow::startAnalysis);
    analysis->addAction(QStringLiteral("&Copier la condition du sous-ensemble"), this,
                        &MainWindow::copySubsetCondition);
    QAction* nextDrill = analysis->addAction(QStringLiteral("&Où descendre ensuite"));
    nextDrill->setCheckable(true);
    nextDrill->setChecked(true);
    connect(nextDrill, &QAction::toggled, this,
            [this](bool shown) { m_frontEnd.setNextDrillShown(shown); });

    QMenu* tools = menuBar()->addMenu(QStringLiteral("&Outils"));
    tools->addAction(QStringLiteral("&Exécuter une macro…"), this, [this] {
        const QString path = QFileDialog::getOpenFileName(
            this, QStringLiteral("Exécuter une macro"), {}, QStringLiteral("Macros (*.ddm);;Tous (*)"));
        if (!path.isEmpty())
            runMacro(path);
    });
    QAction* record = tools->addAction(QStringLiteral("En&registrer une macro"));
    record->setCheckable(true);
    connect(record, &QAction::toggled, this, [this, record](bool on) {
        if (on) {
            startRecording();
            return;
        }
        const QString path = QFileDialog::getSaveFileName(
            this, QStringLiteral("Enregistrer la macro"), {}, QStringLiteral("Macros (*.ddm)"));
        if (path.isEmpty() || !stopRecording(path)) {
            // Nothing is lost: the recording goes on until it is saved.
            const QSignalBlocker still(record);
            record->setChecked(true);
        }
    });

    QMenu* window = menuBar()->addMenu(QStringLiteral("Fe&nêtre"));
    window->addAction(QStringLiteral("&Mosaïque"), m_area, &QMdiArea::tileSubWindows);
    window->addAction(QStringLiteral("&Cascade"), m_area, &QMdiArea::cascadeSubWindows);
    QMenu* windows = window->addMenu(QStringLiteral("&Liste des fenêtres"));
    connect(windows, &QMenu::aboutToShow, this, [this, windows] { fillWindowList(*windows); });
    window->addSeparator();
    const QString layouts = QStringLiteral("Disposition (*.ddl);;Tous (*)");
    window->addAction(QStringLiteral("&Enregistrer la disposition…"), this, [this, layouts] {
        const QString path = QFileDialog::getSaveFileName(
            this, QStringLiteral("Enregistrer la disposition des fenêtres"), {}, layouts);
        if (!path.isEmpty())
            saveLayout(path);
    });
    window->addAction(QStringLiteral("&Rétablir la disposition…"), this, [this, layouts] {
        const QString path = QFileDialog::getOpenFileName(
            this, QStringLiteral("Rétablir la disposition des fenêtres"), {}, layouts);
        if (!path.isEmpty())
            restoreLayout(path);
    });
}

void MainWindow::showData() {
    if (!m_fileOpen) {
        QMessageBox::information(this, windowTitle(), QStringLiteral("Ouvrez d'abord un fichier de données."));
        return;
    }
    if (m_dataView == nullptr) {
        m_dataView = new DataView(m_session.file());
        m_area->addSubWindow(m_dataView)->resize(760, 480);
    }
    m_dataView->model().refresh();
    m_dataView->parentWidget()->show();
    m_area->setActiveSubWindow(qobject_cast<QMdiSubWindow*>(m_dataView->parentWidget()));
}

// The file's weight and selection belong to the analysis while its panel is open: the
// panel's own buttons change them, so that the analysis counts again.
bool MainWindow::dataMenuOpen() {
    if (!m_fileOpen) {
        QMessageBox::information(this, windowTitle(), QStringLiteral("Ouvrez d'abord un fichier de données."));
        return false;
    }
    if (m_session.hasAnalysis() && m_session.dialogs().isOpen(m_session.panel())) {
        QMessageBox::information(
            this, windowTitle(),
            QStringLiteral("Utilisez les boutons Sélection et Pondération du panneau de l'analyse ouverte."));
        return false;
    }
    return true;
}

int MainWindow::runMacro(const QString& path) {
    if (!m_session.hasAnalysis() || !m_session.dialogs().isOpen(m_session.panel())) {
        tellProblem(path, QStringLiteral("ouvrez d'abord le panneau d'une analyse"));
        return 1;
    }
    std::ifstream input(path.toStdString());
    if (!input) {
        tellProblem(path, QStringLiteral("le fichier ne peut pas être lu"));
        return 1;
    }
    try {
        runPanelMacro(m_session, input, path.toStdString(), std::cout);
    } catch (const std::exception& error) {
        tellProblem(path, qtext(error.what()));
        return 1;
    }
    return 0;
}

void MainWindow::startRecording() { m_recorder.start(); }

bool MainWindow::stopRecording(const QString& path) {
    if (!writeOrTell(path, m_recorder.text(m_session.file().path())))
        return false;
    m_recorder.stop();
    return true;
}

QString MainWindow::copySubsetCondition() {
    if (!m_session.hasAnalysis()) {
        tellProblem(windowTitle(), QStringLiteral("aucune analyse n'est ouverte"));
        return {};
    }
    const QString condition = qtext(drillPathCondition(m_session.analysis(), m_session.file()));
    QGuiApplication::clipboard()->setText(condition);
    statusBar()->showMessage(condition.isEmpty()
                                 ? QStringLiteral("Le sous-ensemble est le fichier entier.")
                                 : QStringLiteral("Condition copiée : ") + condition);
    return condition;
}

bool MainWindow::writeOrTell(const QString& path, std::string_view content) {
    const std::string reason = writeWholeFile(path.toStdString(), content);
    if (!reason.empty())
        tellProblem(path, QStringLiteral("le fichier ne peut pas être écrit : ") + qtext(reason));
    return reason.empty();
}

void MainWindow::tellProblem(const QString& path, const QString& problem) {
    const QString text = path + QStringLiteral(" : ") + problem;
    if (m_frontEnd.scripted())
        std::cerr << text.toStdString() << '\n';
    else
        QMessageBox::warning(this, windowTitle(), text);
}

bool MainWindow::saveLayout(const QString& path) {
    if (!m_session.hasAnalysis()) {
        tellProblem(path, QStringLiteral("aucune analyse n'est ouverte"));
        return false;
    }
    try {
        return writeOrTell(path, windowLayout(m_session) + '\n');
    } catch (const LayoutError& error) {
        tellProblem(path, qtext(error.what()));
    }
    return false;
}

bool MainWindow::restoreLayout(const QString& path) {
    if (!m_session.hasAnalysis() || !m_session.dialogs().isOpen(m_session.panel())) {
        tellProblem(path, QStringLiteral("ouvrez d'abord le panneau d'une analyse"));
        return false;
    }
    std::ifstream input(path.toStdString());
    std::string text;
    if (!input || !std::getline(input, text)) {
        tellProblem(path, QStringLiteral("le fichier ne peut pas être lu"));
        return false;
    }
    try {
        restoreWindowLayout(m_session, text);
        return true;
    } catch (const std::exception& error) {
        tellProblem(path, qtext(error.what()));
        return false;
    }
}

void MainWindow::fillRecentFiles(QMenu& menu) {
    menu.clear();
    for (const QString& path : m_settings.recentFiles())
        menu.addAction(path, this, [this, path] { openFile(path); });
    if (menu.isEmpty())
        menu.addAction(QStringLiteral("(aucun)"))->setEnabled(false);
}

void MainWindow::fillWindowList(QMenu& menu) {
    menu.clear();
    for (QMdiSubWindow* window : m_area->subWindowList()) {
        QAction* action = menu.addAction(window->windowTitle(), this,
                                         [this, window] { m_area->setActiveSubWindow(window); });
        action->setCheckable(true);
        action->setChecked(window == m_area->activeSubWindow());
    }
    if (menu.isEmpty())
        menu.addAction(QStringLiteral("(aucune)"))->setEnabled(false);
}

bool MainWindow::exportDocument(int id, const QString& path) {
    const Document* document = m_session.documents().find(id);
    const QString extension = QFileInfo(path).suffix().toLower();
    std::string content;
    if (document != nullptr && document->isTable() && extension == "csv")
        content = tableCsv(document->table());
    else if (document != nullptr && document->isTable() && extension == "html")
        content = htmlPage(document->table().title, tableHtml(document->table()));
    else if (document != nullptr && document->isGraph() && extension == "svg")
        content = graphSvg(document->graph());
    else if (document != nullptr && document->isGraph() && extension == "png")
        content = graphPng(document->graph());
    else {
        tellProblem(path, document == nullptr
                              ? QStringLiteral("aucun document n'est actif")
                              : QStringLiteral("ce document ne s'exporte pas en ") + extension);
        return false;
    }
    return writeOrTell(path, content);
}

bool MainWindow::openFile(const QString& path) {
    try {
        m_session.open(loadShowingProgress(path, this));
    } catch (const DataError& error) {
        QMessageBox::warning(this, windowTitle(), qtext(error.what()));
        return false;
    }
    m_settings.addRecentFile(path);
    m_fileOpen = true;
    if (m_dataView != nullptr)
        m_dataView->model().refresh();
    setWindowTitle(QStringLiteral("Drill-Down – ") + path);
    return true;
}

void MainWindow::startAnalysis() {
    if (!m_fileOpen) {
        QMessageBox::information(this, windowTitle(),
                                 QStringLiteral("Ouvrez d'abord un fichier de données."));
        return;
    }
    try {
        m_session.startAnalysis();
    } catch (const ModuleError& error) {
        QMessageBox::warning(this, windowTitle(), qtext(error.what()));
    }
}

} // namespace wb::desktop

namespace wb::desktop {

int MainWindow::runScript(const QString& macro, const QString& screenshots) {
    m_frontEnd.setScripted(true);
    if (!m_fileOpen) {
        std::cerr << "no data file is open\n";
        return 1;
    }
    int status = 1;
    try {
        m_session.startAnalysis();
        status = runMacro(macro);
    } catch (const ModuleError& error) {
        std::cerr << error.what() << '\n';
    }
    if (!screenshots.isEmpty())
        writeScreenshots(screenshots);
    return status;
}

void MainWindow::writeScreenshots(const QString& folder) {
    QDir().mkpath(folder);
    int number = 0;
    const auto save = [&](QWidget& widget, const QString& what) {
        QApplication::processEvents();
        widget.grab().save(QStringLiteral("%1/%2-%3.png")
                               .arg(folder)
                               .arg(++number, 2, 10, QLatin1Char('0'))
                               .arg(what));
    };
    m_area->tileSubWindows();
    save(*this, QStringLiteral("main-window"));
    if (TemplateDialog* panel = m_frontEnd.windowOf(m_session.panel())) {
        for (QWidget* widget : panel->widgets(TabControl)) {
            auto* tabs = qobject_cast<QTabWidget*>(widget);
            for (int page = 0; tabs != nullptr && page < tabs->count(); ++page) {
                tabs->setCurrentIndex(page);
                save(*panel, QStringLiteral("panel-page-%1").arg(page + 1));
            }
        }
    }
    for (QMdiSubWindow* window : m_area->subWindowList()) {
        window->showMaximized();
        save(*window, QStringLiteral("document"));
    }
    m_area->tileSubWindows();
}

} // namespace wb::desktop
