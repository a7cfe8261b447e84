#include "workbench/automation/AutomationRuntime.h"

#include <cassert>
#include <cstdlib>

#include "workbench/automation/ErrorObject.h"
#include "workbench/automation/VariantConversion.h"

namespace wb {

namespace {

VARTYPE variantTypeOf(MemberType type) {
    switch (type) {
    case MemberType::Int:
        return VT_I4;
    case MemberType::Double:
        return VT_R8;
    case MemberType::Text:
        return VT_BSTR;
    case MemberType::Object:
        return VT_DISPATCH;
    case MemberType::Variant:
    case MemberType::None:
        break;
    }
    return VT_VARIANT;
}

// The number of arguments that a member takes.
std::size_t arity(const RegisteredMember& member) {
    switch (member.access) {
    case MemberAccess::Get:
        return 0;
    case MemberAccess::Put:
        return 1;
    case MemberAccess::Method:
        break;
    }
    return member.parameters.size();
}

} // namespace

AutomationRuntime::~AutomationRuntime() {
    for (const auto& [thread, info] : m_errors)
        info->Release();
    for (void* block : m_strings)
        std::free(block);
}

BSTR AutomationRuntime::SysAllocStringLen(const OLECHAR* text, UINT length) {
    std::lock_guard lock(m_mutex);
    if (++m_requests == m_failAt)
        return nullptr;
    void* block = std::malloc(BstrBlockBytes(length));
    if (block == nullptr)
        return nullptr;
    m_strings.insert(block);
    return BstrFormat(block, this, text, length);
}

void AutomationRuntime::SysFreeString(BSTR text) {
    if (text == nullptr)
        return;
    void* block = BstrBlockOf(text);
    std::lock_guard lock(m_mutex);
    const bool known = m_strings.erase(block) == 1;
    assert(known && "SysFreeString of a string that this service did not make");
    if (known)
        std::free(block);
}

HRESULT AutomationRuntime::VariantChangeType(VARIANT* dest, const VARIANT* source, USHORT,
                                             VARTYPE type) {
    return changeVariantType(*this, dest, source, type);
}

HRESULT AutomationRuntime::CreateErrorInfo(ICreateErrorInfo** info) {
    if (info == nullptr)
        return E_POINTER;
    ErrorObject* made = ErrorObject::create(*this);
    *info = made;
    return made != nullptr ? S_OK : E_OUTOFMEMORY;
}

HRESULT AutomationRuntime::SetErrorInfo(ULONG, IErrorInfo* info) {
    if (info != nullptr)
        info->AddRef();
    IErrorInfo* replaced = nullptr;
    {
        std::lock_guard lock(m_mutex);
        IErrorInfo*& slot = m_errors[std::this_thread::get_id()];
        replaced = slot;
        slot = info;
        if (info == nullptr)
            m_errors.erase(std::this_thread::get_id());
    }
    // Outside the lock: the release may run an object's destructor.
    if (replaced != nullptr)
        replaced->Release();
    return S_OK;
}

HRESULT AutomationRuntime::GetErrorInfo(ULONG, IErrorInfo** info) {
    if (info == nullptr)
        return E_POINTER;
    std::lock_guard lock(m_mutex);
    const auto found = m_errors.find(std::this_thread::get_id());
    if (found == m_errors.end()) {
        *info = nullptr;
        return S_FALSE;
    }
    *info = found->second; // the thread's reference goes to the caller
    m_errors.erase(found);
    return S_OK;
}

HRESULT AutomationRuntime::RegisterTypeLib(const TypeLibDescription& library) {
    std::lock_guard lock(m_mutex);
    return m_registry.add(library);
}

HRESULT AutomationRuntime::UnRegisterTypeLib(REFGUID libId) {
    std::lock_guard lock(m_mutex);
    return m_registry.remove(libId);
}

HRESULT AutomationRuntime::GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, DISPID* ids) {
    if (names == nullptr || ids == nullptr)
        return E_POINTER;
    if (count == 0)
        return E_INVALIDARG;
    std::lock_guard lock(m_mutex);
    if (m_registry.findInterface(iid) == nullptr)
        return DISP_E_UNKNOWNINTERFACE;
    for (UINT i = 0; i < count; ++i)
        ids[i] = DISPID_UNKNOWN;
    const RegisteredMember* member =
        names[0] != nullptr ? m_registry.findByName(iid, names[0]) : nullptr;
    if (member == nullptr)
        return DISP_E_UNKNOWNNAME;
    ids[0] = member->id;
    // No registered member names its parameters.
    return count == 1 ? S_OK : DISP_E_UNKNOWNNAME;
}

