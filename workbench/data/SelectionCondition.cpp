#include "workbench/data/SelectionCondition.h"

#include <charconv>
#include <cmath>

#include "workbench/data/DataFile.h"
#include "workbench/data/TextPosition.h"

namespace wb {

namespace {

// Deeper nesting than any hand-written condition; the limit keeps the recursive descent
// from exhausting the stack on a hostile text.
constexpr int MaxNesting = 100;

enum class TokenKind { Name, Number, VarNumber, LeftParen, RightParen, Relation, End };

struct Token {
    TokenKind kind = TokenKind::End;
    std::string_view text;
    std::size_t offset = 0;
    double number = 0.0;
};

bool isNameStart(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' ||
           static_cast<unsigned char>(c) >= 0x80;
}
bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}
bool isNameChar(char c) {
    return isNameStart(c) || isDigit(c) || c == '.';
}

bool equalsKeyword(std::string_view word, std::string_view keyword) {
    if (word.size() != keyword.size())
        return false;
    for (std::size_t i = 0; i < word.size(); ++i) {
        char c = word[i];
        if (c >= 'A' && c <= 'Z')
            c = char(c - 'A' + 'a');
        if (c != keyword[i])
            return false;
    }
    return true;
}

} // namespace

// Recursive descent over the tokens, emitting the program as it goes. `and` and `or`
// chains jump forward to their end as soon as their result is known; the jump targets are
// patched when the chain is complete.
class SelectionCompiler {
public:
    using Instruction = SelectionCondition::Instruction;
    using Op = SelectionCondition::Op;
    using Relation = SelectionCondition::Relation;
    using Operand = SelectionCondition::Operand;

    SelectionCompiler(std::string_view text, const DataFile& file,
                      std::vector<Instruction>& program)
        : m_text(text), m_file(file), m_program(program) {
        advance();
    }

    void compile() {
        condition(0);
        if (m_token.kind != TokenKind::End)
            fail(m_token.offset, "expected \"and\", \"or\" or the end but found " + found());
    }

private:
    void condition(int depth) { chain(depth, "or", Op::JumpIfTrue, &SelectionCompiler::conjunct); }
    void conjunct(int depth) { chain(depth, "and", Op::JumpIfFalse, &SelectionCompiler::factor); }

    void chain(int depth, std::string_view keyword, Op shortCut,
               void (SelectionCompiler::*part)(int)) {
        (this->*part)(depth);
        std::vector<std::size_t> jumps;
        while (isKeyword(keyword)) {
            advance();
            jumps.push_back(emit(instruction(shortCut)));
            (this->*part)(depth);
        }
        for (const std::size_t jump : jumps)
            m_program[jump].target = m_program.size();
    }

    void factor(int depth) {
        if (depth >= MaxNesting)
            fail(m_token.offset, "conditions nested too deeply");
        if (isKeyword("not")) {
            advance();
            factor(depth + 1);
            emit(instruction(Op::Not));
            return;
        }
        if (m_token.kind == TokenKind::LeftParen) {
            advance();
            condition(depth + 1);
            expect(TokenKind::RightParen, "\")\"");
            return;
        }
        if (isKeyword("missing") && peekIsLeftParen()) {
            advance();
            advance();
            Instruction test = instruction(Op::Missing);
            test.left = variable();
            expect(TokenKind::RightParen, "\")\"");
            emit(test);
            return;
        }
        comparison();
    }

    void comparison() {
        Instruction test = instruction(Op::Compare);
        test.left = operand();
        if (m_token.kind != TokenKind::Relation)
            fail(m_token.offset,
                 "expected a comparison (=, <>, <, <=, >, >=) but found " + found());
        test.relation = relation(m_token.text);
        advance();
        test.right = operand();
        emit(test);
    }

    Operand operand() {
        if (m_token.kind == TokenKind::Number) {
            Operand constant{0, m_token.number};
            advance();
            return constant;
        }
        if (m_token.kind == TokenKind::Name || m_token.kind == TokenKind::VarNumber)
            return variable();
        if (m_token.kind == TokenKind::LeftParen || isKeyword("not"))
            fail(m_token.offset, "expected a variable or a number but found " + found() +
                                     "; a condition cannot be compared");
        fail(m_token.offset, "expected a variable or a number but found " + found());
    }

    Operand variable() {
        int var = 0;
        if (m_token.kind == TokenKind::Name) {
            var = m_file.findVariable(std::string(m_token.text));
            if (var == 0)
                fail(m_token.offset, "unknown variable " + inQuotes(m_token.text));
        } else if (m_token.kind == TokenKind::VarNumber) {
            const double number = m_token.number;
            if (number < 1 || number > m_file.variableCount())
                fail(m_token.offset, "no variable " + std::string(m_token.text) +
                                         "; the file has " +
                                         std::to_string(m_file.variableCount()) + " variables");
            var = int(number);
        } else {
            fail(m_token.offset, "expected a variable but found " + found());
        }
        advance();
        return {var, 0.0};
    }

    static Relation relation(std::string_view text) {
        if (text == "=")
            return Relation::Equal;
        if (text == "<>")
            return Relation::NotEqual;
        if (text == "<")
            return Relation::Less;
        if (text == "<=")
            return Relation::LessEqual;
        if (text == ">")
            return Relation::Greater;
        return Relation::GreaterEqual;
    }

    static Instruction instruction(Op op) {
        Instruction made;
        made.op = op;
        return made;
    }

    std::size_t emit(const Instruction& instruction) {
        m_program.push_back(instruction);
        return m_program.size() - 1;
    }

    void expect(TokenKind kind, const std::string& what) {
        if (m_token.kind != kind)
            fail(m_token.offset, "expected " + what + " but found " + found());
        advance();
    }

