#pragma once
// The workbench's data service: the module's view of one wb::DataFile.
//
// The host owns the file; this service only points at it. InitCommons registers the
// module's blocks and fills them; setDataFile refills registered blocks, so a replaced
// file, or one changed in place (call setDataFile again with the same file), is what the
// next scan sees.
//
// The case loop is the hot path: ReadCaseRows hands the scans the file's rows where they lie
// and works out weights and the selection without allocating; cstrtw copies one case's row.
//
// Arguments out of range (no file, a variable or case number the file does not have) are
// the caller's error; the service answers them harmlessly: cstrtw gives 2, getmd5 and
// GetCell write NaN (which equals nothing), names and labels come out empty.

#include <string>

#include "drilldown/host/HostServices.h"
#include "workbench/data/DataFile.h"
#include "workbench/text/TokenTable.h"

namespace wb {

class DataService : public HostData {
public:
    explicit DataService(TokenTable& tokens = TokenTable::shared()) : m_tokens(tokens) {}

    // Null for no file: the blocks then describe an empty file.
    void setDataFile(const DataFile* file);
    const DataFile* dataFile() const { return m_file; }
    // The file block the module registered, null before it did.
    const VmkTag* fileBlock() const { return m_vmk; }
    // cstrtw gives 2 for that case, as when the user breaks reading off; 0 clears.
    void breakAtCase(int caseNo) { m_breakCase = caseNo; }

    // NVars is at most 32767: the module's field is 16 bits, and cstrtw copies no more.
    // CaseNameLen is the width of the longest case name, at most 219.
    void InitCommons(VmkTag* vmk, Vmk88Tag* vmk88, b1_com* b1, Wght_com* wght,
                     _AddMenu* menu) override;
    // Values are filled whatever the result but 2. Without a weight variable the weight is
    // 1 and weightVar 0; a missing weight is 0, a negative one stays as it is.
    short cstrtw(int caseNo, double* values, int* hasWeight, double* weight,
                 int* weightVar) override;
    // Hands over the file's own rows, copying nothing.
    void ReadCaseRows(CaseRows& rows) override;
    void getmd5(int var, double* code) override;
    // Blank padded to 8 bytes and terminated.
    void getvn5(int var, char* name) override;
    // Cut at a character boundary when longer than 127 bytes.
    int WriteVarLongName(char* text, int var) override;
    // The label whose value, as a float, equals *value.
    int vvlcod(int unused, int var, char* text, float* value) override;
    int IsSpecialFormatVariable(int var) override;
    // Date: DD/MM/YY of days since 1899-12-30, the fraction of the day ignored.
    // Time: HH:MM:SS of seconds since midnight, rounded to the second, taken modulo a day.
    // A value with no such date or time is "--"; a plain variable gets its number. The text
    // is blank padded or cut to `width` and terminated.
    void WriteSpecialFormatVariable(int var, double value, char* text, int width) override;
    int RetrieveLongTextLabelAsHashedString(char* token, int var0, double value) override;
    void GetCaseName(int case0, std::string& name) override;
    void GetCell(int var0, int case0, double* value) override;

private:
    void fillBlocks();
    // Asks the processor to fetch the rows of `count` cases from `caseNo` on, so that they
    // arrive while the scan works on the rows before them.
    void prefetchAfter(int caseNo, int count) const;
    // The weight cstrtw gives for a case of the file: 1 unweighted, 0 when missing.
    double weightIn(const double* row) const;
    const Variable* variableAt(int var) const;
    // The label of `value` under RealEqual, or null.
    const std::string* labelOf(const Variable& variable, double value) const;

    TokenTable& m_tokens;
    const DataFile* m_file = nullptr;
    int m_rowLength = 0; // doubles cstrtw copies: NVars + 1
    int m_breakCase = 0;
    VmkTag* m_vmk = nullptr;
    Vmk88Tag* m_vmk88 = nullptr;
    b1_com* m_b1 = nullptr;
    Wght_com* m_wght = nullptr;
};

} // namespace wb
