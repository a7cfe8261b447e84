// The start-up panel as the automation object DDNStartup.
//
// Almost every member stands for a control of the panel: a get reads the control, a put
// writes it as the user would, a method presses the button, so that a macro reaches the
// same handlers as the user. Five members have code of their own because their controls
// are lists or frames: DrillDownVariable, DrillUpVariable, DrillDownCategory,
// CategorySelections and UserDefinedBoundaries.
//
// Positions of categories count the rows of the category dialog: the categories that hold
// cases, in order, then the missing-data row when missing data are counted. So a macro and
// the dialog pick the same category for the same text, and CategorySelections prints
// positions that DrillDownCategory takes back.

#include <algorithm>
#include <cctype>
#include <climits>
#include <string>
#include <vector>

#include "../core/CDrillDown.h"
#include "../dialogs/StartupPanel.h"
#include "../host/framework/TextHelpers.h"
#include "../resources/ControlIds.h"
#include "../resources/StringIds.h"
#include "../resources/StringTable.h"
#include "../results/ResultText.h"
#include "TypeLibrary.h"

namespace {

constexpr const char* ProgId = "QRXDrillDown.DDNStartup";
constexpr std::size_t MaxErrorText = 255;


enum Member : DISPID {
    MemberName = 0x0,
    MemberApplication = 0x1,
    MemberParent = 0x2,
    MemberOK = 0x3,
    MemberCancel = 0x4,
    MemberResultsVariables = 0x7,
    MemberDrillDownVariable = 0x60030002,
    MemberDrillUpVariable = 0x60030004,
    MemberCategorySelections = 0x60030041,
    MemberDrillDownCategory = 0x60030043,
    MemberUserDefinedBoundaries = 0x60030045,
};

bool IsSpecial(DISPID id) {
    return id == MemberDrillDownVariable || id == MemberDrillUpVariable ||
           id == MemberCategorySelections || id == MemberDrillDownCategory ||
           id == MemberUserDefinedBoundaries;
}

HostAutomation* Runtime() {
    CAnalysisContext* context = ModuleContext();
    return context != nullptr ? context->Host.Automation : nullptr;
}

bool SameText(const std::string& a, const std::string& b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return std::tolower(static_cast<unsigned char>(x)) ==
                      std::tolower(static_cast<unsigned char>(y));
           });
}

void Trim(std::string& text) {
    const auto first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos) {
        text.clear();
        return;
    }
    text = text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

HRESULT GiveText(const std::string& text, BSTR* value) {
    *value = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    return *value != nullptr || text.empty() ? S_OK : E_OUTOFMEMORY;
}

bool HasCurrentDrillDown(const CDrillDown& analysis) {
    int type = 0, count = 0, atMinimum = 0;
    double step = 0, start = 0;
    return analysis.GetDrillMethod(type, count, atMinimum, step, start) >= 0;
}

} // namespace

// ---- IUnknown, IDispatch, ISupportErrorInfo -----------------------------------------------

HRESULT CDDNStartupDlg::QueryInterface(REFIID iid, void** object) {
    if (object == nullptr)
        return E_POINTER;
    if (iid == IID_IUnknown || iid == IID_IDispatch || iid == IID_DDNStartup) {
        *object = static_cast<IDispatch*>(this);
    } else if (iid == IID_ISupportErrorInfo) {
        *object = static_cast<ISupportErrorInfo*>(this);
    } else {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

ULONG CDDNStartupDlg::AddRef() { return ++m_references; }

ULONG CDDNStartupDlg::Release() {
    const ULONG left = --m_references;
    if (left == 0)
        delete this;
    return left;
}

HRESULT CDDNStartupDlg::GetTypeInfoCount(UINT* count) {
    if (count == nullptr)
        return E_POINTER;
    *count = 0;
    return S_OK;
}

HRESULT CDDNStartupDlg::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
    if (info != nullptr)
        *info = nullptr;
    return E_NOTIMPL;
}

HRESULT CDDNStartupDlg::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
    HostAutomation* runtime = Runtime();
    return runtime != nullptr ? runtime->GetIDsOfNames(IID_DDNStartup, names, count, ids)
                              : E_UNEXPECTED;
}

