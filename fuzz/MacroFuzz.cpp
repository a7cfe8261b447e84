// Text of a macro. A refusal is a MacroError at a line of the text; an accepted macro has
// at most one statement per line, each at its own line.

#include <sstream>
#include <string>

#include "FuzzCheck.h"
#include "workbench/automation/AutomationRuntime.h"
#include "workbench/automation/Macro.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static wb::AutomationRuntime automation;
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::istringstream input(text);
    const std::size_t lines = fuzz::lineCount(text);
    try {
        const std::vector<wb::MacroStatement> statements =
            wb::parseMacro(input, "m.ddm", automation);
        fuzz::check(statements.size() <= lines, "more statements than lines");
        int previous = 0;
        for (const wb::MacroStatement& statement : statements) {
            fuzz::check(statement.line > previous && std::size_t(statement.line) <= lines,
                        "a statement out of its line order");
            previous = statement.line;
        }
    } catch (const wb::MacroError& error) {
        const std::string message = error.what();
        fuzz::check(message.starts_with("m.ddm:") && message.find(": ", 6) != std::string::npos,
                    "refusal without its line: " + message);
    }
    return 0;
}
