#pragma once
// The host's document of the session's analysis: what the analysis asks of the host about
// its result documents. The documents themselves live in the session's store; this reads the
// store's command run as the record of the message being handled, and turns the analysis's
// requests (a document's content into another's window, a document no longer its own) into
// store changes.

#include "drilldown/host/HostAnalysisDoc.h"
#include "drilldown/host/HostAutomation.h"
#include "workbench/documents/DocumentStore.h"

namespace wb {

class AnalysisDocument final : public CAnalysisDoc {
public:
    // Registers the type library of the application and analysis objects.
    AnalysisDocument(DocumentStore& store, HostAutomation& automation);

    CEventRecord& EventRecord() override;
    void RemoveFromAnalysisList(IUnknown* document) override;
    bool ReplaceContentOfDoc(IDispatch* old, IDispatch* replacement) override;
    int WindowPlace(IUnknown* document) override;
    // A refresh runs inside the command that asked for it, whose front end already shows
    // that it is busy: nothing more to show.
    void SetUpdating(bool) override {}
    IDispatch* GetApplication() override;
    IDispatch* GetAutomationObject() override;
    int IsOleAutomation() override { return m_automated || m_macros > 0 ? 1 : 0; }

    // Brackets a macro's run against the analysis.
    void beginMacro() { ++m_macros; }
    void endMacro() { --m_macros; }
    // A program that drives the analysis from start to end, as a command does: closing the
    // analysis then leaves its result documents where they are.
    void setAutomated(bool automated) { m_automated = automated; }

private:
    DocumentStore& m_store;
    HostAutomation& m_automation;
    // Made afresh from the store's run at each read: each command delivered starts a run of
    // its own, counted from 1, so what the analysis writes into it needs no keeping.
    CEventRecord m_record;
    bool m_automated = false;
    int m_macros = 0;
};

} // namespace wb
