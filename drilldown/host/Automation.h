#pragma once
// The part of the component object model that the module's automation object stands on.
//
// The names are the customary ones (IUnknown, IDispatch, VARIANT, BSTR, HRESULT, ...), so
// that an automation object reads as one, but the types are this port's own, made for a
// plug-in and a host that share one process and one compiler:
//
//   - BSTR is a length-prefixed UTF-8 string, terminated by a zero byte that the length does
//     not count. SysAllocString, SysAllocStringLen, SysFreeString and SysStringLen keep their
//     usual meaning; a null BSTR is the empty string. The memory is the host's: the prefix
//     records the allocator that made the string (the host's automation service), so that
//     whichever side frees or copies a string reaches the allocator that made it. Only a
//     string from SysAlloc... is a BSTR; a literal is not.
//   - An array is VT_ARRAY | VT_VARIANT only: a SAFEARRAY here is a vector of VARIANTs on the
//     C++ heap, zero-based, one dimension, owned by the VARIANT that holds it.
//   - There are no type-information objects: GetTypeInfoCount gives 0, GetTypeInfo may give
//     E_NOTIMPL, and names resolve through the host's type-library registry
//     (HostAutomation.h) instead.
//
// Ownership follows the usual rules. A VARIANT owns its string, its array and one reference
// of its object; VariantClear releases them and VariantCopy duplicates them. An out BSTR or
// out VARIANT belongs to the caller, who frees it. Every AddRef has its Release.
//
// What needs no host (the types, GUIDs, the VARIANT helpers) is plain inline code here and
// usable on both sides of the plug-in boundary. The functions in the last section reach the
// host's automation service through the module's context and exist in the module only.

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>
#include <vector>

// ---- Scalar types and result codes -------------------------------------------------------

using HRESULT = std::int32_t;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using DWORD = std::uint32_t;
using UINT = unsigned int;
using WORD = std::uint16_t;
using USHORT = std::uint16_t;
using LCID = std::uint32_t;
using DISPID = std::int32_t;
using VARTYPE = std::uint16_t;
using VARIANT_BOOL = std::int16_t;
using OLECHAR = char;
using LPOLESTR = OLECHAR*;
using LPCOLESTR = const OLECHAR*;
using BSTR = OLECHAR*;

inline constexpr VARIANT_BOOL VARIANT_TRUE = -1;
inline constexpr VARIANT_BOOL VARIANT_FALSE = 0;

constexpr bool SUCCEEDED(HRESULT hr) {
    return hr >= 0;
}
constexpr bool FAILED(HRESULT hr) {
    return hr < 0;
}

constexpr HRESULT MakeHResult(std::uint32_t bits) {
    return static_cast<HRESULT>(bits);
}

inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;
inline constexpr HRESULT E_NOTIMPL = MakeHResult(0x80004001u);
inline constexpr HRESULT E_NOINTERFACE = MakeHResult(0x80004002u);
inline constexpr HRESULT E_POINTER = MakeHResult(0x80004003u);
inline constexpr HRESULT E_FAIL = MakeHResult(0x80004005u);
inline constexpr HRESULT E_UNEXPECTED = MakeHResult(0x8000FFFFu);
inline constexpr HRESULT E_OUTOFMEMORY = MakeHResult(0x8007000Eu);
inline constexpr HRESULT E_INVALIDARG = MakeHResult(0x80070057u);
inline constexpr HRESULT DISP_E_UNKNOWNINTERFACE = MakeHResult(0x80020001u);
inline constexpr HRESULT DISP_E_MEMBERNOTFOUND = MakeHResult(0x80020003u);
inline constexpr HRESULT DISP_E_PARAMNOTFOUND = MakeHResult(0x80020004u);
inline constexpr HRESULT DISP_E_TYPEMISMATCH = MakeHResult(0x80020005u);
inline constexpr HRESULT DISP_E_UNKNOWNNAME = MakeHResult(0x80020006u);
inline constexpr HRESULT DISP_E_NONAMEDARGS = MakeHResult(0x80020007u);
inline constexpr HRESULT DISP_E_BADVARTYPE = MakeHResult(0x80020008u);
inline constexpr HRESULT DISP_E_EXCEPTION = MakeHResult(0x80020009u);
inline constexpr HRESULT DISP_E_OVERFLOW = MakeHResult(0x8002000Au);
inline constexpr HRESULT DISP_E_BADINDEX = MakeHResult(0x8002000Bu);
inline constexpr HRESULT DISP_E_BADPARAMCOUNT = MakeHResult(0x8002000Eu);
inline constexpr HRESULT CONNECT_E_NOCONNECTION = MakeHResult(0x80040200u);

