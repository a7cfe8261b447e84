#include "workbench/automation/VariantConversion.h"

#include <charconv>
#include <cmath>
#include <string>
#include <string_view>

#include "workbench/text/Blanks.h"

namespace wb {

namespace {


bool parseNumber(std::string_view text, double* value) {
    text = withoutOuterBlanks(text);
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), *value, std::chars_format::general);
    return !text.empty() && error == std::errc() && end == text.data() + text.size();
}

bool equalIgnoringCase(std::string_view text, std::string_view lowerWord) {
    if (text.size() != lowerWord.size())
        return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c =
            text[i] >= 'A' && text[i] <= 'Z' ? static_cast<char>(text[i] - 'A' + 'a') : text[i];
        if (c != lowerWord[i])
            return false;
    }
    return true;
}

// The value as a double: numbers, bools and texts holding a number.
HRESULT toDouble(const VARIANT& source, double* value) {
    switch (source.vt) {
    case VT_EMPTY:
        *value = 0;
        return S_OK;
    case VT_I4:
        *value = source.lVal;
        return S_OK;
    case VT_R8:
        *value = source.dblVal;
        return S_OK;
    case VT_BOOL:
        *value = source.boolVal != VARIANT_FALSE ? -1.0 : 0.0;
        return S_OK;
    case VT_BSTR:
        return parseNumber(BstrView(source.bstrVal), value) ? S_OK : DISP_E_TYPEMISMATCH;
    default:
        return DISP_E_TYPEMISMATCH;
    }
}

HRESULT toText(BstrAllocator& strings, const VARIANT& source, BSTR* text) {
    char buffer[32];
    std::to_chars_result written{buffer, std::errc()};
    switch (source.vt) {
    case VT_EMPTY:
        break;
    case VT_I4:
        written = std::to_chars(buffer, buffer + sizeof buffer, source.lVal);
        break;
    case VT_R8:
        written = std::to_chars(buffer, buffer + sizeof buffer, source.dblVal);
        break;
    case VT_BOOL:
        written =
            std::to_chars(buffer, buffer + sizeof buffer, source.boolVal != VARIANT_FALSE ? -1 : 0);
        break;
    case VT_BSTR: {
        const std::string_view view = BstrView(source.bstrVal);
        *text = strings.SysAllocStringLen(view.data(), static_cast<UINT>(view.size()));
        return *text != nullptr ? S_OK : E_OUTOFMEMORY;
    }
    default:
        return DISP_E_TYPEMISMATCH;
    }
    *text = strings.SysAllocStringLen(buffer, static_cast<UINT>(written.ptr - buffer));
    return *text != nullptr ? S_OK : E_OUTOFMEMORY;
}

// Fills *result, an empty VARIANT, with *source as `type`.
HRESULT convert(BstrAllocator& strings, const VARIANT& source, VARTYPE type, VARIANT* result) {
    if (type == VT_VARIANT || type == source.vt)
        return VariantCopy(result, &source);
    if (source.vt == VT_NULL)
        return DISP_E_TYPEMISMATCH;
    switch (type) {
    case VT_I4: {
        double value = 0;
        const HRESULT hr = toDouble(source, &value);
        if (FAILED(hr))
            return hr;
        const double rounded = std::nearbyint(value); // half to even in the default mode
        if (!(rounded >= -2147483648.0 && rounded <= 2147483647.0))
            return DISP_E_OVERFLOW;
        result->vt = VT_I4;
        result->lVal = static_cast<LONG>(rounded);
        return S_OK;
    }
    case VT_R8: {
        double value = 0;
        const HRESULT hr = toDouble(source, &value);
        if (FAILED(hr))
            return hr;
        result->vt = VT_R8;
        result->dblVal = value;
        return S_OK;
    }
    case VT_BOOL: {
        bool value = false;
        const std::string_view text =
            source.vt == VT_BSTR ? withoutOuterBlanks(BstrView(source.bstrVal)) : std::string_view();
        if (source.vt == VT_BSTR && equalIgnoringCase(text, "true")) {
            value = true;
        } else if (source.vt == VT_BSTR && equalIgnoringCase(text, "false")) {
            value = false;
        } else {
            double number = 0;
            const HRESULT hr = toDouble(source, &number);
            if (FAILED(hr))
                return hr;
            value = number != 0;
        }
        result->vt = VT_BOOL;
        result->boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
        return S_OK;
    }
    case VT_BSTR: {
        BSTR text = nullptr;
        const HRESULT hr = toText(strings, source, &text);
        if (FAILED(hr))
            return hr;
        result->vt = VT_BSTR;
        result->bstrVal = text;
        return S_OK;
    }
    case VT_DISPATCH: {
        if (source.vt != VT_UNKNOWN || source.punkVal == nullptr)
            return DISP_E_TYPEMISMATCH;
        void* object = nullptr;
        if (FAILED(source.punkVal->QueryInterface(IID_IDispatch, &object)))
            return DISP_E_TYPEMISMATCH;
        result->vt = VT_DISPATCH;
        result->pdispVal = static_cast<IDispatch*>(object);
        return S_OK;
    }
    case VT_UNKNOWN:
        if (source.vt != VT_DISPATCH)
            return DISP_E_TYPEMISMATCH;
        if (source.pdispVal != nullptr)
            source.pdispVal->AddRef();
        result->vt = VT_UNKNOWN;
        result->punkVal = source.pdispVal;
        return S_OK;
    case VT_EMPTY:
    case VT_NULL:
    case VT_ARRAY | VT_VARIANT:
        return DISP_E_TYPEMISMATCH;
    default:
        return DISP_E_BADVARTYPE;
    }
}

} // namespace

HRESULT changeVariantType(BstrAllocator& strings, VARIANT* dest, const VARIANT* source,
                          VARTYPE type) {
    if (dest == nullptr || source == nullptr)
        return E_POINTER;
    VARIANT result;
    const HRESULT hr = convert(strings, *source, type, &result);
    if (FAILED(hr))
        return hr;
    // Only now, as dest may be the source.
    VariantClear(dest);
    *dest = result;
    return S_OK;
}

} // namespace wb
