#include "workbench/automation/Macro.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <istream>
#include <ostream>

#include "workbench/text/Blanks.h"
#include "workbench/text/Utf8.h"

namespace wb {

namespace {

// Text of the macro file in a message: in quotes, every byte shown.
std::string quoted(std::string_view text) {
    return "\"" + visibleText(text) + "\"";
}

bool sameWord(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return std::tolower(static_cast<unsigned char>(x)) ==
                      std::tolower(static_cast<unsigned char>(y));
           });
}

bool isMemberName(std::string_view text) {
    if (text.empty() || !(std::isalpha(static_cast<unsigned char>(text[0])) || text[0] == '_'))
        return false;
    return std::all_of(text.begin(), text.end(), [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
    });
}

// The line without its comment: from the first ' that stands outside double quotes.
std::string_view withoutComment(std::string_view line) {
    bool quoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '"')
            quoted = !quoted;
        else if (line[i] == '\'' && !quoted)
            return line.substr(0, i);
    }
    return line;
}

template <typename Number> bool readNumber(std::string_view text, Number& number) {
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end;
}

// A value as a macro writes it; throws std::invalid_argument saying what is wrong.
COleVariant parseValue(std::string_view text, BstrAllocator& strings) {
    if (text.empty())
        throw std::invalid_argument("a value is missing after \"=\"");
    if (text.front() == '"') {
        std::string value;
        std::size_t i = 1;
        for (; i < text.size(); ++i) {
            if (text[i] != '"') {
                value += text[i];
            } else if (i + 1 < text.size() && text[i + 1] == '"') {
                value += '"';
                ++i;
            } else {
                break;
            }
        }
        if (i >= text.size())
            throw std::invalid_argument("the text has no closing quote");
        if (i + 1 != text.size())
            throw std::invalid_argument("something follows the closing quote");
        return COleVariant::Text(strings, value);
    }
    if (sameWord(text, "True"))
        return COleVariant(true);
    if (sameWord(text, "False"))
        return COleVariant(false);
    std::string_view digits = text.front() == '+' ? text.substr(1) : text;
    LONG whole = 0;
    if (readNumber(digits, whole))
        return COleVariant(whole);
    double real = 0;
    if (readNumber(digits, real) && std::isfinite(real))
        return COleVariant(real);
    throw std::invalid_argument(quoted(text) +
                                " is no value: write text in double quotes, a number, True or "
                                "False");
}

// "3, 1, Up": bar numbers from 1 and Up, separated by commas.
std::vector<BrushingStep> parseBrushingSteps(std::string_view text) {
    std::vector<BrushingStep> steps;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t comma = std::min(text.find(',', start), text.size());
        const std::string_view item = withoutOuterBlanks(text.substr(start, comma - start));
        BrushingStep step;
        if (sameWord(item, "Up")) {
            step.kind = BrushingStep::Kind::DrillUp;
        } else {
            const auto [end, error] =
                std::from_chars(item.data(), item.data() + item.size(), step.bar);
            if (item.empty() || error != std::errc() || end != item.data() + item.size() ||
                step.bar < 1)
                throw std::invalid_argument(quoted(item) + " is neither a bar number nor Up");
        }
        steps.push_back(step);
        start = comma + 1;
    }
    return steps;
}

MacroStatement parseStatement(std::string_view text, BstrAllocator& strings) {
    MacroStatement statement;
    statement.text = std::string(text);
    const auto equals = text.find('=');
    if (equals != std::string_view::npos) {
        statement.kind = MacroStatement::Kind::Put;
        statement.member = std::string(withoutOuterBlanks(text.substr(0, equals)));
        statement.value = parseValue(withoutOuterBlanks(text.substr(equals + 1)), strings);
    } else {
        const auto blank = text.find_first_of(" \t");
        const std::string_view first = text.substr(0, blank);
        const std::string_view rest = blank == std::string_view::npos
                                          ? std::string_view()
                                          : withoutOuterBlanks(text.substr(blank));
        if (sameWord(first, "Print")) {
            statement.kind = MacroStatement::Kind::Print;
            statement.member = std::string(rest);
            if (rest.empty())
                throw std::invalid_argument("Print needs a member");
        } else if (sameWord(first, "Dump") && rest.empty()) {
            statement.kind = MacroStatement::Kind::Dump;
            return statement;
        } else if (sameWord(first, "Contrast") && rest.empty()) {
            statement.kind = MacroStatement::Kind::Contrast;
            return statement;
        } else if (sameWord(first, "Brush")) {
            statement.kind = MacroStatement::Kind::Brush;
            statement.brushing = parseBrushingSteps(rest);
            return statement;
        } else if (sameWord(first, "Close")) {
            statement.kind = MacroStatement::Kind::Close;
            const auto [end, error] =
                std::from_chars(rest.data(), rest.data() + rest.size(), statement.document);
            if (error != std::errc() || end != rest.data() + rest.size() || statement.document < 1)
                throw std::invalid_argument("Close needs a document number");
            return statement;
        } else {
            statement.member = std::string(text);
        }
    }
    if (!isMemberName(statement.member))
        throw std::invalid_argument(quoted(statement.member) + " is no member name");
    return statement;
}

} // namespace