// ---- GUIDs -------------------------------------------------------------------------------

struct GUID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
    friend constexpr bool operator==(const GUID&, const GUID&) = default;
};
using IID = GUID;
using CLSID = GUID;
using REFGUID = const GUID&;
using REFIID = const IID&;

constexpr bool IsEqualGUID(REFGUID a, REFGUID b) {
    return a == b;
}

namespace automation_detail {
constexpr std::uint32_t HexValue(char c) {
    if (c >= '0' && c <= '9')
        return static_cast<std::uint32_t>(c - '0');
    if (c >= 'A' && c <= 'F')
        return static_cast<std::uint32_t>(c - 'A' + 10);
    if (c >= 'a' && c <= 'f')
        return static_cast<std::uint32_t>(c - 'a' + 10);
    throw "a GUID holds hexadecimal digits only";
}
constexpr std::uint32_t HexRun(const char* text, int count) {
    std::uint32_t value = 0;
    for (int i = 0; i < count; ++i)
        value = value * 16 + HexValue(text[i]);
    return value;
}
} // namespace automation_detail

// A GUID from its registry form "XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX"; a malformed text
// stops the compilation of a constexpr GUID.
constexpr GUID MakeGuid(const char (&text)[37]) {
    using automation_detail::HexRun;
    if (text[8] != '-' || text[13] != '-' || text[18] != '-' || text[23] != '-')
        throw "a GUID is written 8-4-4-4-12";
    GUID guid{HexRun(text, 8),
              static_cast<std::uint16_t>(HexRun(text + 9, 4)),
              static_cast<std::uint16_t>(HexRun(text + 14, 4)),
              {}};
    guid.Data4[0] = static_cast<std::uint8_t>(HexRun(text + 19, 2));
    guid.Data4[1] = static_cast<std::uint8_t>(HexRun(text + 21, 2));
    for (int i = 0; i < 6; ++i)
        guid.Data4[2 + i] = static_cast<std::uint8_t>(HexRun(text + 24 + 2 * i, 2));
    return guid;
}

inline constexpr IID IID_NULL = MakeGuid("00000000-0000-0000-0000-000000000000");
inline constexpr IID IID_IUnknown = MakeGuid("00000000-0000-0000-C000-000000000046");
inline constexpr IID IID_IDispatch = MakeGuid("00020400-0000-0000-C000-000000000046");
inline constexpr IID IID_ISupportErrorInfo = MakeGuid("DF0B3D60-548F-101B-8E65-08002B2BD119");
inline constexpr IID IID_IErrorInfo = MakeGuid("1CF2B120-547D-101B-8E65-08002B2BD119");
inline constexpr IID IID_ICreateErrorInfo = MakeGuid("22F03340-547D-101B-8E65-08002B2BD119");
inline constexpr IID IID_IConnectionPointContainer =
    MakeGuid("B196B284-BAB4-101A-B69C-00AA00341D07");
inline constexpr IID IID_IConnectionPoint = MakeGuid("B196B286-BAB4-101A-B69C-00AA00341D07");

// ---- Interfaces --------------------------------------------------------------------------
// An object is destroyed by its last Release, never through an interface pointer: the
// destructors are protected.

class IUnknown {
public:
    // Stores an interface of the object, with one reference, in *object; E_NOINTERFACE (and
    // null) when the object has none with that identifier.
    virtual HRESULT QueryInterface(REFIID iid, void** object) = 0;
    // Adds a reference; gives the new count, for diagnostics only.
    virtual ULONG AddRef() = 0;
    // Drops a reference, destroying the object with the last one; gives the new count.
    virtual ULONG Release() = 0;

protected:
    ~IUnknown() = default;
};

class ITypeInfo; // no type-information objects in this port

struct VARIANT;
using VARIANTARG = VARIANT;

// The arguments of Invoke, last argument first. A property put passes its value as one
// named argument with the identifier DISPID_PROPERTYPUT.
struct DISPPARAMS {
    VARIANTARG* rgvarg = nullptr;
    DISPID* rgdispidNamedArgs = nullptr;
    UINT cArgs = 0;
    UINT cNamedArgs = 0;
};

