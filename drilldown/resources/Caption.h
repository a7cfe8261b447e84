#pragma once
// What a control caption of the dialog resources shows.
//
// Captions are UTF-8 and carry the host's markup, which is kept in the resources as data and
// read here, by every front end alike:
//
//   1. Icon. A caption may open with an icon for its button, in one of two forms:
//      - "!" and decimal digits: icon number n ("!372&Bas" is icon 372). A value above 65535,
//        or a "!" without digits, is no icon and stays in the text.
//      - one code character, a lower-case ASCII letter or "`", followed by the end of the
//        caption, by "&" or by an upper-case letter (ASCII or accented Latin-1):
//        "j&Ordre", "eTables", "`O&uvrir", "j". The look-ahead is what keeps ordinary words
//        whole: "ou" and "au &minimum" have no icon.
//      Only the start of a caption is looked at, and at most one icon is taken.
//   2. Mnemonic. "&" before a character marks that character as the one the user types with
//      Alt; the "&" is not shown. "&&" shows one "&" and marks nothing. When several
//      characters are marked, the first is the mnemonic. A "&" that ends the caption has
//      nothing to mark and is shown.
//   3. Everything else is shown as it stands, blanks included.
//
// The markup characters are ASCII, and no byte of a multi-byte UTF-8 sequence is, so the
// visible text never has a sequence cut in two.

#include <cstddef>
#include <string>
#include <string_view>

struct CaptionParts {
    std::string Text;      // what the user sees
    char32_t Mnemonic = 0; // the marked character as written (not case-folded); 0 for none
    // Byte offset of the mnemonic in Text, for a front end that underlines it or marks it in
    // its own way; npos for none.
    std::size_t MnemonicOffset = std::string::npos;
    int IconNumber = -1;    // n of a leading "!n"; -1 for none
    char IconLetter = '\0'; // a leading code character; '\0' for none

    bool HasIcon() const { return IconNumber >= 0 || IconLetter != '\0'; }
};

CaptionParts ParseCaption(std::string_view caption);
