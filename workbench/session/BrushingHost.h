#pragma once
// The host's brushing for the session's analysis: the module's modal brushing on a graph
// document, played by the front end's user, or answered from a macro's brushing steps.
//
// A macro queues its steps (queue) and presses the panel's brushing button; each pass of the
// loop takes the next step, and once they are used up the next pass leaves, which ends the
// loop. Outside a macro each pass asks the front end (DialogFrontEnd::brush).

#include <deque>
#include <string>
#include <vector>

#include "drilldown/host/HostBrushing.h"
#include "workbench/automation/Macro.h"
#include "workbench/dialogs/DialogFrontEnd.h"

namespace wb {

class BrushingHost final : public HostBrushing {
public:
    explicit BrushingHost(DialogFrontEnd& frontEnd) : m_frontEnd(frontEnd) {}

    bool DoBrushing(COutDocument* document, const std::vector<CBrushRegion>& regions,
                    int* selected, const char* const* commands, int* command) override;

    // Answers the next passes from `steps` instead of the user, until they are used up.
    void queue(std::vector<BrushingStep> steps);
    // Steps not used yet; the queue's end, cleared.
    std::vector<BrushingStep> takeUnused();
    // The passes run since the session began, for whoever watches the loop.
    int passes() const { return m_passes; }

private:
    DialogFrontEnd& m_frontEnd;
    std::deque<BrushingStep> m_steps;
    bool m_scripted = false;
    int m_passes = 0;
};

} // namespace wb
