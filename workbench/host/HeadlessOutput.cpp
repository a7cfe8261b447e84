#include "workbench/host/HeadlessOutput.h"

#include <cmath>
#include <cstring>
#include <exception>
#include <stdexcept>
#include <string_view>

namespace wb {

namespace {

constexpr unsigned char TextFormat = 156;
constexpr signed char WholeFormat = -8;
constexpr int TitleLines = 3;
constexpr const char* Replacement = "\xEF\xBF\xBD"; // U+FFFD

// Bytes a valid sequence starting at text[pos] has, 0 when it is invalid, -1 when it is
// valid so far but runs past the end of the text.
int sequenceLength(std::string_view text, std::size_t pos) {
    const auto lead = static_cast<unsigned char>(text[pos]);
    if (lead < 0x80)
        return 1;
    int length = 0;
    unsigned char low = 0x80, high = 0xBF; // range of the second byte
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        if (lead == 0xE0)
            low = 0xA0; // no overlong forms
        if (lead == 0xED)
            high = 0x9F; // no surrogates
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        if (lead == 0xF0)
            low = 0x90;
        if (lead == 0xF4)
            high = 0x8F; // nothing above U+10FFFF
    } else {
        return 0;
    }
    for (int k = 1; k < length; ++k) {
        if (pos + k >= text.size())
            return -1;
        const auto byte = static_cast<unsigned char>(text[pos + k]);
        if (k == 1 ? (byte < low || byte > high) : (byte & 0xC0) != 0x80)
            return 0;
    }
    return length;
}

// `text` with each invalid byte replaced by U+FFFD and a sequence cut at the end dropped.
std::string validUtf8(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t pos = 0; pos < text.size();) {
        const int length = sequenceLength(text, pos);
        if (length < 0)
            break;
        if (length == 0) {
            out += Replacement;
            ++pos;
            continue;
        }
        out.append(text, pos, length);
        pos += length;
    }
    return out;
}

void trimTrailingBlanks(std::string& text) {
    while (!text.empty() && (text.back() == ' ' || text.back() == '\0'))
        text.pop_back();
}

ColumnFormat columnFormat(char byte) {
    if (static_cast<unsigned char>(byte) == TextFormat)
        return ColumnFormat::Text;
    if (static_cast<signed char>(byte) == WholeFormat)
        return ColumnFormat::Whole;
    return ColumnFormat::Real;
}

// Why the arguments describe no table, or empty.
std::string argumentProblem(const void* values, const char* texts, const char* colFormat,
                            const char* colHeads, const char* rowNames, const char* titles,
                            int rows, int cols, int rowsAgain, int colsAgain, int titleWidth,
                            int rowNameWidth, int headingWidth, int cellWidth) {
    if (rows < 0 || cols < 0)
        return "a table of " + std::to_string(rows) + " rows and " + std::to_string(cols) +
               " columns";
    if (rows != rowsAgain || cols != colsAgain)
        return "the table's size is given as " + std::to_string(rows) + " x " +
               std::to_string(cols) + " and as " + std::to_string(rowsAgain) + " x " +
               std::to_string(colsAgain);
    if (rowNameWidth < 1 || headingWidth < 1 || cellWidth < 1 ||
        (titles != nullptr && titleWidth < 1))
        return "a field width below 1";
    if ((rows > 0 && cols > 0 && (values == nullptr || texts == nullptr)) ||
        (cols > 0 && (colFormat == nullptr || colHeads == nullptr)) ||
        (rows > 0 && rowNames == nullptr))
        return "an array of the table is missing";
    return {};
}

} // namespace

std::string HeadlessOutput::fieldText(const char* field, int width) const {
    if (field == nullptr)
        return {};
    std::string text(field, strnlen(field, static_cast<std::size_t>(width)));
    trimTrailingBlanks(text);
    text = m_tokens.replaceAll(text, true);
    trimTrailingBlanks(text); // long strings may end in blanks of their own
    return validUtf8(text);
}