HRESULT CDDNStartupDlg::InterfaceSupportsErrorInfo(REFIID iid) {
    return iid == IID_DDNStartup ? S_OK : S_FALSE;
}

HRESULT CDDNStartupDlg::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params,
                               VARIANT* result, EXCEPINFO*, UINT* argErr) {
    HostAutomation* runtime = Runtime();
    if (runtime == nullptr)
        return E_UNEXPECTED;
    DispatchCall call;
    const HRESULT prepared = runtime->PrepareInvoke(IID_DDNStartup, id, flags, params, &call, argErr);
    if (FAILED(prepared))
        return prepared;
    COleVariant ignored;
    VARIANT* out = result != nullptr ? result : &ignored;
    VariantInit(out);
    // The panel may go with this call (OK, Cancel): it stays alive until the call is done.
    AddRef();
    HRESULT outcome;
    try {
        outcome = InvokeMember(id, call, out);
    } catch (const std::exception& error) {
        outcome = ReportError(error.what());
    }
    Release();
    return outcome;
}

HRESULT CDDNStartupDlg::ReportError(const char* text) {
    const std::string cut = std::string(text).substr(0, MaxErrorText);
    return ReportErrorInfo(IID_DDNStartup, ProgId, cut.c_str(), E_FAIL);
}

// ---- The guard ---------------------------------------------------------------------------

HRESULT CDDNStartupDlg::InvokeMember(DISPID id, const DispatchCall& call, VARIANT* result) {
    if (id == MemberApplication) {
        // The workbench has no application object to give.
        *result = COleVariant(static_cast<IDispatch*>(nullptr)).Detach();
        return S_OK;
    }
    if (IsSpecial(id)) {
        try {
            ThrowIfClosed();
            CEnterAnalysisContext context(m_pDrill);
            AutomationCall mark(*this);
            return InvokeSpecialMember(id, call, result);
        } catch (const CException& error) {
            return ReportError(error.what());
        } catch (...) {
            return ReportError("Unexpected Error");
        }
    }
    SetErrorInfo(0, nullptr);
    try {
        ThrowIfClosed();
        AutomationCall mark(*this);
        switch (id) {
        case MemberName: {
            BSTR name = nullptr;
            const HRESULT got = get_Name(&name);
            *result = COleVariant::AdoptText(name).Detach();
            return got;
        }
        case MemberParent:
            // Nor a document object: the analysis has no parent to show.
            *result = COleVariant(static_cast<IDispatch*>(nullptr)).Detach();
            return S_OK;
        case MemberOK: {
            int success = 0;
            const HRESULT closed = OAOK(&success);
            *result = COleVariant(static_cast<LONG>(success)).Detach();
            return closed;
        }
        case MemberCancel:
            return OACancel();
        case MemberResultsVariables:
            return put_ResultsVariables(call.Arguments.at(0));
        default:
            break;
        }
        const int control = PanelControlOf(id);
        if (control == 0)
            return ReportErrorInfo(IID_DDNStartup, ProgId,
                                   ("The Drill-Down panel does not serve " + call.Name + ".").c_str(),
                                   E_NOTIMPL);
        return InvokeControlMember(control, call, result);
    } catch (const CException& error) {
        return ReportErrorInfo(IID_DDNStartup, ProgId, error.what(), E_FAIL);
    } catch (...) {
        return E_FAIL;
    }
}

