#pragma once
// How a CSV file writes its fields: the separator, the decimal mark and the encoding. Files
// from spreadsheets set to French or German use semicolons, decimal commas and often
// Windows-1252; the loader guesses each from the text, and the dictionary may force it
// (DataFileLoader.h).

#include <string>
#include <string_view>

namespace wb {

enum class TextEncoding { Utf8, Windows1252, Latin1 };

struct CsvDialect {
    char separator = ',';
    char decimal = '.';
    TextEncoding encoding = TextEncoding::Utf8;
};

// The dialect of `text` (without byte order mark):
//   - the separator is the one of ',', ';' and tab that cuts the first line into the most
//     fields, outside quotes; a comma when none does;
//   - the decimal mark is a comma when the separator is not and the first lines hold more
//     numbers written with a decimal comma (3,5) than with a point (3.5);
//   - the encoding is UTF-8 when the text is valid UTF-8, else Windows-1252.
CsvDialect guessCsvDialect(std::string_view text);

// `text` in UTF-8. Windows-1252 maps 0x80 to 0x9F to its printing characters, and the five
// bytes it leaves undefined, like every byte of Latin-1, to the code point of the same
// number.
std::string toUtf8(std::string_view text, TextEncoding encoding);

// The dictionary's words for each: ",", ";", "\t"; ".", ","; "UTF-8", "Windows-1252",
// "Latin-1". False for a word that is none of them.
bool separatorNamed(std::string_view word, char& separator);
bool decimalNamed(std::string_view word, char& decimal);
bool encodingNamed(std::string_view word, TextEncoding& encoding);

} // namespace wb
