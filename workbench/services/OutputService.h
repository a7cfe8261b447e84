#pragma once
// The module's output: looka4 turns the module's arrays into a TableDocument, the chart
// calls make a GraphDocument; each goes into the session's document store, whose observers
// (an output folder, a window area) show it.
//
// To use it:
//   1. make it over the store, give it the file block that the data service registered with
//      setFileBlock, for the row heading, and the data file with setDataFile, for the
//      graphs drawn from the cases;
//   2. run each result command inside the store's beginCommand/endCommand, so that its
//      documents carry the command;
//   3. read documents() and, when looka4 gave 0, lastError().
//
// Decoding the arrays (cell (row, col) is element rows * col + row of values and texts):
//   - a column whose format byte is 156 shows, per cell, its text if the text is not
//     blank and otherwise its number; -8 shows whole numbers; anything else real numbers;
//   - a number that is not finite (the all-ones pattern of a cell never written) is empty;
//   - every text is read up to its first NUL, every token in it is expanded, trailing
//     blanks go, and bytes that are not UTF-8 become U+FFFD (a character cut at the end
//     of its field is dropped);
//   - the three title lines are the title, the subtitle and a third line, which when not
//     empty is added to the subtitle after a line feed;
//   - the row heading is the RowHeading field of the file block.
//
// Failures: arguments that do not describe a table (negative sizes, sizes that disagree
// with their repetition, a missing array, a width below 1) give 0 and nothing is made. A
// store observer that throws gives 0 too; the document stays in documents() and keeps its
// number.
// Either way lastError() tells why, until clearError(). No exception leaves looka4. The
// chart calls fail the same way: nothing made for arguments that describe no graph, the
// document kept when only an observer failed.

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "drilldown/host/HostServices.h"
#include "drilldown/host/HostAutomation.h"
#include "workbench/data/DataFile.h"
#include "workbench/documents/Document.h"
#include "workbench/documents/DocumentObject.h"
#include "workbench/documents/DocumentStore.h"
#include "workbench/documents/GraphStatistics.h"
#include "workbench/text/TokenTable.h"

namespace wb {

class OutputService : public HostOutput {
public:
    explicit OutputService(DocumentStore& store, TokenTable& tokens = TokenTable::shared())
        : m_store(store), m_tokens(tokens) {}
    OutputService(const OutputService&) = delete;
    OutputService& operator=(const OutputService&) = delete;

    // The module's file block as registered with InitCommons; null: no row heading.
    void setFileBlock(const VmkTag* vmk) { m_vmk = vmk; }

    // The data file the graphs of box plots, scatterplots and 3D histograms read; the
    // caller keeps it alive. Null: those graphs cannot be drawn.
    void setDataFile(const DataFile* file) { m_file = file; }

    DocumentStore& store() { return m_store; }

    // How the graphs drawn from the cases count the case weights (GraphStatistics.h), asked
    // at each graph: the analysis's own rule. Empty: as the file gives them.
    void setWeightRule(std::function<CaseWeights()> rule) { m_weightRule = std::move(rule); }
    // Sees each document before it is kept, with the command that makes it and its output
    // number within that command's run (from 1), and may add to it; none: kept as made.
    using Augmenter = std::function<void(Document& document, int command, int output)>;
    void setAugmenter(Augmenter augmenter) { m_augmenter = std::move(augmenter); }
    // The session's live tables and graphs, in window order.
    const std::vector<Document>& documents() const { return m_store.documents(); }

    // Offers every new document, as an object of the automation runtime, to the analysis
    // before it shows (its BeforeRouteOutput): true when the analysis took it and decides
    // when it shows. Empty: every document shows at once.
    using Router = std::function<bool(IDispatch* document)>;
    void setRouter(Router router) { m_router = std::move(router); }

    // The runtime of the documents' automation objects; registers their type library.
    void setAutomation(HostAutomation* automation);
    // A new automation object of the live document `id`, with one reference for the caller;
    // null without a runtime or for an id of no live document.
    IDispatch* documentObject(int id) const;
    // Why the latest failed looka4 failed; empty when none failed since clearError.
    const std::string& lastError() const { return m_lastError; }
    void clearError() { m_lastError.clear(); }

