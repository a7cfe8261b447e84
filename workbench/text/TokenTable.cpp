#include "workbench/text/TokenTable.h"

#include <stdexcept>

#include "workbench/text/Utf8.h"

namespace wb {

namespace {

constexpr std::size_t DigitCount = 6;
constexpr char Bracket = '~';
constexpr std::string_view Digits = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
// 36^6 - 1: the largest number six base-36 digits hold.
constexpr std::uint32_t MaxNumber = 2176782335u;

std::string tokenText(std::uint32_t number) {
    std::string token(TokenTable::TokenLength, Bracket);
    for (std::size_t i = DigitCount; i >= 1; --i) {
        token[i] = Digits[number % 36];
        number /= 36;
    }
    return token;
}

// The number a token stands for, or nothing when `text` does not have the token form.
std::optional<std::uint32_t> tokenNumber(std::string_view text) {
    if (text.size() != TokenTable::TokenLength || text.front() != Bracket || text.back() != Bracket)
        return std::nullopt;
    std::uint32_t number = 0;
    for (std::size_t i = 1; i <= DigitCount; ++i) {
        const std::size_t digit = Digits.find(text[i]);
        if (digit == std::string_view::npos)
            return std::nullopt;
        number = number * 36 + static_cast<std::uint32_t>(digit);
    }
    return number;
}

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

} // namespace

TokenTable& TokenTable::shared() {
    static TokenTable table;
    return table;
}

std::string TokenTable::tokenFor(std::string_view text) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_numbers.find(std::string(text));
    if (found != m_numbers.end())
        return tokenText(found->second);
    if (m_strings.size() >= MaxNumber)
        throw std::length_error("token table full");
    const auto number = static_cast<std::uint32_t>(m_strings.size() + 1);
    const auto inserted = m_numbers.emplace(std::string(text), number).first;
    m_strings.push_back(&inserted->first);
    return tokenText(number);
}

std::string TokenTable::shortForm(std::string_view text) {
    if (text.size() <= TokenLength)
        return std::string(text);
    return tokenFor(text);
}

std::optional<std::string> TokenTable::lookupLocked(std::string_view token) const {
    const auto number = tokenNumber(token);
    if (!number || *number == 0 || *number > m_strings.size())
        return std::nullopt;
    return *m_strings[*number - 1];
}

std::optional<std::string> TokenTable::lookup(std::string_view token) const {
    const std::lock_guard lock(m_mutex);
    return lookupLocked(token);
}

std::string TokenTable::expand(std::string_view text) const {
    std::string_view core = text;
    while (!core.empty() && isBlank(core.front()))
        core.remove_prefix(1);
    while (!core.empty() && isBlank(core.back()))
        core.remove_suffix(1);
    if (auto expanded = lookup(core))
        return std::move(*expanded);
    return std::string(text);
}

std::string TokenTable::replaceAll(std::string_view text, bool grow) const {
    const std::lock_guard lock(m_mutex);
    return replaceAllLocked(text, grow, 0);
}

std::string TokenTable::replaceAllLocked(std::string_view text, bool grow, int depth) const {
    // A token is made from a text that exists before it, so nesting is shallow; the bound
    // only guards against a table filled by hand with a cycle.
    constexpr int MaxNesting = 8;
    std::string out;
    out.reserve(text.size());
    std::size_t pos = 0;
    while (pos < text.size()) {
        const std::size_t start = text.find(Bracket, pos);
        if (start == std::string_view::npos || text.size() - start < TokenLength)
            break;
        out.append(text.substr(pos, start - pos));
        const auto expanded = lookupLocked(text.substr(start, TokenLength));
        if (!expanded) {
            // Not a token here; the closing tilde may still open one.
            out += Bracket;
            pos = start + 1;
            continue;
        }
        if (grow) {
            out += depth < MaxNesting ? replaceAllLocked(*expanded, grow, depth + 1) : *expanded;
        } else {
            const std::size_t kept = utf8PrefixLength(*expanded, TokenLength);
            out.append(*expanded, 0, kept);
            out.append(TokenLength - kept, ' ');
        }
        pos = start + TokenLength;
    }
    out.append(text.substr(std::min(pos, text.size())));
    return out;
}

std::size_t TokenTable::size() const {
    const std::lock_guard lock(m_mutex);
    return m_strings.size();
}

} // namespace wb
