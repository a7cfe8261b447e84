#include "workbench/desktop/TemplateDialog.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QDropEvent>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QTabWidget>
#include <QTreeWidget>

#include <cstdlib>
#include <stdexcept>
#include <string>

#include "drilldown/resources/Caption.h"
#include "workbench/desktop/CaptionIcons.h"
#include "workbench/desktop/QtText.h"

namespace wb::desktop {

namespace {

// The text of a button as Qt shows it: "&" doubled, and the template's mnemonic marked when
// the model still shows the template's caption.
QString buttonText(const std::string& shown, std::string_view caption) {
    const CaptionParts parts = ParseCaption(caption);
    std::string marked;
    for (std::size_t i = 0; i < shown.size(); ++i) {
        if (shown == parts.Text && i == parts.MnemonicOffset)
            marked += '&';
        marked += shown[i] == '&' ? std::string("&&") : std::string(1, shown[i]);
    }
    return qtext(marked);
}

// A caption too wide for its button, broken at the blank nearest its middle: a button whose
// template lets its caption wrap shows it on two lines.
QString wrapped(const QString& text, const QPushButton& button) {
    if (button.fontMetrics().horizontalAdvance(text) <= button.width() - 8)
        return text;
    qsizetype best = -1;
    for (qsizetype at = text.indexOf(' '); at >= 0; at = text.indexOf(' ', at + 1))
        if (best < 0 || std::abs(at - text.size() / 2) < std::abs(best - text.size() / 2))
            best = at;
    return best < 0 ? text : text.left(best) + '\n' + text.mid(best + 1);
}

// Rows of a list as the model has them.
QStringList rowTexts(const ControlState& state) {
    QStringList rows;
    for (const std::string& row : state.rows)
        rows << qtext(row);
    return rows;
}

} // namespace

int ReorderList::dropRow(const QPoint& point) const {
    const QModelIndex index = indexAt(point);
    if (!index.isValid())
        return count();
    const QRect item = visualRect(index);
    return index.row() + (point.y() > item.center().y() ? 1 : 0);
}

void ReorderList::dropEvent(QDropEvent* event) {
    const int source = currentRow();
    const int target = dropRow(event->position().toPoint());
    event->setDropAction(Qt::IgnoreAction);
    event->accept();
    if (source >= 0)
        drop(source, target);
}

namespace {

void showList(QListWidget& list, const ControlState& state) {
    const QStringList rows = rowTexts(state);
    QStringList shown;
    for (int i = 0; i < list.count(); ++i)
        shown << list.item(i)->text();
    if (shown != rows) {
        list.clear();
        list.addItems(rows);
    }
    if (state.selection < 0)
        list.setCurrentRow(-1, QItemSelectionModel::Clear);
    else
        list.setCurrentRow(state.selection);
}

void showListView(QTreeWidget& view, const ControlState& state) {
    QStringList headings;
    for (const ListColumn& column : state.columns)
        headings << qtext(column.heading);
    view.setColumnCount(std::max<int>(1, int(headings.size())));
    view.setHeaderLabels(headings);
    view.clear();
    for (std::size_t row = 0; row < state.rows.size(); ++row) {
        QStringList cells{qtext(state.rows[row])};
        if (row < state.cells.size())
            for (const std::string& cell : state.cells[row])
                cells << qtext(cell);
        view.addTopLevelItem(new QTreeWidgetItem(cells));
    }
    if (state.selection >= 0 && state.selection < view.topLevelItemCount())
        view.setCurrentItem(view.topLevelItem(state.selection));
}

} // namespace

TemplateDialog::TemplateDialog(DialogHost& host, HWND dialog, QWidget* parent)
    : QWidget(parent), m_host(host), m_dialog(dialog) {
    const DialogTemplate* source = FindDialogTemplate(host.model().resourceId(dialog));
    if (source == nullptr)
        throw std::invalid_argument("no dialog template for resource " +
                                    std::to_string(host.model().resourceId(dialog)));
    setWindowTitle(qtext(std::string(source->Title)));
    const DialogUnits units(font());
    setFixedSize(units.x(source->Width), units.y(source->Height));
    buildControls(*source, this, units);
    m_subscription = host.model().subscribe([this](HWND changed, int id) {
        if (changed == m_dialog)
            showState(id);
    });
    for (const auto& [id, placed] : m_controls)
        showState(id);
}

TemplateDialog::~TemplateDialog() {
    m_host.model().unsubscribe(m_subscription);
}

std::vector<QWidget*> TemplateDialog::widgets(int id) const {
    std::vector<QWidget*> found;
    if (const auto it = m_controls.find(id); it != m_controls.end())
        for (const Placed& placed : it->second)
            found.push_back(placed.widget);
    return found;
}

void TemplateDialog::buildControls(const DialogTemplate& source, QWidget* surface,
                                   const DialogUnits& units) {
    for (const DialogControl& control : source.Controls) {
        QWidget* widget = makeControl(control, surface, units);
        if (control.Kind == DialogControlKind::TabControl) {
            auto* tabs = static_cast<QTabWidget*>(widget);
            for (const int pageId : source.Pages) {
                const DialogTemplate* page = FindDialogTemplate(pageId);
                auto* pageWidget = new QWidget(tabs);
                tabs->addTab(pageWidget, qtext(std::string(page->Title)));
                buildControls(*page, pageWidget, units);
            }
        }
        if (control.Id != NoControlId)
            m_controls[control.Id].push_back({widget, &control});
    }
}

QWidget* TemplateDialog::makeControl(const DialogControl& control, QWidget* surface,
                                     const DialogUnits& units) {
    const QString caption = qtext(ParseCaption(control.Caption).Text);
    QWidget* widget = nullptr;
    switch (control.Kind) {
    case DialogControlKind::PushButton:
    case DialogControlKind::DefaultButton: {
        auto* button = new QPushButton(surface);
        button->setDefault(control.Kind == DialogControlKind::DefaultButton);
        button->setIcon(captionIcon(ParseCaption(control.Caption), *button->style()));
        widget = button;
        break;
    }
    case DialogControlKind::CheckBox:
        widget = new QCheckBox(surface);
        break;
    case DialogControlKind::RadioButton: {
        // The model clears the other radios of a page: Qt must not do it on its own.
        auto* radio = new QRadioButton(surface);
        radio->setAutoExclusive(false);
        widget = radio;
        break;
    }
    case DialogControlKind::GroupBox:
        widget = new QGroupBox(caption, surface);
        break;
    case DialogControlKind::Label:
    case DialogControlKind::HelpText: {
        auto* label = new QLabel(caption, surface);
        label->setWordWrap(control.Rect.Height > 10);
        widget = label;
        break;
    }
    case DialogControlKind::Edit:
    case DialogControlKind::IntEdit:
    case DialogControlKind::RealEdit:
        widget = new QLineEdit(surface);
        break;
    case DialogControlKind::ListBox: {
        const int id = control.Id;
        widget = new ReorderList(surface, [this, id](int source, int target) {
            m_host.dragRow(m_dialog, id, source, target);
            showState(id);
            if (m_afterAction)
                m_afterAction();
        });
        break;
    }
    case DialogControlKind::ListView: {
        auto* view = new QTreeWidget(surface);
        view->setRootIsDecorated(false);
        view->setSelectionMode(QAbstractItemView::SingleSelection);
        widget = view;
        break;
    }
    case DialogControlKind::TabControl:
        widget = new QTabWidget(surface);
        break;
    }
    widget->setGeometry(units.rect(control.Rect));
    if (control.Kind == DialogControlKind::GroupBox)
        widget->lower(); // a frame stands behind the controls it holds
    if (control.Id != NoControlId)
        connectUser(widget, control);
    return widget;
}

void TemplateDialog::connectUser(QWidget* widget, const DialogControl& control) {
    const int id = control.Id;
    // After each action the widget shows the model again: the host decides what happened.
    const auto act = [this, id](auto&& action) {
        action();
        showState(id);
        if (m_afterAction)
            m_afterAction();
    };
    if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
        connect(button, &QAbstractButton::clicked, this,
                [this, id, act] { act([&] { m_host.click(m_dialog, id); }); });
    } else if (auto* edit = qobject_cast<QLineEdit*>(widget)) {
        connect(edit, &QLineEdit::editingFinished, this, [this, id, edit, act] {
            const QByteArray typed = edit->text().toUtf8();
            if (typed.toStdString() != m_host.model().text(m_dialog, id))
                act([&] { m_host.typeText(m_dialog, id, typed.toStdString()); });
        });
    } else if (auto* list = qobject_cast<QListWidget*>(widget)) {
        connect(list, &QListWidget::currentRowChanged, this,
                [this, id, act](int row) { act([&] { m_host.chooseRow(m_dialog, id, row); }); });
    } else if (auto* view = qobject_cast<QTreeWidget*>(widget)) {
        const auto rowOf = [view](QTreeWidgetItem* item) {
            return item == nullptr ? -1 : view->indexOfTopLevelItem(item);
        };
        connect(view, &QTreeWidget::currentItemChanged, this,
                [this, id, act, rowOf](QTreeWidgetItem* item) {
                    act([&] { m_host.chooseRow(m_dialog, id, rowOf(item)); });
                });
        connect(view, &QTreeWidget::itemDoubleClicked, this,
                [this, id, act, rowOf](QTreeWidgetItem* item) {
                    act([&] { m_host.doubleClickRow(m_dialog, id, rowOf(item)); });
                });
    }
}

