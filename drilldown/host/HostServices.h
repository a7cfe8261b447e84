#pragma once
// What a host supplies to the drill-down module.
//
// The module owns no data and draws nothing: everything it needs of the outside world
// comes through the service families below. A host (the workbench's headless host, the
// desktop front end, a test double) derives one class from each family it serves and
// puts them into the module's CAnalysisContext before it asks for an analysis:
//
//   1. dlopen the module, look up Vmk6AnalysisContext and Vmk6NewAnalysis;
//   2. fill Vmk6AnalysisContext()->Host with the host's services;
//   3. call Vmk6NewAnalysis() and walk the analysis's sequence table.
//
// Ownership: the host owns its services and keeps them alive while any analysis exists.
// The module never deletes them.
// Threads and re-entrancy: every call comes on the user-interface thread but two: while a
// scan of a large file runs, cstrtw and ReadCaseRows are also called from the scan's other
// threads, for other cases, at the same time. They must therefore only read the file (no
// state of their own changes per call), and the file must not change while a scan runs. A
// service must not call back into the analysis that called it.
// Exceptions: a service reports failure through its result (0, an error code, a cancelled
// dialog) and throws nothing into the module, with these exceptions:
//   - the calls that run a dialog (HostDialogs::DoubleVarListDialog, RunModalDialog,
//     DefineSelCond, DefineWeight, OpenVmkFile) and the delivery of the messages they cause
//     may throw std::exception when the host cannot run the dialog at all (a headless host
//     asked for a choice that its caller queued wrong). The module's frames are safe
//     around them: a results lock is held by a scope (CResultsLock) and host memory by
//     HostArray, so the exception leaves the module with every lock released, and reaches
//     the host's caller; the automation object turns it into E_FAIL.
// No other service may throw; a host that can fail elsewhere catches at its own boundary.

#include <cstddef>
#include <string>

#include "HostAutomation.h"
#include "HostBlocks.h"
#include "HostBrushing.h"
#include "HostDialogs.h"
#include "HostNewFile.h"
#include "HostOutput.h"

// Memory for everything that crosses to the host.
class HostMemory {
public:
    virtual ~HostMemory() = default;
    // Stores a zero-filled block of `bytes` bytes in *block; 0 on success, non-zero on failure.
    virtual int AllocMem(void** block, unsigned long bytes) = 0;
    // Releases a block of AllocMem; null is allowed.
    virtual void FreeMem(void* block) = 0;
};

// Messages to the user.
class HostMessages {
public:
    virtual ~HostMessages() = default;
    // Shows `text` to the user; `code` is 0 for a refusal or the length of the text.
    virtual void dsplst(int code, const char* text) = 0;
};

// Progress display and user break.
class HostProgress {
public:
    virtual ~HostProgress() = default;
    // Sets the text of the progress display.
    virtual void d_pbar(const char* text) = 0;
    // Opens the progress display for `total` steps.
    virtual void dstart(unsigned long total) = 0;
    // Closes the progress display.
    virtual void dstop() = 0;
    // Non-zero when the user has asked to stop; asked once per case delivered.
    virtual int lookbr() = 0;
    // Asks `count` times at once, as many calls of lookbr would, stopping at the first that
    // reports a break: gives how many went by before it, `count` when none did. Scans ask
    // so for a block of cases; a host overrides it when its answer costs less in one go.
    virtual int PollBreaks(int count) {
        for (int i = 0; i < count; ++i)
            if (lookbr() != 0)
                return i;
        return count;
    }
};

// A stretch of cases read at once (HostData::ReadCaseRows). The caller fills the first
// part, the host the second.
struct CaseRows {
    int first;                 // the first case
    int count;                 // how many, from it on
    double* buffer;            // room for `count` rows of `bufferStride` doubles (NVars + 1)
    std::size_t bufferStride;
    short* results;            // `count` entries: what cstrtw gives for each case
    double* weights;           // `count` entries: the weight cstrtw gives for each case

    const double* values = nullptr;  // the first case's row, laid out as cstrtw fills one
    std::size_t stride = 0;          // doubles from one case's row to the next
    int hasWeight = 0;               // as cstrtw gives them, the same for every case
    int weightVar = 0;
};

