#pragma once
// The headless front end's progress display and user break.
//
// The module opens the display with dstart(total), then says nothing until dstop, but it
// asks for a break once for every case it reads (lookbr, or PollBreaks for many cases at
// once); so that is what moves the bar. Work that is
// not the module's (loading a file) moves it with advanceTo. The bar is redrawn only when
// its whole percentage changes (at most 101 times a scan), only once the work has lasted a
// second (work done sooner shows nothing), and only when it has a terminal to draw on: by
// default standard error when that is a terminal.
//
// A break is asked for with requestBreak, which only sets an atomic flag and so may be
// called from a signal handler or another thread. The request stands, and every lookbr
// reports it, until clearBreak: whoever asked decides when the next operation may run.

#include <atomic>
#include <chrono>
#include <cstdio>
#include <string>

#include "drilldown/host/HostServices.h"

namespace wb {

class HeadlessProgress : public HostProgress {
public:
    // Draws on standard error when it is a terminal, nowhere otherwise.
    HeadlessProgress();
    // Draws on `terminal`, once the work has lasted `delay`; null draws nothing.
    explicit HeadlessProgress(std::FILE* terminal,
                              std::chrono::milliseconds delay = std::chrono::seconds(1))
        : m_terminal(terminal), m_delay(delay) {}
    // `stream` when it is a terminal, else null.
    static std::FILE* terminalOf(std::FILE* stream);

    void d_pbar(const char* text) override;
    void dstart(unsigned long total) override;
    void dstop() override;
    int lookbr() override;
    // What `count` lookbr calls do, at the cost of one.
    int PollBreaks(int count) override;
    // Moves the bar to `position` of the total, for work that has no lookbr of its own.
    void advanceTo(unsigned long position);

    // Async-signal-safe.
    void requestBreak() noexcept { m_breakRequested.store(true, std::memory_order_relaxed); }
    void clearBreak() noexcept { m_breakRequested.store(false, std::memory_order_relaxed); }
    bool breakRequested() const noexcept {
        return m_breakRequested.load(std::memory_order_relaxed);
    }
    // The k-th lookbr call from now reports a break, once (1 = the next call); 0 clears.
    void breakAtCall(unsigned long k) { m_breakAt = k == 0 ? 0 : m_calls + k; }

    int startCount() const { return m_starts; }
    int stopCount() const { return m_stops; }
    bool isOpen() const { return m_open; }
    unsigned long total() const { return m_total; }
    // lookbr calls since the display was opened.
    unsigned long position() const { return m_position; }
    // lookbr calls in all.
    unsigned long lookbrCalls() const { return m_calls; }
    const std::string& text() const { return m_text; }

private:
    void draw();
    void erase();

    static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler sets the flag");
    std::atomic<bool> m_breakRequested{false};
    std::FILE* m_terminal;
    std::chrono::milliseconds m_delay;
    std::chrono::steady_clock::time_point m_started;
    std::string m_text;
    bool m_open = false;
    int m_starts = 0;
    int m_stops = 0;
    unsigned long m_total = 0;
    unsigned long m_position = 0;
    unsigned long m_calls = 0;
    unsigned long m_breakAt = 0;
    unsigned long m_nextDraw = 0; // position at which the percentage changes next
    int m_drawnLength = 0;        // characters of the bar on the terminal line
};

} // namespace wb
