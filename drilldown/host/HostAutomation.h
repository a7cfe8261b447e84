#pragma once
// The automation runtime that a host supplies: BSTR memory, conversion of values, the
// thread's error object, and a registry of type libraries from which automation objects
// resolve member names and check their calls.
//
// The types are those of Automation.h. The module registers its type library at load
// (RegisterTypeLib) and its automation objects then answer GetIDsOfNames and prepare each
// Invoke through this service:
//
//   1. GetIDsOfNames(the object's interface, names...) resolves a member name;
//   2. PrepareInvoke(interface, dispid, flags, params) finds the member that the call
//      means, checks the number of arguments and converts each to its declared type;
//   3. the object runs the member with DispatchCall::Arguments and fills the result.
//
// Rules for providers:
//   - Ownership. A string from SysAllocStringLen records this service in its prefix, so the
//     service outlives every string, error object and registration it gives out.
//     RegisterTypeLib copies the description: the caller's tables may go away afterwards
//     (the module may be unloaded while the registration stays).
//   - Threads. Calls may come on any thread; the error object is kept per thread.
//   - Re-entrancy. No call calls back into the module, except the Release of an error
//     object that SetErrorInfo replaces, which is the host's own object unless the module
//     made one of its own.

#include <span>
#include <string>
#include <vector>

#include "Automation.h"

// ---- Type-library descriptions ----------------------------------------------------------
// Plain data, so that a library can be written as a table. Strings are UTF-8.

enum class MemberAccess { Get, Put, Method };

enum class MemberType { None, Int, Double, Text, Variant, Object };

// One entry of an interface. A property with a get and a put has two entries that share
// the identifier.
struct MemberDescription {
    const char* Name;
    DISPID Id;
    MemberAccess Access;
    // Get: the value given. Put: the value taken. Method: the result (None: no result).
    MemberType Type;
    const char* HelpString = "";
    // The arguments of a method, in the order a caller writes them.
    std::span<const MemberType> Parameters = {};
};

struct InterfaceDescription {
    const char* Name;
    IID Iid;
    const char* HelpString;
    // The interface this one derives from; IID_IDispatch for one directly on IDispatch.
    // Its members belong to this interface as well.
    IID Base;
    std::span<const MemberDescription> Members;
    WORD MajorVersion = 1;
    WORD MinorVersion = 0;
};

struct TypeLibDescription {
    const char* Name;
    GUID LibId;
    WORD MajorVersion;
    WORD MinorVersion;
    LCID Locale;
    const char* HelpString;
    const char* HelpFile;
    std::span<const InterfaceDescription> Interfaces;
};

// A call that PrepareInvoke has checked.
struct DispatchCall {
    std::string Name; // the member's name as registered
    MemberAccess Access = MemberAccess::Method;
    MemberType Type = MemberType::None;
    std::vector<COleVariant> Arguments; // in the caller's order, each of its declared type
};

// ---- The service ---------------------------------------------------------------------------

class HostAutomation : public BstrAllocator {
public:
    ~HostAutomation() override = default;

    // BSTR memory: SysAllocStringLen and SysFreeString of BstrAllocator.

    // Converts *source into *dest (which may be the same VARIANT) as type `type`; `flags`
    // is not used. Conversions:
    //   - among VT_I4, VT_R8 and VT_BOOL: a real rounds half to even, DISP_E_OVERFLOW
    //     outside 32 bits; true is -1; any non-zero number is true;
    //   - from a text: to a number when it holds one number (blanks around it, '.' as
    //     decimal point), to VT_BOOL also from "true" or "false" in any case;
    //   - to a text: numbers in their shortest exact form, bools as "-1" or "0";
    //   - VT_EMPTY gives 0, false or the empty text; VT_DISPATCH and VT_UNKNOWN turn into
    //     each other; VT_VARIANT, or the source's own type, copies as is.
    // Anything else gives DISP_E_TYPEMISMATCH (DISP_E_BADVARTYPE for a type this port does
    // not know) and leaves *dest alone.
    virtual HRESULT VariantChangeType(VARIANT* dest, const VARIANT* source, USHORT flags,
                                      VARTYPE type) = 0;

    // A new, empty error object with one reference; it also answers IErrorInfo.
    virtual HRESULT CreateErrorInfo(ICreateErrorInfo** info) = 0;
    // Makes `info` (null: none) the calling thread's error object, adding a reference and
    // releasing the one it replaces.
    virtual HRESULT SetErrorInfo(ULONG reserved, IErrorInfo* info) = 0;
    // Hands the calling thread's error object to the caller and clears it; S_FALSE and
    // null when there is none.
    virtual HRESULT GetErrorInfo(ULONG reserved, IErrorInfo** info) = 0;

    // Registers a library, replacing an earlier registration of the same LibId.
    // E_INVALIDARG when an interface is described twice or a member has no name.
    virtual HRESULT RegisterTypeLib(const TypeLibDescription& library) = 0;
    // Forgets a library; S_FALSE when it was not registered.
    virtual HRESULT UnRegisterTypeLib(REFGUID libId) = 0;
    // Resolves names[0] as a member of interface `iid` or of its bases, without regard to
    // ASCII case; further names are parameter names, which no registered member has. An
    // unknown name gets DISPID_UNKNOWN and the result DISP_E_UNKNOWNNAME; an unregistered
    // interface gives DISP_E_UNKNOWNINTERFACE.
    virtual HRESULT GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, DISPID* ids) = 0;
    // Checks a call of member `id` of interface `iid` with the flags and arguments of
    // Invoke and fills *call. A put takes one argument, passed plain or named
    // DISPID_PROPERTYPUT; a get none; a method its parameters. Results:
    // DISP_E_UNKNOWNINTERFACE, DISP_E_MEMBERNOTFOUND (no member of that identifier and
    // kind), DISP_E_NONAMEDARGS, DISP_E_BADPARAMCOUNT, and DISP_E_TYPEMISMATCH or
    // DISP_E_OVERFLOW with *argErr (when not null) the argument's index in rgvarg.
    virtual HRESULT PrepareInvoke(REFIID iid, DISPID id, WORD flags, const DISPPARAMS* params,
                                  DispatchCall* call, UINT* argErr) = 0;
};