short HeadlessOutput::looka4(void* values, char* texts, const char* colFormat, const char* colHeads,
                             const char* colHeads2, const char* rowNames, const char* titles,
                             int rows, int cols, int rowsAgain, int colsAgain, int, int, int, int,
                             int titleWidth, int, int, int rowNameWidth, int headingWidth,
                             int cellWidth, int, int, void*, void*, void*, short*, short*, short*) {
    const std::string problem =
        argumentProblem(values, texts, colFormat, colHeads, rowNames, titles, rows, cols, rowsAgain,
                        colsAgain, titleWidth, rowNameWidth, headingWidth, cellWidth);
    if (!problem.empty()) {
        m_lastError = "cannot show the table: " + problem;
        return 0;
    }

    try {
        TableDocument table;
        table.command = m_command;
        table.number = static_cast<int>(m_documents.size()) + 1;
        if (titles != nullptr) {
            std::string lines[TitleLines];
            for (int line = 0; line < TitleLines; ++line)
                lines[line] =
                    fieldText(titles + static_cast<std::size_t>(line) * titleWidth, titleWidth);
            table.title = std::move(lines[0]);
            table.subtitle = std::move(lines[1]);
            if (!lines[2].empty())
                table.subtitle += (table.subtitle.empty() ? "" : "\n") + lines[2];
        }
        if (m_vmk != nullptr)
            table.rowHeading = fieldText(m_vmk->RowHeading, sizeof m_vmk->RowHeading);

        const auto rowCount = static_cast<std::size_t>(rows);
        table.columns.resize(static_cast<std::size_t>(cols));
        for (std::size_t col = 0; col < table.columns.size(); ++col) {
            TableColumn& column = table.columns[col];
            column.head = fieldText(colHeads + col * headingWidth, headingWidth);
            if (colHeads2 != nullptr)
                column.head2 = fieldText(colHeads2 + col * headingWidth, headingWidth);
            column.format = columnFormat(colFormat[col]);
        }

        table.rows.resize(rowCount);
        for (std::size_t row = 0; row < rowCount; ++row) {
            TableRow& tableRow = table.rows[row];
            tableRow.name = fieldText(rowNames + row * rowNameWidth, rowNameWidth);
            tableRow.cells.resize(table.columns.size());
            for (std::size_t col = 0; col < table.columns.size(); ++col) {
                const std::size_t cell = rowCount * col + row;
                if (table.columns[col].format == ColumnFormat::Text) {
                    std::string text = fieldText(texts + cell * cellWidth, cellWidth);
                    if (!text.empty()) {
                        tableRow.cells[col] = std::move(text);
                        continue;
                    }
                }
                double value;
                std::memcpy(&value, static_cast<const char*>(values) + cell * sizeof(double),
                            sizeof value);
                if (std::isfinite(value))
                    tableRow.cells[col] = value;
            }
        }

        auto state = std::make_shared<DocumentState>();
        state->number = table.number;
        state->name = table.title;
        state->list = m_list;
        m_states.push_back(std::move(state));
        m_documents.push_back(std::move(table));
        if (m_sink != nullptr)
            m_sink->addTable(m_documents.back());
        return 1;
    } catch (const std::exception& error) {
        m_lastError = error.what();
        return 0;
    }
}

int HeadlessOutput::NewGeneralMultipleChartLongEx(
    const CChartInfo&, unsigned short, short, double**, int*, unsigned char*, unsigned char*,
    unsigned char*, unsigned char*, char**, double*, char*, short, short, char*, short, short,
    char*, short, short, double, double, double, double, double, double, char*, short, double*,
    int, char*, short, double*, int, char*, short, double*, int, char*, short, double*, int,
    unsigned short, short, short, unsigned short, short, short, unsigned short, short, short,
    char*, short, int*, short, short, char**) {
    m_lastError = "cannot show the chart: graphs are not made yet";
    return 0;
}

int HeadlessOutput::CategorizedVarBoxAndWhisker(unsigned short, char*, char*, char*, char*, int,
                                                short, short*, char*, CaseFilter) {
    m_lastError = "cannot show the box plot: graphs are not made yet";
    return 0;
}

int HeadlessOutput::CorrelationScatterplot(unsigned short, int, short, short*, short, short*,
                                           unsigned short, double*, double*, char*, CaseFilter,
                                           const std::string&) {
    m_lastError = "cannot show the scatterplots: graphs are not made yet";
    return 1;
}

int HeadlessOutput::Histogram3D(unsigned short, short, short, short, short, short*, short*, short,
                                char*, char*, char*, char*, int, char*, CaseFilterFloat) {
    m_lastError = "cannot show the 3D histogram: graphs are not made yet";
    return 0;
}

void HeadlessOutput::setAutomation(HostAutomation* automation) {
    m_automation = automation;
    if (automation != nullptr)
        RegisterDocumentTypeLib(*automation);
}

IDispatch* HeadlessOutput::documentObject(std::size_t index) const {
    if (m_automation == nullptr || index >= m_states.size())
        return nullptr;
    return NewDocumentObject(*m_automation, m_states[index]);
}

} // namespace wb
