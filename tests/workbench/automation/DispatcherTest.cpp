// A toy automation object, resolved and checked through the registry, driven by name
// through the Dispatcher as a macro would drive the panel.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "drilldown/host/framework/CAnalysisSupport.h"
#include "workbench/automation/Dispatcher.h"
#include "workbench/automation/AutomationRuntime.h"

namespace {

constexpr IID IID_ToyBase = MakeGuid("5A1E0001-0000-4000-8000-000000000001");
constexpr IID IID_Toy = MakeGuid("5A1E0002-0000-4000-8000-000000000002");
constexpr GUID LIBID_Toy = MakeGuid("5A1E0003-0000-4000-8000-000000000003");

constexpr MemberType AddParameters[] = {MemberType::Int};

constexpr MemberDescription ToyBaseMembers[] = {
    {"Name", 0, MemberAccess::Get, MemberType::Text},
};
constexpr MemberDescription ToyMembers[] = {
    {"Count", 1, MemberAccess::Get, MemberType::Int},
    {"Count", 1, MemberAccess::Put, MemberType::Int},
    {"Label", 2, MemberAccess::Get, MemberType::Text},
    {"Label", 2, MemberAccess::Put, MemberType::Text},
    {"Add", 4, MemberAccess::Method, MemberType::Int, "", AddParameters},
    {"Self", 5, MemberAccess::Get, MemberType::Object},
    {"Refuse", 6, MemberAccess::Method, MemberType::None},
    {"Explode", 7, MemberAccess::Method, MemberType::None},
};
constexpr InterfaceDescription ToyInterfaces[] = {
    {"ToyBase", IID_ToyBase, "", IID_IDispatch, ToyBaseMembers},
    {"Toy", IID_Toy, "", IID_ToyBase, ToyMembers},
};
constexpr TypeLibDescription ToyLibrary = {"ToyLib", LIBID_Toy, 1, 0, 0x409, "", "", ToyInterfaces};

// Properties kept by identifier, a method, itself as a property, and two ways to fail.
// Its GetIDsOfNames and the checks of its Invoke come from the registry; Refuse leaves an
// error object through the module's ReportErrorInfo.
class Toy final : public IDispatch, public ISupportErrorInfo {
public:
    Toy(HostAutomation& automation, bool supportsErrors, int& alive)
        : m_automation(automation), m_supportsErrors(supportsErrors), m_alive(alive) {
        ++m_alive;
        m_values[0] = COleVariant::Text(automation, "toy");
        m_values[1] = COleVariant(0);
    }

    HRESULT QueryInterface(REFIID iid, void** object) override {
        if (iid == IID_IUnknown || iid == IID_IDispatch || iid == IID_Toy || iid == IID_ToyBase)
            *object = static_cast<IDispatch*>(this);
        else if (iid == IID_ISupportErrorInfo && m_supportsErrors)
            *object = static_cast<ISupportErrorInfo*>(this);
        else {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    ULONG AddRef() override { return ++m_references; }
    ULONG Release() override {
        const ULONG left = --m_references;
        if (left == 0)
            delete this;
        return left;
    }
    HRESULT InterfaceSupportsErrorInfo(REFIID iid) override {
        return iid == IID_Toy ? S_OK : S_FALSE;
    }
    HRESULT GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    HRESULT GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        return m_automation.GetIDsOfNames(IID_Toy, names, count, ids);
    }
    HRESULT Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                   EXCEPINFO* exception, UINT* argErr) override {
        DispatchCall call;
        const HRESULT checked =
            m_automation.PrepareInvoke(IID_Toy, id, flags, params, &call, argErr);
        if (FAILED(checked))
            return checked;
        if (call.Access == MemberAccess::Put) {
            m_values[id] = std::move(call.Arguments[0]); // already of the declared type
            return S_OK;
        }
        switch (id) {
        case 4:
            *result = COleVariant(m_values[1].lVal + call.Arguments[0].lVal).Detach();
            return S_OK;
        case 5:
            *result = COleVariant(static_cast<IDispatch*>(this)).Detach();
            return S_OK;
        case 6:
            return ReportErrorInfo(IID_Toy, "Toy", "the toy refuses");
        case 7:
            exception->bstrDescription = m_automation.SysAllocString("the toy exploded");
            exception->bstrSource = m_automation.SysAllocString("Toy");
            exception->scode = E_UNEXPECTED;
            return DISP_E_EXCEPTION;
        }
        return VariantCopy(result, &m_values[id]);
    }

private:
    ~Toy() { --m_alive; }

    HostAutomation& m_automation;
    bool m_supportsErrors;
    int& m_alive;
    ULONG m_references = 1;
    std::map<DISPID, COleVariant> m_values;
};

class DispatcherTest : public ::testing::Test {
protected:
    DispatcherTest() {
        ModuleContext()->Host.Automation = &automation; // for ReportErrorInfo
        EXPECT_EQ(automation.RegisterTypeLib(ToyLibrary), S_OK);
        toy = new Toy(automation, true, alive);
    }
    ~DispatcherTest() override {
        toy->Release();
        EXPECT_EQ(alive, 0) << "references of the toy do not balance";
        IErrorInfo* left = nullptr;
        EXPECT_EQ(automation.GetErrorInfo(0, &left), S_FALSE) << "an error object stayed behind";
        EXPECT_EQ(automation.outstandingStrings(), 0u);
        ModuleContext()->Host.Automation = nullptr;
    }
    COleVariant text(const char* value) { return COleVariant::Text(automation, value); }

