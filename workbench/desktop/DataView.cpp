#include "workbench/desktop/DataView.h"

#include <charconv>

#include <QBrush>
#include <QCheckBox>
#include <QHeaderView>
#include <QTableView>
#include <QVBoxLayout>

#include "workbench/data/CsvExport.h"
#include "workbench/desktop/QtText.h"

namespace wb::desktop {

namespace {

const QColor MissingBackground(235, 235, 235);
const QColor LeftOutText(150, 150, 150);

QString shortest(double value) {
    char text[32];
    const auto [end, error] = std::to_chars(text, text + sizeof text, value);
    return error == std::errc() ? QString::fromLatin1(text, int(end - text)) : QString();
}

} // namespace

int DataModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_file.caseCount();
}

int DataModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_file.variableCount();
}

QVariant DataModel::data(const QModelIndex& index, int role) const {
    const int caseNo = index.row() + 1;
    const int var = index.column() + 1;
    // The file may have changed in place since the view last counted its rows.
    if (caseNo > m_file.caseCount() || var > m_file.variableCount())
        return {};
    const double value = m_file.value(caseNo, var);
    const bool missing = m_file.isMissing(var, value);
    const Variable& variable = m_file.variable(var);
    const auto label = m_labels ? variable.labels.find(value) : variable.labels.end();
    const bool labelled = !missing && label != variable.labels.end();
    switch (role) {
    case Qt::DisplayRole: {
        if (missing)
            return QStringLiteral("·");
        if (labelled)
            return qtext(label->second);
        if (variable.format != DisplayFormat::Plain)
            if (const std::string text = dateOrTimeText(variable.format, value); !text.empty())
                return qtext(text);
        return shortest(value);
    }
    case Qt::BackgroundRole:
        return missing ? QVariant(QBrush(MissingBackground)) : QVariant();
    case Qt::ForegroundRole:
        return m_file.isSelected(caseNo) ? QVariant() : QVariant(QBrush(LeftOutText));
    case Qt::TextAlignmentRole: // labels read from the left, numbers line up on the right
        return int((labelled ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    default:
        return {};
    }
}

QVariant DataModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (section >= (orientation == Qt::Horizontal ? m_file.variableCount() : m_file.caseCount()))
        return {};
    if (orientation == Qt::Horizontal) {
        const Variable& variable = m_file.variable(section + 1);
        if (role == Qt::DisplayRole)
            return qtext(variable.name);
        if (role == Qt::ToolTipRole && !variable.longName.empty())
            return qtext(variable.longName);
        return {};
    }
    if (role != Qt::DisplayRole)
        return {};
    return m_file.hasCaseNames() ? qtext(m_file.caseName(section + 1)) : QString::number(section + 1);
}

void DataModel::setShowLabels(bool labels) {
    m_labels = labels;
    if (rowCount() > 0 && columnCount() > 0)
        emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

void DataModel::refresh() {
    beginResetModel();
    endResetModel();
}

DataView::DataView(const DataFile& file, QWidget* parent)
    : QWidget(parent), m_model(new DataModel(file, this)),
      m_labels(new QCheckBox(QStringLiteral("Étiquettes des valeurs"), this)),
      m_table(new QTableView(this)) {
    setWindowTitle(QStringLiteral("Données"));
    m_labels->setChecked(true);
    connect(m_labels, &QCheckBox::toggled, m_model, &DataModel::setShowLabels);
    m_table->setModel(m_model);
    m_table->verticalHeader()->setDefaultSectionSize(m_table->fontMetrics().height() + 6);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_labels);
    layout->addWidget(m_table);
}

} // namespace wb::desktop