    // Only the arguments that describe the table are read: values, texts, colFormat,
    // colHeads, colHeads2 (may be null), rowNames, titles (may be null), rows, cols, their
    // repetitions, titleWidth, rowNameWidth, headingWidth and cellWidth. Gives 1 when the
    // table was made and handed over, 0 otherwise.
    short looka4(void* values, char* texts, const char* colFormat, const char* colHeads,
                 const char* colHeads2, const char* rowNames, const char* titles, int rows,
                 int cols, int rowsAgain, int colsAgain, int headerBytes, int decimals,
                 int rowNameField, int cellField, int titleWidth, int titleLines, int reserved1,
                 int rowNameWidth, int headingWidth, int cellWidth, int tableFlags, int reserved2,
                 void* reserved3, void* reserved4, void* cellMarks, short* reserved5, short* one1,
                 short* one2) override;

    // One chart of the module's chart builder as a graph document: kind 5 a histogram (bars),
    // 3 a pie, 2 a stacked plot. Reads the series (count, points, the data arrays with the
    // Y values from index points on, names, colours, bar widths), the title block, the two
    // axis titles, both ranges, both label sets and, when the point-label switch is on, the
    // point labels; the rest is not looked at. Gives 1 when the graph was made and handed
    // over, 0 otherwise.
    int NewGeneralMultipleChartLongEx(
        const CChartInfo& info, unsigned short chartFlags, short seriesCount, double** data,
        int* points, unsigned char* seriesTypes, unsigned char* seriesOptions1,
        unsigned char* seriesOptions2, unsigned char* seriesColours, char** seriesNames,
        double* barWidths, char* titles, short titleStride, short titleLines, char* xTitle,
        short xTitleLength, short xTitleLines, char* yTitle, short yTitleLength,
        short yTitleLines, double yMin, double yMax, double yStep, double xMin, double xMax,
        double xStep, char* xLabels, short xLabelWidth, double* xLabelPositions, int xLabelCount,
        char* yLabels, short yLabelWidth, double* yLabelPositions, int yLabelCount,
        char* unused1, short unused2, double* unused3, int unused4, char* unused5, short unused6,
        double* unused7, int unused8, unsigned short xAxisStyle, short xAxisOption1,
        short xAxisOption2, unsigned short yAxisStyle, short yAxisOption1, short yAxisOption2,
        unsigned short zAxisStyle, short zAxisOption1, short zAxisOption2, char* legend,
        short legendItemWidth, int* seriesModes, short pointLabelSwitch, short pointLabelWidth,
        char** pointLabels) override;

    // The graphs drawn from the cases of the data file (setDataFile); which cases count and
    // how the statistics are worked out is told in GraphStatistics.h. Titles are C strings whose
    // tokens are expanded. Each gives 0 (CorrelationScatterplot 1) with lastError() set
    // when there is no data file, a variable is not in the file, or the style is unknown.
    int CategorizedVarBoxAndWhisker(unsigned short style, char* title, char* subtitle,
                                    char* unused1, char* unused2, int unused3, short count,
                                    short* variables, char* unused4, CaseFilter filter) override;
    // The title's lines are the graph's titles. Gives 0 when the matrix was made.
    int CorrelationScatterplot(unsigned short mode, int unused1, short firstCount, short* first,
                               short secondCount, short* second, unsigned short unused2,
                               double* unused3, double* unused4, char* textBuffer,
                               CaseFilter filter, const std::string& title) override;
    // x and y count from 0 (variable v arrives as v - 1); the values are read from the case
    // itself.
    int Histogram3D(unsigned short kind, short x, short y, short unused1, short unused2,
                    short* unused3, short* unused4, short unused5, char* title, char* unused6,
                    char* subtitle, char* unused7, int unused8, char* unused9,
                    CaseFilterFloat filter) override;

private:
    CaseWeights caseWeights() const;
    // What the tables' numbers are under the weight in force; empty without one.
    std::string weightNote() const;
    // The text of a field of `width` bytes, decoded as told above.
    std::string fieldText(const char* field, int width) const;
    // The same for a C string; empty for null.
    std::string cText(const char* text) const;
    // Keeps the document in the store; 1, or 0 when an observer refused it (lastError
    // tells why).
    int keep(Document document);
    // The variables of a host graph, checked against the file; empty with lastError set
    // when one is not in it.
    std::vector<int> fileVariables(const short* variables, int count, const char* what);

    DocumentStore& m_store;
    TokenTable& m_tokens;
    const VmkTag* m_vmk = nullptr;
    const DataFile* m_file = nullptr;
    HostAutomation* m_automation = nullptr;
    Router m_router;
    std::function<CaseWeights()> m_weightRule;
    Augmenter m_augmenter;
    std::string m_lastError;
};

} // namespace wb
