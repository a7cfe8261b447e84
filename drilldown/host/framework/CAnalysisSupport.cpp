#include "CAnalysisSupport.h"

#include "../../resources/StringTable.h"

HostBlocks& ModuleBlocks() {
    static HostBlocks blocks;
    return blocks;
}

void CSequenceTable::SetSequenceTable(CAnalysisSupport* analysis, const SEQFUNCTTBL* table,
                                      int rows) {
    m_analysis = analysis;
    m_table = table;
    m_rows = rows;
}

const SEQFUNCTTBL* CSequenceTable::Find(int step) const {
    for (int i = 0; i < m_rows; ++i)
        if (m_table[i].Step == step)
            return &m_table[i];
    return nullptr;
}

int CSequenceTable::RunSequence(int first) const {
    int result = 0;
    for (const SEQFUNCTTBL* row = Find(first); row != nullptr; row = Find(row->Next)) {
        result = row->Function(m_analysis);
        if (row->Next == 0)
            break;
    }
    return result;
}

CAnalysisSupport::CAnalysisSupport(CAnalysisDoc* doc, CAnalysisContext* context)
    : m_document(doc), m_context(context) {
    if (m_context != nullptr)
        m_context->Current = this;
}

CAnalysisSupport::~CAnalysisSupport() {
    if (m_context != nullptr && m_context->Current == this)
        m_context->Current = nullptr;
}

void CAnalysisSupport::ContextEntry() {
    if (m_context != nullptr)
        m_context->Current = this;
}

void CAnalysisSupport::ContextExit() {}

int CAnalysisSupport::IsOleAutomation() const {
    return m_document != nullptr ? m_document->IsOleAutomation() : 0;
}

IDispatch* CAnalysisSupport::OleAGetApplication() const {
    return m_document != nullptr ? m_document->GetApplication() : nullptr;
}

IDispatch* CAnalysisSupport::GetAnalysisAutomationObject() const {
    return m_document != nullptr ? m_document->GetAutomationObject() : nullptr;
}

bool CAnalysisSupport::ReplaceContentOfDoc(IDispatch* old, IDispatch* replacement) {
    return m_document != nullptr && m_document->ReplaceContentOfDoc(old, replacement);
}

int CAnalysisSupport::ForwardSequence(int step, int) const { return m_sequence.RunSequence(step); }

const char* CAnalysisSupport::GetResourceString(int id) { return ModuleString(id); }

void CAnalysisSupport::dsplst(int code, const char* text) { Host().Messages->dsplst(code, text); }

int CAnalysisSupport::AllocMem(void** block, unsigned long bytes) {
    return Host().Memory->AllocMem(block, bytes);
}
void CAnalysisSupport::FreeMem(void* block) { Host().Memory->FreeMem(block); }

void CAnalysisSupport::InitCommons(VmkTag* vmk, Vmk88Tag* vmk88, b1_com* b1, Wght_com* wght,
                                   _AddMenu* menu) {
    Host().Data->InitCommons(vmk, vmk88, b1, wght, menu);
}
void CAnalysisSupport::getmd5(int var, double* code) { Host().Data->getmd5(var, code); }
void CAnalysisSupport::getvn5(int var, char* name) { Host().Data->getvn5(var, name); }
int CAnalysisSupport::WriteVarLongName(char* text, int var) {
    return Host().Data->WriteVarLongName(text, var);
}
int CAnalysisSupport::RetrieveLongTextLabelAsHashedString(char* token, int var0, double value) {
    return Host().Data->RetrieveLongTextLabelAsHashedString(token, var0, value);
}
void CAnalysisSupport::GetCaseName(int case0, std::string& name) {
    Host().Data->GetCaseName(case0, name);
}
void CAnalysisSupport::GetCell(int var0, int case0, double* value) {
    Host().Data->GetCell(var0, case0, value);
}

void CAnalysisSupport::d_pbar(const char* text) { Host().Progress->d_pbar(text); }
void CAnalysisSupport::dstart(unsigned long total) { Host().Progress->dstart(total); }
void CAnalysisSupport::dstop() { Host().Progress->dstop(); }

