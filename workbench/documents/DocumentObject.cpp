#include "workbench/documents/DocumentObject.h"

#include <algorithm>
#include <atomic>

#include "workbench/automation/AutomationObject.h"

namespace wb {

namespace {

// Tells the store, while it stands, that a macro changed the document's state.
void TellChanged(const DocumentState& state) {
    if (state.list != nullptr && state.list->changed)
        state.list->changed(state.number);
}

using enum MemberAccess;
using enum MemberType;

enum DocumentMember : DISPID { Name = 0, Saved = 1, Visible = 2, Activate = 3, Window = 4 };
enum WindowMember : DISPID { Left = 1, Top = 2, Width = 3, Height = 4, State = 5 };

constexpr MemberDescription DocumentMembers[] = {
    {"Name", Name, Get, Text, "The document's title"},
    {"Saved", Saved, Get, Int, "Whether the document is saved"},
    {"Saved", Saved, Put, Int, "Whether the document is saved"},
    {"Visible", Visible, Get, Int, "Whether the document's window is shown"},
    {"Visible", Visible, Put, Int, "Whether the document's window is shown"},
    {"Activate", Activate, Method, None, "Brings the document's window to the front"},
    {"Window", Window, Get, Object, "The document's window"},
};

constexpr MemberDescription WindowMembers[] = {
    {"Left", Left, Get, Int}, {"Left", Left, Put, Int},
    {"Top", Top, Get, Int},   {"Top", Top, Put, Int},
    {"Width", Width, Get, Int}, {"Width", Width, Put, Int},
    {"Height", Height, Get, Int}, {"Height", Height, Put, Int},
    {"State", State, Get, Int}, {"State", State, Put, Int},
};

constexpr InterfaceDescription Interfaces[] = {
    {"Document", IID_SpreadsheetDocument, "A result table", IID_IDispatch, DocumentMembers},
    {"GraphDocument", IID_GraphDocument, "A result graph", IID_IDispatch, DocumentMembers},
    {"DocumentWindow", IID_DocumentWindow, "The window of a result document", IID_IDispatch,
     WindowMembers},
};

const IID& EventInterface(const DocumentState& state) {
    return state.graph ? IID_GraphEvents : IID_SpreadsheetEvents;
}

constexpr TypeLibDescription Library = {
    "WorkbenchDocuments", LIBID_WorkbenchDocuments, 1, 0, 0x409,
    "Drill-Down workbench documents", "", Interfaces};

class WindowObject final : public AutomationObject {
public:
    WindowObject(HostAutomation& automation, std::shared_ptr<DocumentState> state)
        : AutomationObject(automation, IID_DocumentWindow), m_state(std::move(state)) {}

protected:
    HRESULT invokeMember(DISPID id, const DispatchCall& call, VARIANT* result) override {
        DocumentWindowState& window = m_state->window;
        int* field = id == Left     ? &window.left
                     : id == Top    ? &window.top
                     : id == Width  ? &window.width
                     : id == Height ? &window.height
                                    : &window.state;
        if (call.Access == Put) {
            const LONG value = call.Arguments.at(0).lVal;
            if ((id == State && (value < MinimisedWindow || value > MaximisedWindow)) ||
                ((id == Width || id == Height) && value < 0))
                return DISP_E_OVERFLOW;
            *field = value;
            window.placed = window.placed || id != State;
            TellChanged(*m_state);
            return S_OK;
        }
        *result = COleVariant(static_cast<LONG>(*field)).Detach();
        return S_OK;
    }

private:
    std::shared_ptr<DocumentState> m_state;
};

// The point where the sinks of a document's close event connect.
class ClosePoint final : public IConnectionPoint {
public:
    explicit ClosePoint(std::shared_ptr<DocumentState> state) : m_state(std::move(state)) {}