// The description of an exception that Invoke reports with DISP_E_EXCEPTION; its strings
// belong to the caller.
struct EXCEPINFO {
    WORD wCode = 0;
    WORD wReserved = 0;
    BSTR bstrSource = nullptr;
    BSTR bstrDescription = nullptr;
    BSTR bstrHelpFile = nullptr;
    DWORD dwHelpContext = 0;
    void* pvReserved = nullptr;
    void* pfnDeferredFillIn = nullptr;
    HRESULT scode = S_OK;
};

inline constexpr DISPID DISPID_VALUE = 0;
inline constexpr DISPID DISPID_UNKNOWN = -1;
inline constexpr DISPID DISPID_PROPERTYPUT = -3;

inline constexpr WORD DISPATCH_METHOD = 1;
inline constexpr WORD DISPATCH_PROPERTYGET = 2;
inline constexpr WORD DISPATCH_PROPERTYPUT = 4;
inline constexpr WORD DISPATCH_PROPERTYPUTREF = 8;

class IDispatch : public IUnknown {
public:
    // 0 or 1: the number of type-information objects; 0 in this port.
    virtual HRESULT GetTypeInfoCount(UINT* count) = 0;
    // The object's type information; may give E_NOTIMPL.
    virtual HRESULT GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) = 0;
    // Resolves a member name (names[0]) and its parameter names to identifiers; unknown
    // names get DISPID_UNKNOWN and the result DISP_E_UNKNOWNNAME. `iid` is IID_NULL.
    virtual HRESULT GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                  DISPID* ids) = 0;
    // Calls member `id` as a method, property get or property put (flags). The result goes
    // to *result when it is not null; *argErr names a faulty argument by its index in
    // rgvarg. DISP_E_EXCEPTION means *exception has been filled.
    virtual HRESULT Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* params,
                           VARIANT* result, EXCEPINFO* exception, UINT* argErr) = 0;

protected:
    ~IDispatch() = default;
};

// What an automation error says: its interface, source, description and help.
class IErrorInfo : public IUnknown {
public:
    virtual HRESULT GetGUID(GUID* guid) = 0;
    virtual HRESULT GetSource(BSTR* source) = 0;
    virtual HRESULT GetDescription(BSTR* description) = 0;
    virtual HRESULT GetHelpFile(BSTR* helpFile) = 0;
    virtual HRESULT GetHelpContext(DWORD* helpContext) = 0;

protected:
    ~IErrorInfo() = default;
};

// The writing side of an error object; the object also answers IErrorInfo.
class ICreateErrorInfo : public IUnknown {
public:
    virtual HRESULT SetGUID(REFGUID guid) = 0;
    virtual HRESULT SetSource(LPCOLESTR source) = 0;
    virtual HRESULT SetDescription(LPCOLESTR description) = 0;
    virtual HRESULT SetHelpFile(LPCOLESTR helpFile) = 0;
    virtual HRESULT SetHelpContext(DWORD helpContext) = 0;

protected:
    ~ICreateErrorInfo() = default;
};

// Answered by an object whose failing members leave an error object for the thread.
class ISupportErrorInfo : public IUnknown {
public:
    // S_OK when failures of interface `iid` leave an error object, S_FALSE otherwise.
    virtual HRESULT InterfaceSupportsErrorInfo(REFIID iid) = 0;

protected:
    ~ISupportErrorInfo() = default;
};

class IConnectionPoint;

// Answered by an object that raises events: it gives the connection point of an event
// interface.
class IConnectionPointContainer : public IUnknown {
public:
    // The point of event interface `iid`, with a reference for the caller;
    // CONNECT_E_NOCONNECTION when the object raises no such events.
    virtual HRESULT FindConnectionPoint(REFIID iid, IConnectionPoint** point) = 0;

protected:
    ~IConnectionPointContainer() = default;
};

// Where event sinks are connected: each sink is an IDispatch of the event interface, called
// with the event's identifier.
class IConnectionPoint : public IUnknown {
public:
    virtual HRESULT GetConnectionInterface(IID* iid) = 0;
    // Connects `sink` (it must answer IDispatch) and gives a cookie for Unadvise.
    virtual HRESULT Advise(IUnknown* sink, DWORD* cookie) = 0;
    // CONNECT_E_NOCONNECTION for a cookie that names no connection.
    virtual HRESULT Unadvise(DWORD cookie) = 0;

protected:
    ~IConnectionPoint() = default;
};

