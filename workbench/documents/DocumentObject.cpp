#include "workbench/documents/DocumentObject.h"

#include "workbench/automation/AutomationObject.h"

namespace wb {

namespace {

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
    {"Document", IID_WorkbenchDocument, "A result document", IID_IDispatch, DocumentMembers},
    {"DocumentWindow", IID_WorkbenchDocumentWindow, "The window of a result document",
     IID_IDispatch, WindowMembers},
};

constexpr TypeLibDescription Library = {
    "WorkbenchDocuments", LIBID_WorkbenchDocuments, 1, 0, 0x409,
    "Drill-Down workbench documents", "", Interfaces};

class WindowObject final : public AutomationObject {
public:
    WindowObject(HostAutomation& automation, std::shared_ptr<DocumentState> state)
        : AutomationObject(automation, IID_WorkbenchDocumentWindow), m_state(std::move(state)) {}

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
            if ((id == State && (value < 0 || value > 2)) ||
                ((id == Width || id == Height) && value < 0))
                return DISP_E_OVERFLOW;
            *field = value;
            return S_OK;
        }
        *result = COleVariant(static_cast<LONG>(*field)).Detach();
        return S_OK;
    }

private:
    std::shared_ptr<DocumentState> m_state;
};

class DocumentObject final : public AutomationObject {
public:
    DocumentObject(HostAutomation& automation, std::shared_ptr<DocumentState> state)
        : AutomationObject(automation, IID_WorkbenchDocument), m_state(std::move(state)) {}

protected:
    HRESULT invokeMember(DISPID id, const DispatchCall& call, VARIANT* result) override {
        switch (id) {
        case Name:
            *result = COleVariant::Text(m_automation, m_state->name).Detach();
            return S_OK;
        case Saved:
        case Visible: {
            bool& flag = id == Saved ? m_state->saved : m_state->visible;
            if (call.Access == Put)
                flag = call.Arguments.at(0).lVal != 0;
            else
                *result = COleVariant(static_cast<LONG>(flag ? 1 : 0)).Detach();
            return S_OK;
        }
        case Activate:
            if (m_state->list != nullptr)
                m_state->list->active = m_state->number;
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
    std::shared_ptr<DocumentState> m_state;
};

} // namespace

HRESULT RegisterDocumentTypeLib(HostAutomation& automation) {
    return automation.RegisterTypeLib(Library);
}

IDispatch* NewDocumentObject(HostAutomation& automation, std::shared_ptr<DocumentState> state) {
    return new DocumentObject(automation, std::move(state));
}

} // namespace wb
