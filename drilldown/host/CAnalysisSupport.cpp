#include "CAnalysisSupport.h"

#include "../resources/StringTable.h"

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
short CAnalysisSupport::cstrtw(int caseNo, double* values, int* hasWeight, double* weight,
                               int* weightVar) {
    return Host().Data->cstrtw(caseNo, values, hasWeight, weight, weightVar);
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

int CAnalysisSupport::lookbr() { return Host().Progress->lookbr(); }
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
