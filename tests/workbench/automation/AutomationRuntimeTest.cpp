// The headless automation runtime: conversions, error objects per thread, the registry.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <thread>
#include <vector>

#include "workbench/automation/AutomationRuntime.h"

namespace {

class AutomationRuntimeTest : public ::testing::Test {
protected:
    ~AutomationRuntimeTest() override { EXPECT_EQ(automation.outstandingStrings(), 0u); }
    COleVariant text(const char* value) { return COleVariant::Text(automation, value); }
    wb::AutomationRuntime automation;
};

TEST_F(AutomationRuntimeTest, ChangeTypeTable) {
    struct Row {
        COleVariant source;
        VARTYPE type;
        HRESULT result;
        COleVariant expected;
        const char* comment;
    } const rows[] = {
        {COleVariant(2.5), VT_I4, S_OK, COleVariant(2), "half to even, down"},
        {COleVariant(3.5), VT_I4, S_OK, COleVariant(4), "half to even, up"},
        {COleVariant(2147483648.0), VT_I4, DISP_E_OVERFLOW, {}, "one past the highest"},
        {COleVariant(std::nan("")), VT_I4, DISP_E_OVERFLOW, {}, "no number"},
        {text(" -4.25 "), VT_R8, S_OK, COleVariant(-4.25), "text with blanks"},
        {text("1,5"), VT_R8, DISP_E_TYPEMISMATCH, {}, "the decimal point is '.'"},
        {text("TRUE"), VT_BOOL, S_OK, COleVariant(true), "true in any case"},
        {COleVariant(true), VT_BSTR, S_OK, text("-1"), "bool as text"},
        {COleVariant(0.1), VT_BSTR, S_OK, text("0.1"), "shortest exact text"},
        {COleVariant(7), VT_DISPATCH, DISP_E_TYPEMISMATCH, {}, "a number is no object"},
        {COleVariant(7), 0x77, DISP_E_BADVARTYPE, {}, "no such type"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.comment);
        COleVariant converted(99);
        EXPECT_EQ(automation.VariantChangeType(&converted, &row.source, 0, row.type), row.result);
        if (FAILED(row.result)) {
            EXPECT_EQ(converted.vt, VT_I4) << "a failed conversion changed its target";
            continue;
        }
        ASSERT_EQ(converted.vt, row.expected.vt);
        if (converted.vt == VT_BSTR)
            EXPECT_EQ(BstrView(converted.bstrVal), BstrView(row.expected.bstrVal));
        else if (converted.vt == VT_R8)
            EXPECT_DOUBLE_EQ(converted.dblVal, row.expected.dblVal);
        else if (converted.vt == VT_BOOL)
            EXPECT_EQ(converted.boolVal, row.expected.boolVal);
        else
            EXPECT_EQ(converted.lVal, row.expected.lVal);
    }
}

// Reads the description of an error object and releases it.
std::string descriptionOf(IErrorInfo* info) {
    BSTR text = nullptr;
    info->GetDescription(&text);
    std::string description(BstrView(text));
    SysFreeString(text);
    info->Release();
    return description;
}

IErrorInfo* newError(wb::AutomationRuntime& automation, const char* description) {
    ICreateErrorInfo* writer = nullptr;
    EXPECT_EQ(automation.CreateErrorInfo(&writer), S_OK);
    writer->SetDescription(description);
    void* reader = nullptr;
    EXPECT_EQ(writer->QueryInterface(IID_IErrorInfo, &reader), S_OK);
    writer->Release();
    return static_cast<IErrorInfo*>(reader);
}

TEST_F(AutomationRuntimeTest, ErrorObjectsBelongToTheirThread) {
    IErrorInfo* first = newError(automation, "first");
    IErrorInfo* second = newError(automation, "second");
    automation.SetErrorInfo(0, first);
    automation.SetErrorInfo(0, second); // releases the thread's reference of the first
    first->Release();

    std::string seenElsewhere = "not run";
    std::thread other([&] {
        IErrorInfo* info = nullptr;
        seenElsewhere = automation.GetErrorInfo(0, &info) == S_FALSE ? "" : descriptionOf(info);
        IErrorInfo* left = newError(automation, "other thread");
        automation.SetErrorInfo(0, left);
        left->Release();
    });
    other.join();
    EXPECT_EQ(seenElsewhere, "");

    IErrorInfo* taken = nullptr;
    ASSERT_EQ(automation.GetErrorInfo(0, &taken), S_OK);
    EXPECT_EQ(descriptionOf(taken), "second");
    EXPECT_EQ(automation.GetErrorInfo(0, &taken), S_FALSE) << "taking did not clear it";
    EXPECT_EQ(taken, nullptr);
    second->Release();
    // The other thread's object is released by the service's destructor; ASan sees a leak
    // otherwise.
}

constexpr IID IID_One = MakeGuid("5A1E1001-0000-4000-8000-000000000001");
constexpr GUID LIBID_A = MakeGuid("5A1E1002-0000-4000-8000-000000000002");
constexpr GUID LIBID_B = MakeGuid("5A1E1003-0000-4000-8000-000000000003");

constexpr MemberDescription Good[] = {
    {"Value", 1, MemberAccess::Get, MemberType::Int},
    {"Value", 1, MemberAccess::Put, MemberType::Int},
};
constexpr MemberDescription TwoNamesOneId[] = {
    {"Value", 1, MemberAccess::Get, MemberType::Int},
    {"Other", 1, MemberAccess::Put, MemberType::Int},
};
constexpr MemberDescription TwoIdsOneName[] = {
    {"Value", 1, MemberAccess::Get, MemberType::Int},
    {"VALUE", 2, MemberAccess::Put, MemberType::Int},
};
constexpr MemberDescription TwoGets[] = {
    {"Value", 1, MemberAccess::Get, MemberType::Int},
    {"Value", 1, MemberAccess::Get, MemberType::Text},
};
constexpr MemberDescription Unnamed[] = {
    {"", 1, MemberAccess::Get, MemberType::Int},
};

TEST_F(AutomationRuntimeTest, RegistrationRefusesContradictions) {
    struct Row {
        std::span<const MemberDescription> members;
        HRESULT expected;
        const char* comment;
    } const rows[] = {
        {Good, S_OK, "a get and a put sharing one identifier"},
        {TwoNamesOneId, E_INVALIDARG, "one identifier, two names"},
        {TwoIdsOneName, E_INVALIDARG, "one name (ignoring case), two identifiers"},
        {TwoGets, E_INVALIDARG, "two gets of one identifier"},
        {Unnamed, E_INVALIDARG, "a member without name"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.comment);
        const InterfaceDescription interfaces[] = {
            {"One", IID_One, "", IID_IDispatch, row.members}};
        const TypeLibDescription library = {"A", LIBID_A, 1, 0, 0, "", "", interfaces};
        EXPECT_EQ(automation.RegisterTypeLib(library), row.expected);
        automation.UnRegisterTypeLib(LIBID_A);
    }
}

TEST_F(AutomationRuntimeTest, RegistrationCopiesAndReplaces) {
    {
        // The description is gone after the call; the registry keeps its own copy.
        std::string name = "Value";
        const MemberDescription members[] = {{name.c_str(), 1, MemberAccess::Get, MemberType::Int}};
        const InterfaceDescription interfaces[] = {{"One", IID_One, "", IID_IDispatch, members}};
        ASSERT_EQ(automation.RegisterTypeLib({"A", LIBID_A, 1, 0, 0, "", "", interfaces}), S_OK);
        name = "Changed";
    }
    std::string value = "value";
    LPOLESTR names[] = {value.data()};
    DISPID id = 0;
    EXPECT_EQ(automation.GetIDsOfNames(IID_One, names, 1, &id), S_OK);
    EXPECT_EQ(id, 1);

    // Another library may not take over an interface; the same library may describe it anew.
    const InterfaceDescription again[] = {{"One", IID_One, "", IID_IDispatch, Good}};
    EXPECT_EQ(automation.RegisterTypeLib({"B", LIBID_B, 1, 0, 0, "", "", again}), E_INVALIDARG);
    EXPECT_EQ(automation.RegisterTypeLib({"A", LIBID_A, 2, 0, 0, "", "", again}), S_OK);
    wb::RegisteredLibrary library;
    ASSERT_TRUE(automation.registeredLibrary(LIBID_A, &library));
    EXPECT_EQ(library.majorVersion, 2);
    EXPECT_EQ(library.interfaces.at(0).members.size(), 2u);
    EXPECT_FALSE(automation.registeredLibrary(LIBID_B, &library));

    automation.UnRegisterTypeLib(LIBID_A);
    EXPECT_EQ(automation.GetIDsOfNames(IID_One, names, 1, &id), DISP_E_UNKNOWNINTERFACE);
}

} // namespace
