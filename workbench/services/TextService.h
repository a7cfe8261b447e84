#pragma once
// The workbench's text service: tokens, formatting marks, number text and scales.
//
// Inline formatting marks are the tags <b> </b> <i> </i> <u> </u> <sub> </sub> <sup>
// </sup>, in any letter case. StripFormatting removes exactly these; any other '<' and
// anything between tags stays.
//
// Tokens come from a TokenTable (TokenTable.h), by default the process-wide one that the
// data service also uses. Number text follows NumberText.h and scales NeatScale.h.

#include <string>

#include "drilldown/host/HostServices.h"
#include "workbench/text/TokenTable.h"

namespace wb {

// `text` without the inline formatting marks.
std::string stripFormatting(const std::string& text);

class TextService : public HostText {
public:
    explicit TextService(TokenTable& tokens = TokenTable::shared()) : m_tokens(tokens) {}

    // A text of at most 8 bytes stays as it is.
    void Get8CharHash(std::string& text) override;
    void ExpandPossible8CharHash(std::string& text) override;
    // With grow false, a token becomes the first 8 bytes of its string (TokenTable.h).
    void Replace8CharGrow(std::string& text, bool grow) override;
    void StripFormatting(std::string& text) override;
    short RealToText(double value, unsigned char format, short width, short digits, char* text,
                     short limit) override;
    // `format` is not used: the module passes 6, and a whole number has one layout.
    short IntToText(long value, unsigned char format, short width, char* text) override;
    // `step` on entry is not read: the step follows from the range and `wanted` alone.
    // `cases` is not needed.
    void scling_double_QUA(double* lo, double* hi, double* step, short cases,
                           short wanted) override;

private:
    TokenTable& m_tokens;
};

} // namespace wb