    // The HRESULT of a call that must fail.
    template <typename Call> HRESULT failure(Call call) {
        try {
            call();
        } catch (const wb::AutomationError& error) {
            return error.result();
        }
        ADD_FAILURE() << "no AutomationError";
        return S_OK;
    }

    wb::AutomationRuntime automation;
    wb::Dispatcher dispatcher{automation};
    int alive = 0;
    Toy* toy = nullptr;
};

TEST_F(DispatcherTest, PutThenGetConvertsToTheDeclaredType) {
    struct Row {
        const char* name;
        COleVariant written;
        COleVariant read;
        const char* comment;
    } const rows[] = {
        {"Count", COleVariant(7), COleVariant(7), "as declared"},
        {"Count", text(" 12 "), COleVariant(12), "a text holding a number"},
        {"count", COleVariant(true), COleVariant(-1), "names ignore case; true is -1"},
        {"Label", COleVariant(42), text("42"), "a number written as text"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.comment);
        dispatcher.put(toy, row.name, row.written);
        const COleVariant read = dispatcher.get(toy, row.name);
        ASSERT_EQ(read.vt, row.read.vt);
        if (read.vt == VT_BSTR)
            EXPECT_EQ(BstrView(read.bstrVal), BstrView(row.read.bstrVal));
        else if (read.vt == VT_R8)
            EXPECT_DOUBLE_EQ(read.dblVal, row.read.dblVal);
        else
            EXPECT_EQ(read.lVal, row.read.lVal);
    }
}

TEST_F(DispatcherTest, MethodsAndBaseMembers) {
    dispatcher.put(toy, "Count", COleVariant(10));
    const COleVariant sum = dispatcher.call(toy, "ADD", {text("5")});
    ASSERT_EQ(sum.vt, VT_I4);
    EXPECT_EQ(sum.lVal, 15);

    const COleVariant name = dispatcher.get(toy, "Name"); // declared on the base
    EXPECT_EQ(BstrView(name.bstrVal), "toy");

    const COleVariant self = dispatcher.get(toy, "Self");
    ASSERT_EQ(self.vt, VT_DISPATCH);
    EXPECT_EQ(self.pdispVal, static_cast<IDispatch*>(toy)); // its reference goes with `self`
}

TEST_F(DispatcherTest, WrongCallsFailWithTheirCode) {
    dispatcher.put(toy, "Count", COleVariant(3));
    struct Row {
        const char* operation; // put, get or call
        const char* name;
        std::vector<COleVariant> arguments;
        HRESULT expected;
        const char* comment;
    } const rows[] = {
        {"put", "Count", {text("three")}, DISP_E_TYPEMISMATCH, "text that is no number"},
        {"put", "Count", {COleVariant(1e10)}, DISP_E_OVERFLOW, "beyond 32 bits"},
        {"put", "Count", {COleVariant(static_cast<IDispatch*>(toy))}, DISP_E_TYPEMISMATCH,
         "an object for a number"},
        {"get", "Counter", {}, DISP_E_UNKNOWNNAME, "unknown name"},
        {"put", "Name", {text("x")}, DISP_E_MEMBERNOTFOUND, "a get-only member of the base"},
        {"call", "Count", {}, DISP_E_MEMBERNOTFOUND, "a property called as method"},
        {"call", "Add", {}, DISP_E_BADPARAMCOUNT, "an argument short"},
        {"call", "Add", {text("x")}, DISP_E_TYPEMISMATCH, "wrong argument type"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.comment);
        const std::string operation = row.operation;
        EXPECT_EQ(failure([&] {
                      if (operation == "put")
                          dispatcher.put(toy, row.name, row.arguments.front());
                      else if (operation == "get")
                          dispatcher.get(toy, row.name);
                      else
                          dispatcher.call(toy, row.name, row.arguments);
                  }),
                  row.expected);
    }
    EXPECT_EQ(dispatcher.get(toy, "Count").lVal, 3) << "a refused put changed the value";
}

// What an object leaves of a failure reaches the exception: the error object's description
// (only from an object that says it supports them), or the EXCEPINFO with its scode.
TEST_F(DispatcherTest, FailuresCarryWhatTheObjectLeft) {
    const struct {
        bool supportsErrors;
        const char* member;
        HRESULT result;
        const char* description;
        const char* what;
        const char* source;
    } rows[] = {
        {true, "Refuse", E_FAIL, "the toy refuses", "the toy refuses", "Toy"},
        {true, "Explode", E_UNEXPECTED, "the toy exploded", "the toy exploded", "Toy"},
        {false, "Refuse", E_FAIL, "", "Refuse: failed", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.member) + (row.supportsErrors ? "" : " without support"));
        Toy* object = row.supportsErrors ? toy : new Toy(automation, false, alive);
        try {
            dispatcher.call(object, row.member);
            ADD_FAILURE() << "no exception";
        } catch (const wb::AutomationError& error) {
            EXPECT_EQ(error.result(), row.result);
            EXPECT_EQ(error.description(), row.description);
            EXPECT_STREQ(error.what(), row.what);
            EXPECT_EQ(error.source(), row.source);
            EXPECT_EQ(error.member(), row.member);
        }
        if (object != toy)
            object->Release();
    }
}

} // namespace
