#include "workbench/documents/ApplicationObject.h"

#include "drilldown/host/HostBrushing.h"
#include "workbench/automation/AutomationObject.h"

namespace wb {

namespace {

using enum MemberAccess;
using enum MemberType;

constexpr IID IID_WorkbenchApplication = MakeGuid("7A41C2E0-3B5D-4F68-8E21-6C0D9B3A5F01");
constexpr IID IID_DocumentList = MakeGuid("7A41C2E0-3B5D-4F68-8E21-6C0D9B3A5F02");
constexpr GUID LIBID_WorkbenchApplication = MakeGuid("7A41C2E0-3B5D-4F68-8E21-6C0D9B3A5F00");

enum ApplicationMember : DISPID { OpenDocuments = 1, OutputSwitch = 2, CurrentItem = 3 };
enum AnalysisMember : DISPID { GraphDocuments = 1 };
enum ListMember : DISPID { Count = 1, Item = 2 };

constexpr MemberDescription ApplicationMembers[] = {
    {"OpenDocuments", OpenDocuments, Get, Object, "The open result documents"},
    {"OutputSwitch", OutputSwitch, Get, Int, "0: results go to windows of their own"},
    {"CurrentItem", CurrentItem, Get, Object, "The active result document"},
};
constexpr MemberDescription AnalysisMembers[] = {
    {"GraphDocuments", GraphDocuments, Get, Object, "The analysis's graph documents"},
};
constexpr MemberType ItemParameters[] = {Int};
constexpr MemberDescription ListMembers[] = {
    {"Count", Count, Get, Int, "The number of documents"},
    {"Item", Item, Method, Object, "Document n, from 1", ItemParameters},
};

constexpr InterfaceDescription Interfaces[] = {
    {"Application", IID_WorkbenchApplication, "The workbench", IID_IDispatch,
     ApplicationMembers},
    {"Analysis", IID_Analysis, "An analysis of the workbench", IID_IDispatch, AnalysisMembers},
    {"DocumentList", IID_DocumentList, "A list of result documents", IID_IDispatch, ListMembers},
};

constexpr TypeLibDescription Library = {
    "WorkbenchApplication", LIBID_WorkbenchApplication, 1, 0, 0x409,
    "Drill-Down workbench application", "", Interfaces};

// The automation object of a live document, for the caller; an empty object for none.
COleVariant objectOf(HostAutomation& automation, const DocumentStore& store, int id) {
    COleVariant value;
    value.vt = VT_DISPATCH;
    value.pdispVal = nullptr;
    if (std::shared_ptr<DocumentState> state = store.state(id))
        value.pdispVal = NewDocumentObject(automation, std::move(state));
    return value;
}

class DocumentListObject final : public AutomationObject {
public:
    DocumentListObject(HostAutomation& automation, const DocumentStore& store, bool graphsOnly)
        : AutomationObject(automation, IID_DocumentList), m_store(store),
          m_graphsOnly(graphsOnly) {}

protected:
    HRESULT invokeMember(DISPID id, const DispatchCall& call, VARIANT* result) override {
        std::vector<int> ids;
        for (const Document& document : m_store.documents())
            if (!m_graphsOnly || document.isGraph())
                ids.push_back(document.id);
        if (id == Count) {
            *result = COleVariant(static_cast<LONG>(ids.size())).Detach();
            return S_OK;
        }
        const LONG number = call.Arguments.at(0).lVal;
        if (number < 1 || static_cast<std::size_t>(number) > ids.size())
            return DISP_E_BADINDEX;
        *result = objectOf(m_automation, m_store, ids[number - 1]).Detach();
        return S_OK;
    }

private:
    const DocumentStore& m_store;
    bool m_graphsOnly;
};

class ApplicationObject final : public AutomationObject {
public:
    ApplicationObject(HostAutomation& automation, const DocumentStore& store, REFIID iid)
        : AutomationObject(automation, iid), m_store(store), m_analysis(iid == IID_Analysis) {}

protected:
    HRESULT invokeMember(DISPID id, const DispatchCall&, VARIANT* result) override {
        if (m_analysis || id == OpenDocuments) {
            result->vt = VT_DISPATCH;
            result->pdispVal = new DocumentListObject(m_automation, m_store, m_analysis);
        } else if (id == OutputSwitch) {
            *result = COleVariant(static_cast<LONG>(0)).Detach();
        } else {
            *result = objectOf(m_automation, m_store, m_store.activeDocument()).Detach();
        }
        return S_OK;
    }

private:
    const DocumentStore& m_store;
    bool m_analysis;
};

} // namespace

HRESULT RegisterApplicationTypeLib(HostAutomation& automation) {
    return automation.RegisterTypeLib(Library);
}

IDispatch* NewApplicationObject(HostAutomation& automation, const DocumentStore& store) {
    return new ApplicationObject(automation, store, IID_WorkbenchApplication);
}

IDispatch* NewAnalysisObject(HostAutomation& automation, const DocumentStore& store) {
    return new ApplicationObject(automation, store, IID_Analysis);
}

} // namespace wb
