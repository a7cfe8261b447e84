#pragma once
// Tokens: the short stand-ins of long strings.
//
// Names and labels travel through the module in 8-byte fields. A text that does not fit is
// registered here and travels as its token; whoever shows the text brings the long string
// back by looking the token up. The table is process-wide, so the data service that hands
// out a token and the text service that expands it always agree, and the same long string
// always gets the same token.
//
// Token form: exactly 8 ASCII bytes, '~', six base-36 digits (0-9, A-Z) numbering the
// string in order of registration from 1, '~'; "~00001A~" is the 46th string. The tilde
// brackets make a token unlikely in real text and easy to find inside a longer one; a
// text that only looks like a token but was never registered is left alone.
//
// The table only grows: tokens stay valid for the life of the process. All operations
// are thread-safe.

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace wb {

class TokenTable {
public:
    static constexpr std::size_t TokenLength = 8;

    // The table shared by the whole process.
    static TokenTable& shared();

    // The token of `text`, registering it on first use. Throws std::length_error when the
    // 36^6 - 1 tokens are used up.
    std::string tokenFor(std::string_view text);
    // The text itself when it fits into TokenLength bytes, its token otherwise.
    std::string shortForm(std::string_view text);
    // The long string of a registered token; nothing for any other text.
    std::optional<std::string> lookup(std::string_view token) const;
    // The long string when `text`, blanks around it aside, is a registered token;
    // otherwise `text` unchanged.
    std::string expand(std::string_view text) const;
    // `text` with every registered token in it replaced by its long string. With
    // `grow` false each token is replaced by the first TokenLength bytes of its long
    // string instead (cut at a character boundary, blank padded), so that the text keeps
    // its length and fixed-width columns stay aligned. Growing also replaces the tokens in
    // the long strings (a title made into a token may name a variable by its token).
    std::string replaceAll(std::string_view text, bool grow) const;

    std::size_t size() const;

private:
    std::optional<std::string> lookupLocked(std::string_view token) const;
    std::string replaceAllLocked(std::string_view text, bool grow, int depth) const;

    mutable std::mutex m_mutex;
    std::unordered_map<std::string, std::uint32_t> m_numbers;
    // Points at the keys of m_numbers, whose addresses are stable; index = number - 1.
    std::vector<const std::string*> m_strings;
};


} // namespace wb
