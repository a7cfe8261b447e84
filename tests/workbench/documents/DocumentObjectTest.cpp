// Result documents as automation objects: their properties, their window, and their life
// beyond the output that made them.
#include <gtest/gtest.h>

#include <vector>

#include "drilldown/host/framework/CAnalysisSupport.h"
#include "workbench/automation/Dispatcher.h"
#include "workbench/automation/AutomationRuntime.h"
#include "workbench/documents/DocumentObject.h"

namespace {

class DocumentObjectTest : public ::testing::Test {
protected:
    DocumentObjectTest() {
        EXPECT_EQ(wb::RegisterDocumentTypeLib(automation), S_OK);
        state->number = 3;
        state->name = "Statistiques descriptives";
        state->list = list;
        document = wb::NewDocumentObject(automation, state);
    }
    ~DocumentObjectTest() override {
        document->Release();
        EXPECT_EQ(automation.outstandingStrings(), 0u);
    }
    LONG number(IDispatch* object, const char* member) {
        return dispatcher.get(object, member).lVal;
    }

    wb::AutomationRuntime automation;
    wb::Dispatcher dispatcher{automation};
    std::shared_ptr<wb::DocumentList> list = std::make_shared<wb::DocumentList>();
    std::shared_ptr<wb::DocumentState> state = std::make_shared<wb::DocumentState>();
    IDispatch* document = nullptr;
};

TEST_F(DocumentObjectTest, PropertiesReadAndWriteTheDocumentsState) {
    EXPECT_EQ(BstrView(dispatcher.get(document, "name").bstrVal), "Statistiques descriptives");
    EXPECT_EQ(number(document, "Saved"), 1);
    EXPECT_EQ(number(document, "Visible"), 1);
    dispatcher.put(document, "Visible", COleVariant(false));
    dispatcher.put(document, "Saved", COleVariant(static_cast<LONG>(0)));
    EXPECT_FALSE(state->visible);
    EXPECT_FALSE(state->saved);
    dispatcher.call(document, "Activate");
    EXPECT_EQ(list->active, 3);
    EXPECT_THROW(dispatcher.put(document, "Name", COleVariant(static_cast<LONG>(1))),
                 wb::AutomationError);
}

TEST_F(DocumentObjectTest, WindowKeepsItsPlaceAndState) {
    const COleVariant window = dispatcher.get(document, "Window");
    ASSERT_EQ(window.vt, VT_DISPATCH);
    const struct {
        const char* member;
        LONG value;
        int wb::DocumentWindowState::*field;
    } fields[] = {{"Left", 10, &wb::DocumentWindowState::left},
                  {"Top", -20, &wb::DocumentWindowState::top},
                  {"Width", 800, &wb::DocumentWindowState::width},
                  {"Height", 300, &wb::DocumentWindowState::height},
                  {"State", wb::MaximisedWindow, &wb::DocumentWindowState::state}};
    for (const auto& f : fields) {
        dispatcher.put(window.pdispVal, f.member, COleVariant(f.value));
        EXPECT_EQ(state->window.*f.field, f.value) << f.member;
        EXPECT_EQ(number(window.pdispVal, f.member), f.value) << f.member;
    }
    // Impossible values are refused and change nothing.
    for (const auto& [member, value] : {std::pair{"State", 4}, {"State", 0}, {"Width", -5}}) {
        EXPECT_THROW(dispatcher.put(window.pdispVal, member, COleVariant(static_cast<LONG>(value))),
                     wb::AutomationError);
    }
    EXPECT_EQ(state->window.state, wb::MaximisedWindow);
    EXPECT_EQ(state->window.width, 800);
}

// A sink of the close event that counts its calls and may disconnect itself when told.
class CloseSink final : public IDispatch {
public:
    HRESULT QueryInterface(REFIID iid, void** object) override {
        if (iid != IID_IUnknown && iid != IID_IDispatch) {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        *object = static_cast<IDispatch*>(this);
        AddRef();
        return S_OK;
    }
    ULONG AddRef() override { return ++references; }
    ULONG Release() override { return --references; } // lives on the test's stack
    HRESULT GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    HRESULT GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*, EXCEPINFO*,
                   UINT*) override {
        events.push_back(id);
        EXPECT_EQ(params->cArgs, id == SpreadsheetClosingEvent ? 1u : 0u);
        if (point != nullptr) {
            EXPECT_EQ(point->Unadvise(cookie), S_OK);
        }
        return S_OK;
    }

    ULONG references = 1;
    std::vector<DISPID> events;
    IConnectionPoint* point = nullptr; // set: disconnects itself when told
    DWORD cookie = 0;
};

TEST_F(DocumentObjectTest, ClosingTellsEachConnectedSinkOnce) {
    void* container = nullptr;
    ASSERT_EQ(document->QueryInterface(IID_IConnectionPointContainer, &container), S_OK);
    auto* points = static_cast<IConnectionPointContainer*>(container);
    IConnectionPoint* point = nullptr;
    EXPECT_EQ(points->FindConnectionPoint(IID_IDispatch, &point), CONNECT_E_NOCONNECTION);
    ASSERT_EQ(points->FindConnectionPoint(IID_SpreadsheetEvents, &point), S_OK);

    CloseSink staying, leaving, gone;
    DWORD stayingCookie = 0, goneCookie = 0;
    ASSERT_EQ(point->Advise(&staying, &stayingCookie), S_OK);
    ASSERT_EQ(point->Advise(&leaving, &leaving.cookie), S_OK);
    ASSERT_EQ(point->Advise(&gone, &goneCookie), S_OK);
    leaving.point = point;
    EXPECT_EQ(point->Unadvise(goneCookie), S_OK);
    EXPECT_EQ(point->Unadvise(goneCookie), CONNECT_E_NOCONNECTION);

    wb::CloseDocument(*state);
    wb::CloseDocument(*state); // a closed document is not closed again
    EXPECT_EQ(staying.events,
              (std::vector<DISPID>{SpreadsheetClosingEvent, SpreadsheetClosedEvent}));
    EXPECT_EQ(leaving.events, std::vector<DISPID>{SpreadsheetClosingEvent});
    EXPECT_TRUE(gone.events.empty());
    EXPECT_FALSE(state->visible);
    EXPECT_EQ(leaving.references, 1u); // its connection's reference went with Unadvise
    EXPECT_EQ(point->Unadvise(stayingCookie), S_OK);
    EXPECT_EQ(staying.references, 1u);
    point->Release();
    points->Release();
}

TEST_F(DocumentObjectTest, ObjectOutlivesItsOutput) {
    IDispatch* kept = wb::NewDocumentObject(automation, state);
    state.reset();
    list.reset();
    EXPECT_EQ(BstrView(dispatcher.get(kept, "Name").bstrVal), "Statistiques descriptives");
    dispatcher.call(kept, "Activate");
    EXPECT_EQ(kept->Release(), 0u);
}

} // namespace