std::vector<MacroStatement> parseMacro(std::istream& input, const std::string& name,
                                       BstrAllocator& strings) {
    std::vector<MacroStatement> statements;
    std::string line;
    for (int number = 1; std::getline(input, line); ++number) {
        const std::string_view text = withoutOuterBlanks(withoutComment(line));
        if (text.empty())
            continue;
        try {
            statements.push_back(parseStatement(text, strings));
        } catch (const std::invalid_argument& error) {
            throw MacroError(name + ":" + std::to_string(number) + ": " + visibleText(text) + ": " +
                             error.what());
        }
        statements.back().line = number;
    }
    return statements;
}

std::string macroValueText(const VARIANT& value) {
    switch (value.vt) {
    case VT_BSTR:
        return std::string(BstrView(value.bstrVal));
    case VT_I4:
        return std::to_string(value.lVal);
    case VT_R8: {
        char text[32];
        const auto [end, error] = std::to_chars(text, text + sizeof text, value.dblVal);
        return error == std::errc() ? std::string(text, end) : std::string("?");
    }
    case VT_BOOL:
        return value.boolVal != VARIANT_FALSE ? "True" : "False";
    case VT_DISPATCH:
        return value.pdispVal == nullptr ? "Nothing" : "(object)";
    default:
        return {};
    }
}

void MacroRunner::run(const std::vector<MacroStatement>& statements) {
    for (const MacroStatement& statement : statements) {
        const auto where = [&] {
            return m_name + ":" + std::to_string(statement.line) + ": " +
                   visibleText(statement.text) + ": ";
        };
        const auto problem = [&] { return m_hooks.problem ? m_hooks.problem() : std::string(); };
        std::optional<std::string> printed;
        try {
            printed = runOne(statement);
        } catch (const AutomationError& error) {
            // What stopped the statement (a dialog it opened) says more than its failure.
            const std::string cause = problem();
            throw MacroError(where() + (cause.empty() ? error.reason() : cause));
        }
        if (const std::string cause = problem(); !cause.empty())
            throw MacroError(where() + cause);
        if (statement.kind == MacroStatement::Kind::Put && m_hooks.caution)
            if (const std::string caution = m_hooks.caution(statement); !caution.empty())
                m_out << "warning: " << where() << caution << '\n';
        if (printed)
            m_out << *printed << '\n';
    }
}

std::optional<std::string> MacroRunner::runOne(const MacroStatement& statement) {
    switch (statement.kind) {
    case MacroStatement::Kind::Put:
        m_dispatcher.put(m_object, statement.member, statement.value);
        return {};
    case MacroStatement::Kind::Call:
        m_dispatcher.callOrGet(m_object, statement.member);
        return {};
    case MacroStatement::Kind::Print: {
        const COleVariant value = m_dispatcher.get(m_object, statement.member);
        // An object is shown by its name, as a document is by its title.
        if (value.vt == VT_DISPATCH && value.pdispVal != nullptr)
            return macroValueText(m_dispatcher.get(value.pdispVal, "Name"));
        return macroValueText(value);
    }
    case MacroStatement::Kind::Contrast:
        return m_hooks.contrast ? m_hooks.contrast() : std::string();
    case MacroStatement::Kind::Dump:
        return m_hooks.dump ? m_hooks.dump() : std::string();
    case MacroStatement::Kind::Brush:
        if (const std::string problem =
                m_hooks.brush ? m_hooks.brush(statement.brushing) : "brushing is not possible here";
            !problem.empty())
            throw AutomationError("Brush", E_FAIL, problem, {});
        return {};
    case MacroStatement::Kind::Close:
        if (!m_hooks.close || !m_hooks.close(statement.document))
            throw AutomationError("Close", E_INVALIDARG,
                                  "no document " + std::to_string(statement.document) + " is open",
                                  {});
        return {};
    }
    return {};
}

} // namespace wb
