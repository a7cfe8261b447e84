#pragma once
// Beside the panel's lists, where to drill next: each drill-down variable still in the list
// with how far its distribution in the subset departs from the rest of the level above
// (Cramér's V and the chi-square test's p, SubsetContrast.h), strongest first. It follows
// the drill steps: whenever the panel's drill lists change, it counts again.

#include <QTreeWidget>

#include "workbench/session/AnalysisSession.h"

namespace wb::desktop {

class NextDrillPane : public QTreeWidget {
public:
    NextDrillPane(AnalysisSession& session, QWidget* parent);
    ~NextDrillPane() override;

    // Counts again now.
    void refresh();

private:
    AnalysisSession& m_session;
    std::size_t m_subscription;
    bool m_pending = false; // a refresh is queued: the lists change row by row
};

} // namespace wb::desktop
