#pragma once
// The sinks of a tracked document's close events. A sink connects to its document's events
// through IConnectionPointContainer and, when the window closes, tells the tracker, which
// forgets the record (and releases the sink). The two kinds differ only in the event
// interface and the event ids of their documents.

#include <atomic>

#include "../host/HostAnalysisDoc.h"
#include "OutputTracker.h"

struct EventSinkKind {
    IID documentInterface;
    IID eventInterface;
    DISPID closed;  // no arguments
    DISPID closing; // one by-reference state; 1 means closing
};

class COutputEventSink : public IDispatch {
public:
    // A sink of `document`'s events, not yet connected, with one reference for the caller.
    COutputEventSink(const EventSinkKind& kind, CDDNOutputTracker* tracker, IDispatch* document,
                     COutputKey key)
        : m_kind(kind), m_tracker(tracker), m_document(document), m_key(key) {}

    // False when the document raises no events of the kind.
    bool Connect();
    // Ends the connection and the link to the tracker; nothing when not connected.
    void Disconnect();

    HRESULT QueryInterface(REFIID iid, void** object) override;
    ULONG AddRef() override { return ++m_references; }
    ULONG Release() override;
    HRESULT GetTypeInfoCount(UINT* count) override;
    HRESULT GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    // The two close events; any other id is ignored with success.
    HRESULT Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* params,
                   VARIANT* result, EXCEPINFO* exception, UINT* argErr) override;

protected:
    virtual ~COutputEventSink() = default;

private:
    static constexpr DWORD NoCookie = 0xfefefefe;
    void WindowClosed();

    const EventSinkKind& m_kind;
    DWORD m_cookie = NoCookie;
    CDDNOutputTracker* m_tracker; // null once detached
    IDispatch* m_document;        // not owned
    COutputKey m_key;
    std::atomic<ULONG> m_references{1};
};

inline constexpr EventSinkKind SpreadsheetSinkKind{IID_SpreadsheetDocument, IID_SpreadsheetEvents,
                                                   SpreadsheetClosedEvent, SpreadsheetClosingEvent};
inline constexpr EventSinkKind GraphSinkKind{IID_GraphDocument, IID_GraphEvents, GraphClosedEvent,
                                             GraphClosingEvent};

class CSpreadsheetEventSink final : public COutputEventSink {
public:
    CSpreadsheetEventSink(CDDNOutputTracker* tracker, IDispatch* document, COutputKey key)
        : COutputEventSink(SpreadsheetSinkKind, tracker, document, key) {}
};

class CGraphEventSink final : public COutputEventSink {
public:
    CGraphEventSink(CDDNOutputTracker* tracker, IDispatch* document, COutputKey key)
        : COutputEventSink(GraphSinkKind, tracker, document, key) {}
};