    HRESULT QueryInterface(REFIID iid, void** object) override {
        if (object == nullptr)
            return E_POINTER;
        if (iid != IID_IUnknown && iid != IID_IConnectionPoint) {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        *object = static_cast<IConnectionPoint*>(this);
        AddRef();
        return S_OK;
    }
    ULONG AddRef() override { return ++m_references; }
    ULONG Release() override {
        const ULONG left = --m_references;
        if (left == 0)
            delete this;
        return left;
    }
    HRESULT GetConnectionInterface(IID* iid) override {
        if (iid == nullptr)
            return E_POINTER;
        *iid = EventInterface(*m_state);
        return S_OK;
    }
    HRESULT Advise(IUnknown* sink, DWORD* cookie) override {
        if (sink == nullptr || cookie == nullptr)
            return E_POINTER;
        void* dispatch = nullptr;
        if (FAILED(sink->QueryInterface(IID_IDispatch, &dispatch)) || dispatch == nullptr)
            return E_NOINTERFACE;
        *cookie = ++m_state->lastCookie;
        m_state->sinks.emplace_back(*cookie, static_cast<IDispatch*>(dispatch));
        return S_OK;
    }
    HRESULT Unadvise(DWORD cookie) override {
        auto& sinks = m_state->sinks;
        const auto found = std::find_if(sinks.begin(), sinks.end(),
                                        [&](const auto& entry) { return entry.first == cookie; });
        if (found == sinks.end())
            return CONNECT_E_NOCONNECTION;
        IDispatch* sink = found->second;
        sinks.erase(found);
        sink->Release();
        return S_OK;
    }

private:
    ~ClosePoint() = default;
    std::shared_ptr<DocumentState> m_state;
    std::atomic<ULONG> m_references{1};
};

class DocumentObject final : public AutomationObject,
                             public IConnectionPointContainer,
                             public IMFCPointer {
public:
    DocumentObject(HostAutomation& automation, std::shared_ptr<DocumentState> state)
        : AutomationObject(automation,
                           state->graph ? IID_GraphDocument : IID_SpreadsheetDocument),
          m_state(std::move(state)) {}

    DocumentState& state() const { return *m_state; }

    HRESULT GetPointer(void** pointer) override {
        if (pointer == nullptr)
            return E_POINTER;
        *pointer = static_cast<COutDocument*>(m_state.get());
        return S_OK;
    }

    HRESULT QueryInterface(REFIID iid, void** object) override {
        if (object != nullptr && iid == IID_IConnectionPointContainer) {
            *object = static_cast<IConnectionPointContainer*>(this);
            AddRef();
            return S_OK;
        }
        if (object != nullptr && iid == IID_IMFCPointer) {
            *object = static_cast<IMFCPointer*>(this);
            AddRef();
            return S_OK;
        }
        return AutomationObject::QueryInterface(iid, object);
    }
    ULONG AddRef() override { return AutomationObject::AddRef(); }
    ULONG Release() override { return AutomationObject::Release(); }

    HRESULT FindConnectionPoint(REFIID iid, IConnectionPoint** point) override {
        if (point == nullptr)
            return E_POINTER;
        *point = iid == EventInterface(*m_state) ? new ClosePoint(m_state) : nullptr;
        return *point != nullptr ? S_OK : CONNECT_E_NOCONNECTION;
    }

protected:
    HRESULT invokeMember(DISPID id, const DispatchCall& call, VARIANT* result) override {
        switch (id) {
        case Name:
            *result = COleVariant::Text(m_automation, m_state->name).Detach();
            return S_OK;
        case Saved:
        case Visible: {
            bool& flag = id == Saved ? m_state->saved : m_state->visible;
            if (call.Access == Put) {
                flag = call.Arguments.at(0).lVal != 0;
                TellChanged(*m_state);
                if (id == Visible && flag)
                    TellShown();
            } else
                *result = COleVariant(static_cast<LONG>(flag ? 1 : 0)).Detach();
            return S_OK;
        }
        case Activate:
            if (m_state->list != nullptr)
                m_state->list->active = m_state->number;
            TellShown();
            return S_OK;
        case Window: {
            IDispatch* window = new WindowObject(m_automation, m_state);
            result->vt = VT_DISPATCH;
            result->pdispVal = window; // the object's one reference goes to the caller
            return S_OK;
        }
        }
        return DISP_E_MEMBERNOTFOUND;
    }

private:
    // Tells the store, while it stands, that this object activated the document or made it
    // visible: a document that waited shows now.
    void TellShown() {
        if (m_state->list != nullptr && m_state->list->shown)
            m_state->list->shown(m_state->number, this);
    }

    std::shared_ptr<DocumentState> m_state;
};

} // namespace

DocumentState::~DocumentState() {
    for (const auto& [cookie, sink] : sinks)
        sink->Release();
}

void CloseDocument(DocumentState& state) {
    if (state.closed)
        return;
    state.closed = true;
    state.visible = false;
    // Each sink hears the closing (state 1) and then the close, as long as it stays
    // connected; it may disconnect while it is told, so each is held for its calls.
    const auto sinks = state.sinks;
    const auto connected = [&](DWORD cookie) {
        return std::any_of(state.sinks.begin(), state.sinks.end(),
                           [&](const auto& entry) { return entry.first == cookie; });
    };
    for (const auto& [cookie, sink] : sinks)
        sink->AddRef();
    for (const auto& [cookie, sink] : sinks) {
        VARIANT closing = COleVariant(static_cast<LONG>(1));
        DISPPARAMS one{&closing, nullptr, 1, 0};
        DISPPARAMS none;
        if (connected(cookie))
            sink->Invoke(state.graph ? GraphClosingEvent : SpreadsheetClosingEvent, IID_NULL, 0,
                         DISPATCH_METHOD, &one, nullptr, nullptr, nullptr);
        if (connected(cookie))
            sink->Invoke(state.graph ? GraphClosedEvent : SpreadsheetClosedEvent, IID_NULL, 0,
                         DISPATCH_METHOD, &none, nullptr, nullptr, nullptr);
        sink->Release();
    }
}

HRESULT RegisterDocumentTypeLib(HostAutomation& automation) {
    return automation.RegisterTypeLib(Library);
}

IDispatch* NewDocumentObject(HostAutomation& automation, std::shared_ptr<DocumentState> state) {
    return new DocumentObject(automation, std::move(state));
}

DocumentState* DocumentStateOf(IUnknown* object) {
    const auto* document = dynamic_cast<DocumentObject*>(object);
    return document != nullptr ? &document->state() : nullptr;
}

} // namespace wb