void CAnalysisSupport::Get8CharHash(std::string& text) { Host().Text->Get8CharHash(text); }
void CAnalysisSupport::ExpandPossible8CharHash(std::string& text) {
    Host().Text->ExpandPossible8CharHash(text);
}
void CAnalysisSupport::Replace8CharGrow(std::string& text, bool grow) {
    Host().Text->Replace8CharGrow(text, grow);
}
void CAnalysisSupport::StripFormatting(std::string& text) { Host().Text->StripFormatting(text); }

int CAnalysisSupport::GetInitKeyword(int section, const char* keyword, int* first, int* second) {
    return Host().Dialogs->GetInitKeyword(section, keyword, first, second);
}
int CAnalysisSupport::PutInitKeyword(int section, const char* keyword, int* first, int* second) {
    return Host().Dialogs->PutInitKeyword(section, keyword, first, second);
}

short CAnalysisSupport::SubsetAndAddEx(unsigned short mode, const char* name, short nVars,
                                       short reserved, const short* vars, int nCases,
                                       const char* shortNames, const char* longNames,
                                       short longNameWidth, const char* header, short caseNameLen,
                                       int* position) {
    return SubsetAndAddEx(mode, name, nVars, reserved, vars, nCases, shortNames, longNames,
                          longNameWidth, header, caseNameLen, position, nullptr, nullptr, 0);
}
short CAnalysisSupport::SubsetAndAddEx(unsigned short mode, const char* name, short nVars,
                                       short reserved, const short* vars, int nCases,
                                       const char* shortNames, const char* longNames,
                                       short longNameWidth, const char* header, short caseNameLen,
                                       int* position, const int* catPositions,
                                       const int* catVars, int nCat) {
    return Host().NewFile->SubsetAndAddEx(mode, name, nVars, reserved, vars, nCases, shortNames,
                                          longNames, longNameWidth, header, caseNameLen, position,
                                          catPositions, catVars, nCat);
}
short CAnalysisSupport::PutDataF(short handle, const char* data, int position, int length) {
    return Host().NewFile->PutDataF(handle, data, position, length);
}
int CAnalysisSupport::MatClo(short handle) { return Host().NewFile->MatClo(handle); }
void CAnalysisSupport::AbortOutput(short handle) { Host().NewFile->AbortOutput(handle); }

short CAnalysisSupport::looka4(void* values, char* texts, const char* colFormat,
                               const char* colHeads, const char* colHeads2, const char* rowNames,
                               const char* titles, int rows, int cols, int rowsAgain,
                               int colsAgain, int headerBytes, int decimals, int rowNameField,
                               int cellField, int titleWidth, int titleLines, int reserved1,
                               int rowNameWidth, int headingWidth, int cellWidth, int tableFlags,
                               int reserved2, void* reserved3, void* reserved4, void* cellMarks,
                               short* reserved5, short* one1, short* one2) {
    return Host().Output->looka4(values, texts, colFormat, colHeads, colHeads2, rowNames, titles,
                                 rows, cols, rowsAgain, colsAgain, headerBytes, decimals,
                                 rowNameField, cellField, titleWidth, titleLines, reserved1,
                                 rowNameWidth, headingWidth, cellWidth, tableFlags, reserved2,
                                 reserved3, reserved4, cellMarks, reserved5, one1, one2);
}

