#pragma once
// Text helpers that the dialogs and the automation object use to read what a user or a
// macro typed: a small tokenizer, reading one number, the user's separators, and the text
// of a macro's value. They need no host state: the user's separators come from the
// environment's locale through the standard library. Text is UTF-8.

#include <cstddef>
#include <string>
#include <string_view>

#include "../Automation.h"

// Splits a text into symbols, one GetSymbol at a time:
//
//   0  the end of the text;
//   2  a number: optional sign, digits with an optional '.' fraction and exponent, ending at
//      the end, a blank or a punctuation character ("3x" is no number but text);
//   3  a bare text item: from a letter, '_', a non-ASCII character or a digit that does not
//      make a number, up to the end of the line, without the blanks at its end. So a name or
//      a label with blanks and brackets ("Manquante(s)") is one item;
//   4  a quoted text item: between two '"' or two '\'', a doubled quote standing for one;
//   any other value: that punctuation character itself (':', ';', '-', ...), also the
//      opening quote of a quote that is never closed.
//
// Blanks and line ends between symbols are skipped.
class CLittleParser {
public:
    static constexpr unsigned char SymEnd = 0;
    static constexpr unsigned char SymNumber = 2;
    static constexpr unsigned char SymWord = 3;
    static constexpr unsigned char SymString = 4;

    // The module passes (1, text, NULL, 0); mode 1, free text, is the only mode and the two
    // last arguments are not used. The text is copied; null is the empty text.
    CLittleParser(int mode, const char* text, const char* reserved, int flags);

    unsigned char GetSymbol();
    // The last number, cut toward zero to a whole number within the range of long.
    long GetLastNumber() const;
    double GetLastDouble() const { return m_number; }
    // The last text item, without its quotes.
    const std::string& GetLastTextVal() const { return m_textVal; }

private:
    bool readNumber();
    void readWord();
    bool readQuoted();

    std::string m_text;
    std::size_t m_pos = 0;
    double m_number = 0;
    std::string m_textVal;
};

// Reads the one number that `length` bytes of `text` hold, blanks and line ends around it
// allowed, with '.' or the user's decimal separator as decimal point; 0 on success, then
// *value holds it, non-zero otherwise (*value unchanged). `mode` is not used: the module
// passes 5, free number.
int GetDouble(int mode, const char* text, int length, double* value);
// The same with a given decimal separator.
int ReadNumberText(std::string_view text, char decimalSeparator, double* value);

// The user's decimal separator, from the locale of the environment; '.' when it has none.
char UserDecimalSeparator();
// The list separator that goes with a decimal separator: ';' beside ',', else ','.
char ListSeparatorFor(char decimalSeparator);
// The user's list separator.
char GetListSep();

// The length in bytes of the longest start of `text` that holds none of the characters of
// `stops` (UTF-8 characters, not bytes, are compared).
std::size_t wstrcspn(const char* text, const char* stops);

// Turns a macro's value into one text: a string gives itself; an array its items joined by
// single blanks, nested arrays flattened and empty items left out; a whole number and a real
// number their digits in the shortest exact form ("3", "2.5", "1e+20"); a bool 1 or 0;
// empty or null nothing. Gives false (and an empty text) for a value with an object in it.
bool VariantToTextList(const VARIANT& value, std::string& text);