HRESULT CDDNStartupDlg::InvokeControlMember(int control, const DispatchCall& call,
                                            VARIANT* result) {
    switch (call.Access) {
    case MemberAccess::Method: {
        const int upsBefore = m_pDrill->GetDrillUpsSize();
        const HRESULT pressed = SetOleProperty(control);
        // The drill-down button drills only on a category that the category dialog offers.
        if (SUCCEEDED(pressed) && control == ButtonDrillDown && m_pDrill->GetDrillUpsSize() == upsBefore)
            return ReportError("No drill-down: DrillDownCategory names no category of the "
                               "current drill-down variable.");
        return pressed;
    }
    case MemberAccess::Put:
        switch (call.Type) {
        case MemberType::Int:
            return SetOleProperty(control, static_cast<int>(call.Arguments.at(0).lVal));
        case MemberType::Double:
            return SetOleProperty(control, call.Arguments.at(0).dblVal);
        default:
            return SetOleProperty(control, static_cast<const VARIANT&>(call.Arguments.at(0)));
        }
    case MemberAccess::Get:
        switch (call.Type) {
        case MemberType::Int: {
            int value = 0;
            const HRESULT got = GetOleProperty(control, &value);
            *result = COleVariant(static_cast<LONG>(value)).Detach();
            return got;
        }
        case MemberType::Double: {
            double value = 0;
            const HRESULT got = GetOleProperty(control, &value);
            *result = COleVariant(value).Detach();
            return got;
        }
        case MemberType::Text: {
            BSTR value = nullptr;
            const HRESULT got = GetOleProperty(control, &value);
            *result = COleVariant::AdoptText(value).Detach();
            return got;
        }
        default: {
            // A result: the command runs and gives back the first document it made.
            IDispatch* document = nullptr;
            const HRESULT made = GetOleProperty(control, &document);
            result->vt = VT_DISPATCH;
            result->pdispVal = document; // the caller takes over the reference
            return made;
        }
        }
    }
    return E_UNEXPECTED;
}

HRESULT CDDNStartupDlg::InvokeSpecialMember(DISPID id, const DispatchCall& call,
                                            VARIANT* result) {
    if (call.Access == MemberAccess::Get) {
        BSTR text = nullptr;
        HRESULT got = E_UNEXPECTED;
        switch (id) {
        case MemberDrillDownVariable:
            got = get_DrillDownVariable(&text);
            break;
        case MemberDrillUpVariable:
            got = get_DrillUpVariable(&text);
            break;
        case MemberCategorySelections:
            got = get_CategorySelections(&text);
            break;
        case MemberDrillDownCategory:
            got = get_DrillDownCategory(&text);
            break;
        case MemberUserDefinedBoundaries:
            got = get_UserDefinedBoundaries(&text);
            break;
        }
        *result = COleVariant::AdoptText(text).Detach();
        return got;
    }
    const VARIANT& value = call.Arguments.at(0);
    switch (id) {
    case MemberDrillDownVariable:
        return put_DrillDownVariable(value);
    case MemberDrillUpVariable:
        return put_DrillUpVariable(value);
    case MemberCategorySelections:
        return put_CategorySelections(value);
    case MemberDrillDownCategory:
        return put_DrillDownCategory(value);
    default:
        return put_UserDefinedBoundaries(value);
    }
}

// ---- The members with code of their own ------------------------------------------------

HRESULT CDDNStartupDlg::get_Name(BSTR* value) { return GiveText(ModuleString(10058), value); }

HRESULT CDDNStartupDlg::GetCurrentVariable(BSTR* value, bool drillDown) {
    const int size = drillDown ? m_pDrill->GetDrillDownsSize() : m_pDrill->GetDrillUpsSize();
    if (size == 0)
        return ReportError(drillDown ? "No variable is left to drill down."
                                     : "No variable has been drilled.");
    std::string name =
        drillDown ? m_pDrill->GetCurrentVariableName() : m_pDrill->GetCurrentDrillUpName();
    m_pDrill->Replace8CharGrow(name, true);
    m_pDrill->StripFormatting(name);
    return GiveText(name, value);
}

HRESULT CDDNStartupDlg::get_DrillDownVariable(BSTR* value) { return GetCurrentVariable(value, true); }

