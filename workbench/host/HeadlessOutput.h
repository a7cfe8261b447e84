#pragma once
// The headless host's table output: looka4 turns the module's arrays into a TableDocument,
// keeps it in the session's list and hands it to a DocumentSink (an OutputFolder for the
// command line).
//
// To use it:
//   1. make it, give it a sink with setSink (the caller owns the sink; none keeps the
//      documents in memory only) and the file block that the data service registered with
//      setFileBlock, for the row heading;
//   2. before each result command, setCurrentCommand(control id of its button); 0 after;
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
// sink that throws gives 0 too; the document stays in documents() and keeps its number.
// Either way lastError() tells why, until clearError(). No exception leaves looka4.

#include <memory>
#include <string>
#include <vector>

#include "drilldown/host/HostServices.h"
#include "drilldown/host/HostAutomation.h"
#include "workbench/documents/DocumentObject.h"
#include "workbench/documents/DocumentSink.h"
#include "workbench/documents/TableDocument.h"
#include "workbench/host/TokenTable.h"

namespace wb {

class HeadlessOutput : public HostOutput {
public:
    explicit HeadlessOutput(TokenTable& tokens = TokenTable::shared()) : m_tokens(tokens) {}
    HeadlessOutput(const HeadlessOutput&) = delete;
    HeadlessOutput& operator=(const HeadlessOutput&) = delete;

    // Null: documents are only kept in documents().
    void setSink(DocumentSink* sink) { m_sink = sink; }
    // The module's file block as registered with InitCommons; null: no row heading.
    void setFileBlock(const VmkTag* vmk) { m_vmk = vmk; }
    // Control id given to the documents made from now on; 0 for none.
    void setCurrentCommand(int command) { m_command = command; }
    int currentCommand() const { return m_command; }

    // Every table of the session, numbered from 1 in the order made.
    const std::vector<TableDocument>& documents() const { return m_documents; }

    // The runtime of the documents' automation objects; registers their type library.
    void setAutomation(HostAutomation* automation);
    // A new automation object of documents()[index], with one reference for the caller;
    // null without a runtime or for an index out of range.
    IDispatch* documentObject(std::size_t index) const;
    // What the documents' automation objects wrote, by index.
    const DocumentState& documentState(std::size_t index) const { return *m_states.at(index); }
    // The number of the document activated last, 0 for none.
    int activeDocument() const { return m_list->active; }
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

    // The chart calls; no graphs are made yet: each gives 0 (1 for CorrelationScatterplot,
    // its failure value) and says so in lastError().
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
    int CategorizedVarBoxAndWhisker(unsigned short style, char* title, char* subtitle,
                                    char* unused1, char* unused2, int unused3, short count,
                                    short* variables, char* unused4, CaseFilter filter) override;
    int CorrelationScatterplot(unsigned short mode, int unused1, short firstCount, short* first,
                               short secondCount, short* second, unsigned short unused2,
                               double* unused3, double* unused4, char* textBuffer,
                               CaseFilter filter, const std::string& title) override;
    int Histogram3D(unsigned short kind, short x, short y, short unused1, short unused2,
                    short* unused3, short* unused4, short unused5, char* title, char* unused6,
                    char* subtitle, char* unused7, int unused8, char* unused9,
                    CaseFilterFloat filter) override;

private:
    // The text of a field of `width` bytes, decoded as told above.
    std::string fieldText(const char* field, int width) const;

    TokenTable& m_tokens;
    DocumentSink* m_sink = nullptr;
    const VmkTag* m_vmk = nullptr;
    int m_command = 0;
    std::vector<TableDocument> m_documents;
    std::vector<std::shared_ptr<DocumentState>> m_states; // one per document
    std::shared_ptr<DocumentList> m_list = std::make_shared<DocumentList>();
    HostAutomation* m_automation = nullptr;
    std::string m_lastError;
};

} // namespace wb
