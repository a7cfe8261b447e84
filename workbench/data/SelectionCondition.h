#pragma once
// A selection condition: the test a case must pass to take part in an analysis.
//
//   condition := conjunct { "or" conjunct }
//   conjunct  := factor { "and" factor }
//   factor    := "not" factor | "(" condition ")" | "missing" "(" variable ")"
//              | operand relation operand
//   operand   := variable | number
//   variable  := name | "#" whole-number
//   relation  := "=" | "<>" | "<" | "<=" | ">" | ">="
//
// So a comparison binds its two operands first, then "not", then "and", then "or":
// `not AGE > 30 and SEX = 1 or X = 2` is `((not (AGE > 30)) and SEX = 1) or X = 2`.
// Keywords ignore case; a name is looked up as DataFile::findVariable does (exact, then
// without regard to case), and "#3" is variable 3 for names that are not plain words.
// "missing" is a keyword only before "(". Numbers may be negative, decimal or in
// exponent form. A comparison with a missing value on either side is false, so
// `not AGE > 30` holds for a case whose age is missing. Comparisons are exact, as the
// analysis compares a case with the limits of a drill step (0.1 + 0.2 is not 0.3); a value
// is missing when it equals its variable's missing code within the analysis's tolerance.
//
// The text is compiled once into a flat program of tests and forward jumps that works on a
// single truth register, so evaluating a case neither allocates nor recurses.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace wb {

class DataFile;

class SelectionCondition {
public:
    // Compiles `text` against the variables of `file`. Throws DataError on a syntax error
    // or an unknown variable, naming the 1-based character column, e.g.
    // `selection condition: unknown variable "FOO" at column 12`.
    SelectionCondition(std::string_view text, const DataFile& file);

    const std::string& text() const { return m_text; }
    // True when the case whose row is `row` (DataFile::row layout) passes. `file` is the
    // file the condition was compiled against; it supplies the missing codes.
    bool matches(const double* row, const DataFile& file) const;

private:
    friend class SelectionCompiler;

    enum class Op : std::uint8_t { Compare, Missing, Not, JumpIfFalse, JumpIfTrue };
    enum class Relation : std::uint8_t { Equal, NotEqual, Less, LessEqual, Greater, GreaterEqual };
    // A variable number, or 0 for the constant.
    struct Operand {
        int var = 0;
        double constant = 0.0;
    };
    struct Instruction {
        Op op = Op::Not;
        Relation relation = Relation::Equal;
        Operand left; // also the variable of Missing
        Operand right;
        std::size_t target = 0; // of a jump
    };

    static bool compare(const Instruction& test, const double* row, const DataFile& file);

    std::string m_text;
    std::vector<Instruction> m_program;
};

} // namespace wb
