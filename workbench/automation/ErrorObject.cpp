#include "workbench/automation/ErrorObject.h"

#include <new>

namespace wb {

ErrorObject* ErrorObject::create(BstrAllocator& strings) {
    return new (std::nothrow) ErrorObject(strings);
}

HRESULT ErrorObject::QueryInterface(REFIID iid, void** object) {
    if (object == nullptr)
        return E_POINTER;
    if (iid == IID_IUnknown || iid == IID_IErrorInfo)
        *object = static_cast<IErrorInfo*>(this);
    else if (iid == IID_ICreateErrorInfo)
        *object = static_cast<ICreateErrorInfo*>(this);
    else {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

ULONG ErrorObject::AddRef() {
    return ++m_references;
}

ULONG ErrorObject::Release() {
    const ULONG left = --m_references;
    if (left == 0)
        delete this;
    return left;
}

HRESULT ErrorObject::give(const std::string& text, BSTR* out) const {
    if (out == nullptr)
        return E_POINTER;
    *out = m_strings.SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    return *out != nullptr ? S_OK : E_OUTOFMEMORY;
}

HRESULT ErrorObject::GetGUID(GUID* guid) {
    if (guid == nullptr)
        return E_POINTER;
    *guid = m_guid;
    return S_OK;
}
HRESULT ErrorObject::GetSource(BSTR* source) {
    return give(m_source, source);
}
HRESULT ErrorObject::GetDescription(BSTR* description) {
    return give(m_description, description);
}
HRESULT ErrorObject::GetHelpFile(BSTR* helpFile) {
    return give(m_helpFile, helpFile);
}
HRESULT ErrorObject::GetHelpContext(DWORD* helpContext) {
    if (helpContext == nullptr)
        return E_POINTER;
    *helpContext = m_helpContext;
    return S_OK;
}

HRESULT ErrorObject::SetGUID(REFGUID guid) {
    m_guid = guid;
    return S_OK;
}
HRESULT ErrorObject::SetSource(LPCOLESTR source) {
    m_source = source != nullptr ? source : "";
    return S_OK;
}
HRESULT ErrorObject::SetDescription(LPCOLESTR description) {
    m_description = description != nullptr ? description : "";
    return S_OK;
}
HRESULT ErrorObject::SetHelpFile(LPCOLESTR helpFile) {
    m_helpFile = helpFile != nullptr ? helpFile : "";
    return S_OK;
}
HRESULT ErrorObject::SetHelpContext(DWORD helpContext) {
    m_helpContext = helpContext;
    return S_OK;
}

} // namespace wb
