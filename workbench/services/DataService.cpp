#include "workbench/services/DataService.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>

#include "drilldown/host/RealNumbers.h"
#include "workbench/text/NumberText.h"
#include "workbench/text/Utf8.h"

namespace wb {

namespace {

constexpr int MaxVariables = std::numeric_limits<int16_t>::max();
// Leaves ReadCase room for the name and the byte it keeps free in the 220 of CaseName.
constexpr int MaxCaseNameLen = static_cast<int>(sizeof(b1_com::CaseName)) - 1;
constexpr std::size_t ShortField = 8;
constexpr std::size_t LongNameBuffer = 128;
constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

// `text` blank padded or cut to `width` bytes; `terminate` adds the terminator after them.
void writeField(const std::string& text, char* out, std::size_t width, bool terminate) {
    const std::size_t kept = std::min(text.size(), width);
    std::memcpy(out, text.data(), kept);
    std::memset(out + kept, ' ', width - kept);
    if (terminate)
        out[width] = '\0';
}

std::string dateText(double serial) {
    using namespace std::chrono;
    // Beyond ten million days lies no year of four digits.
    if (!std::isfinite(serial) || std::fabs(serial) > 1e7)
        return "--";
    const sys_days day =
        sys_days{year{1899} / December / 30} + days{static_cast<long>(std::floor(serial))};
    const year_month_day date{day};
    const int y = static_cast<int>(date.year());
    if (y < 1 || y > 9999)
        return "--";
    char text[16];
    std::snprintf(text, sizeof text, "%02u/%02u/%02d", static_cast<unsigned>(date.day()),
                  static_cast<unsigned>(date.month()), y % 100);
    return text;
}

std::string timeText(double seconds) {
    if (!std::isfinite(seconds) || std::fabs(seconds) > 1e15)
        return "--";
    constexpr long long Day = 86400;
    const long long inDay = ((std::llround(seconds) % Day) + Day) % Day;
    char text[16];
    std::snprintf(text, sizeof text, "%02lld:%02lld:%02lld", inDay / 3600, inDay / 60 % 60,
                  inDay % 60);
    return text;
}

} // namespace

void DataService::setDataFile(const DataFile* file) {
    m_file = file;
    fillBlocks();
}

void DataService::InitCommons(VmkTag* vmk, Vmk88Tag* vmk88, b1_com* b1, Wght_com* wght,
                              _AddMenu*) {
    m_vmk = vmk;
    m_vmk88 = vmk88;
    m_b1 = b1;
    m_wght = wght;
    fillBlocks();
}

void DataService::fillBlocks() {
    const int nVars = m_file == nullptr ? 0 : std::min(m_file->variableCount(), MaxVariables);
    m_rowLength = nVars + 1;
    if (m_vmk != nullptr) {
        m_vmk->NVars = static_cast<int16_t>(nVars);
        m_vmk->NCases = m_file == nullptr ? 0 : m_file->caseCount();
        writeField(m_file == nullptr ? std::string() : m_file->headerText(), m_vmk->HeaderText,
                   sizeof m_vmk->HeaderText, false);
        std::memset(m_vmk->RowHeading, 0, sizeof m_vmk->RowHeading);
    }
    if (m_vmk88 != nullptr) {
        const bool named = m_file != nullptr && m_file->hasCaseNames();
        m_vmk88->CaseNameLen =
            static_cast<int16_t>(named ? std::min(m_file->caseNameWidth(), MaxCaseNameLen) : 0);
    }
    if (m_b1 != nullptr)
        *m_b1 = b1_com{};
    if (m_wght != nullptr)
        *m_wght = Wght_com{};
}

short DataService::cstrtw(int caseNo, double* values, int* hasWeight, double* weight,
                          int* weightVar) {
    if (m_file == nullptr || caseNo < 1 || caseNo > m_file->caseCount() || caseNo == m_breakCase)
        return 2;
    const double* row = m_file->row(caseNo);
    // Rows are short, a few dozen doubles: copied in pieces of four, which the compiler
    // inlines, they take less time than a call to memcpy.
    if (values != nullptr) {
        int i = 0;
        for (; i + 4 <= m_rowLength; i += 4)
            std::memcpy(values + i, row + i, 4 * sizeof(double));
        for (; i < m_rowLength; ++i)
            values[i] = row[i];
    }
    const int weighting = m_file->weightVariable();
    if (hasWeight != nullptr)
        *hasWeight = weighting != 0 ? 1 : 0;
    if (weight != nullptr)
        *weight = weightIn(row);
    if (weightVar != nullptr)
        *weightVar = weighting;
    return m_file->isSelected(caseNo) ? 0 : 1;
}

void DataService::ReadCaseRows(CaseRows& rows) {
    const int weighting = m_file == nullptr ? 0 : m_file->weightVariable();
    rows.hasWeight = weighting != 0 ? 1 : 0;
    rows.weightVar = weighting;
    // Cases the file does not have, and the case to break at, give 2, as from cstrtw.
    int readable = 0;
    if (m_file != nullptr && rows.first >= 1)
        readable = std::clamp(m_file->caseCount() - rows.first + 1, 0, rows.count);
    if (m_breakCase >= rows.first && m_breakCase < rows.first + readable)
        readable = m_breakCase - rows.first;
    std::fill(rows.results + readable, rows.results + rows.count, short(2));
    if (readable == 0) {
        rows.values = rows.buffer;
        rows.stride = rows.bufferStride;
        return;
    }
    // The file's rows are laid out as cstrtw fills a buffer: they are handed over in place.
    rows.values = m_file->row(rows.first);
    rows.stride = m_file->stride();
    prefetchAfter(rows.first + readable, readable);
    if (weighting == 0) {
        std::fill(rows.weights, rows.weights + readable, 1.0);
    } else {
        // The weights are gathered first, in a loop that does nothing else, so that the
        // processor has many rows on their way from memory at once.
        const double* column = rows.values + weighting;
        for (int i = 0; i < readable; ++i)
            rows.weights[i] = column[std::size_t(i) * rows.stride];
        const double code = m_file->variable(weighting).missingCode;
        for (int i = 0; i < readable; ++i)
            rows.weights[i] = RealEqual(rows.weights[i], code) ? 0.0 : rows.weights[i];
    }
    for (int i = 0; i < readable; ++i)
        rows.results[i] = m_file->isSelected(rows.first + i) ? 0 : 1;
}

void DataService::prefetchAfter(int caseNo, int count) const {
    const int last = std::min(m_file->caseCount(), caseNo + count - 1);
    if (caseNo > last)
        return;
    const char* from = reinterpret_cast<const char*>(m_file->row(caseNo));
    const char* to = reinterpret_cast<const char*>(m_file->row(last) + m_file->stride());
    for (const char* line = from; line < to; line += 64)
        __builtin_prefetch(line);
}

double DataService::weightIn(const double* row) const {
    const int weighting = m_file->weightVariable();
    if (weighting == 0)
        return 1.0;
    return m_file->isMissing(weighting, row[weighting]) ? 0.0 : row[weighting];
}

const Variable* DataService::variableAt(int var) const {
    if (m_file == nullptr || var < 1 || var > m_file->variableCount())
        return nullptr;
    return &m_file->variable(var);
}

const std::string* DataService::labelOf(const Variable& variable, double value) const {
    for (const auto& [labelled, label] : variable.labels)
        if (RealEqual(labelled, value))
            return &label;
    return nullptr;
}

void DataService::getmd5(int var, double* code) {
    if (code == nullptr)
        return;
    const Variable* variable = variableAt(var);
    *code = variable != nullptr ? variable->missingCode : NotANumber;
}

void DataService::getvn5(int var, char* name) {
    if (name == nullptr)
        return;
    const Variable* variable = variableAt(var);
    const std::string shortName =
        variable != nullptr ? m_tokens.shortForm(variable->name) : std::string();
    writeField(shortName, name, ShortField, true);
}

int DataService::WriteVarLongName(char* text, int var) {
    if (text == nullptr)
        return 0;
    const Variable* variable = variableAt(var);
    const std::string_view longName =
        variable != nullptr ? std::string_view(variable->longName) : std::string_view("");
    const std::size_t length = utf8PrefixLength(longName, LongNameBuffer - 1);
    std::memcpy(text, longName.data(), length);
    text[length] = '\0';
    return static_cast<int>(length);
}

int DataService::vvlcod(int, int var, char* text, float* value) {
    const Variable* variable = variableAt(var);
    if (variable == nullptr || text == nullptr || value == nullptr)
        return 1;
    for (const auto& [labelled, label] : variable->labels) {
        if (static_cast<float>(labelled) != *value)
            continue;
        writeField(m_tokens.shortForm(label), text, ShortField, false);
        return 0;
    }
    return 1;
}

int DataService::IsSpecialFormatVariable(int var) {
    const Variable* variable = variableAt(var);
    return variable != nullptr && variable->format != DisplayFormat::Plain ? 1 : 0;
}

void DataService::WriteSpecialFormatVariable(int var, double value, char* text, int width) {
    if (text == nullptr)
        return;
    if (width <= 0) {
        text[0] = '\0';
        return;
    }
    const Variable* variable = variableAt(var);
    const DisplayFormat format = variable != nullptr ? variable->format : DisplayFormat::Plain;
    switch (format) {
    case DisplayFormat::Date:
        writeField(dateText(value), text, static_cast<std::size_t>(width), true);
        return;
    case DisplayFormat::Time:
        writeField(timeText(value), text, static_cast<std::size_t>(width), true);
        return;
    case DisplayFormat::Plain:
        realToText(value, RealFormat::Significant | RealFormat::PadRight, width, width, text,
                   width);
        return;
    }
}

int DataService::RetrieveLongTextLabelAsHashedString(char* token, int var0, double value) {
    const Variable* variable = variableAt(var0 + 1);
    if (variable == nullptr || token == nullptr)
        return 0;
    const std::string* label = labelOf(*variable, value);
    if (label == nullptr || label->size() <= ShortField)
        return 0;
    writeField(m_tokens.tokenFor(*label), token, ShortField, true);
    return 1;
}

void DataService::GetCaseName(int case0, std::string& name) {
    name.clear();
    if (m_file == nullptr || !m_file->hasCaseNames() || case0 < 0 || case0 >= m_file->caseCount())
        return;
    name = m_file->caseName(case0 + 1);
}

void DataService::GetCell(int var0, int case0, double* value) {
    if (value == nullptr)
        return;
    if (variableAt(var0 + 1) == nullptr || case0 < 0 || case0 >= m_file->caseCount()) {
        *value = NotANumber;
        return;
    }
    *value = m_file->value(case0 + 1, var0 + 1);
}

} // namespace wb
