#include "CScrollTable.h"

#include <algorithm>
#include <cstring>

#include "CAnalysisSupport.h"

namespace {
constexpr int DefaultRowNameWidth = 12;
constexpr int TitleWidth = 80;
constexpr int RowHeadingWidth = 12;
constexpr int CellMarksHeader = 16;

void PutTitle(char* field, const std::string& text) {
    std::memset(field, 0, TitleWidth);
    std::memcpy(field, text.data(), std::min<std::size_t>(text.size(), TitleWidth));
}
} // namespace

CScrollTable::CScrollTable(CAnalysisSupport& host, int rowCount, int colCount)
    : m_host(host), rows(rowCount), cols(colCount) {
    HostBlocks& blocks = ModuleBlocks();
    rowNameWidth = blocks.Vmk88.CaseNameLen != 0 ? blocks.Vmk88.CaseNameLen : DefaultRowNameWidth;
    std::memset(blocks.Vmk.RowHeading, 0, sizeof blocks.Vmk.RowHeading);
    const auto cells = static_cast<unsigned long>(rows) * cols;
    const unsigned long markBytes = (static_cast<unsigned long>(cols + 1) * (rows + 1)) / 8 +
                                    cols + CellMarksHeader;
    m_allocated =
        host.AllocMem(reinterpret_cast<void**>(&values), cells * sizeof(double)) == 0 &&
        host.AllocMem(reinterpret_cast<void**>(&texts), cells * cellWidth) == 0 &&
        host.AllocMem(reinterpret_cast<void**>(&colFormat), cols) == 0 &&
        host.AllocMem(reinterpret_cast<void**>(&colHeads), cols * 8ul + 1) == 0 &&
        host.AllocMem(reinterpret_cast<void**>(&colHeads2), cols * 8ul + 1) == 0 &&
        host.AllocMem(reinterpret_cast<void**>(&rowNames),
                      static_cast<unsigned long>(rowNameWidth) * rows + 1) == 0 &&
        host.AllocMem(reinterpret_cast<void**>(&cellMarks), markBytes) == 0;
    if (!m_allocated) {
        Release();
        return;
    }
    // An untouched cell keeps all bits set, a pattern that is no number.
    std::memset(values, 0xFF, cells * sizeof(double));
}

CScrollTable::~CScrollTable() { Release(); }

void CScrollTable::Release() {
    for (void** array : {reinterpret_cast<void**>(&values), reinterpret_cast<void**>(&texts),
                         reinterpret_cast<void**>(&colFormat), reinterpret_cast<void**>(&colHeads),
                         reinterpret_cast<void**>(&colHeads2), reinterpret_cast<void**>(&rowNames),
                         reinterpret_cast<void**>(&cellMarks)}) {
        if (*array != nullptr) {
            m_host.FreeMem(*array);
            *array = nullptr;
        }
    }
    m_allocated = false;
}

void CScrollTable::PutText(char* field, int width, const std::string& text) {
    std::string stored = text;
    if (static_cast<int>(stored.size()) > width)
        m_host.Get8CharHash(stored);
    std::memset(field, 0, width);
    std::memcpy(field, stored.data(), std::min<std::size_t>(stored.size(), width));
}

void CScrollTable::SetTableTitle(const std::string& text) { PutTitle(title, text); }
void CScrollTable::SetTableSubtitle(const std::string& text) { PutTitle(subtitle, text); }

void CScrollTable::SetRowHeading(const std::string& text) {
    char* heading = ModuleBlocks().Vmk.RowHeading;
    std::memset(heading, 0, RowHeadingWidth);
    std::memcpy(heading, text.data(), std::min<std::size_t>(text.size(), RowHeadingWidth));
}

void CScrollTable::SetColumnHead(int col, const std::string& text) {
    PutText(colHeads + col * cellWidth, cellWidth, text);
}
void CScrollTable::SetColumnHead2(int col, const std::string& text) {
    PutText(colHeads2 + col * cellWidth, cellWidth, text);
}
void CScrollTable::SetRowName(int row, const std::string& text) {
    PutText(rowNames + row * rowNameWidth, rowNameWidth, text);
}

void CScrollTable::SetCellValue(int row, int col, double value) {
    values[static_cast<std::size_t>(rows) * col + row] = value;
}

void CScrollTable::SetCellText(int row, int col, const std::string& text) {
    PutText(texts + (static_cast<std::size_t>(rows) * col + row) * cellWidth, cellWidth, text);
    colFormat[col] = TextColumn;
}

void CScrollTable::SetWholeColumn(int col) { colFormat[col] = static_cast<signed char>(-cellWidth); }

short CScrollTable::EmitTable() {
    // The header of the cell marks carries the table's size.
    const auto rows16 = static_cast<int16_t>(rows);
    const auto cols16 = static_cast<int16_t>(cols);
    std::memcpy(cellMarks + 12, &rows16, 2);
    std::memcpy(cellMarks + 14, &cols16, 2);
    short zero = 0, one = 1, alsoOne = 1;
    const short result = m_host.looka4(
        values, texts, reinterpret_cast<const char*>(colFormat), colHeads, colHeads2, rowNames,
        title, rows, cols, rows, cols, 16, 6, rowNameWidth + 2, cellWidth + 2, TitleWidth, 1, 0,
        rowNameWidth, 8, cellWidth, tableFlags, 0, nullptr, nullptr, cellMarks, &zero, &one,
        &alsoOne);
    Release();
    return result;
}