void TemplateDialog::showState(int id) {
    const auto it = m_controls.find(id);
    // The dialog may have ended during the action whose result is being shown.
    if (it == m_controls.end() || !m_host.model().isDialog(m_dialog))
        return;
    const ControlState& state = m_host.model().state(m_dialog, id);
    for (const Placed& placed : it->second)
        showState(placed.widget, *placed.control, state);
}

void TemplateDialog::showState(QWidget* widget, const DialogControl& control,
                               const ControlState& state) {
    const QSignalBlocker quiet(widget);
    widget->setEnabled(state.enabled);
    widget->setVisible(state.shown);
    if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
        const QString text = buttonText(state.text, control.Caption);
        auto* push = qobject_cast<QPushButton*>(button);
        if (!button->icon().isNull() && state.text.size() == 1) {
            // A button of one letter and an icon is too narrow for both: the icon shows, the
            // letter stays its key.
            button->setText({});
            button->setShortcut(QKeySequence(QStringLiteral("Alt+") + qtext(state.text)));
        } else {
            button->setText(push != nullptr && control.HasStyle(ControlStyle::MultiLine)
                                ? wrapped(text, *push)
                                : text);
        }
        button->setChecked(state.checked);
    } else if (auto* label = qobject_cast<QLabel*>(widget)) {
        label->setText(qtext(state.text));
    } else if (auto* edit = qobject_cast<QLineEdit*>(widget)) {
        if (edit->text().toStdString() != state.text)
            edit->setText(qtext(state.text));
    } else if (auto* list = qobject_cast<QListWidget*>(widget)) {
        showList(*list, state);
    } else if (auto* view = qobject_cast<QTreeWidget*>(widget)) {
        showListView(*view, state);
    }
}

} // namespace wb::desktop
