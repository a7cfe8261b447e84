#pragma once
// The variable choice as a real dialog: the file's variables on the left (those the module
// offers), the two lists the module asks for on the right, each with its caption.
//
//   1. make it for one call of the module's variable dialog and the open file;
//   2. the user picks variables on the left (several at once, or by typing part of a name
//      in the search field) and adds them to a list with its button, or takes them out;
//      Enter on the left list adds to the first list;
//   3. OK is enabled only while both lists hold as many variables as the call allows;
//      choice() gives the two lists in the order the user built them.

#include <QDialog>

#include "workbench/data/DataFile.h"
#include "workbench/dialogs/DialogFrontEnd.h"

class QLineEdit;
class QListWidget;
class QPushButton;

namespace wb::desktop {

class VariableDialog : public QDialog {
public:
    VariableDialog(const VariableDialogCall& call, const DataFile& file, QWidget* parent = nullptr);

    VariableChoice choice() const;
    // The widgets a test or the keyboard plays.
    QLineEdit* search() const { return m_search; }
    QListWidget* offered() const { return m_offered; }
    QListWidget* list(int which) const { return which == 0 ? m_first : m_second; }
    QPushButton* addButton(int which) const { return which == 0 ? m_addFirst : m_addSecond; }
    QPushButton* okButton() const { return m_ok; }

private:
    // Copies the variables selected on the left into `list` (once each; the same variable
    // may stand in both lists), or takes the selected ones out of it.
    void add(QListWidget* list);
    void remove(QListWidget* list);
    void filter(const QString& text);
    void updateOk();

    VariableDialogCall m_call;
    QLineEdit* m_search;
    QListWidget* m_offered;
    QListWidget* m_first;
    QListWidget* m_second;
    QPushButton* m_addFirst;
    QPushButton* m_addSecond;
    QPushButton* m_ok;
};

} // namespace wb::desktop
