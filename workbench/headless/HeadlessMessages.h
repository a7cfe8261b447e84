#pragma once
// The headless front end's messages: each one is kept for whoever drives the module (the
// command line, a test) and echoed as one line "drilldown: <text>" to a stream, standard
// error unless told otherwise.

#include <cstdio>
#include <string>
#include <vector>

#include "drilldown/host/HostServices.h"

namespace wb {

class HeadlessMessages : public HostMessages {
public:
    explicit HeadlessMessages(std::FILE* echo = stderr) : m_echo(echo) {}

    // `code` is not used: the text is always read up to its terminator. Line breaks at the
    // end of the text are not echoed twice.
    void dsplst(int code, const char* text) override;

    // Where messages are echoed; null silences them.
    void setEcho(std::FILE* echo) { m_echo = echo; }
    // The messages in the order shown, as given.
    const std::vector<std::string>& messages() const { return m_messages; }
    void clear() { m_messages.clear(); }

private:
    std::FILE* m_echo;
    std::vector<std::string> m_messages;
};

} // namespace wb
