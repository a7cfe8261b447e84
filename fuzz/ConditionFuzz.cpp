// Text of a selection condition on a small file with missing values. A refusal is a
// DataError with a column inside the text; an accepted condition C agrees with "not (C)",
// "(C) or (C)" and "(C) and (C)" on every case.

#include <string>

#include "FuzzCheck.h"
#include "workbench/data/DataFile.h"
#include "workbench/data/SelectionCondition.h"

namespace {

const wb::DataFile& sampleFile() {
    static const wb::DataFile file = [] {
        wb::DataFile made;
        for (const char* name : {"AGE", "SEX", "INCOME"}) {
            wb::Variable variable;
            variable.name = name;
            variable.missingCode = -99;
            made.addVariable(variable);
        }
        const double rows[][3] = {{20, 1, 1500}, {35, 2, -99}, {-99, 1, 2200.5},
                                  {50, -99, 0},  {0, 2, -3},   {35, 1, 1e300}};
        for (const auto& row : rows)
            made.appendCase({row[0], row[1], row[2]});
        return made;
    }();
    return file;
}

bool holds(const wb::SelectionCondition& condition, int c) {
    const wb::DataFile& file = sampleFile();
    return condition.matches(file.row(c), file);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const wb::DataFile& file = sampleFile();
    try {
        const wb::SelectionCondition condition(text, file);
        const wb::SelectionCondition negated("not (" + text + ")", file);
        const wb::SelectionCondition either("(" + text + ") or (" + text + ")", file);
        const wb::SelectionCondition both("(" + text + ") and (" + text + ")", file);
        for (int c = 1; c <= file.caseCount(); ++c) {
            const bool value = holds(condition, c);
            fuzz::check(holds(negated, c) == !value, "not C disagrees with C");
            fuzz::check(holds(either, c) == value, "C or C disagrees with C");
            fuzz::check(holds(both, c) == value, "C and C disagrees with C");
        }
    } catch (const wb::DataError& error) {
        const std::string message = error.what();
        const std::size_t at = message.rfind(" at column ");
        if (at == std::string::npos)
            return 0; // an unknown variable or an empty text names no column
        const std::size_t column = std::stoul(message.substr(at + 11));
        fuzz::check(column >= 1 && column <= text.size() + 1,
                    "a column outside the text: " + message);
    }
    return 0;
}
