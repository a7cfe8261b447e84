// The "Catégorisation" page of the start-up panel: how the current drill-down variable is cut
// into categories. The page is loaded from the variable's record at every update, and its
// choice goes into the record only when applied, before a drill step or a result.

#include <cstdint>

#include "../core/CDrillDown.h"
#include "StartupPanel.h"

namespace {

// The counts of interval methods, the step, and the defaults the page falls back to.
constexpr int MinimumCount = 2;
constexpr int MaximumCount = 999;
constexpr unsigned DefaultCount = 10;
constexpr double MaximumStep = 1.7e308;
constexpr double DefaultStep = 1.0;
constexpr double DefaultStart = 0.0;
// SetDlgItemDouble's flag for defaults and for values of a record.
constexpr int DefaultDigits = 2;
constexpr int StoredDigits = 3;

} // namespace

void CDDNStartupDlg::ResetIntervalControls(HWND dialog, int enable) {
    HostDialogs& controls = Controls();
    for (int id : {EditExactCount, EditNeatCount}) {
        Enable(dialog, id, enable != 0);
        controls.SetIntEditRange(controls.GetDlgItem(dialog, id), MinimumCount, MaximumCount);
        controls.SetDlgItemInt(dialog, id, DefaultCount, enable);
    }
    Enable(dialog, EditStep, enable != 0);
    controls.SetRealEditRange(controls.GetDlgItem(dialog, EditStep), 0.0, MaximumStep, 1);
    controls.SetDlgItemDouble(dialog, EditStep, DefaultStep, 0, DefaultDigits);
    Enable(dialog, EditStart, enable != 0);
    controls.SetDlgItemDouble(dialog, EditStart, DefaultStart, 0, DefaultDigits);
    for (int id : {LabelStart, LabelOr, CheckAtMinimum})
        Enable(dialog, id, enable != 0);
    Check(dialog, CheckAtMinimum, enable != 0);
    Enable(dialog, ButtonLimits, enable != 0);
}

void CDDNStartupDlg::EnableMethodGroup(HWND dialog, int enable) {
    Enable(dialog, GroupMethods, enable != 0);
    for (int id = RadioDistinctValues; id <= RadioUserLimits; ++id)
        Enable(dialog, id, enable != 0);
}

void CDDNStartupDlg::CheckMethodRadios(HWND dialog, int check) {
    for (int id = RadioDistinctValues; id <= RadioUserLimits; ++id)
        Check(dialog, id, check != 0);
}

// The radios choose a method for the page and the at-minimum box says where steps start; the
// record is not touched until the page is applied.
long CDDNStartupDlg::MethodCommand(HWND dialog, int id) {
    if (id == CheckAtMinimum) {
        m_AtMinimum = m_AtMinimum == 0 ? 1 : 0;
        Enable(dialog, EditStart, m_AtMinimum == 0);
        Enable(dialog, LabelStart, m_AtMinimum == 0);
        return 0;
    }
    // Each method starts from the defaults.
    ResetIntervalControls(dialog, 0);
    switch (id) {
    case RadioExactIntervals:
        Enable(dialog, EditExactCount, true);
        break;
    case RadioNeatIntervals:
        Enable(dialog, EditNeatCount, true);
        break;
    case RadioFixedStep:
        Enable(dialog, EditStep, true);
        Enable(dialog, EditStart, m_AtMinimum == 0);
        Enable(dialog, LabelStart, m_AtMinimum == 0);
        Enable(dialog, LabelOr, true);
        Enable(dialog, CheckAtMinimum, true);
        Check(dialog, CheckAtMinimum, m_AtMinimum == 1);
        break;
    case RadioUserLimits:
        Enable(dialog, ButtonLimits, true);
        break;
    default:
        break;
    }
    m_Method = static_cast<std::uint16_t>(id - RadioDistinctValues);
    return 0;
}