    bool isKeyword(std::string_view keyword) const {
        return m_token.kind == TokenKind::Name && equalsKeyword(m_token.text, keyword);
    }

    bool peekIsLeftParen() const {
        std::size_t at = m_pos;
        while (at < m_text.size() && isSpace(m_text[at]))
            ++at;
        return at < m_text.size() && m_text[at] == '(';
    }

    std::string found() const {
        if (m_token.kind == TokenKind::End)
            return "the end";
        return inQuotes(m_token.text);
    }

    [[noreturn]] void fail(std::size_t offset, const std::string& message) const {
        // The text is one line; its column is that of the offset.
        throw DataError("selection condition: " + message + " at column " +
                        std::to_string(positionOf(m_text, offset).column));
    }

    void advance() {
        while (m_pos < m_text.size() && isSpace(m_text[m_pos]))
            ++m_pos;
        m_token = Token{TokenKind::End, {}, m_pos};
        if (m_pos == m_text.size())
            return;
        const std::size_t start = m_pos;
        const char c = m_text[m_pos];
        const char next = m_pos + 1 < m_text.size() ? m_text[m_pos + 1] : '\0';
        if (isDigit(c) || c == '.' || (c == '-' && (isDigit(next) || next == '.'))) {
            lexNumber(start);
            return;
        }
        if (c == '#') {
            ++m_pos;
            while (m_pos < m_text.size() && isDigit(m_text[m_pos]))
                ++m_pos;
            take(TokenKind::VarNumber, start);
            if (m_token.text.size() == 1)
                fail(start, "expected a variable number after \"#\"");
            std::from_chars(m_text.data() + start + 1, m_text.data() + m_pos, m_token.number);
            return;
        }
        if (isNameStart(c)) {
            while (m_pos < m_text.size() && isNameChar(m_text[m_pos]))
                ++m_pos;
            take(TokenKind::Name, start);
            return;
        }
        if (c == '(' || c == ')') {
            ++m_pos;
            take(c == '(' ? TokenKind::LeftParen : TokenKind::RightParen, start);
            return;
        }
        if (c == '=' || c == '<' || c == '>') {
            ++m_pos;
            if (c == '<' && (next == '>' || next == '='))
                ++m_pos;
            else if (c == '>' && next == '=')
                ++m_pos;
            take(TokenKind::Relation, start);
            return;
        }
        if (c == '!' && next == '=')
            fail(start, "unexpected \"!=\"; write \"<>\" for \"not equal\"");
        fail(start, "unexpected character " + inQuotes(std::string_view(&c, 1)));
    }

    void lexNumber(std::size_t start) {
        if (m_text[m_pos] == '-')
            ++m_pos;
        while (m_pos < m_text.size() && (isDigit(m_text[m_pos]) || m_text[m_pos] == '.'))
            ++m_pos;
        if (m_pos < m_text.size() && (m_text[m_pos] == 'e' || m_text[m_pos] == 'E')) {
            std::size_t at = m_pos + 1;
            if (at < m_text.size() && (m_text[at] == '+' || m_text[at] == '-'))
                ++at;
            if (at < m_text.size() && isDigit(m_text[at])) {
                m_pos = at;
                while (m_pos < m_text.size() && isDigit(m_text[m_pos]))
                    ++m_pos;
            }
        }
        take(TokenKind::Number, start);
        const char* first = m_text.data() + start;
        const char* last = m_text.data() + m_pos;
        const auto [end, error] = std::from_chars(first, last, m_token.number);
        if (error != std::errc{} || end != last || !std::isfinite(m_token.number))
            fail(start, "bad number " + inQuotes(m_token.text));
    }

    void take(TokenKind kind, std::size_t start) {
        m_token = Token{kind, m_text.substr(start, m_pos - start), start};
    }

    std::string_view m_text;
    const DataFile& m_file;
    std::vector<Instruction>& m_program;
    std::size_t m_pos = 0;
    Token m_token;
};

SelectionCondition::SelectionCondition(std::string_view text, const DataFile& file) : m_text(text) {
    SelectionCompiler(m_text, file, m_program).compile();
}

bool SelectionCondition::compare(const Instruction& test, const double* row, const DataFile& file) {
    double left = test.left.constant;
    if (test.left.var != 0) {
        left = row[test.left.var];
        if (file.isMissing(test.left.var, left))
            return false;
    }
    double right = test.right.constant;
    if (test.right.var != 0) {
        right = row[test.right.var];
        if (file.isMissing(test.right.var, right))
            return false;
    }
    // Exactly, as the analysis compares a case with the limits of its drill steps: a
    // condition written from them keeps the very cases they keep.
    switch (test.relation) {
    case Relation::Equal:
        return left == right;
    case Relation::NotEqual:
        return left != right;
    case Relation::Less:
        return left < right;
    case Relation::LessEqual:
        return left <= right;
    case Relation::Greater:
        return left > right;
    case Relation::GreaterEqual:
        return left >= right;
    }
    return false;
}

bool SelectionCondition::matches(const double* row, const DataFile& file) const {
    bool truth = false;
    std::size_t pc = 0;
    while (pc < m_program.size()) {
        const Instruction& instruction = m_program[pc++];
        switch (instruction.op) {
        case Op::Compare:
            truth = compare(instruction, row, file);
            break;
        case Op::Missing:
            truth = file.isMissing(instruction.left.var, row[instruction.left.var]);
            break;
        case Op::Not:
            truth = !truth;
            break;
        case Op::JumpIfFalse:
            if (!truth)
                pc = instruction.target;
            break;
        case Op::JumpIfTrue:
            if (truth)
                pc = instruction.target;
            break;
        }
    }
    return truth;
}

} // namespace wb