// True when `object` promises error objects for failures of interface `iid`.
inline bool SupportsErrorInfo(IUnknown* object, REFIID iid) {
    if (object == nullptr)
        return false;
    void* found = nullptr;
    if (FAILED(object->QueryInterface(IID_ISupportErrorInfo, &found)) || found == nullptr)
        return false;
    auto* support = static_cast<ISupportErrorInfo*>(found);
    const bool supported = support->InterfaceSupportsErrorInfo(iid) == S_OK;
    support->Release();
    return supported;
}

// ---- BSTR --------------------------------------------------------------------------------

// The maker of BSTRs; the host's automation service is one (HostAutomation.h).
class BstrAllocator {
public:
    virtual ~BstrAllocator() = default;
    // A new string of `length` bytes copied from text, or zero bytes when text is null;
    // null when out of memory.
    virtual BSTR SysAllocStringLen(const OLECHAR* text, UINT length) = 0;
    // Releases a string that this allocator made.
    virtual void SysFreeString(BSTR text) = 0;

    // A new string of the zero-terminated text (null text: the empty string).
    BSTR SysAllocString(const OLECHAR* text) {
        return SysAllocStringLen(text, text == nullptr ? 0u : static_cast<UINT>(std::strlen(text)));
    }
};

// What precedes the bytes of a BSTR. 16 bytes, so that the bytes stay 8-aligned.
struct BstrPrefix {
    BstrAllocator* Allocator;
    std::uint32_t Length;
    std::uint32_t Reserved;
};

inline BstrPrefix* BstrPrefixOf(BSTR text) {
    return reinterpret_cast<BstrPrefix*>(text) - 1;
}

inline UINT SysStringLen(BSTR text) {
    return text == nullptr ? 0u : BstrPrefixOf(text)->Length;
}
// Bytes of the string; the same as SysStringLen for UTF-8.
inline UINT SysStringByteLen(BSTR text) {
    return SysStringLen(text);
}

inline void SysFreeString(BSTR text) {
    if (text != nullptr)
        BstrPrefixOf(text)->Allocator->SysFreeString(text);
}

// The string's bytes as a view; a null BSTR gives an empty view.
inline std::string_view BstrView(BSTR text) {
    return text == nullptr ? std::string_view() : std::string_view(text, SysStringLen(text));
}

// For allocators: the bytes a string of `length` needs, and how to lay it out in them.
inline std::size_t BstrBlockBytes(UINT length) {
    return sizeof(BstrPrefix) + length + 1u;
}
inline BSTR BstrFormat(void* block, BstrAllocator* owner, const OLECHAR* text, UINT length) {
    auto* prefix = static_cast<BstrPrefix*>(block);
    prefix->Allocator = owner;
    prefix->Length = length;
    prefix->Reserved = 0;
    BSTR bytes = reinterpret_cast<BSTR>(prefix + 1);
    if (text != nullptr)
        std::memcpy(bytes, text, length);
    else
        std::memset(bytes, 0, length);
    bytes[length] = '\0';
    return bytes;
}
inline void* BstrBlockOf(BSTR text) {
    return BstrPrefixOf(text);
}

// ---- VARIANT -----------------------------------------------------------------------------

enum VARENUM : VARTYPE {
    VT_EMPTY = 0,
    VT_NULL = 1,
    VT_I4 = 3,
    VT_R8 = 5,
    VT_BSTR = 8,
    VT_DISPATCH = 9,
    VT_BOOL = 11,
    VT_VARIANT = 12,
    VT_UNKNOWN = 13,
    VT_ARRAY = 0x2000,
};

struct SAFEARRAY;

// A value of one of the types above, told by vt. VT_ARRAY appears only as
// VT_ARRAY | VT_VARIANT, with parray.
struct VARIANT {
    VARTYPE vt = VT_EMPTY;
    union {
        long long llVal = 0;
        LONG lVal;
        double dblVal;
        VARIANT_BOOL boolVal;
        BSTR bstrVal;
        IUnknown* punkVal;
        IDispatch* pdispVal;
        SAFEARRAY* parray;
    };
};

