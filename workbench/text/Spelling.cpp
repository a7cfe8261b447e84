#include "workbench/text/Spelling.h"

#include <algorithm>

#include "workbench/text/Utf8.h"

namespace wb {

namespace {

// The characters of UTF-8 text; a byte that starts no character stands for itself.
std::u32string characters(std::string_view text) {
    std::u32string decoded;
    for (std::size_t i = 0; i < text.size();) {
        const auto lead = static_cast<unsigned char>(text[i]);
        const std::size_t length = lead < 0x80 ? 1 : lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
        char32_t c = length == 1 ? lead : lead & (0x7F >> length);
        std::size_t next = i + 1;
        for (; next < i + length && next < text.size() && isContinuationByte(text[next]); ++next)
            c = (c << 6) | (static_cast<unsigned char>(text[next]) & 0x3F);
        decoded += next == i + length ? c : lead;
        i = next == i + length ? next : i + 1;
    }
    return decoded;
}

// The word folded for comparing: lower case, accents of Latin-1 letters taken off, one
// element per character.
std::u32string folded(std::string_view word) {
    std::u32string letters;
    for (char32_t c : characters(word)) {
        if (c >= 'A' && c <= 'Z')
            c += 'a' - 'A';
        static constexpr std::u32string_view Accented = U"àáâãäåçèéêëìíîïñòóôõöùúûüýÿÀÁÂÃÄÅÇÈÉÊËÌÍÎÏÑÒÓÔÕÖÙÚÛÜÝ";
        static constexpr std::u32string_view Plain = U"aaaaaaceeeeiiiinooooouuuuyyaaaaaaceeeeiiiinooooouuuuy";
        if (const auto at = Accented.find(c); at != std::u32string_view::npos)
            c = Plain[at];
        letters += c;
    }
    return letters;
}

std::size_t distance(const std::u32string& a, const std::u32string& b) {
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j)
        row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t above = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, diagonal + (a[i - 1] != b[j - 1])});
            diagonal = above;
        }
    }
    return row[b.size()];
}

} // namespace

std::size_t editDistance(std::string_view a, std::string_view b) {
    return distance(folded(a), folded(b));
}

std::string closestWord(std::string_view word, const std::vector<std::string>& candidates,
                        std::size_t maxEdits) {
    const std::u32string target = folded(word);
    std::string best;
    std::size_t bestDistance = maxEdits + 1;
    for (const std::string& candidate : candidates) {
        if (candidate == word)
            continue;
        const std::size_t d = distance(target, folded(candidate));
        if (d < bestDistance) {
            best = candidate;
            bestDistance = d;
        }
    }
    return best;
}

} // namespace wb
