#pragma once
// The desktop's main window: the session's documents in a window area, the module's dialogs
// as windows of their own, and the menus that reach them.
//
//   File      Open a data file (any file the workbench reads), the recent files, export the
//             active document (a table as CSV or HTML, a graph as SVG or PNG), Quit
//   Data      the cases of the open file in a window; its case weight and selection
//   Analysis  Drill-down: a new analysis on the open file; its panel opens
//   Tools     Run a macro on the open analysis; record what the user does as a macro
//   Window    Tile, Cascade, the list of windows; save the layout of the stand-alone result windows to a file,
//             and restore one (the windows come back with the current subset)
//
// The window owns the front end and the session; it ends the analysis, and lets its dialog
// windows go, before either goes.

#include <QMainWindow>
#include <QPointer>

#include "workbench/desktop/DesktopFrontEnd.h"
#include "workbench/desktop/DataView.h"
#include "workbench/desktop/DesktopSettings.h"
#include "workbench/desktop/DocumentArea.h"
#include "workbench/session/AnalysisSession.h"
#include "workbench/session/MacroRecorder.h"

namespace wb::desktop {

class MainWindow : public QMainWindow {
public:
    explicit MainWindow(SessionOptions options = {});
    ~MainWindow() override;

    // Opens a data file; a file that cannot be read gets a message naming it, and the open
    // file stays. False then.
    bool openFile(const QString& path);
    // Starts a drill-down analysis on the open file; a message when it cannot start.
    void startAnalysis();
    // The scripted run: starts an analysis, runs the macro through the panel's automation
    // object (Print and Dump to standard output, messages to standard error), keeps every
    // window open and writes one PNG per window into `screenshots` (when not empty): the
    // main window, the panel with each of its pages, every document window. Gives the
    // macro's exit status: 0, or 1 with the reason on standard error.
    int runScript(const QString& macro, const QString& screenshots);

    // Writes document `id` to `path` in the format its extension names (.csv or .html for a
    // table, .svg or .png for a graph); a message and false when it cannot.
    bool exportDocument(int id, const QString& path);
    const DesktopSettings& settings() const { return m_settings; }

    // The layout of the analysis's stand-alone result windows, written to or read from a
    // text file. A message names the file and the problem when it fails; false then.
    bool saveLayout(const QString& path);
    bool restoreLayout(const QString& path);

    // Runs a macro on the open analysis's panel (Print and Dump to standard output); the
    // macro's status, its failure told as a message.
    int runMacro(const QString& path);
    // Recording: from start on, every action on the panel becomes a line of a macro; stop
    // writes it to `path` (false, with a message, when it cannot).
    void startRecording();
    bool stopRecording(const QString& path);
    bool recording() const { return m_recorder.recording(); }
    // The current subset as a selection condition, put on the clipboard and shown in the
    // status bar; empty without an analysis or when nothing narrows the file.
    QString copySubsetCondition();
    // The window of the open file's cases, made on first use; null before.
    void showData();
    DataView* dataView() const { return m_dataView.data(); }

    AnalysisSession& session() { return m_session; }
    DesktopFrontEnd& frontEnd() { return m_frontEnd; }
    DocumentArea& documents() { return *m_area; }

private:
    void buildMenus();
    void fillRecentFiles(QMenu& menu);
    void fillWindowList(QMenu& menu);
    void closeEvent(QCloseEvent* event) override;
    // Whether the Data menu may change the file now; tells the user why not.
    bool dataMenuOpen();
    void writeScreenshots(const QString& folder);
    // A message about `path`, on standard error in a scripted run.
    void tellProblem(const QString& path, const QString& problem);
    // Writes the file all or nothing; false, with the reason told, when it could not.
    bool writeOrTell(const QString& path, std::string_view content);

    DesktopFrontEnd m_frontEnd{this};
    DesktopSettings m_settings;
    AnalysisSession m_session;
    MacroRecorder m_recorder{m_session};
    DocumentArea* m_area;
    bool m_fileOpen = false;
    QPointer<DataView> m_dataView; // a window of the area, which owns it
};

} // namespace wb::desktop
