#include "workbench/services/OutputService.h"

#include <cmath>
#include <cstring>
#include <exception>
#include <stdexcept>
#include <string_view>
#include <variant>

#include "workbench/documents/GraphStatistics.h"
#include "workbench/text/Utf8.h"

namespace wb {

namespace {

constexpr unsigned char TextFormat = 156;
constexpr signed char WholeFormat = -8;
constexpr int TitleLines = 3;


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

std::string OutputService::fieldText(const char* field, int width) const {
    if (field == nullptr)
        return {};
    std::string text(field, strnlen(field, static_cast<std::size_t>(width)));
    trimTrailingBlanks(text);
    text = m_tokens.replaceAll(text, true);
    trimTrailingBlanks(text); // long strings may end in blanks of their own
    return toValidUtf8(text);
}

short OutputService::looka4(void* values, char* texts, const char* colFormat, const char* colHeads,
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
        table.note = weightNote();

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

        return static_cast<short>(keep(Document{std::move(table)}));
    } catch (const std::exception& error) {
        m_lastError = error.what();
        return 0;
    }
}

namespace {

constexpr int SeriesNameWidth = 40;

// The lines of `text`, without empty ones, added to `lines`.
void addLines(std::vector<std::string>& lines, const std::string& text) {
    std::size_t start = 0;
    while (start <= text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string::npos)
            end = text.size();
        std::string line = text.substr(start, end - start);
        while (!line.empty() && (line.back() == ' ' || line.back() == '\r'))
            line.pop_back();
        if (!line.empty())
            lines.push_back(std::move(line));
        start = end + 1;
    }
}

GraphType chartType(int kind) {
    switch (kind) {
    case 5:
        return GraphType::Histogram;
    case 3:
        return GraphType::Pie;
    case 2:
        return GraphType::Stacked;
    default:
        throw std::invalid_argument("a chart of kind " + std::to_string(kind));
    }
}

bool labelsMissing(const char* texts, int width, const double* positions, int count) {
    return count > 0 && (texts == nullptr || positions == nullptr || width < 1);
}

} // namespace

std::string OutputService::cText(const char* text) const {
    return text == nullptr ? std::string() : fieldText(text, static_cast<int>(std::strlen(text)));
}

int OutputService::keep(Document document) {
    try {
        if (m_augmenter)
            m_augmenter(document, m_store.currentCommand(), m_store.currentOutputs() + 1);
        if (!m_router || m_automation == nullptr) {
            m_store.add(std::move(document));
            return 1;
        }
        // The analysis sees the document first; what it does not take shows as usual.
        auto [id, state] = m_store.reserve(std::move(document));
        IDispatch* object = NewDocumentObject(*m_automation, std::move(state));
        if (!m_router(object)) {
            m_store.admit(id);
            object->Release();
        }
        return 1;
    } catch (const std::exception& error) {
        m_lastError = error.what();
        return 0;
    }
}

