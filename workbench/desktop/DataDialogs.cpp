#include "workbench/desktop/DataDialogs.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QProgressDialog>
#include <QVBoxLayout>

#include "workbench/data/DataFileLoader.h"
#include "workbench/desktop/QtText.h"

namespace wb::desktop {

namespace {

QDialogButtonBox* okCancel(QDialog& dialog) {
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    return buttons;
}

} // namespace

WeightDialog::WeightDialog(AnalysisSession& session, QWidget* parent)
    : QDialog(parent), m_session(session), m_variables(new QListWidget(this)) {
    setWindowTitle(QStringLiteral("Pondération des observations"));
    const DataFile& file = session.file();
    m_variables->addItem(QStringLiteral("(aucune)"));
    for (int var = 1; var <= file.variableCount(); ++var) {
        const Variable& variable = file.variable(var);
        m_variables->addItem(qtext(variable.name + (variable.longName.empty()
                                                        ? std::string()
                                                        : "  " + variable.longName)));
    }
    m_variables->setCurrentRow(file.weightVariable());
    connect(m_variables, &QListWidget::itemDoubleClicked, this, &QDialog::accept);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("Variable de pondération :"), this));
    layout->addWidget(m_variables);
    layout->addWidget(okCancel(*this));
}

void WeightDialog::accept() {
    const int weight = std::max(0, m_variables->currentRow());
    m_session.changeFile([&](DataFile& file) { file.setWeightVariable(weight); });
    QDialog::accept();
}

SelectionDialog::SelectionDialog(AnalysisSession& session, QWidget* parent)
    : QDialog(parent), m_session(session),
      m_condition(new QLineEdit(qtext(session.file().selectionText()), this)),
      m_problem(new QLabel(this)) {
    setWindowTitle(QStringLiteral("Sélection des observations"));
    m_problem->setStyleSheet(QStringLiteral("color: #a00000"));
    m_problem->setWordWrap(true);
    m_problem->hide();
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(
        QStringLiteral("Condition que les observations doivent remplir (vide : toutes), par "
                       "exemple AGE >= 18 and not missing(REVENU) :"),
        this));
    layout->addWidget(m_condition);
    layout->addWidget(m_problem);
    layout->addWidget(okCancel(*this));
    resize(520, sizeHint().height());
}

QString SelectionDialog::problem() const {
    return m_problem->isVisible() ? m_problem->text() : QString();
}

void SelectionDialog::accept() {
    try {
        m_session.changeFile(
            [&](DataFile& file) { file.setSelection(m_condition->text().trimmed().toStdString()); });
    } catch (const DataError& error) {
        m_problem->setText(qtext(error.what()));
        m_problem->show();
        return;
    }
    QDialog::accept();
}

DataFile loadShowingProgress(const QString& path, QWidget* parent) {
    QProgressDialog progress(QStringLiteral("Chargement de %1…").arg(QFileInfo(path).fileName()),
                             QString(), 0, 1000, parent);
    progress.setWindowTitle(QStringLiteral("Drill-Down"));
    // Application modal, as during a scan: the events that each step lets through reach no
    // command that touches the session.
    progress.setWindowModality(Qt::ApplicationModal);
    progress.setMinimumDuration(500);
    return loadDataFile(path.toStdString(),
                        [&](double share) { progress.setValue(int(share * 1000)); });
}

bool openOtherDataFile(AnalysisSession& session, QWidget* parent) {
    const QString path = QFileDialog::getOpenFileName(
        parent, QStringLiteral("Ouvrir un fichier de données"), {},
        QStringLiteral("Données (*.csv *.ddf *.sav *.zsav *.por *.dta *.sas7bdat);;Tous (*)"));
    if (path.isEmpty())
        return false;
    try {
        DataFile opened = loadShowingProgress(path, parent);
        session.changeFile([&](DataFile& file) { file = std::move(opened); });
    } catch (const DataError& error) {
        QMessageBox::warning(parent, QStringLiteral("Drill-Down"), qtext(error.what()));
        return false;
    }
    return true;
}

} // namespace wb::desktop