HRESULT CDDNStartupDlg::get_DrillUpVariable(BSTR* value) { return GetCurrentVariable(value, false); }

// A variable named by number, or by a name or the start of one (case aside); the first of
// the set in order wins. A number must name a variable of the set: no operation of the
// panel can work on a current variable that has no record there.
HRESULT CDDNStartupDlg::PutCurrentVariable(const VARIANT& value, bool drillDown) {
    std::string text;
    VariantToTextList(value, text);
    Trim(text);
    if (text.empty())
        return ReportError("No variable is named.");
    m_pDrill->ExpandPossible8CharHash(text);
    m_pDrill->StripFormatting(text);
    CLittleParser parser(1, text.c_str(), nullptr, 0);
    const unsigned char symbol = parser.GetSymbol();
    const DrillSet& records = drillDown ? *m_pDrill->GetDrillDowns() : *m_pDrill->GetDrillUps();
    const Drill* chosen = nullptr;
    if (symbol == CLittleParser::SymNumber) {
        const long number = parser.GetLastNumber();
        const auto found = std::find_if(records.begin(), records.end(),
                                        [&](const Drill& d) { return d.Variable == number; });
        chosen = found != records.end() ? &*found : nullptr;
    } else if (symbol == CLittleParser::SymWord || symbol == CLittleParser::SymString) {
        const std::string& wanted = parser.GetLastTextVal();
        for (const Drill& record : records) {
            std::string name = record.Name;
            m_pDrill->Replace8CharGrow(name, true);
            if (SameText(name.substr(0, wanted.size()), wanted)) {
                chosen = &record;
                break;
            }
        }
    } else if (!drillDown) {
        return S_OK;
    }
    if (chosen == nullptr)
        return ReportError(("\"" + text + "\" names no " +
                            (drillDown ? "drill-down" : "drill-up") + " variable.")
                               .c_str());
    if (drillDown)
        m_pDrill->SetCurrentDown(chosen->Variable);
    else
        m_pDrill->SetCurrentUp(chosen->Variable);
    ShowRowOf(m_hDlg, drillDown ? ListDrillDowns : ListDrillUps, records, chosen->Variable);
    UpdateControls(m_hDlg, 0);
    return S_OK;
}

HRESULT CDDNStartupDlg::put_DrillDownVariable(const VARIANT& value) {
    return PutCurrentVariable(value, true);
}

HRESULT CDDNStartupDlg::put_DrillUpVariable(const VARIANT& value) {
    return PutCurrentVariable(value, false);
}

HRESULT CDDNStartupDlg::put_DrillDownCategory(const VARIANT& value) {
    std::string text;
    VariantToTextList(value, text);
    if (text.empty()) {
        m_pDrill->SetSelected(0);
        return S_OK;
    }
    CLittleParser parser(1, text.c_str(), nullptr, 0);
    const unsigned char symbol = parser.GetSymbol();
    if (symbol == CLittleParser::SymNumber) {
        const long row = parser.GetLastNumber();
        const unsigned char next = parser.GetSymbol();
        // A number beyond the range of a position must not wrap round to a valid row.
        if ((next != CLittleParser::SymEnd && next != ':') || row < INT_MIN || row > INT_MAX)
            return ReportError(("\"" + text + "\" is no category position.").c_str());
        m_pDrill->SetSelected(static_cast<int>(row));
        return S_OK;
    }
    if (symbol != CLittleParser::SymWord && symbol != CLittleParser::SymString)
        return ReportError(("\"" + text + "\" names no category.").c_str());
    if (!HasCurrentDrillDown(*m_pDrill))
        return ReportError("There is no current drill-down variable.");
    const std::string& wanted = parser.GetLastTextVal();
    m_pDrill->CountCategoriesIfOwed();
    const CDrillDown::CategoryRowList rows = m_pDrill->CategoryRows();
    if (SameText(wanted, ModuleString(StrMissingRow))) {
        m_pDrill->SetSelected(static_cast<int>(rows.Names.size()));
        return S_OK;
    }
    const auto found = std::find_if(rows.Names.begin(), rows.Names.end(),
                                    [&](const std::string& name) { return SameText(name, wanted); });
    if (found == rows.Names.end())
        return ReportError(("\"" + wanted + "\" names no category of " +
                            m_pDrill->GetCurrentVariableName() + " that holds cases.")
                               .c_str());
    m_pDrill->SetSelected(static_cast<int>(found - rows.Names.begin()));
    return S_OK;
}

