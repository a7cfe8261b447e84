#include "workbench/data/DataFile.h"

#include <sys/mman.h>

#include <algorithm>
#include <climits>

#include "drilldown/host/RealNumbers.h"
#include "workbench/data/SelectionCondition.h"

namespace wb {

namespace {

constexpr std::size_t MaxHeaderBytes = 80;

char asciiLower(char c) {
    return (c >= 'A' && c <= 'Z') ? char(c - 'A' + 'a') : c;
}

bool equalIgnoringCase(const std::string& a, const std::string& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return asciiLower(x) == asciiLower(y); });
}

// Blocks from this size on go in huge pages: smaller ones would waste most of a page.
constexpr std::size_t HugePage = std::size_t(2) << 20;

} // namespace

void* allocateCaseBlock(std::size_t bytes) {
    if (bytes < 2 * HugePage) {
        if (void* block = std::malloc(std::max<std::size_t>(bytes, 1)))
            return block;
        throw std::bad_alloc();
    }
    const std::size_t rounded = (bytes + HugePage - 1) / HugePage * HugePage;
    void* block = std::aligned_alloc(HugePage, rounded);
    if (block == nullptr)
        throw std::bad_alloc();
    // Only advice: where huge pages are off, the block works in small pages all the same.
    madvise(block, rounded, MADV_HUGEPAGE);
    return block;
}

const char* displayFormatName(DisplayFormat format) {
    switch (format) {
    case DisplayFormat::Date:
        return "date";
    case DisplayFormat::Time:
        return "time";
    case DisplayFormat::Plain:
        break;
    }
    return "plain";
}

// The dummy row 0 keeps case numbers 1-based without an offset in row().
DataFile::DataFile() : m_values(stride(), 0.0) {}
DataFile::~DataFile() = default;
DataFile::DataFile(DataFile&&) noexcept = default;
DataFile& DataFile::operator=(DataFile&&) noexcept = default;

int DataFile::findVariable(const std::string& name) const {
    for (std::size_t i = 0; i < m_variables.size(); ++i)
        if (m_variables[i].name == name)
            return int(i) + 1;
    for (std::size_t i = 0; i < m_variables.size(); ++i)
        if (equalIgnoringCase(m_variables[i].name, name))
            return int(i) + 1;
    return 0;
}

int DataFile::addVariable(Variable variable) {
    if (m_caseCount != 0)
        throw std::logic_error("DataFile::addVariable: the file already has cases");
    m_variables.push_back(std::move(variable));
    m_values.assign(stride(), 0.0);
    return variableCount();
}

void DataFile::appendCase(const std::vector<double>& values, std::string caseName) {
    if (values.size() != m_variables.size())
        throw std::invalid_argument("DataFile::appendCase: one value per variable expected");
    if (m_caseCount == INT_MAX)
        throw std::length_error("DataFile::appendCase: too many cases");
    m_values.push_back(0.0);
    m_values.insert(m_values.end(), values.begin(), values.end());
    countCase(std::move(caseName));
}

double* DataFile::roomForCases(int count) {
    if (count > INT_MAX - m_caseCount)
        throw std::length_error("DataFile::roomForCases: too many cases");
    m_values.resize((std::size_t(m_caseCount) + 1 + std::size_t(count)) * stride());
    return &m_values[(std::size_t(m_caseCount) + 1) * stride()];
}

void DataFile::commitCases(int count, std::vector<std::string> names) {
    const std::size_t rows = std::size_t(m_caseCount) + 1 + std::size_t(count);
    if (count < 0 || rows * stride() > m_values.size() ||
        (!names.empty() && names.size() != std::size_t(count)))
        throw std::invalid_argument("DataFile::commitCases: more cases than room, or names "
                                    "that do not match");
    m_values.resize(rows * stride());
    for (int c = 0; c < count; ++c)
        countCase(names.empty() ? std::string() : std::move(names[std::size_t(c)]));
}

void DataFile::countCase(std::string caseName) {
    // Names are kept only once some case has one; earlier cases then get empty names.
    // Once kept, there is a name per case and the resize changes nothing.
    if (!caseName.empty() || !m_caseNames.empty()) {
        m_caseNames.resize(std::size_t(m_caseCount));
        m_caseNameWidth = std::max(m_caseNameWidth, int(caseName.size()));
        m_caseNames.push_back(std::move(caseName));
    }
    ++m_caseCount;
}

void DataFile::reserveCases(int count) {
    m_values.reserve((std::size_t(count) + 1) * stride());
}

int DataFile::caseNameWidth() const {
    return hasCaseNames() ? std::max(m_caseNameWidth, 1) : 0;
}

void DataFile::setHeaderText(std::string text) {
    if (text.size() > MaxHeaderBytes)
        throw DataError("header text is " + std::to_string(text.size()) + " bytes long; at most " +
                        std::to_string(MaxHeaderBytes) + " are allowed");
    m_headerText = std::move(text);
}

void DataFile::setWeightVariable(int var) {
    if (var < 0 || var > variableCount())
        throw std::out_of_range("DataFile::setWeightVariable: no such variable");
    m_weightVar = var;
}

double DataFile::caseWeight(int caseNo) const {
    if (m_weightVar == 0)
        return 1.0;
    const double weight = value(caseNo, m_weightVar);
    if (isMissing(m_weightVar, weight) || !(weight > 0.0))
        return 0.0;
    return weight;
}

void DataFile::setSelection(const std::string& expression) {
    if (expression.find_first_not_of(" \t\r\n") == std::string::npos) {
        m_selection.reset();
        m_selectionText.clear();
        return;
    }
    // Compiled before anything changes, so that a bad expression leaves the old one in force.
    auto compiled = std::make_unique<SelectionCondition>(expression, *this);
    m_selection = std::move(compiled);
    m_selectionText = expression;
}

bool DataFile::passesSelection(int caseNo) const {
    return m_selection->matches(row(caseNo), *this);
}

} // namespace wb
