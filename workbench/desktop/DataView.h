#pragma once
// The cases of the open data file in a window: one column per variable (its short name, the
// long name as tooltip), one row per case (its case name or number). A value shows its text
// label or its code, dates and times in their text form; a missing value shows as a dot on
// grey, and a case that the selection condition leaves out in grey letters.
//
// The model reads each cell from the file when it is drawn and keeps no copy (the file may
// have millions of cases); refresh() after the file changed in place.

#include <QAbstractTableModel>
#include <QWidget>

#include "workbench/data/DataFile.h"

class QCheckBox;
class QTableView;

namespace wb::desktop {

class DataModel : public QAbstractTableModel {
public:
    explicit DataModel(const DataFile& file, QObject* parent = nullptr)
        : QAbstractTableModel(parent), m_file(file) {}

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    void setShowLabels(bool labels);
    void refresh();

private:
    const DataFile& m_file;
    bool m_labels = true;
};

class DataView : public QWidget {
public:
    explicit DataView(const DataFile& file, QWidget* parent = nullptr);
    DataModel& model() { return *m_model; }
    QCheckBox* labelsBox() const { return m_labels; }

private:
    DataModel* m_model;
    QCheckBox* m_labels;
    QTableView* m_table;
};

} // namespace wb::desktop