int OutputService::NewGeneralMultipleChartLongEx(
    const CChartInfo& info, unsigned short, short seriesCount, double** data, int* points,
    unsigned char*, unsigned char*, unsigned char*, unsigned char* seriesColours,
    char** seriesNames, double* barWidths, char* titles, short titleStride, short titleLines,
    char* xTitle, short xTitleLength, short, char* yTitle, short yTitleLength, short, double yMin,
    double yMax, double yStep, double xMin, double xMax, double xStep, char* xLabels,
    short xLabelWidth, double* xLabelPositions, int xLabelCount, char* yLabels, short yLabelWidth,
    double* yLabelPositions, int yLabelCount, char*, short, double*, int, char*, short, double*,
    int, unsigned short, short, short, unsigned short, short, short, unsigned short, short, short,
    char*, short, int*, short pointLabelSwitch, short pointLabelWidth, char** pointLabels) {
    try {
        GraphDocument graph;
        graph.type = chartType(info.Kind());
        if (seriesCount < 0)
            throw std::invalid_argument(std::to_string(seriesCount) + " series");
        if (seriesCount > 0 && (data == nullptr || points == nullptr))
            throw std::invalid_argument("an array of the series is missing");
        if (titles != nullptr && (titleStride < 1 || titleLines < 0))
            throw std::invalid_argument("a title block of lines " + std::to_string(titleStride) +
                                        " bytes apart");
        if (labelsMissing(xLabels, xLabelWidth, xLabelPositions, xLabelCount) ||
            labelsMissing(yLabels, yLabelWidth, yLabelPositions, yLabelCount))
            throw std::invalid_argument("an array of the axis labels is missing");
        for (int s = 0; s < seriesCount; ++s)
            if (points[s] < 0 || (points[s] > 0 && data[s] == nullptr))
                throw std::invalid_argument("series " + std::to_string(s) + " has " +
                                            std::to_string(points[s]) + " points and no array");

        if (titles != nullptr)
            for (int line = 0; line < titleLines; ++line)
                addLines(graph.titles,
                         fieldText(titles + static_cast<std::size_t>(line) * titleStride,
                                   titleStride));
        if (xTitle != nullptr && xTitleLength > 0)
            graph.xTitle = fieldText(xTitle, xTitleLength);
        if (yTitle != nullptr && yTitleLength > 0)
            graph.yTitle = fieldText(yTitle, yTitleLength);

        const bool withPointLabels =
            pointLabelSwitch != 0 && pointLabels != nullptr && pointLabelWidth > 0;
        for (int s = 0; s < seriesCount; ++s) {
            GraphSeries series;
            const auto n = static_cast<std::size_t>(points[s]);
            series.x.assign(data[s], data[s] + n);
            series.y.assign(data[s] + n, data[s] + 2 * n);
            if (seriesNames != nullptr && seriesNames[s] != nullptr)
                series.name = fieldText(seriesNames[s], SeriesNameWidth);
            if (seriesColours != nullptr)
                series.colour = seriesColours[s];
            if (barWidths != nullptr && std::isfinite(barWidths[s]) && barWidths[s] > 0)
                series.barWidth = barWidths[s];
            if (withPointLabels && pointLabels[s] != nullptr)
                for (std::size_t i = 0; i < n; ++i)
                    series.labels.push_back(
                        fieldText(pointLabels[s] + i * pointLabelWidth, pointLabelWidth));
            graph.series.push_back(std::move(series));
        }

        const auto axis = [&](double min, double max, double step, const char* texts, int width,
                              const double* positions, int count) {
            GraphAxis out{min, max, step, {}};
            for (int i = 0; i < count; ++i) {
                std::string text = fieldText(texts + static_cast<std::size_t>(i) * width, width);
                if (!text.empty() && std::isfinite(positions[i]))
                    out.labels.push_back({positions[i], std::move(text)});
            }
            return out;
        };
        graph.xAxis = axis(xMin, xMax, xStep, xLabels, xLabelWidth, xLabelPositions, xLabelCount);
        graph.yAxis = axis(yMin, yMax, yStep, yLabels, yLabelWidth, yLabelPositions, yLabelCount);
        return keep(Document{std::move(graph)});
    } catch (const std::invalid_argument& error) {
        m_lastError = std::string("cannot show the chart: ") + error.what();
        return 0;
    } catch (const std::exception& error) {
        m_lastError = error.what();
        return 0;
    }
}

std::vector<int> OutputService::fileVariables(const short* variables, int count,
                                              const char* what) {
    if (m_file == nullptr) {
        m_lastError = std::string("cannot draw the ") + what + ": no data file is open";
        return {};
    }
    if (count <= 0 || variables == nullptr) {
        m_lastError = std::string("cannot draw the ") + what + ": no variable to draw";
        return {};
    }
    std::vector<int> numbers;
    for (int k = 0; k < count; ++k) {
        if (variables[k] < 1 || variables[k] > m_file->variableCount()) {
            m_lastError = std::string("cannot draw the ") + what + ": the file has no variable " +
                          std::to_string(variables[k]);
            return {};
        }
        numbers.push_back(variables[k]);
    }
    return numbers;
}

