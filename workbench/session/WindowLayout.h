#pragma once
// Where the analysis's stand-alone result windows stand, as text that a user's session
// keeps: the module's archive of its tracked outputs in upper-case hexadecimal. Restoring
// it turns stand-alone results on and presses the buttons of the stored outputs again, so
// each window comes back with the current subset's content, in its place and order.

#include <stdexcept>
#include <string>
#include <string_view>

#include "workbench/session/AnalysisSession.h"

namespace wb {

class LayoutError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The layout of the session's analysis (its panel need not be open).
std::string windowLayout(AnalysisSession& session);
// Needs the panel open. LayoutError, with nothing restored, for text that is no layout.
void restoreWindowLayout(AnalysisSession& session, std::string_view text);

} // namespace wb
