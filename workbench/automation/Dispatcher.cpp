#include "workbench/automation/Dispatcher.h"

#include "workbench/text/Spelling.h"

namespace wb {

namespace {

const char* meaningOf(HRESULT result) {
    switch (result) {
    case DISP_E_UNKNOWNNAME:
        return "unknown name";
    case DISP_E_MEMBERNOTFOUND:
        return "the member cannot be used so (a property written that can only be read, or "
               "the reverse)";
    case DISP_E_TYPEMISMATCH:
        return "type mismatch";
    case DISP_E_BADPARAMCOUNT:
        return "wrong number of arguments";
    case DISP_E_OVERFLOW:
        return "value out of range";
    case DISP_E_EXCEPTION:
        return "exception";
    case E_FAIL:
        return "failed";
    default:
        return "error";
    }
}

std::string messageFor(const std::string& member, HRESULT result, const std::string& description) {
    if (!description.empty())
        return description;
    return member + ": " + meaningOf(result);
}

// Takes a string out of an EXCEPINFO field, freeing it.
std::string take(BSTR& text) {
    std::string value(BstrView(text));
    SysFreeString(text);
    text = nullptr;
    return value;
}

// Takes a string from an IErrorInfo getter.
template <typename Getter> std::string read(IErrorInfo* info, Getter getter) {
    BSTR text = nullptr;
    if (FAILED((info->*getter)(&text)))
        return {};
    return take(text);
}

} // namespace

AutomationError::AutomationError(std::string member, HRESULT result, std::string description,
                                 std::string source)
    : std::runtime_error(messageFor(member, result, description)), m_member(std::move(member)),
      m_result(result), m_description(std::move(description)), m_source(std::move(source)) {}

std::string AutomationError::reason() const {
    return m_description.empty() ? meaningOf(m_result) : m_description;
}

DISPID Dispatcher::idOf(IDispatch* object, std::string_view name) {
    if (object == nullptr)
        throw AutomationError(std::string(name), E_POINTER, {}, {});
    std::string text(name);
    LPOLESTR names[] = {text.data()};
    DISPID id = DISPID_UNKNOWN;
    const HRESULT hr = object->GetIDsOfNames(IID_NULL, names, 1, 0, &id);
    if (hr == DISP_E_UNKNOWNNAME) {
        const std::string closest = closestWord(text, m_automation.memberNames());
        throw AutomationError(text, hr,
                              "no member is named \"" + text + "\"" +
                                  (closest.empty() ? "" : "; did you mean \"" + closest + "\"?"),
                              {});
    }
    if (FAILED(hr))
        throw AutomationError(text, hr, {}, {});
    return id;
}

COleVariant Dispatcher::call(IDispatch* object, std::string_view name,
                             const std::vector<COleVariant>& arguments) {
    // Invoke takes the last argument first; the copies borrow, they do not own.
    std::vector<VARIANT> reversed(arguments.rbegin(), arguments.rend());
    DISPPARAMS params;
    params.rgvarg = reversed.empty() ? nullptr : reversed.data();
    params.cArgs = static_cast<UINT>(reversed.size());
    return invoke(object, name, DISPATCH_METHOD, params);
}

COleVariant Dispatcher::get(IDispatch* object, std::string_view name) {
    DISPPARAMS params;
    return invoke(object, name, DISPATCH_PROPERTYGET, params);
}

COleVariant Dispatcher::callOrGet(IDispatch* object, std::string_view name) {
    DISPPARAMS params;
    return invoke(object, name, DISPATCH_METHOD | DISPATCH_PROPERTYGET, params);
}

void Dispatcher::put(IDispatch* object, std::string_view name, const VARIANT& value) {
    VARIANT borrowed = value;
    DISPID named = DISPID_PROPERTYPUT;
    DISPPARAMS params;
    params.rgvarg = &borrowed;
    params.rgdispidNamedArgs = &named;
    params.cArgs = 1;
    params.cNamedArgs = 1;
    invoke(object, name, DISPATCH_PROPERTYPUT, params);
}

COleVariant Dispatcher::invoke(IDispatch* object, std::string_view name, WORD flags,
                               DISPPARAMS& params) {
    const DISPID id = idOf(object, name);
    m_automation.SetErrorInfo(0, nullptr);
    VARIANT result;
    EXCEPINFO exception;
    UINT argErr = 0;
    const HRESULT hr =
        object->Invoke(id, IID_NULL, 0, flags, &params, &result, &exception, &argErr);
    COleVariant owned;
    owned.Attach(result);
    if (FAILED(hr))
        fail(object, name, hr, exception);
    return owned;
}

void Dispatcher::fail(IDispatch* object, std::string_view name, HRESULT result,
                      EXCEPINFO& exception) {
    std::string description = take(exception.bstrDescription);
    std::string source = take(exception.bstrSource);
    take(exception.bstrHelpFile);
    if (result == DISP_E_EXCEPTION && exception.scode != S_OK)
        result = exception.scode;

    IErrorInfo* info = nullptr;
    m_automation.GetErrorInfo(0, &info); // taken in every case, so that it goes stale nowhere
    if (info != nullptr) {
        if (description.empty() && vouchesFor(object, info)) {
            description = read(info, &IErrorInfo::GetDescription);
            source = read(info, &IErrorInfo::GetSource);
        }
        info->Release();
    }
    throw AutomationError(std::string(name), result, std::move(description), std::move(source));
}

bool Dispatcher::vouchesFor(IDispatch* object, IErrorInfo* info) {
    GUID named = IID_NULL;
    if (SUCCEEDED(info->GetGUID(&named)) && SupportsErrorInfo(object, named))
        return true;
    for (const IID& iid : m_automation.registeredInterfaces()) {
        void* found = nullptr;
        if (FAILED(object->QueryInterface(iid, &found)) || found == nullptr)
            continue;
        static_cast<IUnknown*>(found)->Release();
        if (SupportsErrorInfo(object, iid))
            return true;
    }
    return false;
}

} // namespace wb