void CDDNStartupDlg::ShowCurrentMethod(HWND dialog) {
    CheckMethodRadios(dialog, 0);
    ResetIntervalControls(dialog, 0);
    int type = 0;
    int count = 0;
    int atMinimum = 0;
    double step = 0;
    double start = 0;
    const int method = m_pDrill->GetDrillMethod(type, count, atMinimum, step, start);
    if (method == -1) {
        // No variable left to drill: the defaults stay, under a disabled frame.
        Enable(dialog, GroupMethods, false);
        return;
    }
    m_VarType = static_cast<std::uint16_t>(type);
    m_Count = static_cast<std::uint16_t>(count);
    m_AtMinimum = static_cast<std::uint16_t>(atMinimum);
    m_Step = step;
    m_Start = start;
    m_Method = static_cast<std::uint16_t>(method);
    HostDialogs& controls = Controls();

    if (m_VarType == 0) {
        // A categorical variable is cut by its values; the page only shows how.
        EnableMethodGroup(dialog, 0);
        Enable(dialog, GroupMethods, true);
        if (method == MethodDistinctValues) {
            Enable(dialog, RadioDistinctValues, true);
            Check(dialog, RadioDistinctValues, true);
        } else if (method == MethodNeatIntervals) {
            // Too many distinct values turned it to neat intervals.
            Enable(dialog, RadioNeatIntervals, true);
            Enable(dialog, EditNeatCount, true);
            Check(dialog, RadioNeatIntervals, true);
            controls.SetDlgItemInt(dialog, EditNeatCount, m_Count, 0);
        }
        return;
    }

    switch (method) {
    case MethodDistinctValues:
        Check(dialog, RadioDistinctValues, true);
        break;
    case MethodExactIntervals:
        Check(dialog, RadioExactIntervals, true);
        Enable(dialog, EditExactCount, true);
        controls.SetDlgItemInt(dialog, EditExactCount, m_Count, 0);
        break;
    case MethodNeatIntervals:
        Check(dialog, RadioNeatIntervals, true);
        Enable(dialog, EditNeatCount, true);
        controls.SetDlgItemInt(dialog, EditNeatCount, m_Count, 0);
        break;
    case MethodFixedStep:
        Check(dialog, RadioFixedStep, true);
        Enable(dialog, EditStep, true);
        Enable(dialog, LabelStart, m_AtMinimum == 0);
        Enable(dialog, EditStart, m_AtMinimum == 0);
        Enable(dialog, LabelOr, true);
        Enable(dialog, CheckAtMinimum, true);
        controls.SetDlgItemDouble(dialog, EditStep, m_Step, 0, StoredDigits);
        controls.SetDlgItemDouble(dialog, EditStart, m_Start, 0, StoredDigits);
        Check(dialog, CheckAtMinimum, m_AtMinimum == 1);
        break;
    case MethodIntegerValues:
        Check(dialog, RadioIntegerValues, true);
        break;
    case MethodUserLimits:
        Check(dialog, RadioUserLimits, true);
        Enable(dialog, ButtonLimits, true);
        break;
    default:
        break;
    }
}

void CDDNStartupDlg::ReadMethodSettings(HWND dialog, int method) {
    HostDialogs& controls = Controls();
    switch (method) {
    case MethodExactIntervals:
    case MethodNeatIntervals: {
        // A text that is no number leaves the value as it was.
        auto count = static_cast<short>(m_Count);
        controls.GetDlgItemInteger(
            dialog, method == MethodExactIntervals ? EditExactCount : EditNeatCount, &count);
        m_Count = static_cast<std::uint16_t>(count);
        break;
    }
    case MethodFixedStep:
        m_AtMinimum = IsChecked(dialog, CheckAtMinimum) ? 1 : 0;
        controls.GetDlgItemDouble(dialog, EditStep, &m_Step);
        controls.GetDlgItemDouble(dialog, EditStart, &m_Start);
        break;
    default:
        break;
    }
}

int CDDNStartupDlg::ApplyCategorisation(HWND dialog) {
    int type = 0;
    int count = 0;
    int atMinimum = 0;
    double step = 0;
    double start = 0;
    const int present = m_pDrill->GetDrillMethod(type, count, atMinimum, step, start);
    // The categories of a categorical variable are never rebuilt from the page.
    if (present == -1 || type == 0)
        return 1;
    DrillSet* records = m_pDrill->GetDrillDowns();
    const auto found = m_pDrill->LookFor(m_pDrill->GetCurrentDown(), records);
    if (found == records->end())
        return 1;
    const int method = m_Method;
    if (method > MethodUserLimits)
        return 1;
    ReadMethodSettings(dialog, method);

    // Settings equal to the record's (compared exactly) leave its categories alone.
    Drill& record = Mutable(*found);
    switch (method) {
    case MethodDistinctValues:
    case MethodIntegerValues:
    case MethodUserLimits:
        if (present == method)
            return 1;
        record.SetMethod(method, 0, 0, 0.0, 0.0);
        break;
    case MethodExactIntervals:
    case MethodNeatIntervals:
        if (present == method && m_Count == count)
            return 1;
        record.SetMethod(method, m_Count, 0, 0.0, 0.0);
        break;
    case MethodFixedStep:
        if (present == method && m_AtMinimum == atMinimum && m_Step == step && m_Start == start)
            return 1;
        record.SetMethod(method, 0, m_AtMinimum, m_Step, m_Start);
        break;
    default:
        break;
    }
    m_pDrill->Recategorise(record);
    m_pDrill->NeedsRescan = 1;
    return 1;
}
