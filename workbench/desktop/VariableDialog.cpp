#include "workbench/desktop/VariableDialog.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QShortcut>

#include <algorithm>

#include "workbench/desktop/QtText.h"

namespace wb::desktop {

namespace {

constexpr int VariableRole = Qt::UserRole;

QListWidget* variableList(QWidget* parent) {
    auto* list = new QListWidget(parent);
    list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    return list;
}

std::vector<short> variablesOf(const QListWidget& list) {
    std::vector<short> variables;
    for (int row = 0; row < list.count(); ++row)
        variables.push_back(static_cast<short>(list.item(row)->data(VariableRole).toInt()));
    return variables;
}

} // namespace

VariableDialog::VariableDialog(const VariableDialogCall& call, const DataFile& file,
                               QWidget* parent)
    : QDialog(parent), m_call(call), m_search(new QLineEdit(this)), m_offered(variableList(this)),
      m_first(variableList(this)), m_second(variableList(this)),
      m_addFirst(new QPushButton(QStringLiteral("→"), this)),
      m_addSecond(new QPushButton(QStringLiteral("→"), this)) {
    setWindowTitle(qtext(call.title));
    m_search->setPlaceholderText(QStringLiteral("Rechercher"));
    for (int v = 1; v <= file.variableCount(); ++v) {
        if (!call.choices.empty() &&
            std::find(call.choices.begin(), call.choices.end(), v) == call.choices.end())
            continue;
        const Variable& variable = file.variable(v);
        auto* item = new QListWidgetItem(
            qtext(variable.name + (variable.longName.empty() ? "" : " – " + variable.longName)),
            m_offered);
        item->setData(VariableRole, v);
    }
    auto* removeFirst = new QPushButton(QStringLiteral("←"), this);
    auto* removeSecond = new QPushButton(QStringLiteral("←"), this);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    m_ok = buttons->button(QDialogButtonBox::Ok);

    auto* layout = new QGridLayout(this);
    layout->addWidget(m_search, 0, 0);
    layout->addWidget(m_offered, 1, 0, 4, 1);
    layout->addWidget(new QLabel(qtext(call.caption1), this), 0, 2);
    layout->addWidget(m_addFirst, 1, 1);
    layout->addWidget(removeFirst, 2, 1);
    layout->addWidget(m_first, 1, 2, 2, 1);
    layout->addWidget(new QLabel(qtext(call.caption2), this), 3, 2);
    layout->addWidget(m_addSecond, 4, 1);
    layout->addWidget(removeSecond, 5, 1);
    layout->addWidget(m_second, 4, 2, 2, 1);
    layout->addWidget(buttons, 6, 0, 1, 3);

    connect(m_search, &QLineEdit::textChanged, this, &VariableDialog::filter);
    connect(m_addFirst, &QPushButton::clicked, this, [this] { add(m_first); });
    connect(m_addSecond, &QPushButton::clicked, this, [this] { add(m_second); });
    connect(removeFirst, &QPushButton::clicked, this, [this] { remove(m_first); });
    connect(removeSecond, &QPushButton::clicked, this, [this] { remove(m_second); });
    connect(m_offered, &QListWidget::itemActivated, this, [this] { add(m_first); });
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    updateOk();
}

VariableChoice VariableDialog::choice() const {
    return VariableChoice{variablesOf(*m_first), variablesOf(*m_second)};
}

void VariableDialog::add(QListWidget* list) {
    const std::vector<short> chosen = variablesOf(*list);
    for (const QListWidgetItem* item : m_offered->selectedItems()) {
        const short variable = static_cast<short>(item->data(VariableRole).toInt());
        if (item->isHidden() || std::find(chosen.begin(), chosen.end(), variable) != chosen.end())
            continue;
        list->addItem(item->clone());
    }
    updateOk();
}

void VariableDialog::remove(QListWidget* list) {
    for (QListWidgetItem* item : list->selectedItems())
        delete list->takeItem(list->row(item));
    updateOk();
}

void VariableDialog::filter(const QString& text) {
    for (int row = 0; row < m_offered->count(); ++row) {
        QListWidgetItem* item = m_offered->item(row);
        item->setHidden(!item->text().contains(text, Qt::CaseInsensitive));
    }
}

void VariableDialog::updateOk() {
    const int first = m_first->count(), second = m_second->count();
    m_ok->setEnabled(first >= m_call.min1 && first <= m_call.max1 && second >= m_call.min2 &&
                     second <= m_call.max2 && first + second <= m_call.total);
}

} // namespace wb::desktop
