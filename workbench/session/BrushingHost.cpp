#include "workbench/session/BrushingHost.h"

#include "workbench/documents/DocumentObject.h"

namespace wb {

namespace {

constexpr int DrillDownCommand = 0;
constexpr int DrillUpCommand = 1;

} // namespace

void BrushingHost::queue(std::vector<BrushingStep> steps) {
    m_steps.assign(steps.begin(), steps.end());
    m_scripted = true;
}

std::vector<BrushingStep> BrushingHost::takeUnused() {
    std::vector<BrushingStep> unused(m_steps.begin(), m_steps.end());
    m_steps.clear();
    m_scripted = false;
    return unused;
}

bool BrushingHost::DoBrushing(COutDocument* document, const std::vector<CBrushRegion>& regions,
                              int* selected, const char* const* commands, int* command) {
    ++m_passes;
    if (m_scripted) {
        // A macro's step; when they are used up the loop ends, as when the user leaves.
        if (m_steps.empty())
            return false;
        const BrushingStep step = m_steps.front();
        m_steps.pop_front();
        if (step.kind == BrushingStep::Kind::DrillUp) {
            *selected = -1;
            *command = DrillUpCommand;
        } else {
            *selected = step.bar - 1;
            *command = DrillDownCommand;
        }
        return true;
    }
    BrushingCall call;
    call.document = document != nullptr ? static_cast<DocumentState*>(document)->number : 0;
    call.regions = regions;
    call.selected = *selected;
    for (const char* const* text = commands; text != nullptr && *text != nullptr; ++text)
        call.commands.emplace_back(*text);
    const std::optional<BrushingChoice> choice = m_frontEnd.brush(call);
    if (!choice)
        return false;
    *selected = choice->selected;
    *command = choice->command;
    return true;
}

} // namespace wb
