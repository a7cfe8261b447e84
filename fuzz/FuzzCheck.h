#pragma once
// What the fuzzers share: a failed property stops the run with its reason, and the file
// position that every refusal of a reader must carry.

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace fuzz {

// Aborts with `what` when a property does not hold, so that the fuzzer keeps the input.
inline void check(bool holds, const std::string& what) {
    if (holds)
        return;
    std::fprintf(stderr, "property broken: %s\n", what.c_str());
    std::abort();
}

// Lines of `text`, counting a last line without a line end.
inline std::size_t lineCount(std::string_view text) {
    std::size_t lines = 1;
    for (char c : text)
        lines += c == '\n' || c == '\r';
    return lines;
}

// True when `message` reads "NAME:LINE:COLUMN: ..." with LINE between 1 and `maxLine`.
inline bool locatedIn(const std::string& message, const std::string& name, std::size_t maxLine) {
    if (!message.starts_with(name + ":"))
        return false;
    std::size_t pos = name.size() + 1;
    std::size_t line = 0;
    const std::size_t digits = pos;
    while (pos < message.size() && message[pos] >= '0' && message[pos] <= '9')
        line = line * 10 + std::size_t(message[pos++] - '0');
    if (pos == digits || pos >= message.size() || message[pos] != ':')
        return false;
    const std::size_t columnStart = ++pos;
    while (pos < message.size() && message[pos] >= '0' && message[pos] <= '9')
        ++pos;
    return pos > columnStart && line >= 1 && line <= maxLine;
}

} // namespace fuzz
