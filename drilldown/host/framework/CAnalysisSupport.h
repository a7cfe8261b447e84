#pragma once
// The host's base class of an analysis, as the module sees it.
//
// Life of a plug-in analysis:
//   1. The host loads the module and fills Vmk6AnalysisContext()->Host (HostServices.h).
//   2. Vmk6NewAnalysis() constructs the analysis; its constructor hands the host its
//      sequence table with SetSequenceTable and touches no host service yet.
//   3. The host walks the sequence table with RunSequence: each step gets the analysis,
//      gives its result, and names the step that follows (0 ends the walk).
//      Before the first step the host attaches its document of the analysis
//      (HostAnalysisDoc.h) with AttachDocument.
//   4. The host calls BeforeClose, then deletes the analysis through its virtual destructor.
//
// The virtual operations stand in the order of the host's slots. Those the module does
// not override keep the defaults below: the workbench has no use for them and each says
// what it gives. The non-virtual members forward to the host's services.

#include <string>

#include "../HostAnalysisDoc.h"
#include "../HostBlocks.h"
#include "../HostServices.h"

class CAnalysisSupport;

// Module-wide state shared by every analysis of the library.
class CAnalysisContext {
public:
    virtual ~CAnalysisContext() = default;
    HostServices Host;                    // filled by the host before the first analysis
    CAnalysisSupport* Current = nullptr;  // the analysis whose context was entered last
};

// The module's one context; null when it could not be allocated at load.
CAnalysisContext* ModuleContext();
// The module handle saved at load.
void* ModuleInstance();

// One step of the host's sequence table: step number, function, the step that follows
// (0 for none), and a reserved word that is 0.
using SeqFunction = int (*)(CAnalysisSupport*);
struct SEQFUNCTTBL {
    int Step;
    SeqFunction Function;
    int Next;
    int Reserved;
};

class CSequenceTable {
public:
    void SetSequenceTable(CAnalysisSupport* analysis, const SEQFUNCTTBL* table, int rows);
    // Runs the steps from `first` on; gives the result of the last step run, or 0 when
    // `first` is not in the table.
    int RunSequence(int first) const;
    const SEQFUNCTTBL* Find(int step) const;
    int Rows() const { return m_rows; }

private:
    CAnalysisSupport* m_analysis = nullptr;
    const SEQFUNCTTBL* m_table = nullptr;
    int m_rows = 0;
};

class CAnalysisSupport {
public:
    CAnalysisSupport(CAnalysisDoc* doc, CAnalysisContext* context);
    virtual ~CAnalysisSupport();

    virtual int InitializeAfterFileChanged() { return 1; }
    virtual void Initialize() {}
    virtual void* GetDialog() { return nullptr; }
    virtual void* GetDialgInterface() { return nullptr; }
    virtual void ContextEntry();
    virtual void ContextExit();
    virtual int ContextWrite() { return 0; }
    virtual int ContextRead() { return 0; }
    virtual int ContextInit() { return 0; }
    // Runs the sequence table from `step`; the argument is the host's and not used here.
    virtual int ForwardSequence(int step, int arg) const;
    virtual void* GetLibInstance() { return nullptr; }
    // Text of an entry of the module's string table; empty for an unknown id.
    virtual const char* GetResourceString(int id);
    virtual int GetAnalysisID() { return 0; }
    virtual IDispatch* GetDialogAutomationInterface() { return nullptr; }
    virtual void UpdateLastAutomationDefinition() {}
    virtual int get_md() { return 0; }
    virtual int get_vn() { return 0; }
    // Shows a message to the user through the host.
    virtual void dsplst(int code, const char* text);
    virtual void SetMessageErrorHandler() {}
    virtual std::string GetAnalysisName() const { return {}; }
    virtual std::string GetInputTableDisplayName() { return {}; }
    virtual std::string GetPlcmprStr() { return {}; }
    virtual int AnalysisQueryUpdate() { return 0; }
    virtual bool BeforeRouteOutput(IDispatch*) { return false; }
    virtual void OnCurrentDialogChange() {}
    virtual void BeforeCallEventHandler() {}
    virtual void AfterCallEventHandler() {}
    virtual void SetInputTableValue(int, int, const char*) {}
    virtual void SetInputTableValue(int, int, double) {}
    virtual void SetInputTableTextLabel() {}
    virtual void InputTableAddCases() {}
    virtual void InputTableAddVariables() {}
    virtual void InputTableTextValueEdit() {}
    virtual bool IsTolmet() const { return false; }
    virtual std::string GetTolmetCharacteristicName() const { return {}; }
    virtual int GetTolmetCharacteristicID() const { return 0; }

protected:
    virtual void BeforeClose() {}

public:
    virtual void OnSpreadsheetDataChanged() {}
    virtual void OnSpreadsheetStructureChanged() {}
    virtual void OnWeightChange() {}
    virtual void OnSelcondChange() {}

