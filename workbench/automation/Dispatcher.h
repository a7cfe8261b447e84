#pragma once
// Late-bound calls on an automation object by member name, for callers that are not
// automation objects themselves (a macro runner, tests): each call resolves the name with
// the object's GetIDsOfNames, runs Invoke, and turns a failure into an AutomationError.
//
// The error's description is, in this order: the EXCEPINFO of DISP_E_EXCEPTION; the
// thread's error object, when the object answers ISupportErrorInfo with S_OK for the
// interface that the error object names or for one of the registered interfaces that the
// object has; nothing else. A stale error object of the thread is dropped before each call.

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "drilldown/host/Automation.h"
#include "workbench/automation/AutomationRuntime.h"

namespace wb {

class AutomationError : public std::runtime_error {
public:
    // what() is the description when there is one, else a text naming member and result.
    AutomationError(std::string member, HRESULT result, std::string description,
                    std::string source);

    const std::string& member() const { return m_member; }
    HRESULT result() const { return m_result; }
    // Empty when the object left no description.
    const std::string& description() const { return m_description; }
    const std::string& source() const { return m_source; }
    // Why the call failed, without the member's name: the description, else the meaning of
    // the result.
    std::string reason() const;

private:
    std::string m_member;
    HRESULT m_result;
    std::string m_description;
    std::string m_source;
};

class Dispatcher {
public:
    // `automation` is the runtime whose registry and error objects the objects use.
    explicit Dispatcher(AutomationRuntime& automation) : m_automation(automation) {}

    // Calls a method with the arguments in the order written; its result, empty for none.
    COleVariant call(IDispatch* object, std::string_view name,
                     const std::vector<COleVariant>& arguments = {});
    // Reads a property.
    COleVariant get(IDispatch* object, std::string_view name);
    // Calls a method without arguments or reads a property, whichever the member is, as a
    // bare name in a macro does.
    COleVariant callOrGet(IDispatch* object, std::string_view name);
    // Writes a property.
    void put(IDispatch* object, std::string_view name, const VARIANT& value);

    // The identifier of a member; throws AutomationError for an unknown name.
    DISPID idOf(IDispatch* object, std::string_view name);

private:
    COleVariant invoke(IDispatch* object, std::string_view name, WORD flags, DISPPARAMS& params);
    [[noreturn]] void fail(IDispatch* object, std::string_view name, HRESULT result,
                           EXCEPINFO& exception);
    bool vouchesFor(IDispatch* object, IErrorInfo* info);

    AutomationRuntime& m_automation;
};

} // namespace wb
