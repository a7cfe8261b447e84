#pragma once
// The plumbing of the workbench's own automation objects: reference counting, the
// interfaces every object answers, and Invoke checked against the registered type library.
// A derived object implements one registered dual interface by serving invokeMember with
// the call as the registry prepared it (arguments already of their declared types).

#include <atomic>

#include "drilldown/host/HostAutomation.h"

namespace wb {

class AutomationObject : public IDispatch {
public:
    AutomationObject(const AutomationObject&) = delete;
    AutomationObject& operator=(const AutomationObject&) = delete;

    // IUnknown, IDispatch and the object's own interface.
    HRESULT QueryInterface(REFIID iid, void** object) override;
    ULONG AddRef() override { return ++m_references; }
    ULONG Release() override;
    HRESULT GetTypeInfoCount(UINT* count) override;
    HRESULT GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
    HRESULT GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                          DISPID* ids) override;
    HRESULT Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* params,
                   VARIANT* result, EXCEPINFO* exception, UINT* argErr) override;

protected:
    // Starts with one reference, the creator's.
    AutomationObject(HostAutomation& automation, REFIID iid)
        : m_automation(automation), m_iid(iid) {}
    virtual ~AutomationObject() = default;

    // Runs member `id`; *result is empty on entry.
    virtual HRESULT invokeMember(DISPID id, const DispatchCall& call, VARIANT* result) = 0;

    HostAutomation& m_automation;

private:
    IID m_iid;
    std::atomic<ULONG> m_references{1};
};

} // namespace wb
