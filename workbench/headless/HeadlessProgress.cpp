#include "workbench/headless/HeadlessProgress.h"

#include <unistd.h>

#include <algorithm>
#include <string>

namespace wb {

namespace {

constexpr int BarWidth = 30;

} // namespace

std::FILE* HeadlessProgress::terminalOf(std::FILE* stream) {
    return stream != nullptr && isatty(fileno(stream)) ? stream : nullptr;
}

HeadlessProgress::HeadlessProgress() : m_terminal(terminalOf(stderr)) {}

void HeadlessProgress::d_pbar(const char* text) {
    m_text = text == nullptr ? "" : text;
}

void HeadlessProgress::dstart(unsigned long total) {
    ++m_starts;
    m_open = true;
    m_total = total;
    m_position = 0;
    m_nextDraw = 0;
    m_started = std::chrono::steady_clock::now();
    draw();
}

void HeadlessProgress::advanceTo(unsigned long position) {
    m_position = position;
    if (m_open && m_position >= m_nextDraw)
        draw();
}

void HeadlessProgress::dstop() {
    ++m_stops;
    if (m_open)
        erase();
    m_open = false;
}

int HeadlessProgress::lookbr() { return PollBreaks(1) == 1 ? 0 : 1; }

int HeadlessProgress::PollBreaks(int count) {
    if (count <= 0)
        return 0;
    // The calls up to and including the first that reports a break.
    unsigned long made = static_cast<unsigned long>(count);
    if (breakRequested())
        made = 1;
    else if (m_breakAt > m_calls && m_breakAt - m_calls <= made)
        made = m_breakAt - m_calls;
    const bool broken = breakRequested() || m_calls + made == m_breakAt;
    m_calls += made;
    if (m_open) {
        m_position += made;
        if (m_position >= m_nextDraw)
            draw();
    }
    return broken ? static_cast<int>(made) - 1 : count;
}

void HeadlessProgress::draw() {
    const unsigned long shown = std::min(m_position, m_total);
    const unsigned long percent = m_total == 0 ? 100 : shown * 100 / m_total;
    // The first position with the next whole percentage: nothing is drawn before it.
    m_nextDraw =
        percent >= 100 ? static_cast<unsigned long>(-1) : ((percent + 1) * m_total + 99) / 100;
    if (m_terminal == nullptr || std::chrono::steady_clock::now() - m_started < m_delay)
        return;
    const int filled = static_cast<int>(percent * BarWidth / 100);
    const std::string bar = std::string(filled, '#') + std::string(BarWidth - filled, '.');
    m_drawnLength =
        std::fprintf(m_terminal, "\r%s[%s] %3lu%%", m_text.c_str(), bar.c_str(), percent) - 1;
    std::fflush(m_terminal);
}

void HeadlessProgress::erase() {
    if (m_terminal == nullptr || m_drawnLength <= 0)
        return;
    std::fprintf(m_terminal, "\r%*s\r", m_drawnLength, "");
    std::fflush(m_terminal);
    m_drawnLength = 0;
}

} // namespace wb