// The open data file: its dictionary and its cases. Variables count from 1, cases from 1,
// except where an argument is named var0 or case0.
class HostData {
public:
    virtual ~HostData() = default;
    // Registers the module's blocks, fills them from the open file and keeps them current.
    virtual void InitCommons(VmkTag* vmk, Vmk88Tag* vmk88, b1_com* b1, Wght_com* wght,
                             _AddMenu* menu) = 0;
    // Fills values[1..NVars] with the case. 0 delivered, 1 left out by the selection
    // condition, 2 reading broken off. The last three outputs may be null.
    virtual short cstrtw(int caseNo, double* values, int* hasWeight, double* weight,
                         int* weightVar) = 0;
    // Reads a stretch of cases as cstrtw reads each of them, for scans, which would
    // otherwise pay a call and a copy per case: a host that holds its rows as cstrtw lays
    // them out points `values` into its own storage, any other fills `buffer`. Rows from the
    // first case given 2 on may hold anything.
    virtual void ReadCaseRows(CaseRows& rows) {
        rows.values = rows.buffer;
        rows.stride = rows.bufferStride;
        for (int i = 0; i < rows.count; ++i)
            rows.results[i] = cstrtw(rows.first + i, rows.buffer + i * rows.bufferStride,
                                     &rows.hasWeight, &rows.weights[i], &rows.weightVar);
    }
    // Writes the variable's missing-data code.
    virtual void getmd5(int var, double* code) = 0;
    // Writes the variable's short name, at most 8 bytes and a terminator, into name[9];
    // a name longer than 8 bytes arrives as its token.
    virtual void getvn5(int var, char* name) = 0;
    // Writes the variable's long name into text[128], empty when it has none; gives its length.
    virtual int WriteVarLongName(char* text, int var) = 0;
    // 0 when `value` has a text label in the variable; then writes its 8-character form
    // (the label, or its token when longer) to text, blank padded, no terminator.
    virtual int vvlcod(int unused, int var, char* text, float* value) = 0;
    // Non-zero for a variable with a display format of its own (date, time).
    virtual int IsSpecialFormatVariable(int var) = 0;
    // Writes the value in the variable's display format, `width` characters, blank padded.
    virtual void WriteSpecialFormatVariable(int var, double value, char* text, int width) = 0;
    // Non-zero when the value has a text label longer than 8 bytes; its token is then in token[9].
    virtual int RetrieveLongTextLabelAsHashedString(char* token, int var0, double value) = 0;
    // The case's name, whole.
    virtual void GetCaseName(int case0, std::string& name) = 0;
    // The value of one cell.
    virtual void GetCell(int var0, int case0, double* value) = 0;
};

// Text of long strings and of numbers.
class HostText {
public:
    virtual ~HostText() = default;
    // Replaces text by an 8-character token from which ExpandPossible8CharHash brings it back.
    virtual void Get8CharHash(std::string& text) = 0;
    // Replaces a token by its long string; any other text stays.
    virtual void ExpandPossible8CharHash(std::string& text) = 0;
    // Replaces every token inside text by its long string.
    virtual void Replace8CharGrow(std::string& text, bool grow) = 0;
    // Takes the host's inline formatting marks out of text.
    virtual void StripFormatting(std::string& text) = 0;
    // Writes a real number at most `limit` characters long; gives the characters written.
    virtual short RealToText(double value, unsigned char format, short width, short digits,
                             char* text, short limit) = 0;
    // Writes a whole number `width` characters wide; gives the characters written.
    virtual short IntToText(long value, unsigned char format, short width, char* text) = 0;
    // Replaces lo, hi and step by a neat scale covering them (see the workbench's scaling).
    virtual void scling_double_QUA(double* lo, double* hi, double* step, short cases,
                                   short wanted) = 0;
};

// Everything a host supplies, one pointer per family; all must be set.
struct HostServices {
    HostMemory* Memory = nullptr;
    HostMessages* Messages = nullptr;
    HostProgress* Progress = nullptr;
    HostData* Data = nullptr;
    HostText* Text = nullptr;
    HostDialogs* Dialogs = nullptr;
    HostNewFile* NewFile = nullptr;
    HostOutput* Output = nullptr;
    HostAutomation* Automation = nullptr;
    HostBrushing* Brushing = nullptr;
};