int CAnalysisSupport::NewGeneralMultipleChartLongEx(
    const CChartInfo& info, unsigned short chartFlags, short seriesCount, double** data,
    int* points, unsigned char* seriesTypes, unsigned char* seriesOptions1,
    unsigned char* seriesOptions2, unsigned char* seriesColours, char** seriesNames,
    double* barWidths, char* titles, short titleStride, short titleLines, char* xTitle,
    short xTitleLength, short xTitleLines, char* yTitle, short yTitleLength, short yTitleLines,
    double yMin, double yMax, double yStep, double xMin, double xMax, double xStep, char* xLabels,
    short xLabelWidth, double* xLabelPositions, int xLabelCount, char* yLabels, short yLabelWidth,
    double* yLabelPositions, int yLabelCount, char* unused1, short unused2, double* unused3,
    int unused4, char* unused5, short unused6, double* unused7, int unused8,
    unsigned short xAxisStyle, short xAxisOption1, short xAxisOption2, unsigned short yAxisStyle,
    short yAxisOption1, short yAxisOption2, unsigned short zAxisStyle, short zAxisOption1,
    short zAxisOption2, char* legend, short legendItemWidth, int* seriesModes,
    short pointLabelSwitch, short pointLabelWidth, char** pointLabels) {
    return Host().Output->NewGeneralMultipleChartLongEx(
        info, chartFlags, seriesCount, data, points, seriesTypes, seriesOptions1, seriesOptions2,
        seriesColours, seriesNames, barWidths, titles, titleStride, titleLines, xTitle,
        xTitleLength, xTitleLines, yTitle, yTitleLength, yTitleLines, yMin, yMax, yStep, xMin,
        xMax, xStep, xLabels, xLabelWidth, xLabelPositions, xLabelCount, yLabels, yLabelWidth,
        yLabelPositions, yLabelCount, unused1, unused2, unused3, unused4, unused5, unused6,
        unused7, unused8, xAxisStyle, xAxisOption1, xAxisOption2, yAxisStyle, yAxisOption1,
        yAxisOption2, zAxisStyle, zAxisOption1, zAxisOption2, legend, legendItemWidth,
        seriesModes, pointLabelSwitch, pointLabelWidth, pointLabels);
}
int CAnalysisSupport::CategorizedVarBoxAndWhisker(unsigned short style, char* title,
                                                  char* subtitle, char* unused1, char* unused2,
                                                  int unused3, short count, short* variables,
                                                  char* unused4, CaseFilter filter) {
    return Host().Output->CategorizedVarBoxAndWhisker(style, title, subtitle, unused1, unused2,
                                                      unused3, count, variables, unused4, filter);
}
int CAnalysisSupport::CorrelationScatterplot(unsigned short mode, int unused1, short firstCount,
                                             short* first, short secondCount, short* second,
                                             unsigned short unused2, double* unused3,
                                             double* unused4, char* textBuffer, CaseFilter filter,
                                             const std::string& title) {
    return Host().Output->CorrelationScatterplot(mode, unused1, firstCount, first, secondCount,
                                                 second, unused2, unused3, unused4, textBuffer,
                                                 filter, title);
}
int CAnalysisSupport::Histogram3D(unsigned short kind, short x, short y, short unused1,
                                  short unused2, short* unused3, short* unused4, short unused5,
                                  char* title, char* unused6, char* subtitle, char* unused7,
                                  int unused8, char* unused9, CaseFilterFloat filter) {
    return Host().Output->Histogram3D(kind, x, y, unused1, unused2, unused3, unused4, unused5,
                                      title, unused6, subtitle, unused7, unused8, unused9, filter);
}

namespace {
HostServices& ContextHost() { return ModuleContext()->Host; }
} // namespace

short RealToText(double value, unsigned char format, short width, short digits, char* text,
                 short limit) {
    return ContextHost().Text->RealToText(value, format, width, digits, text, limit);
}
short IntToText(long value, unsigned char format, short width, char* text) {
    return ContextHost().Text->IntToText(value, format, width, text);
}
int vvlcod(int unused, int var, char* text, float* value) {
    return ContextHost().Data->vvlcod(unused, var, text, value);
}
int IsSpecialFormatVariable(int var) { return ContextHost().Data->IsSpecialFormatVariable(var); }
void WriteSpecialFormatVariable(int var, double value, char* text, int width) {
    ContextHost().Data->WriteSpecialFormatVariable(var, value, text, width);
}
void scling_double_QUA(double* lo, double* hi, double* step, short cases, short wanted) {
    ContextHost().Text->scling_double_QUA(lo, hi, step, cases, wanted);
}
