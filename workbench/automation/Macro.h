#pragma once
// Macros: text files that drive an automation object, one statement a line.
//
//   Member = value     a put; value is text in double quotes ("" stands for one quote),
//                      a whole number, a real number, True or False
//   Member             a method, or the get of a member that only gives (a result)
//   Print Member       prints the value that the get gives; an object by its Name
//   Dump               prints the state of the analysis
//   Contrast           prints the subset against the rest of the level above: where to
//                      drill next, and the review variables compared
//   Close N            closes result document N (its number in the output) as the user
//                      closing its window does
//   Brush S, S, ...    brushes: presses the panel's brushing button and answers its passes
//                      in order, S a bar number (from 1; drill down on that bar) or Up (drill
//                      up); the pass after the last step leaves, which ends the loop
//   ' comment          from ' to the end of the line, outside quotes; blank lines are skipped
//
// Member names and the words Print, Dump, Contrast, Close, Brush, Up, True and False match
// without regard to case.
//
// To use: parseMacro reads the whole text first, so that a wrong line stops the run before
// anything has happened; MacroRunner then runs the statements in order against the object.
// Both throw MacroError with "MACRO:LINE: STATEMENT: error text".

#include <functional>
#include <iosfwd>
#include <stdexcept>
#include <optional>
#include <string>
#include <vector>

#include "drilldown/host/Automation.h"
#include "workbench/automation/Dispatcher.h"

namespace wb {

class MacroError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// One pass of brushing decided beforehand: drill down on bar `bar` (from 1), or drill up.
struct BrushingStep {
    enum class Kind { DrillDown, DrillUp } kind = Kind::DrillDown;
    int bar = 0;
    bool operator==(const BrushingStep&) const = default;
};

struct MacroStatement {
    enum class Kind { Put, Call, Print, Dump, Contrast, Close, Brush };
    Kind kind = Kind::Call;
    std::string member;
    COleVariant value; // of a put
    int document = 0;  // of a Close
    std::vector<BrushingStep> brushing; // of a Brush
    int line = 0;
    std::string text; // the statement as written, without its comment
};

// `name` is the macro's file name for the messages; strings are made by `strings`.
std::vector<MacroStatement> parseMacro(std::istream& input, const std::string& name,
                                       BstrAllocator& strings);

// How a value reads in Print: text as it is, numbers in their shortest form, True/False,
// "Nothing" for an empty object. (Print shows an object by its Name.)
std::string macroValueText(const VARIANT& value);

class MacroRunner {
public:
    // What the runner asks of its surroundings.
    struct Hooks {
        std::function<std::string()> dump;     // the state for Dump
        std::function<std::string()> contrast; // the text of Contrast
        // Checked after each statement: a text that says why the run cannot go on (a modal
        // dialog that nobody can answer opened), or empty.
        std::function<std::string()> problem;
        // Closes a result document; false when none has that number.
        std::function<bool(int number)> close;
        // Brushes with those steps; why it could not, or empty.
        std::function<std::string(const std::vector<BrushingStep>& steps)> brush;
        // Checked after a put that succeeded: what the object made of a value it took as it
        // stands where a user would not expect it, or empty. Printed as a warning.
        std::function<std::string(const MacroStatement& statement)> caution;
    };

    MacroRunner(Dispatcher& dispatcher, IDispatch* object, std::string name, Hooks hooks,
                std::ostream& out)
        : m_dispatcher(dispatcher), m_object(object), m_name(std::move(name)),
          m_hooks(std::move(hooks)), m_out(out) {}

    void run(const std::vector<MacroStatement>& statements);

private:
    // Runs the statement; what it prints, which waits until the statement is known to
    // have done its work.
    std::optional<std::string> runOne(const MacroStatement& statement);

    Dispatcher& m_dispatcher;
    IDispatch* m_object;
    std::string m_name;
    Hooks m_hooks;
    std::ostream& m_out;
};

} // namespace wb
