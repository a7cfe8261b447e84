#include "workbench/session/WindowLayout.h"

#include "drilldown/outputs/OutputTracker.h"

namespace wb {

namespace {

// Version and record count, then seven words a window.
constexpr std::size_t HeaderDigits = 16;
constexpr std::size_t RecordDigits = 56;

// Why `text` is not a layout that this workbench wrote, or empty. The module reads any text,
// so the workbench checks what it would not catch.
std::string layoutProblem(std::string_view text) {
    const std::size_t bad = text.find_first_not_of("0123456789ABCDEF");
    if (bad != std::string_view::npos)
        return "character " + std::to_string(bad + 1) + " is no upper-case hexadecimal digit";
    if (text.size() < HeaderDigits || (text.size() - HeaderDigits) % RecordDigits != 0)
        return std::to_string(text.size()) + " digits, which is no whole number of windows";
    return {};
}

} // namespace

std::string windowLayout(AnalysisSession& session) {
    std::string text;
    if (!session.analysis().Outputs->SaveToText(text))
        throw LayoutError("the window layout could not be made");
    return text;
}

void restoreWindowLayout(AnalysisSession& session, std::string_view text) {
    std::string problem = layoutProblem(text);
    CDDNOutputTracker& tracker = *session.analysis().Outputs;
    if (problem.empty() && !tracker.LoadFromText(std::string(text)))
        problem = "its window count disagrees with its length";
    if (!problem.empty())
        throw LayoutError("not a window layout: " + problem);
    session.setPanelMember("StandAloneResults", COleVariant(true));
    tracker.RestoreWindows();
}

} // namespace wb