    // The host's document of this analysis; null until attached. Inline, so that the host
    // sets it without calling into the module.
    void AttachDocument(CAnalysisDoc* document) { m_document = document; }
    CAnalysisDoc* Document() const { return m_document; }
    // Non-zero while a macro drives the analysis; 0 without a document.
    int IsOleAutomation() const;
    // The host's application object and its object of this analysis, each with one
    // reference for the caller; null without a document or when the host has none.
    IDispatch* OleAGetApplication() const;
    IDispatch* GetAnalysisAutomationObject() const;
    // Puts the content of `replacement` into the window of `old`; false without a document.
    bool ReplaceContentOfDoc(IDispatch* old, IDispatch* replacement);

    // The host walks the table; the host's close calls BeforeClose through here.
    const CSequenceTable& SequenceTable() const { return m_sequence; }
    void Close() { BeforeClose(); }

    // Host services, by family.
    int AllocMem(void** block, unsigned long bytes);
    void FreeMem(void* block);
    // Called once per case by every scan, so written here where the scans can inline them.
    short cstrtw(int caseNo, double* values, int* hasWeight, double* weight, int* weightVar) {
        return Host().Data->cstrtw(caseNo, values, hasWeight, weight, weightVar);
    }
    int lookbr() { return Host().Progress->lookbr(); }
    void ReadCaseRows(CaseRows& rows) { Host().Data->ReadCaseRows(rows); }
    int PollBreaks(int count) { return Host().Progress->PollBreaks(count); }
    void d_pbar(const char* text);
    void dstart(unsigned long total);
    void dstop();
    void getmd5(int var, double* code);
    void getvn5(int var, char* name);
    int WriteVarLongName(char* text, int var);
    int RetrieveLongTextLabelAsHashedString(char* token, int var0, double value);
    void GetCaseName(int case0, std::string& name);
    void GetCell(int var0, int case0, double* value);
    void Get8CharHash(std::string& text);
    void ExpandPossible8CharHash(std::string& text);
    void Replace8CharGrow(std::string& text, bool grow);
    void StripFormatting(std::string& text);
    int GetInitKeyword(int section, const char* keyword, int* first, int* second);
    int PutInitKeyword(int section, const char* keyword, int* first, int* second);
    // The host's dialog and control services.
    HostDialogs& Dialogs() const { return *Host().Dialogs; }

    // A new data file (HostNewFile.h); the short form has no categorical variables.
    short SubsetAndAddEx(unsigned short mode, const char* name, short nVars, short reserved,
                         const short* vars, int nCases, const char* shortNames,
                         const char* longNames, short longNameWidth, const char* header,
                         short caseNameLen, int* position);
    short SubsetAndAddEx(unsigned short mode, const char* name, short nVars, short reserved,
                         const short* vars, int nCases, const char* shortNames,
                         const char* longNames, short longNameWidth, const char* header,
                         short caseNameLen, int* position, const int* catPositions,
                         const int* catVars, int nCat);
    short PutDataF(short handle, const char* data, int position, int length);
    int MatClo(short handle);
    void AbortOutput(short handle);

    // One result table (HostOutput.h).
    short looka4(void* values, char* texts, const char* colFormat, const char* colHeads,
                 const char* colHeads2, const char* rowNames, const char* titles, int rows,
                 int cols, int rowsAgain, int colsAgain, int headerBytes, int decimals,
                 int rowNameField, int cellField, int titleWidth, int titleLines, int reserved1,
                 int rowNameWidth, int headingWidth, int cellWidth, int tableFlags,
                 int reserved2, void* reserved3, void* reserved4, void* cellMarks,
                 short* reserved5, short* one1, short* one2);
    // The chart calls (HostOutput.h).
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
        char** pointLabels);
    int CategorizedVarBoxAndWhisker(unsigned short style, char* title, char* subtitle,
                                    char* unused1, char* unused2, int unused3, short count,
                                    short* variables, char* unused4, CaseFilter filter);
    int CorrelationScatterplot(unsigned short mode, int unused1, short firstCount, short* first,
                               short secondCount, short* second, unsigned short unused2,
                               double* unused3, double* unused4, char* textBuffer,
                               CaseFilter filter, const std::string& title);
    int Histogram3D(unsigned short kind, short x, short y, short unused1, short unused2,
                    short* unused3, short* unused4, short unused5, char* title, char* unused6,
                    char* subtitle, char* unused7, int unused8, char* unused9,
                    CaseFilterFloat filter);

protected:
    void InitCommons(VmkTag* vmk, Vmk88Tag* vmk88, b1_com* b1, Wght_com* wght, _AddMenu* menu);
    CSequenceTable m_sequence;
    CAnalysisDoc* m_document;
    CAnalysisContext* m_context;

private:
    HostServices& Host() const { return m_context->Host; }
};

// Host routines that the module calls as free functions; they reach the host through
// the module's context.
short RealToText(double value, unsigned char format, short width, short digits, char* text,
                 short limit);
short IntToText(long value, unsigned char format, short width, char* text);
int vvlcod(int unused, int var, char* text, float* value);
int IsSpecialFormatVariable(int var);
void WriteSpecialFormatVariable(int var, double value, char* text, int width);
void scling_double_QUA(double* lo, double* hi, double* step, short cases, short wanted);
