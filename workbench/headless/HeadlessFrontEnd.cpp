#include "workbench/headless/HeadlessFrontEnd.h"

namespace wb {

void HeadlessFrontEnd::presetVariableChoice(std::vector<short> first, std::vector<short> second) {
    m_choices.push_back(VariableChoice{std::move(first), std::move(second)});
}

void HeadlessFrontEnd::presetVariableCancel() {
    m_choices.push_back(std::nullopt);
}

void HeadlessFrontEnd::runModal(HWND dialog, int resourceId) {
    if (m_responder)
        m_responder(dialog, resourceId);
}

std::optional<VariableChoice> HeadlessFrontEnd::chooseVariables(const VariableDialogCall&) {
    if (m_choices.empty())
        return std::nullopt;
    std::optional<VariableChoice> answer = std::move(m_choices.front());
    m_choices.pop_front();
    return answer;
}

void HeadlessFrontEnd::closed(HWND dialog, int result, bool closeAnalysis) {
    m_closed.push_back({dialog, result, closeAnalysis});
}

void HeadlessFrontEnd::deliveryFinished() {
    // A task may deliver messages whose end runs this again; each task is taken off first.
    while (!m_posted.empty()) {
        std::function<void()> task = std::move(m_posted.front());
        m_posted.pop_front();
        task();
    }
}

} // namespace wb
