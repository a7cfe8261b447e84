// The current subset leaves the module as a new data file (DDNSaveData) or as one table of
// all variables (DDNDatasheet).

#include <cstring>
#include <vector>

#include "../host/framework/CScrollTable.h"
#include "../results/ResultText.h"
#include "CaseLoop.h"
#include "SubsetTest.h"

namespace {

constexpr int ShortNameBytes = 8;
constexpr int LongNameBytes = 128;
constexpr int HeaderBytes = 80;
constexpr unsigned short NewFileMode = 25;

} // namespace

// The storage of one save, all of it host memory so that it is freed on every way out.
struct CDrillDown::SaveStorage {
    explicit SaveStorage(CAnalysisSupport& host)
        : readBuffer(host), testBuffer(host), variables(host), shortNames(host),
          longNames(host), row(host), catPositions(host), catVars(host) {}
    bool Allocate(int nv, int selected, int categorical, int caseNameLen) {
        const std::size_t rowBytes = caseNameLen + (selected + 1) * sizeof(double);
        if (!(readBuffer.Allocate(nv + 2) && testBuffer.Allocate(nv + 2) &&
              variables.Allocate(selected + 1) &&
              shortNames.Allocate((selected + 1) * ShortNameBytes + 1) &&
              longNames.Allocate((selected + 1) * LongNameBytes) && row.Allocate(rowBytes)))
            return false;
        std::memset(row.get(), 0xFF, rowBytes);
        return categorical == 0 || (catPositions.Allocate(categorical) && catVars.Allocate(categorical));
    }
    HostArray<double> readBuffer, testBuffer;
    HostArray<short> variables;
    HostArray<char> shortNames, longNames, row;
    HostArray<int> catPositions, catVars;
};

short CDrillDown::DDNSaveData(HWND) {
    RescanIfNeeded();
    if (ValidVar == 0) {
        dsplst(0, GetResourceString(StrNoCases));
        return 0;
    }
    const HostBlocks& blocks = ModuleBlocks();
    const int nv = blocks.Vmk.NVars;
    char header[HeaderBytes];
    std::memcpy(header, blocks.Vmk.HeaderText, HeaderBytes);
    // The variables of the analysis, in file order and each once.
    std::vector<short> chosen;
    int categorical = 0;
    for (int v = 1; v <= nv; ++v) {
        if (SelectedVariable(v) == 1) {
            chosen.push_back(static_cast<short>(v));
            categorical += IsCategoricalVariable(v);
        }
    }
    const int selected = static_cast<int>(chosen.size());
    if (selected < 1)
        return 0;
    const int caseNameLen = blocks.Vmk88.CaseNameLen;
    SaveStorage s(*this);
    if (!s.Allocate(nv, selected, categorical, caseNameLen)) {
        dsplst(0, GetResourceString(StrMemoryExhausted));
        return 0;
    }
    int k = 0;
    for (int i = 0; i < selected; ++i) {
        s.variables[i] = chosen[i];
        // Each name is 8 bytes at a stride of 8; its terminator lands on the next slot.
        getvn5(chosen[i], s.shortNames.get() + i * ShortNameBytes);
        WriteVarLongName(s.longNames.get() + i * LongNameBytes, chosen[i]);
        if (IsCategoricalVariable(chosen[i]) == 1) {
            s.catPositions[k] = i;
            s.catVars[k++] = chosen[i] - 1;
        }
    }
    // The file is declared with room for every case of the open file: the cases that qualify
    // below need not be the ValidVar of the last scan (a case of weight 0 is saved, a case
    // dropped for missing data is not), and the host completes the file with the rows
    // actually written.
    int position = 0;
    const short handle = SubsetAndAddEx(
        NewFileMode, "", static_cast<short>(selected), 0, s.variables.get(), blocks.Vmk.NCases,
        s.shortNames.get(), s.longNames.get(), LongNameBytes, header,
        static_cast<short>(caseNameLen), &position, categorical > 0 ? s.catPositions.get() : nullptr,
        categorical > 0 ? s.catVars.get() : nullptr, categorical);

    const CasewiseTest incomplete = DrillCasewiseTest();
    const SubsetTest subset = CompileSubsetTest();
    b1_com& b1 = ModuleBlocks().B1;
    auto fail = [&](bool showMessage) -> short {
        if (showMessage)
            dsplst(0, GetResourceString(StrMemoryExhausted));
        ddstop();
        AbortOutput(handle);
        return 0;
    };
    tdstar(blocks.Vmk.NCases, GetResourceString(StrCalculating));
    for (int caseNo = 1; caseNo <= blocks.Vmk.NCases; ++caseNo) {
        std::memset(b1.CaseName, 0, sizeof b1.CaseName);
        b1.CaseNamePos = 1;
        // No weight is asked for: the weight block stays as it was.
        const short read = cstrtw(caseNo, s.readBuffer.get(), nullptr, nullptr, nullptr);
        if (read == 2)
            return fail(false);
        if (read == 1)
            continue;
        if (lookbr() != 0)
            return fail(false);
        for (int v = 0; v < nv; ++v)
            GetCell(v, caseNo - 1, &s.testBuffer[v + 1]);
        if ((MD == 1 && incomplete.AnyMissing(s.testBuffer.get())) ||
            subset.Excludes(s.testBuffer.get()))
            continue;
        PutCaseName(*this, caseNo);
        std::memcpy(s.row.get(), b1.CaseName, caseNameLen);
        for (int i = 0; i < selected; ++i)
            std::memcpy(s.row.get() + caseNameLen + i * sizeof(double),
                        &s.readBuffer[chosen[i]], sizeof(double));
        if (caseNameLen != 0) {
            if (PutDataF(handle, s.row.get(), position, caseNameLen) != 0)
                return fail(true);
            position += caseNameLen;
        }
        for (int i = 0; i < selected; ++i) {
            if (PutDataF(handle, s.row.get() + caseNameLen + i * sizeof(double), position,
                         sizeof(double)) != 0)
                return fail(true);
            position += sizeof(double);
        }
    }
    ddstop();
    MatClo(handle);
    return 1;
}

short CDrillDown::DDNDatasheet(HWND) {
    RescanIfNeeded();
    const int nv = ModuleBlocks().Vmk.NVars;
    // The cases are gathered first and the table made to their number: after the first scan
    // under casewise deletion ValidVar counts fewer cases than the subset holds.
    std::vector<double> cells;
    const LoopEnd end = RunSubsetLoop(CompileSubsetTest(), [&](const double* values, double) {
        cells.insert(cells.end(), values + 1, values + 1 + nv);
    });
    if (end != LoopEnd::Completed)
        return 0;
    const int rows = nv > 0 ? static_cast<int>(cells.size() / nv) : 0;
    CScrollTable table(*this, rows, nv);
    if (!table.Allocated())
        return 0;
    table.SetTableTitle(GetResourceString(StrDatasheetTitle));
    for (int v = 1; v <= nv; ++v) {
        table.SetColumnHead(v - 1, FormatText("%d", v));
        std::string name = ShortName(*this, v);
        StripFormatting(name);
        table.SetColumnHead2(v - 1, name);
    }
    for (int row = 0; row < rows; ++row)
        for (int v = 0; v < nv; ++v)
            table.SetCellValue(row, v, cells[std::size_t(row) * nv + v]);
    table.EmitTable();
    return 1;
}
