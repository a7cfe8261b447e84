#include "LateBound.h"

#include "../host/HostAnalysisDoc.h"

namespace latebound {

namespace {

// The host's own locale, with which names are resolved and members called.
constexpr LCID HostLocale = 1024;

bool Resolve(IDispatch* object, const char* name, DISPID* id) {
    if (object == nullptr)
        return false;
    LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
    return SUCCEEDED(object->GetIDsOfNames(IID_NULL, names, 1, HostLocale, id));
}

} // namespace

bool Get(IDispatch* object, const char* name, VARIANT* value) {
    VariantClear(value);
    DISPID id = DISPID_UNKNOWN;
    if (!Resolve(object, name, &id))
        return false;
    DISPPARAMS none;
    return SUCCEEDED(object->Invoke(id, IID_NULL, HostLocale, DISPATCH_PROPERTYGET, &none, value,
                                    nullptr, nullptr));
}

bool Item(IDispatch* list, int number, VARIANT* value) {
    VariantClear(value);
    DISPID id = DISPID_UNKNOWN;
    if (!Resolve(list, "Item", &id))
        return false;
    VARIANT argument = COleVariant(static_cast<LONG>(number));
    DISPPARAMS params{&argument, nullptr, 1, 0};
    return SUCCEEDED(list->Invoke(id, IID_NULL, HostLocale, DISPATCH_PROPERTYGET | DISPATCH_METHOD,
                                  &params, value, nullptr, nullptr));
}

bool Put(IDispatch* object, const char* name, const VARIANT& value) {
    DISPID id = DISPID_UNKNOWN;
    if (!Resolve(object, name, &id))
        return false;
    VARIANT argument = value; // lent: Invoke does not take the value over
    DISPID named = DISPID_PROPERTYPUT;
    DISPPARAMS params{&argument, &named, 1, 1};
    return SUCCEEDED(object->Invoke(id, IID_NULL, HostLocale, DISPATCH_PROPERTYPUT, &params,
                                    nullptr, nullptr, nullptr));
}

void PutBool(IDispatch* object, const char* name, bool value) {
    Put(object, name, COleVariant(value));
}

void Call(IDispatch* object, const char* name) {
    DISPID id = DISPID_UNKNOWN;
    if (!Resolve(object, name, &id))
        return;
    DISPPARAMS none;
    object->Invoke(id, IID_NULL, HostLocale, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr);
}

IDispatch* Window(IDispatch* document) {
    COleVariant property;
    if (!Get(document, "Window", &property) || property.vt != VT_DISPATCH ||
        property.pdispVal == nullptr)
        return nullptr;
    void* window = nullptr;
    if (FAILED(property.pdispVal->QueryInterface(IID_DocumentWindow, &window)))
        return nullptr;
    return static_cast<IDispatch*>(window);
}

bool GetInt(IDispatch* window, const char* name, int* value) {
    COleVariant property;
    if (!Get(window, name, &property) || property.vt != VT_I4)
        return false;
    *value = property.lVal;
    return true;
}

bool PutInt(IDispatch* window, const char* name, int value) {
    return Put(window, name, COleVariant(static_cast<LONG>(value)));
}

} // namespace latebound