HRESULT AutomationRuntime::PrepareInvoke(REFIID iid, DISPID id, WORD flags,
                                         const DISPPARAMS* params, DispatchCall* call,
                                         UINT* argErr) {
    if (call == nullptr)
        return E_POINTER;
    const DISPPARAMS none;
    if (params == nullptr)
        params = &none;
    RegisteredMember member;
    {
        std::lock_guard lock(m_mutex);
        if (m_registry.findInterface(iid) == nullptr)
            return DISP_E_UNKNOWNINTERFACE;
        const RegisteredMember* found = m_registry.findById(iid, id, flags);
        if (found == nullptr)
            return DISP_E_MEMBERNOTFOUND;
        member = *found;
    }
    const bool isPut = member.access == MemberAccess::Put;
    const bool namedPutValue = isPut && params->cNamedArgs == 1 &&
                               params->rgdispidNamedArgs != nullptr &&
                               params->rgdispidNamedArgs[0] == DISPID_PROPERTYPUT;
    if (params->cNamedArgs > 0 && !namedPutValue)
        return DISP_E_NONAMEDARGS;
    if (params->cArgs != arity(member))
        return DISP_E_BADPARAMCOUNT;

    std::vector<COleVariant> arguments(params->cArgs);
    for (UINT position = 0; position < params->cArgs; ++position) {
        const UINT index = params->cArgs - 1 - position; // rgvarg holds the last first
        const MemberType type = isPut ? member.type : member.parameters[position];
        const HRESULT hr = changeVariantType(*this, &arguments[position], &params->rgvarg[index],
                                             variantTypeOf(type));
        if (FAILED(hr)) {
            if (argErr != nullptr)
                *argErr = index;
            return hr;
        }
    }
    call->Name = member.name;
    call->Access = member.access;
    call->Type = member.type;
    call->Arguments = std::move(arguments);
    return S_OK;
}

std::vector<std::string> AutomationRuntime::memberNames() const {
    std::lock_guard lock(m_mutex);
    std::vector<std::string> names;
    for (const IID& iid : m_registry.interfaceIds())
        if (const RegisteredInterface* face = m_registry.findInterface(iid))
            for (const RegisteredMember& member : face->members)
                names.push_back(member.name);
    return names;
}

std::vector<IID> AutomationRuntime::registeredInterfaces() const {
    std::lock_guard lock(m_mutex);
    return m_registry.interfaceIds();
}

std::vector<RegisteredLibrary> AutomationRuntime::registeredLibraries() const {
    std::lock_guard lock(m_mutex);
    return m_registry.libraries();
}

bool AutomationRuntime::registeredLibrary(REFGUID libId, RegisteredLibrary* library) const {
    std::lock_guard lock(m_mutex);
    const RegisteredLibrary* found = m_registry.library(libId);
    if (found == nullptr)
        return false;
    *library = *found;
    return true;
}

std::size_t AutomationRuntime::outstandingStrings() const {
    std::lock_guard lock(m_mutex);
    return m_strings.size();
}

void AutomationRuntime::failStringAllocation(int n) {
    std::lock_guard lock(m_mutex);
    m_failAt = n > 0 ? m_requests + static_cast<std::size_t>(n) : 0;
}

} // namespace wb