inline void VariantInit(VARIANT* value) {
    value->vt = VT_EMPTY;
    value->llVal = 0;
}

// Releases what the value owns and leaves it empty; DISP_E_BADVARTYPE for a type this
// port does not know (the value is then left alone).
HRESULT VariantClear(VARIANT* value);
// Clears *dest, then makes it a copy of *source with its own string, array and reference.
// On failure *dest is empty.
HRESULT VariantCopy(VARIANT* dest, const VARIANT* source);

// The one array of this port. Destroying it clears its items; it is not copyable by value
// (SafeArrayCopy makes a deep copy).
struct SAFEARRAY {
    std::vector<VARIANT> Items;

    SAFEARRAY() = default;
    explicit SAFEARRAY(std::size_t count) : Items(count) {}
    ~SAFEARRAY() {
        for (VARIANT& item : Items)
            VariantClear(&item);
    }
    SAFEARRAY(const SAFEARRAY&) = delete;
    SAFEARRAY& operator=(const SAFEARRAY&) = delete;
};

// An array of `count` empty VARIANTs, or null when out of memory. Only VT_VARIANT elements
// and a lower bound of 0 exist here; other requests give null.
inline SAFEARRAY* SafeArrayCreateVector(VARTYPE type, LONG lowerBound, ULONG count) {
    if (type != VT_VARIANT || lowerBound != 0)
        return nullptr;
    return new (std::nothrow) SAFEARRAY(count);
}
inline HRESULT SafeArrayDestroy(SAFEARRAY* array) {
    delete array;
    return S_OK;
}
// A deep copy of `source` into *copy (null on failure).
inline HRESULT SafeArrayCopy(const SAFEARRAY* source, SAFEARRAY** copy) {
    *copy = nullptr;
    if (source == nullptr)
        return E_INVALIDARG;
    auto* made = new (std::nothrow) SAFEARRAY(source->Items.size());
    if (made == nullptr)
        return E_OUTOFMEMORY;
    for (std::size_t i = 0; i < source->Items.size(); ++i) {
        const HRESULT hr = VariantCopy(&made->Items[i], &source->Items[i]);
        if (FAILED(hr)) {
            delete made;
            return hr;
        }
    }
    *copy = made;
    return S_OK;
}

inline HRESULT VariantClear(VARIANT* value) {
    switch (value->vt) {
    case VT_EMPTY:
    case VT_NULL:
    case VT_I4:
    case VT_R8:
    case VT_BOOL:
        break;
    case VT_BSTR:
        SysFreeString(value->bstrVal);
        break;
    case VT_DISPATCH:
    case VT_UNKNOWN:
        if (value->punkVal != nullptr)
            value->punkVal->Release();
        break;
    case VT_ARRAY | VT_VARIANT:
        delete value->parray;
        break;
    default:
        return DISP_E_BADVARTYPE;
    }
    VariantInit(value);
    return S_OK;
}

inline HRESULT VariantCopy(VARIANT* dest, const VARIANT* source) {
    if (dest == source)
        return S_OK;
    const HRESULT cleared = VariantClear(dest);
    if (FAILED(cleared))
        return cleared;
    switch (source->vt) {
    case VT_EMPTY:
    case VT_NULL:
    case VT_I4:
    case VT_R8:
    case VT_BOOL:
        *dest = *source;
        return S_OK;
    case VT_BSTR: {
        BSTR text = source->bstrVal;
        if (text != nullptr) {
            text = BstrPrefixOf(text)->Allocator->SysAllocStringLen(text, SysStringLen(text));
            if (text == nullptr)
                return E_OUTOFMEMORY;
        }
        dest->vt = VT_BSTR;
        dest->bstrVal = text;
        return S_OK;
    }
    case VT_DISPATCH:
    case VT_UNKNOWN:
        if (source->punkVal != nullptr)
            source->punkVal->AddRef();
        *dest = *source;
        return S_OK;
    case VT_ARRAY | VT_VARIANT: {
        SAFEARRAY* copy = nullptr;
        const HRESULT hr = SafeArrayCopy(source->parray, &copy);
        if (FAILED(hr))
            return hr;
        dest->vt = source->vt;
        dest->parray = copy;
        return S_OK;
    }
    default:
        return DISP_E_BADVARTYPE;
    }
}

