#pragma once
// One result table in preparation: plain arrays, filled cell by cell and handed to the host
// in one call (HostOutput::looka4).
//
//   1. construct it with its numbers of rows and columns (check Allocated(): without memory
//      it has no arrays and the result operation stops);
//   2. set the titles, headings, row names and cells;
//   3. EmitTable hands it over and releases the arrays.
//
// Texts longer than their field travel as tokens: they go through Get8CharHash and as much
// of the result as fits is stored.

#include <string>

class CAnalysisSupport;

class CScrollTable {
public:
    CScrollTable(CAnalysisSupport& host, int rows, int cols);
    ~CScrollTable();
    CScrollTable(const CScrollTable&) = delete;
    CScrollTable& operator=(const CScrollTable&) = delete;

    // False when an array could not be had; such a table must not be filled.
    bool Allocated() const { return m_allocated; }

    void SetTableTitle(const std::string& text);
    void SetTableSubtitle(const std::string& text);
    void SetRowHeading(const std::string& text);
    void SetColumnHead(int col, const std::string& text);
    void SetColumnHead2(int col, const std::string& text);
    void SetRowName(int row, const std::string& text);
    void SetCellValue(int row, int col, double value);
    void SetCellText(int row, int col, const std::string& text);
    // Marks a column as holding whole numbers only.
    void SetWholeColumn(int col);
    // Hands the table to the host and releases the arrays; gives the host's result.
    short EmitTable();

    int Rows() const { return rows; }
    int Cols() const { return cols; }

    static constexpr signed char TextColumn = static_cast<signed char>(156);

private:
    void PutText(char* field, int width, const std::string& text);
    void Release();

    CAnalysisSupport& m_host;
    bool m_allocated = false;

public:
    // The fields, as the host reads them.
    int rows;
    int cols;
    int rowNameWidth;
    int cellWidth = 8;
    int tableFlags = 9217;
    double* values = nullptr;
    char* texts = nullptr;
    signed char* colFormat = nullptr;
    char* colHeads = nullptr;
    char* colHeads2 = nullptr;
    char* rowNames = nullptr;
    unsigned char* cellMarks = nullptr;
    char title[80] = {};
    char subtitle[80] = {};
    char title3[80] = {};
};
