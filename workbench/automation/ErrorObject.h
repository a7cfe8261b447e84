#pragma once
// The workbench's error object: what CreateErrorInfo gives, written through
// ICreateErrorInfo and read through IErrorInfo. Its strings are returned as BSTRs of the
// allocator it was made with, which must outlive it.

#include <atomic>
#include <string>

#include "drilldown/host/Automation.h"

namespace wb {

class ErrorObject final : public IErrorInfo, public ICreateErrorInfo {
public:
    // A new object with one reference.
    static ErrorObject* create(BstrAllocator& strings);

    HRESULT QueryInterface(REFIID iid, void** object) override;
    ULONG AddRef() override;
    ULONG Release() override;

    HRESULT GetGUID(GUID* guid) override;
    HRESULT GetSource(BSTR* source) override;
    HRESULT GetDescription(BSTR* description) override;
    HRESULT GetHelpFile(BSTR* helpFile) override;
    HRESULT GetHelpContext(DWORD* helpContext) override;

    HRESULT SetGUID(REFGUID guid) override;
    HRESULT SetSource(LPCOLESTR source) override;
    HRESULT SetDescription(LPCOLESTR description) override;
    HRESULT SetHelpFile(LPCOLESTR helpFile) override;
    HRESULT SetHelpContext(DWORD helpContext) override;

private:
    explicit ErrorObject(BstrAllocator& strings) : m_strings(strings) {}
    ~ErrorObject() = default;
    HRESULT give(const std::string& text, BSTR* out) const;

    BstrAllocator& m_strings;
    std::atomic<ULONG> m_references{1};
    GUID m_guid = IID_NULL;
    std::string m_source;
    std::string m_description;
    std::string m_helpFile;
    DWORD m_helpContext = 0;
};

} // namespace wb