// A VARIANT that owns its value and clears it on destruction. It is a VARIANT, so that
// &variant and a const reference pass wherever a VARIANT is asked for. Copying may need
// memory and throws std::bad_alloc when there is none.
class COleVariant : public VARIANT {
public:
    COleVariant() = default;
    COleVariant(LONG value) {
        vt = VT_I4;
        lVal = value;
    }
    COleVariant(double value) {
        vt = VT_R8;
        dblVal = value;
    }
    // Only a real bool makes a VT_BOOL, so that a pointer never turns into one.
    template <typename B>
    requires std::same_as<B, bool>
    explicit COleVariant(B value) {
        vt = VT_BOOL;
        boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
    }
    // Holds one reference of the object.
    explicit COleVariant(IDispatch* object) {
        vt = VT_DISPATCH;
        pdispVal = object;
        if (object != nullptr)
            object->AddRef();
    }
    // A copy of a plain VARIANT.
    explicit COleVariant(const VARIANT& value) { copyFrom(value); }

    // A string made by `allocator`.
    static COleVariant Text(BstrAllocator& allocator, std::string_view text) {
        COleVariant made;
        made.bstrVal = allocator.SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
        if (made.bstrVal == nullptr)
            throw std::bad_alloc();
        made.vt = VT_BSTR;
        return made;
    }
    // Takes ownership of a string from SysAlloc...; null is the empty string.
    static COleVariant AdoptText(BSTR text) {
        COleVariant made;
        made.vt = VT_BSTR;
        made.bstrVal = text;
        return made;
    }
    // An array of the items, which are moved into it.
    static COleVariant Array(std::vector<COleVariant> items) {
        auto* array = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(items.size()));
        if (array == nullptr)
            throw std::bad_alloc();
        for (std::size_t i = 0; i < items.size(); ++i)
            array->Items[i] = items[i].Detach();
        COleVariant made;
        made.vt = VT_ARRAY | VT_VARIANT;
        made.parray = array;
        return made;
    }

    COleVariant(const COleVariant& other) : VARIANT() { copyFrom(other); }
    COleVariant(COleVariant&& other) noexcept : VARIANT(other.Detach()) {}
    COleVariant& operator=(const COleVariant& other) {
        if (this != &other) {
            COleVariant copy(other);
            swapWith(copy);
        }
        return *this;
    }
    COleVariant& operator=(COleVariant&& other) noexcept {
        COleVariant taken(std::move(other));
        swapWith(taken);
        return *this;
    }
    ~COleVariant() { VariantClear(this); }

    // Takes over `value`, which is left empty.
    void Attach(VARIANT& value) {
        VariantClear(this);
        static_cast<VARIANT&>(*this) = value;
        VariantInit(&value);
    }
    // Gives up the value to the caller and is left empty.
    VARIANT Detach() {
        const VARIANT value = *this;
        VariantInit(this);
        return value;
    }

private:
    void copyFrom(const VARIANT& value) {
        if (FAILED(VariantCopy(this, &value)))
            throw std::bad_alloc();
    }
    void swapWith(COleVariant& other) noexcept {
        std::swap(static_cast<VARIANT&>(*this), static_cast<VARIANT&>(other));
    }
};

// ---- Module side: served by the host through the module's context -----------------------
// These exist in the module only. Without a host automation service they give null or
// E_UNEXPECTED.

BSTR SysAllocString(const OLECHAR* text);
BSTR SysAllocStringLen(const OLECHAR* text, UINT length);
// Converts *source to type `type` into *dest (which may be source); see HostAutomation.h.
HRESULT VariantChangeType(VARIANT* dest, const VARIANT* source, USHORT flags, VARTYPE type);
HRESULT CreateErrorInfo(ICreateErrorInfo** info);
// Makes `info` the calling thread's error object (null clears it).
HRESULT SetErrorInfo(ULONG reserved, IErrorInfo* info);
// Takes the calling thread's error object, which is cleared; S_FALSE and null when none.
HRESULT GetErrorInfo(ULONG reserved, IErrorInfo** info);
// Leaves an error object (interface, source, description) for the thread and gives
// `result`; the result alone when the error object cannot be made.
HRESULT ReportErrorInfo(REFIID iid, const char* source, const char* description,
                        HRESULT result = E_FAIL);
