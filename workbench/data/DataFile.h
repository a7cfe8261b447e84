#pragma once
// The workbench's data file: a dictionary of variables and a block of cases.
//
// Values are doubles. A missing value is the variable's missing code, a double that no
// valid value of the variable takes. All cases sit in one contiguous row-major block with
// one row of NVars + 1 doubles per case, indexed by the 1-based variable number (slot 0
// unused), which is the layout of the module's value buffer: handing a case over is one copy.
//
// Display formats: a Date value counts days since 1899-12-30 (the spreadsheet epoch) and
// shows as DD/MM/YY; a Time value counts seconds since midnight and shows as HH:MM:SS.
//
// To use a data file:
//   1. load it (DataFileLoader.h) or build it with addVariable / appendCase;
//   2. optionally set a weight variable and a selection condition;
//   3. read cases with row(), or through the host's case loop.

#include <cstdint>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "drilldown/host/RealNumbers.h"

namespace wb {

// What a loader reports now and then as it goes: the share of the file read, 0 to 1, always
// on the thread that called it.
using LoadProgress = std::function<void(double share)>;

// A malformed input: the message names the file, and the line and column where known.
class DataError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

enum class DisplayFormat { Plain, Date, Time };
// "plain", "date" or "time": the name in dictionaries and listings.
const char* displayFormatName(DisplayFormat format);

struct Variable {
    std::string name;      // short name; longer than 8 bytes it travels as a token
    std::string longName;  // descriptive name; may be empty
    double missingCode = -99999999.0;
    std::map<double, std::string> labels;  // text labels by value; a label may be long
    DisplayFormat format = DisplayFormat::Plain;
};

class SelectionCondition;

// Memory for a block of cases, to be given back with std::free; throws std::bad_alloc.
void* allocateCaseBlock(std::size_t bytes);

class DataFile {
public:
    DataFile();
    ~DataFile();
    DataFile(DataFile&&) noexcept;
    DataFile& operator=(DataFile&&) noexcept;

    // Where the file came from; used in messages. Empty for a file built in memory.
    const std::string& path() const { return m_path; }
    void setPath(std::string path) { m_path = std::move(path); }

    int variableCount() const { return static_cast<int>(m_variables.size()); }
    int caseCount() const { return m_caseCount; }

    // 1-based.
    const Variable& variable(int var) const { return m_variables.at(var - 1); }
    Variable& variable(int var) { return m_variables.at(var - 1); }
    // 1-based number of the variable of that short name (exact match first, then without
    // regard to case), or 0.
    int findVariable(const std::string& name) const;

    // Adds a variable; only while the file has no cases. Gives its number.
    int addVariable(Variable variable);
    // Appends one case; `values` holds one value per variable, in variable order.
    void appendCase(const std::vector<double>& values, std::string caseName = {});
    // Makes room for `count` more cases and gives their rows, laid out as row() gives them (a
    // slot before each case's values), for a reader to fill in place: memory is taken only as
    // the rows are written, and their values are undefined until then. `commitCases` must
    // follow; it counts the first `count` of them, with their names or no names at all.
    double* roomForCases(int count);
    void commitCases(int count, std::vector<std::string> names);
    // Makes room for `count` cases in all, so that appending them does not reallocate.
    void reserveCases(int count);

    // The row of a case, 1-based: NVars + 1 doubles, slot 0 unused.
    const double* row(int caseNo) const { return &m_values[std::size_t(caseNo) * stride()]; }
    double value(int caseNo, int var) const { return row(caseNo)[var]; }
    void setValue(int caseNo, int var, double value) {
        m_values[std::size_t(caseNo) * stride() + var] = value;
    }
    std::size_t stride() const { return m_variables.size() + 1; }

    bool isMissing(int var, double value) const {
        return RealEqual(value, variable(var).missingCode);
    }

    // Case names: empty when the file has none. 1-based.
    bool hasCaseNames() const { return !m_caseNames.empty(); }
    const std::string& caseName(int caseNo) const { return m_caseNames.at(caseNo - 1); }
    // Width in bytes of the longest case name, at least 1 when the file has case names.
    int caseNameWidth() const;

    // Header text, at most 80 bytes.
    const std::string& headerText() const { return m_headerText; }
    void setHeaderText(std::string text);

    // The weight variable, 0 for none. A missing or negative weight counts as 0.
    int weightVariable() const { return m_weightVar; }
    void setWeightVariable(int var);
    double caseWeight(int caseNo) const;

    // The selection condition; an empty text removes it. Throws DataError naming the
    // position of a syntax error; the file is unchanged then.
    void setSelection(const std::string& expression);
    const std::string& selectionText() const { return m_selectionText; }
    // True when the case passes the selection condition (always, without one).
    bool isSelected(int caseNo) const {
        return m_selection == nullptr || passesSelection(caseNo);
    }

private:
    bool passesSelection(int caseNo) const;
    // Counts a case whose values are in place, keeping its name.
    void countCase(std::string caseName);

    std::string m_path;
    std::vector<Variable> m_variables;
    int m_caseCount = 0;
    // Leaves the values of new rows uninitialised, so that room made for cases takes no
    // memory before a reader writes them. Large blocks lie in huge pages where the system
    // has them: a gigabyte of cases then takes a few hundred page faults, not a quarter of a
    // million, and a scan misses the address cache far less often.
    template <typename T> struct UninitialisedAllocator : std::allocator<T> {
        template <typename U> struct rebind {
            using other = UninitialisedAllocator<U>;
        };
        T* allocate(std::size_t n) {
            if (n > std::size_t(-1) / sizeof(T))
                throw std::bad_array_new_length();
            return static_cast<T*>(allocateCaseBlock(n * sizeof(T)));
        }
        void deallocate(T* at, std::size_t) { std::free(at); }
        template <typename U, typename... Args> void construct(U* at, Args&&... args) {
            if constexpr (sizeof...(Args) == 0)
                ::new (static_cast<void*>(at)) U;
            else
                ::new (static_cast<void*>(at)) U(std::forward<Args>(args)...);
        }
    };

    // Row 0 is a dummy so that rows are 1-based; each row has stride() doubles.
    std::vector<double, UninitialisedAllocator<double>> m_values;
    std::vector<std::string> m_caseNames;
    int m_caseNameWidth = 0;
    std::string m_headerText;
    int m_weightVar = 0;
    std::string m_selectionText;
    std::unique_ptr<SelectionCondition> m_selection;
};

} // namespace wb
