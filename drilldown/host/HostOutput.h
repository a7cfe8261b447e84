#pragma once
// Result tables and graphs: the module fills plain arrays (see CScrollTable and the chart
// builder) and hands them over in one call; the host turns them into a document of its own
// and keeps no reference to the arrays after the call returns. Box plots, the scatterplot
// matrix and 3D histograms the host draws from the cases themselves, asking the module's
// filter which cases belong to the current subset.

#include <string>

// What kind of chart a request is: 5 a general chart or histogram, 3 a pie chart, 2 a
// stacked plot.
class CChartInfo {
public:
    CChartInfo() = default;
    explicit CChartInfo(int kind) : m_kind(kind) {}
    int Kind() const { return m_kind; }

private:
    int m_kind = 0;
};

// The module's case filter for the host's own graphs. `values` is the case, one double per
// variable of the file, variable v at index v - 1; the first two arguments are not looked
// at. Gives 0 to keep the case, 1 to leave it out. When x and y are both not null they take
// the values of the two variables of the 3D histogram being drawn.
using CaseFilter = int (*)(char* unused1, long* unused2, double* values, double* x, double* y);
// The same for Histogram3D, with the two outputs as floats.
using CaseFilterFloat = int (*)(char* unused1, long* unused2, double* values, float* x, float* y);

class HostOutput {
public:
    virtual ~HostOutput() = default;
    // Shows one table. The module passes (in this order): values (rows x cols doubles, column
    // after column; a cell never written holds all bits set, which is no number); texts (8
    // bytes per cell, same order; an 8-character text may be a token); the format byte of
    // each column (156 text, -8 whole numbers, 0 real numbers); the first and second column
    // headings (8 bytes each); the row names (rowNameWidth bytes each); three title lines at
    // a stride of titleWidth; rows, cols, and the same again; 16, 6; the widths of a row name
    // and of a cell plus 2; titleWidth (80); 1, 0; rowNameWidth; 8; cellWidth; the table flags
    // (9217); 0; null; null; the cell marks; and three shorts 0, 1, 1. The text above the row
    // names is the row heading of the file block. Gives non-zero when the table was shown.
    virtual short looka4(void* values, char* texts, const char* colFormat, const char* colHeads,
                         const char* colHeads2, const char* rowNames, const char* titles,
                         int rows, int cols, int rowsAgain, int colsAgain, int headerBytes,
                         int decimals, int rowNameField, int cellField, int titleWidth,
                         int titleLines, int reserved1, int rowNameWidth, int headingWidth,
                         int cellWidth, int tableFlags, int reserved2, void* reserved3,
                         void* reserved4, void* cellMarks, short* reserved5, short* one1,
                         short* one2) = 0;

    // One chart of the chart builder; 57 arguments, in the order the chart builder documents
    // them. Gives non-zero when the chart was made.
    virtual int NewGeneralMultipleChartLongEx(
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
        char** pointLabels) = 0;

    // Box plots of `count` variables (1-based numbers) over the cases the filter keeps, in
    // style 52 (median, quartiles, range), 53 (mean, standard deviation, 1.96 standard
    // deviations), 54 (mean, standard error, standard deviation) or 55 (mean, standard error,
    // 1.96 standard errors).
    virtual int CategorizedVarBoxAndWhisker(unsigned short style, char* title, char* subtitle,
                                            char* unused1, char* unused2, int unused3,
                                            short count, short* variables, char* unused4,
                                            CaseFilter filter) = 0;
    // A matrix of scatterplots of the first variables (the second list, when given, against
    // them) over the cases the filter keeps. `textBuffer` is lent for case names. Gives 1
    // when it could not be drawn.
    virtual int CorrelationScatterplot(unsigned short mode, int unused1, short firstCount,
                                       short* first, short secondCount, short* second,
                                       unsigned short unused2, double* unused3, double* unused4,
                                       char* textBuffer, CaseFilter filter,
                                       const std::string& title) = 0;
    // A bivariate histogram of variables x and y drawn as 3D bars, over the cases the filter
    // keeps; the filter gives each kept case's two values. Unlike the other graph calls, x and
    // y count from 0: variable v arrives as v - 1.
    virtual int Histogram3D(unsigned short kind, short x, short y, short unused1, short unused2,
                            short* unused3, short* unused4, short unused5, char* title,
                            char* unused6, char* subtitle, char* unused7, int unused8,
                            char* unused9, CaseFilterFloat filter) = 0;
};