int OutputService::CategorizedVarBoxAndWhisker(unsigned short style, char* title,
                                               char* subtitle, char*, char*, int, short count,
                                               short* variables, char*, CaseFilter filter) {
    try {
        if (style < static_cast<int>(BoxStyle::MedianQuartilesRange) ||
            style > static_cast<int>(BoxStyle::MeanSeSe196)) {
            m_lastError = "cannot draw the box plots: style " + std::to_string(style);
            return 0;
        }
        const std::vector<int> numbers = fileVariables(variables, count, "box plots");
        if (numbers.empty())
            return 0;
        GraphDocument graph;
        graph.type = GraphType::BoxPlot;
        addLines(graph.titles, cText(title));
        addLines(graph.titles, cText(subtitle));
        graph.boxes = boxPlots(*m_file, keptCases(*m_file, filter, caseWeights()), static_cast<BoxStyle>(style),
                               numbers);
        graph.xAxis = {0, static_cast<double>(numbers.size() + 1), 1, {}};
        for (std::size_t k = 0; k < numbers.size(); ++k)
            graph.xAxis.labels.push_back(
                {static_cast<double>(k + 1), graph.boxes->variables[k].name});
        return keep(Document{std::move(graph)});
    } catch (const std::exception& error) {
        m_lastError = error.what();
        return 0;
    }
}

int OutputService::CorrelationScatterplot(unsigned short mode, int, short firstCount,
                                          short* first, short secondCount, short* second,
                                          unsigned short, double*, double*, char*,
                                          CaseFilter filter, const std::string& title) {
    try {
        const std::vector<int> columns = fileVariables(first, firstCount, "scatterplots");
        if (columns.empty())
            return 1;
        std::vector<int> rows;
        if (secondCount > 0 && second != nullptr) {
            rows = fileVariables(second, secondCount, "scatterplots");
            if (rows.empty())
                return 1;
        }
        GraphDocument graph;
        graph.type = GraphType::ScatterMatrix;
        addLines(graph.titles, fieldText(title.c_str(), static_cast<int>(title.size())));
        graph.scatter = scatterMatrix(*m_file, keptCases(*m_file, filter, caseWeights()), columns, rows);
        graph.scatter->mode = mode;
        return keep(Document{std::move(graph)}) != 0 ? 0 : 1;
    } catch (const std::exception& error) {
        m_lastError = error.what();
        return 1;
    }
}

int OutputService::Histogram3D(unsigned short kind, short x, short y, short, short, short*,
                               short*, short, char* title, char*, char* subtitle, char*, int,
                               char*, CaseFilterFloat filter) {
    try {
        const short pair[] = {static_cast<short>(x + 1), static_cast<short>(y + 1)};
        const std::vector<int> numbers = fileVariables(pair, 2, "3D histogram");
        if (numbers.empty())
            return 0;
        GraphDocument graph;
        graph.type = GraphType::Histogram3D;
        addLines(graph.titles, cText(title));
        addLines(graph.titles, cText(subtitle));
        graph.histogram3d =
            histogram3D(*m_file, keptCases(*m_file, filter, caseWeights()), numbers[0], numbers[1]);
        graph.histogram3d->kind = kind;
        graph.xTitle = graph.histogram3d->x.name;
        graph.yTitle = graph.histogram3d->y.name;
        return keep(Document{std::move(graph)});
    } catch (const std::exception& error) {
        m_lastError = error.what();
        return 0;
    }
}

// The module's "Effectif" reads as a number of cases; while a weight is in force it is a sum
// of weights, and the means are weighted too.
std::string OutputService::weightNote() const {
    if (m_file == nullptr || m_file->weightVariable() == 0)
        return {};
    const std::string rounding = caseWeights() == CaseWeights::Whole
                                     ? "arrondis à l'entier, « Moments pondérés » étant désactivé"
                                     : "tels quels, « Moments pondérés » étant activé";
    return "Effectifs et moyennes pondérés par " +
           m_file->variable(m_file->weightVariable()).name + " (poids " + rounding + ").";
}

void OutputService::setAutomation(HostAutomation* automation) {
    m_automation = automation;
    if (automation != nullptr)
        RegisterDocumentTypeLib(*automation);
}

CaseWeights OutputService::caseWeights() const {
    return m_weightRule ? m_weightRule() : CaseWeights::AsGiven;
}

IDispatch* OutputService::documentObject(int id) const {
    std::shared_ptr<DocumentState> state = m_store.state(id);
    if (m_automation == nullptr || state == nullptr)
        return nullptr;
    return NewDocumentObject(*m_automation, std::move(state));
}

} // namespace wb
