#pragma once
// Suggestions for a misspelt word: "did you mean ...?".
//
// Words are compared without regard to ASCII case and to the accents of Latin-1 letters
// ("region" and "Région" are the same word), by the number of single-letter edits
// (insertions, deletions, substitutions) between them.

#include <string>
#include <string_view>
#include <vector>

namespace wb {

std::size_t editDistance(std::string_view a, std::string_view b);

// The candidate nearest `word` when it is at most `maxEdits` edits away (the first of equals),
// or empty. A candidate written exactly as the word is no suggestion; one that differs only
// in case or accents is the best.
std::string closestWord(std::string_view word, const std::vector<std::string>& candidates,
                        std::size_t maxEdits = 2);

} // namespace wb
