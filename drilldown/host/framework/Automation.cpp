// The module's side of the automation runtime: forwarders to the host's automation service.

#include "../Automation.h"

#include "CAnalysisSupport.h"

namespace {

HostAutomation* Runtime() {
    CAnalysisContext* context = ModuleContext();
    return context != nullptr ? context->Host.Automation : nullptr;
}

} // namespace

BSTR SysAllocString(const OLECHAR* text) {
    HostAutomation* runtime = Runtime();
    return runtime != nullptr ? runtime->SysAllocString(text) : nullptr;
}

BSTR SysAllocStringLen(const OLECHAR* text, UINT length) {
    HostAutomation* runtime = Runtime();
    return runtime != nullptr ? runtime->SysAllocStringLen(text, length) : nullptr;
}

HRESULT VariantChangeType(VARIANT* dest, const VARIANT* source, USHORT flags, VARTYPE type) {
    HostAutomation* runtime = Runtime();
    return runtime != nullptr ? runtime->VariantChangeType(dest, source, flags, type)
                              : E_UNEXPECTED;
}

HRESULT CreateErrorInfo(ICreateErrorInfo** info) {
    if (info == nullptr)
        return E_POINTER;
    *info = nullptr;
    HostAutomation* runtime = Runtime();
    return runtime != nullptr ? runtime->CreateErrorInfo(info) : E_UNEXPECTED;
}

HRESULT SetErrorInfo(ULONG reserved, IErrorInfo* info) {
    HostAutomation* runtime = Runtime();
    return runtime != nullptr ? runtime->SetErrorInfo(reserved, info) : E_UNEXPECTED;
}

HRESULT GetErrorInfo(ULONG reserved, IErrorInfo** info) {
    if (info == nullptr)
        return E_POINTER;
    *info = nullptr;
    HostAutomation* runtime = Runtime();
    return runtime != nullptr ? runtime->GetErrorInfo(reserved, info) : E_UNEXPECTED;
}

HRESULT ReportErrorInfo(REFIID iid, const char* source, const char* description, HRESULT result) {
    ICreateErrorInfo* writer = nullptr;
    if (FAILED(CreateErrorInfo(&writer)) || writer == nullptr)
        return result;
    writer->SetGUID(iid);
    writer->SetSource(source);
    writer->SetDescription(description);
    void* reader = nullptr;
    if (SUCCEEDED(writer->QueryInterface(IID_IErrorInfo, &reader)) && reader != nullptr) {
        SetErrorInfo(0, static_cast<IErrorInfo*>(reader));
        static_cast<IErrorInfo*>(reader)->Release();
    }
    writer->Release();
    return result;
}
