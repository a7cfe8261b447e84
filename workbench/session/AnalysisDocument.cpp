#include "workbench/session/AnalysisDocument.h"

#include "drilldown/host/framework/AnalysisDialog.h"
#include "workbench/documents/ApplicationObject.h"

namespace wb {

AnalysisDocument::AnalysisDocument(DocumentStore& store, HostAutomation& automation)
    : m_store(store), m_automation(automation) {
    RegisterApplicationTypeLib(automation);
}

IDispatch* AnalysisDocument::GetApplication() {
    return NewApplicationObject(m_automation, m_store);
}

IDispatch* AnalysisDocument::GetAutomationObject() {
    return NewAnalysisObject(m_automation, m_store);
}

CEventRecord& AnalysisDocument::EventRecord() {
    const int command = m_store.currentCommand();
    m_record.Message = command != 0 ? WM_COMMAND : 0;
    m_record.WParam = static_cast<unsigned long>(command);
    m_record.OutputNumber = static_cast<unsigned>(m_store.currentOutputs());
    return m_record;
}

void AnalysisDocument::RemoveFromAnalysisList(IUnknown* document) {
    if (const DocumentState* state = DocumentStateOf(document))
        m_store.close(state->number);
}

bool AnalysisDocument::ReplaceContentOfDoc(IDispatch* old, IDispatch* replacement) {
    const DocumentState* target = DocumentStateOf(old);
    const DocumentState* source = DocumentStateOf(replacement);
    return target != nullptr && source != nullptr &&
           m_store.replaceFrom(target->number, source->number);
}

int AnalysisDocument::WindowPlace(IUnknown* document) {
    const DocumentState* state = DocumentStateOf(document);
    return state != nullptr ? m_store.windowPlace(state->number) : -1;
}

} // namespace wb
