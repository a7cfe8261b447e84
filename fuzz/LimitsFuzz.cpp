// Text of the user's interval limits. An accepted text gives 1 to 99 finite limits in
// strictly ascending order, which read back the same when written with full precision; a
// refusal gives one of the dialog's four reasons.

#include <cmath>
#include <cstdio>
#include <string>

#include "FuzzCheck.h"
#include "drilldown/dialogs/UserLimits.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const ParsedLimits parsed = ParseUserLimits(text, ';', true);
    if (parsed.message != 0) {
        fuzz::check(parsed.message >= 10011 && parsed.message <= 10014,
                    "a refusal with an unknown reason " + std::to_string(parsed.message));
        return 0;
    }
    const std::vector<double>& limits = parsed.values;
    fuzz::check(!limits.empty() && limits.size() <= 99, "limits out of count");
    std::string written;
    for (std::size_t k = 0; k < limits.size(); ++k) {
        fuzz::check(std::isfinite(limits[k]), "a limit that is not finite");
        fuzz::check(k == 0 || limits[k - 1] < limits[k], "limits not ascending");
        char number[32];
        std::snprintf(number, sizeof number, "%.17g", limits[k]);
        written += (k == 0 ? "" : ";") + std::string(number);
    }
    const ParsedLimits again = ParseUserLimits(written, ';', true);
    fuzz::check(again.message == 0 && again.values == limits,
                "limits do not read back: " + written);
    return 0;
}
