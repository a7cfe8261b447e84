#pragma once
// Result tables: the module fills plain arrays (see CScrollTable) and hands them over in one
// call; the host turns them into a table document of its own and keeps no reference to the
// arrays after the call returns.

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
};