HRESULT CDDNStartupDlg::get_DrillDownCategory(BSTR* value) {
    const int row = m_pDrill->GetSelected();
    if (m_pDrill->GetDrillDownsSize() == 0 || row == -1)
        return ReportError("No category is chosen.");
    if (m_pDrill->GetCurrentMethod() != 0)
        return GiveText(std::to_string(row), value);
    m_pDrill->CountCategoriesIfOwed();
    const CDrillDown::CategoryRowList rows = m_pDrill->CategoryRows();
    const bool named = row >= 0 && row < static_cast<int>(rows.Names.size());
    return GiveText(named ? rows.Names[row] : ModuleString(StrMissingRow), value);
}

HRESULT CDDNStartupDlg::get_CategorySelections(BSTR* value) {
    if (m_pDrill->GetDrillDownsSize() == 0 || m_pDrill->GetSelected() == -1)
        return ReportError("No category is chosen.");
    m_pDrill->CountCategoriesIfOwed();
    const CDrillDown::CategoryRowList rows = m_pDrill->CategoryRows();
    std::string text;
    for (std::size_t row = 0; row < rows.Names.size(); ++row)
        text += std::to_string(row) + " " + rows.Names[row] + " | ";
    if (rows.MissingRow)
        text += std::to_string(rows.Names.size()) + " " + ModuleString(StrMissingRow);
    text.erase(text.find_last_not_of(" |") + 1);
    return GiveText(text.empty() ? std::string(ModuleString(StrMissingRow)) : text, value);
}

// Recorded macros write the selections back; they only describe the state.
HRESULT CDDNStartupDlg::put_CategorySelections(const VARIANT&) { return S_OK; }

HRESULT CDDNStartupDlg::get_UserDefinedBoundaries(BSTR* value) {
    if (m_pDrill->GetDrillDownsSize() == 0 || m_pDrill->GetCurrentMethod() != 5 ||
        m_pDrill->GetCurrentNU() < 1)
        return ReportError("The current variable has no user-defined boundaries.");
    const double* limits = m_pDrill->GetUserInterv();
    std::string text;
    for (int i = 0; i < m_pDrill->GetCurrentNU(); ++i)
        text += " " + TrimmedNumber(limits[i]);
    return GiveText(text, value);
}

HRESULT CDDNStartupDlg::put_UserDefinedBoundaries(const VARIANT& value) {
    std::string text;
    VariantToTextList(value, text);
    if (text.empty())
        return ReportError("No boundaries are given.");
    if (!HasCurrentDrillDown(*m_pDrill))
        return ReportError("There is no current drill-down variable.");
    CLittleParser parser(1, text.c_str(), nullptr, 0);
    std::vector<double> limits;
    unsigned char symbol = parser.GetSymbol();
    for (; symbol == CLittleParser::SymNumber; symbol = parser.GetSymbol())
        limits.push_back(parser.GetLastDouble());
    if (symbol != CLittleParser::SymEnd || limits.empty())
        return ReportError(("\"" + text + "\" is no list of numbers.").c_str());
    if (limits.size() > static_cast<std::size_t>(MaxUserLimits))
        return ReportError(("At most " + std::to_string(MaxUserLimits) +
                            " boundaries can be given.")
                               .c_str());
    m_pDrill->SetUserIntervals(limits.data(), static_cast<int>(limits.size()));
    return S_OK;
}
