#pragma once
// The workbench's registry of type libraries: owned copies of what modules registered, and
// the lookups that automation objects need, by interface and by name or identifier.
//
// An interface's members are its own followed by those of its bases, nearest base first;
// a base is looked up when asked, so a library may be registered before the library of
// its base. Not thread-safe: AutomationRuntime serialises the calls.

#include <string>
#include <string_view>
#include <vector>

#include "drilldown/host/HostAutomation.h"

namespace wb {

struct RegisteredMember {
    std::string name;
    DISPID id = DISPID_UNKNOWN;
    MemberAccess access = MemberAccess::Method;
    MemberType type = MemberType::None;
    std::string helpString;
    std::vector<MemberType> parameters;
};

struct RegisteredInterface {
    std::string name;
    IID iid = IID_NULL;
    std::string helpString;
    IID base = IID_IDispatch;
    std::vector<RegisteredMember> members;
    WORD majorVersion = 1;
    WORD minorVersion = 0;
};

struct RegisteredLibrary {
    std::string name;
    GUID libId = IID_NULL;
    WORD majorVersion = 0;
    WORD minorVersion = 0;
    LCID locale = 0;
    std::string helpString;
    std::string helpFile;
    std::vector<RegisteredInterface> interfaces;
};

class TypeLibRegistry {
public:
    // Copies the library, replacing an earlier one of the same LibId. E_INVALIDARG, and
    // nothing registered, when a name is missing, an interface is described twice (here
    // or in another library), one identifier has two names, one name two identifiers, or
    // one identifier two entries of the same access.
    HRESULT add(const TypeLibDescription& library);
    // S_FALSE when the library was not registered.
    HRESULT remove(REFGUID libId);

    const RegisteredLibrary* library(REFGUID libId) const;
    const std::vector<RegisteredLibrary>& libraries() const { return m_libraries; }
    const RegisteredInterface* findInterface(REFIID iid) const;
    std::vector<IID> interfaceIds() const;

    // The member of that name (ASCII case ignored), or null.
    const RegisteredMember* findByName(REFIID iid, std::string_view name) const;
    // The member of that identifier that the Invoke flags ask for: a method for
    // DISPATCH_METHOD, a get for DISPATCH_PROPERTYGET, a put for DISPATCH_PROPERTYPUT(REF).
    const RegisteredMember* findById(REFIID iid, DISPID id, WORD flags) const;

private:
    const RegisteredLibrary* libraryHolding(REFIID iid) const;
    // The interface and its bases, nearest first; a cycle or a missing base ends the chain.
    std::vector<const RegisteredInterface*> chain(REFIID iid) const;

    std::vector<RegisteredLibrary> m_libraries;
};

} // namespace wb
