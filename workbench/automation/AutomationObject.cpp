#include "workbench/automation/AutomationObject.h"

namespace wb {

HRESULT AutomationObject::QueryInterface(REFIID iid, void** object) {
    if (object == nullptr)
        return E_POINTER;
    if (iid != IID_IUnknown && iid != IID_IDispatch && iid != m_iid) {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    *object = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
}

ULONG AutomationObject::Release() {
    const ULONG left = --m_references;
    if (left == 0)
        delete this;
    return left;
}

HRESULT AutomationObject::GetTypeInfoCount(UINT* count) {
    if (count == nullptr)
        return E_POINTER;
    *count = 0;
    return S_OK;
}

HRESULT AutomationObject::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
    if (info != nullptr)
        *info = nullptr;
    return E_NOTIMPL;
}

HRESULT AutomationObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                        DISPID* ids) {
    return m_automation.GetIDsOfNames(m_iid, names, count, ids);
}

HRESULT AutomationObject::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params,
                                 VARIANT* result, EXCEPINFO*, UINT* argErr) {
    DispatchCall call;
    const HRESULT prepared = m_automation.PrepareInvoke(m_iid, id, flags, params, &call, argErr);
    if (FAILED(prepared))
        return prepared;
    COleVariant ignored;
    VARIANT* out = result != nullptr ? result : &ignored;
    VariantInit(out);
    return invokeMember(id, call, out);
}

} // namespace wb
