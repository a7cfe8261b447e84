#include "EventSinks.h"

bool COutputEventSink::Connect() {
    void* found = nullptr;
    if (m_document == nullptr ||
        FAILED(m_document->QueryInterface(IID_IConnectionPointContainer, &found)))
        return false;
    auto* container = static_cast<IConnectionPointContainer*>(found);
    IConnectionPoint* point = nullptr;
    const HRESULT located = container->FindConnectionPoint(m_kind.eventInterface, &point);
    container->Release();
    if (FAILED(located) || point == nullptr)
        return false;
    DWORD cookie = 0;
    const HRESULT advised = point->Advise(this, &cookie);
    point->Release();
    if (FAILED(advised))
        return false;
    m_cookie = cookie;
    return true;
}

void COutputEventSink::Disconnect() {
    m_tracker = nullptr;
    if (m_cookie == NoCookie)
        return;
    const DWORD cookie = m_cookie;
    m_cookie = NoCookie;
    void* found = nullptr;
    if (FAILED(m_document->QueryInterface(IID_IConnectionPointContainer, &found)))
        return;
    auto* container = static_cast<IConnectionPointContainer*>(found);
    IConnectionPoint* point = nullptr;
    if (SUCCEEDED(container->FindConnectionPoint(m_kind.eventInterface, &point)) &&
        point != nullptr) {
        point->Unadvise(cookie);
        point->Release();
    }
    container->Release();
}

HRESULT COutputEventSink::QueryInterface(REFIID iid, void** object) {
    if (object == nullptr)
        return E_POINTER;
    if (iid != IID_IUnknown && iid != IID_IDispatch && iid != m_kind.eventInterface) {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    *object = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
}

ULONG COutputEventSink::Release() {
    const ULONG left = --m_references;
    if (left == 0)
        delete this;
    return left;
}

HRESULT COutputEventSink::GetTypeInfoCount(UINT* count) {
    if (count == nullptr)
        return E_POINTER;
    *count = 0;
    return S_OK;
}

HRESULT COutputEventSink::Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*,
                                 EXCEPINFO*, UINT*) {
    const bool closing = id == m_kind.closing && params != nullptr && params->cArgs == 1 &&
                         params->rgvarg[0].vt == VT_I4 && params->rgvarg[0].lVal == 1;
    if (id == m_kind.closed || closing)
        WindowClosed();
    return S_OK;
}

void COutputEventSink::WindowClosed() {
    if (m_tracker == nullptr)
        return;
    // The tracker's Remove releases this sink: it must stand until the handler is done.
    AddRef();
    CDDNOutputTracker* tracker = m_tracker;
    tracker->WindowClosed(m_key);
    Disconnect();
    Release();
}
