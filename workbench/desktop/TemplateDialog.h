#pragma once
// A dialog of the module as real widgets: one widget per control of its template (and of the
// pages of its tab control), at the template's geometry in dialog units, mirroring the
// dialog host's control model both ways.
//
//   1. the module makes the dialog through the DialogHost, which keeps its controls' state;
//   2. TemplateDialog(host, dialog) builds the widgets from the template of the dialog's
//      resource id and shows the model's state;
//   3. every change of the model, whoever made it, updates its widget; what the user does
//      in a widget goes to the host as the same user action a macro or test would play
//      (click, chooseRow, doubleClickRow, typeText), so the module sees one kind of user;
//   4. the host has the last word: after each action the widget shows the model again, so a
//      refused action (a disabled control, a number out of range) leaves no trace.
//
// Updates from the model never reach the host again: widget signals are blocked while the
// model's state is shown.

#include <cstddef>
#include <functional>
#include <map>
#include <vector>

#include <QListWidget>
#include <QWidget>

#include "drilldown/resources/Dialogs.h"
#include "workbench/desktop/DialogUnits.h"
#include "workbench/dialogs/DialogHost.h"

namespace wb::desktop {

// A list box whose rows the user may drag to another place. The widget moves nothing itself:
// the drop goes to the dialog host, which lets the module reorder its list (or refuses when
// the module took no drags of it), and the model's rows are shown again.
class ReorderList : public QListWidget {
public:
    using Drop = std::function<void(int source, int target)>;
    ReorderList(QWidget* parent, Drop drop) : QListWidget(parent), m_drop(std::move(drop)) {
        setDragDropMode(QAbstractItemView::InternalMove);
        setDefaultDropAction(Qt::MoveAction);
    }
    // The row that a drop at `point` puts the dragged row in front of: below an item's middle
    // the next row; below the last item, the end.
    int dropRow(const QPoint& point) const;
    // Drops row `source` in front of row `target`, as a finished drag does.
    void drop(int source, int target) { m_drop(source, target); }

protected:
    void dropEvent(QDropEvent* event) override;

private:
    Drop m_drop;
};

class TemplateDialog : public QWidget {
public:
    // Throws std::invalid_argument when the dialog's resource id has no template.
    TemplateDialog(DialogHost& host, HWND dialog, QWidget* parent = nullptr);
    ~TemplateDialog() override;
    TemplateDialog(const TemplateDialog&) = delete;
    TemplateDialog& operator=(const TemplateDialog&) = delete;

    HWND dialog() const { return m_dialog; }
    // Called after each action of the user has been played (a front end checks whether the
    // dialog has ended).
    void setAfterAction(std::function<void()> afterAction) {
        m_afterAction = std::move(afterAction);
    }
    // The widgets of control `id`, in template order (a control may stand on the dialog and
    // on a page); empty for an id the template does not have.
    std::vector<QWidget*> widgets(int id) const;

private:
    void buildControls(const DialogTemplate& source, QWidget* surface, const DialogUnits& units);
    QWidget* makeControl(const DialogControl& control, QWidget* surface, const DialogUnits& units);
    void connectUser(QWidget* widget, const DialogControl& control);
    // Shows the model's state of control `id` in its widgets.
    void showState(int id);
    void showState(QWidget* widget, const DialogControl& control, const ControlState& state);

    struct Placed {
        QWidget* widget;
        const DialogControl* control;
    };
    DialogHost& m_host;
    HWND m_dialog;
    std::map<int, std::vector<Placed>> m_controls;
    std::size_t m_subscription;
    std::function<void()> m_afterAction;
};

} // namespace wb::desktop
