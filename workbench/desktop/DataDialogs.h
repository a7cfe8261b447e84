#pragma once
// The workbench's own dialogs on the open data file, which the module's panel asks for with
// its Selection, Weights and Open buttons, and the main window's Data menu offers:
//
//   WeightDialog     the case weight: a variable of the file, or none;
//   SelectionDialog  the selection condition, in the condition language of
//                    SelectionCondition.h; a condition that does not compile is shown with
//                    its message and the dialog stays open.
//
// Each changes the session's file in place (AnalysisSession::changeFile) only when the user
// accepts, so that an analysis on the file sees the change through its blocks.

#include <QDialog>

#include "workbench/session/AnalysisSession.h"

class QLabel;
class QLineEdit;
class QListWidget;

namespace wb::desktop {

class WeightDialog : public QDialog {
public:
    WeightDialog(AnalysisSession& session, QWidget* parent = nullptr);
    // Row 0 is "(aucune)", then the file's variables in order.
    QListWidget* variables() const { return m_variables; }
    void accept() override;

private:
    AnalysisSession& m_session;
    QListWidget* m_variables;
};

class SelectionDialog : public QDialog {
public:
    SelectionDialog(AnalysisSession& session, QWidget* parent = nullptr);
    QLineEdit* condition() const { return m_condition; }
    // The message of a condition that did not compile; empty when none.
    QString problem() const;
    void accept() override;

private:
    AnalysisSession& m_session;
    QLineEdit* m_condition;
    QLabel* m_problem;
};

// Loads the data file at `path` as loadDataFile does, showing how far loading has come once it
// takes more than a moment.
DataFile loadShowingProgress(const QString& path, QWidget* parent);

// Asks for a data file and opens it in place of the session's file: true when one was
// opened. A file that cannot be read is told with its message, and the file stays.
bool openOtherDataFile(AnalysisSession& session, QWidget* parent);

} // namespace wb::desktop
