#include "workbench/desktop/NextDrillPane.h"

#include <cmath>

#include <QHeaderView>
#include <QTimer>

#include "drilldown/resources/ControlIds.h"
#include "workbench/desktop/QtText.h"
#include "workbench/stats/SubsetContrast.h"

namespace wb::desktop {

namespace {

QString figure(double value, int precision, char format) {
    return std::isfinite(value) ? QString::number(value, format, precision) : QStringLiteral("—");
}

} // namespace

NextDrillPane::NextDrillPane(AnalysisSession& session, QWidget* parent)
    : QTreeWidget(parent), m_session(session) {
    setHeaderLabels(
        {QStringLiteral("Où descendre ensuite"), QStringLiteral("V"), QStringLiteral("p")});
    setRootIsDecorated(false);
    setToolTip(QStringLiteral("Pour chaque variable restant à descendre : V de Cramér de la "
                              "variable contre l'appartenance au sous-ensemble, dans le niveau "
                              "précédent, et la p-valeur du khi-deux"));
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(0, QHeaderView::Stretch);
    header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    header()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_subscription = session.dialogs().model().subscribe([this](HWND dialog, int id) {
        if (dialog != m_session.panel() || (id != ListDrillDowns && id != ListDrillUps) ||
            m_pending)
            return;
        m_pending = true;
        QTimer::singleShot(0, this, [this] { refresh(); });
    });
    refresh();
}

NextDrillPane::~NextDrillPane() {
    m_session.dialogs().model().unsubscribe(m_subscription);
}

void NextDrillPane::refresh() {
    m_pending = false;
    clear();
    if (!m_session.hasAnalysis())
        return;
    const SubsetContrast contrast = contrastSubset(m_session.analysis(), m_session.file());
    if (!contrast.hasParent) {
        addTopLevelItem(new QTreeWidgetItem({QStringLiteral("(après un premier pas)")}));
        return;
    }
    for (const CategoryContrast& variable : contrast.nextDrill)
        addTopLevelItem(
            new QTreeWidgetItem({qtext(variable.name), figure(variable.cramersV, 3, 'f'),
                                 figure(variable.pValue, 2, 'g')}));
}

} // namespace wb::desktop
