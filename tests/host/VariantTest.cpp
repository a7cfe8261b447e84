// Lifetimes of automation values: strings, objects and arrays are owned, copied and
// released exactly once. ASan reports anything that leaks or is freed twice.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "drilldown/host/Automation.h"
#include "workbench/automation/AutomationRuntime.h"

namespace {

// An object that counts its references; it is never deleted by Release, so that a test can
// read the count after the last one.
class CountedObject : public IDispatch {
public:
    HRESULT QueryInterface(REFIID iid, void** object) override {
        if (iid != IID_IUnknown && iid != IID_IDispatch) {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        *object = static_cast<IDispatch*>(this);
        AddRef();
        return S_OK;
    }
    ULONG AddRef() override { return ++references; }
    ULONG Release() override { return --references; }
    HRESULT GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    HRESULT GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
        return DISP_E_MEMBERNOTFOUND;
    }
    ULONG references = 1;
};

class VariantLifetimes : public ::testing::Test {
protected:
    ~VariantLifetimes() override {
        EXPECT_EQ(strings.outstandingStrings(), 0u) << "a string was not freed";
    }
    COleVariant text(const char* value) { return COleVariant::Text(strings, value); }

    wb::AutomationRuntime strings;
};

TEST_F(VariantLifetimes, StringsKeepLengthAndBytes) {
    const char bytes[] = {'a', '\0', 'b'}; // an embedded zero stays inside the string
    BSTR withZero = strings.SysAllocStringLen(bytes, 3);
    EXPECT_EQ(BstrView(withZero), std::string_view(bytes, 3));
    EXPECT_EQ(withZero[3], '\0'); // and a terminator behind it

    BSTR utf8 = strings.SysAllocString("Âge");
    EXPECT_EQ(SysStringLen(utf8), 4u); // bytes, not characters

    EXPECT_EQ(SysStringLen(nullptr), 0u); // null is the empty string
    EXPECT_EQ(strings.outstandingStrings(), 2u);
    SysFreeString(withZero);
    SysFreeString(utf8);
    SysFreeString(nullptr);
}

TEST_F(VariantLifetimes, ArraysCopyDeepAndClearEveryItem) {
    CountedObject object;
    std::vector<COleVariant> inner;
    inner.push_back(text("inner"));
    inner.emplace_back(&object);
    std::vector<COleVariant> outer;
    outer.emplace_back(3);
    outer.push_back(text("outer"));
    outer.push_back(COleVariant::Array(std::move(inner)));
    {
        const COleVariant array = COleVariant::Array(std::move(outer));
        EXPECT_EQ(object.references, 2u);
        COleVariant copy = text("old"); // copying over a string frees it
        copy = array;
        ASSERT_EQ(copy.vt, VT_ARRAY | VT_VARIANT);
        ASSERT_EQ(copy.parray->Items.size(), 3u);
        EXPECT_NE(copy.parray, array.parray);
        const VARIANT& nested = copy.parray->Items[2];
        ASSERT_EQ(nested.vt, VT_ARRAY | VT_VARIANT);
        EXPECT_EQ(BstrView(nested.parray->Items[0].bstrVal), "inner");
        EXPECT_NE(nested.parray->Items[0].bstrVal, array.parray->Items[2].parray->Items[0].bstrVal);
        EXPECT_EQ(object.references, 3u);
        EXPECT_EQ(strings.outstandingStrings(), 4u);
    }
    EXPECT_EQ(object.references, 1u);
}

TEST_F(VariantLifetimes, FailedCopyLeavesNothingBehind) {
    std::vector<COleVariant> items;
    items.push_back(text("one"));
    items.push_back(text("two"));
    items.push_back(text("three"));
    const COleVariant array = COleVariant::Array(std::move(items));
    strings.failStringAllocation(2); // the copy of "two"
    VARIANT copy;
    copy.vt = VT_I4;
    EXPECT_EQ(VariantCopy(&copy, &array), E_OUTOFMEMORY);
    EXPECT_EQ(copy.vt, VT_EMPTY);
    EXPECT_EQ(strings.outstandingStrings(), 3u); // the copy of "one" went back

    strings.failStringAllocation(1);
    EXPECT_THROW(COleVariant{array}, std::bad_alloc);
    EXPECT_EQ(strings.outstandingStrings(), 3u);
}

TEST_F(VariantLifetimes, OwningWrapperMovesAttachesAndDetaches) {
    COleVariant first = text("first");
    COleVariant second = std::move(first);
    EXPECT_EQ(first.vt, VT_EMPTY);
    EXPECT_EQ(BstrView(second.bstrVal), "first");

    second = text("replaced"); // the old string is freed by the assignment
    EXPECT_EQ(strings.outstandingStrings(), 1u);

    VARIANT raw = second.Detach();
    EXPECT_EQ(second.vt, VT_EMPTY);
    COleVariant adopted;
    adopted.Attach(raw);
    EXPECT_EQ(raw.vt, VT_EMPTY);
    EXPECT_EQ(BstrView(adopted.bstrVal), "replaced");
}

} // namespace
