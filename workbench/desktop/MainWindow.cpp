#include "workbench/desktop/MainWindow.h"

#include <QApplication>
#include <QFileDialog>
#include <QMenuBar>
#include <QMessageBox>

#include "workbench/data/DataFileLoader.h"
#include "workbench/desktop/QtText.h"

namespace wb::desktop {

MainWindow::MainWindow(SessionOptions options)
    : m_session(m_frontEnd.bundle(nullptr), std::move(options)),
      m_area(new DocumentArea(m_session.documents(), this)) {
    m_frontEnd.attach(m_session);
    setCentralWidget(m_area);
    setWindowTitle(QStringLiteral("Drill-Down"));
    resize(1280, 860);
    buildMenus();
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
    file->addSeparator();
    file->addAction(QStringLiteral("&Quitter"), QKeySequence::Quit, this, &QWidget::close);

    QMenu* analysis = menuBar()->addMenu(QStringLiteral("&Analyse"));
    analysis->addAction(QStringLiteral("&Drill-down"), this, &MainWindow::startAnalysis);

    QMenu* window = menuBar()->addMenu(QStringLiteral("Fe&nêtre"));
    window->addAction(QStringLiteral("&Mosaïque"), m_area, &QMdiArea::tileSubWindows);
    window->addAction(QStringLiteral("&Cascade"), m_area, &QMdiArea::cascadeSubWindows);
}

bool MainWindow::openFile(const QString& path) {
    try {
        m_session.open(loadDataFile(path.toStdString()));
    } catch (const DataError& error) {
        QMessageBox::warning(this, windowTitle(), qtext(error.what()));
        return false;
    }
    m_fileOpen = true;
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
