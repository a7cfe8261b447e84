#include "workbench/automation/TypeLibRegistry.h"

#include <algorithm>
#include <map>
#include <utility>

namespace wb {

namespace {

bool sameNameIgnoringCase(std::string_view a, std::string_view b) {
    const auto lower = [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    };
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(),
                                              [&](char x, char y) { return lower(x) == lower(y); });
}

std::string lowered(std::string_view text) {
    std::string result(text);
    for (char& c : result)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return result;
}

bool wanted(MemberAccess access, WORD flags) {
    switch (access) {
    case MemberAccess::Method:
        return (flags & DISPATCH_METHOD) != 0;
    case MemberAccess::Get:
        return (flags & DISPATCH_PROPERTYGET) != 0;
    case MemberAccess::Put:
        return (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    }
    return false;
}

// The checks of one interface's members; false when the description contradicts itself.
bool consistent(const InterfaceDescription& description) {
    std::map<DISPID, std::string> nameOfId;
    std::map<std::string, DISPID> idOfName;
    std::map<std::pair<DISPID, MemberAccess>, int> entries;
    for (const MemberDescription& member : description.Members) {
        if (member.Name == nullptr || member.Name[0] == '\0')
            return false;
        const std::string name = lowered(member.Name);
        const auto [byId, newId] = nameOfId.emplace(member.Id, name);
        const auto [byName, newName] = idOfName.emplace(name, member.Id);
        if ((!newId && byId->second != name) || (!newName && byName->second != member.Id))
            return false;
        if (++entries[{member.Id, member.Access}] > 1)
            return false;
    }
    return true;
}

RegisteredInterface copyOf(const InterfaceDescription& description) {
    RegisteredInterface copy;
    copy.name = description.Name;
    copy.iid = description.Iid;
    copy.helpString = description.HelpString != nullptr ? description.HelpString : "";
    copy.base = description.Base;
    copy.majorVersion = description.MajorVersion;
    copy.minorVersion = description.MinorVersion;
    for (const MemberDescription& member : description.Members)
        copy.members.push_back({member.Name,
                                member.Id,
                                member.Access,
                                member.Type,
                                member.HelpString != nullptr ? member.HelpString : "",
                                {member.Parameters.begin(), member.Parameters.end()}});
    return copy;
}

} // namespace

HRESULT TypeLibRegistry::add(const TypeLibDescription& description) {
    if (description.Name == nullptr)
        return E_INVALIDARG;
    RegisteredLibrary copy;
    copy.name = description.Name;
    copy.libId = description.LibId;
    copy.majorVersion = description.MajorVersion;
    copy.minorVersion = description.MinorVersion;
    copy.locale = description.Locale;
    copy.helpString = description.HelpString != nullptr ? description.HelpString : "";
    copy.helpFile = description.HelpFile != nullptr ? description.HelpFile : "";
    for (const InterfaceDescription& interface : description.Interfaces) {
        if (interface.Name == nullptr || !consistent(interface))
            return E_INVALIDARG;
        const bool twiceHere =
            std::any_of(copy.interfaces.begin(), copy.interfaces.end(),
                        [&](const RegisteredInterface& seen) { return seen.iid == interface.Iid; });
        // A library that is being replaced may describe its own interfaces again.
        const RegisteredLibrary* holder = libraryHolding(interface.Iid);
        const bool inOtherLibrary = holder != nullptr && holder->libId != description.LibId;
        if (twiceHere || inOtherLibrary)
            return E_INVALIDARG;
        copy.interfaces.push_back(copyOf(interface));
    }
    remove(description.LibId);
    m_libraries.push_back(std::move(copy));
    return S_OK;
}

HRESULT TypeLibRegistry::remove(REFGUID libId) {
    const auto found = std::find_if(m_libraries.begin(), m_libraries.end(),
                                    [&](const RegisteredLibrary& l) { return l.libId == libId; });
    if (found == m_libraries.end())
        return S_FALSE;
    m_libraries.erase(found);
    return S_OK;
}

const RegisteredLibrary* TypeLibRegistry::library(REFGUID libId) const {
    for (const RegisteredLibrary& library : m_libraries)
        if (library.libId == libId)
            return &library;
    return nullptr;
}

const RegisteredLibrary* TypeLibRegistry::libraryHolding(REFIID iid) const {
    for (const RegisteredLibrary& library : m_libraries)
        for (const RegisteredInterface& interface : library.interfaces)
            if (interface.iid == iid)
                return &library;
    return nullptr;
}

const RegisteredInterface* TypeLibRegistry::findInterface(REFIID iid) const {
    for (const RegisteredLibrary& library : m_libraries)
        for (const RegisteredInterface& interface : library.interfaces)
            if (interface.iid == iid)
                return &interface;
    return nullptr;
}

std::vector<IID> TypeLibRegistry::interfaceIds() const {
    std::vector<IID> ids;
    for (const RegisteredLibrary& library : m_libraries)
        for (const RegisteredInterface& interface : library.interfaces)
            ids.push_back(interface.iid);
    return ids;
}

std::vector<const RegisteredInterface*> TypeLibRegistry::chain(REFIID iid) const {
    std::vector<const RegisteredInterface*> found;
    for (const RegisteredInterface* at = findInterface(iid); at != nullptr;
         at = findInterface(at->base)) {
        if (std::find(found.begin(), found.end(), at) != found.end())
            break;
        found.push_back(at);
    }
    return found;
}

const RegisteredMember* TypeLibRegistry::findByName(REFIID iid, std::string_view name) const {
    for (const RegisteredInterface* interface : chain(iid))
        for (const RegisteredMember& member : interface->members)
            if (sameNameIgnoringCase(member.name, name))
                return &member;
    return nullptr;
}

const RegisteredMember* TypeLibRegistry::findById(REFIID iid, DISPID id, WORD flags) const {
    for (const RegisteredInterface* interface : chain(iid))
        for (const RegisteredMember& member : interface->members)
            if (member.id == id && wanted(member.access, flags))
                return &member;
    return nullptr;
}

} // namespace wb
