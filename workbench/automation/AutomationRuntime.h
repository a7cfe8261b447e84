#pragma once
// The workbench's automation runtime: BSTRs from the C heap with a ledger of those
// still out, error objects kept per thread, and the type-library registry.
//
// To use it: make one, put it into the module's services (AnalysisSession does), and let
// the module register its library when it makes an analysis. Tests read outstandingStrings() to see strings
// nobody freed, and failStringAllocation to walk the paths of exhausted memory.
//
// The service outlives every string, error object and registration it gave out; its
// destructor frees what is still out (a leak of the module does not become one of the
// process) and releases the error objects that threads left behind. All calls may come on
// any thread.

#include <cstddef>
#include <map>
#include <mutex>
#include <thread>
#include <unordered_set>
#include <vector>

#include "drilldown/host/HostAutomation.h"
#include "workbench/automation/TypeLibRegistry.h"

namespace wb {

class AutomationRuntime : public HostAutomation {
public:
    AutomationRuntime() = default;
    ~AutomationRuntime() override;
    AutomationRuntime(const AutomationRuntime&) = delete;
    AutomationRuntime& operator=(const AutomationRuntime&) = delete;

    BSTR SysAllocStringLen(const OLECHAR* text, UINT length) override;
    // A string this service did not make is a programmer error: asserted, not freed.
    void SysFreeString(BSTR text) override;

    HRESULT VariantChangeType(VARIANT* dest, const VARIANT* source, USHORT flags,
                              VARTYPE type) override;

    HRESULT CreateErrorInfo(ICreateErrorInfo** info) override;
    HRESULT SetErrorInfo(ULONG reserved, IErrorInfo* info) override;
    HRESULT GetErrorInfo(ULONG reserved, IErrorInfo** info) override;

    HRESULT RegisterTypeLib(const TypeLibDescription& library) override;
    HRESULT UnRegisterTypeLib(REFGUID libId) override;
    HRESULT GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, DISPID* ids) override;
    HRESULT PrepareInvoke(REFIID iid, DISPID id, WORD flags, const DISPPARAMS* params,
                          DispatchCall* call, UINT* argErr) override;

    // The names of the members of every registered interface, for suggestions.
    std::vector<std::string> memberNames() const;
    // The interfaces of all registered libraries.
    std::vector<IID> registeredInterfaces() const;
    // Copies of every registered library, in the order of registration.
    std::vector<RegisteredLibrary> registeredLibraries() const;
    // A copy of a registered library; false when there is none.
    bool registeredLibrary(REFGUID libId, RegisteredLibrary* library) const;

    // Strings made and not yet freed.
    std::size_t outstandingStrings() const;
    // The n-th string allocation from now fails, once (1 = the next one; 0 clears).
    void failStringAllocation(int n);

private:
    mutable std::mutex m_mutex;
    std::unordered_set<void*> m_strings;
    std::size_t m_requests = 0;
    std::size_t m_failAt = 0; // request number that fails; 0 for none
    std::map<std::thread::id, IErrorInfo*> m_errors;
    TypeLibRegistry m_registry;
};

} // namespace wb
