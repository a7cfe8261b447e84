// The limits dialog: the user types the upper limits of user-defined categories for the
// current drill-down variable. A text the parser refuses gives its message and keeps the
// dialog open with the text as typed; an accepted one is stored in the variable's record.

#include <algorithm>
#include <cstring>
#include <string_view>

#include "../core/CDrillDown.h"
#include "../host/framework/HostArray.h"
#include "../host/framework/TextHelpers.h"
#include "../resources/ControlIds.h"
#include "../resources/Dialogs.h"
#include "DrillDialogs.h"
#include "UserLimits.h"

namespace {


// Size of the buffer the edit's text is read into, terminator included.
constexpr int EditTextBytes = 2048;

} // namespace

CDDNLimitsDlg::CDDNLimitsDlg(CDrillDown* analysis)
    : CAnalysisModalDialog(analysis, DlgLimits, nullptr), m_pDrill(analysis) {}

long CDDNLimitsDlg::EventHandler(HWND dialog, unsigned message, unsigned long wParam, long lParam) {
    switch (message) {
    case WM_INITDIALOG:
        // The edit starts empty: limits stored earlier are not offered again.
        InitOpeningDialog();
        Controls().SetDlgItemTextA(dialog, CaptionLimitsVariable,
                                   m_pDrill->GetCurrentVariableName().c_str());
        return 1;
    case WM_CTLCOLOR:
        if (lParam == CaptionLimitsVariable)
            return HandleWM_CTLCOLOR(dialog, wParam, lParam, RGBAttrType(1));
        return 0;
    case WM_COMMAND:
        switch (LowWord(wParam)) {
        case IDOK:
            if (StoreLimits(dialog) == 0)
                return 0;
            ExitDialog(1, 0, 0);
            return 1;
        case IDCANCEL:
            ExitDialog(0, 0, 0);
            return 1;
        default:
            return 0;
        }
    default:
        return 0;
    }
}

int CDDNLimitsDlg::StoreLimits(HWND dialog) {
    char typed[EditTextBytes] = {};
    Controls().GetDlgItemTextA(dialog, EditLimits, typed, EditTextBytes);
    const std::size_t length = std::strlen(typed);

    // The text and the limits are held in host memory; when the host has none the entry is
    // refused without a message and the user may simply press OK again.
    HostArray<char> text(*m_pDrill);
    HostArray<double> limits(*m_pDrill);
    if (!text.Allocate(length + 1) || !limits.Allocate(MaxEnteredLimits))
        return 0;
    std::memcpy(text.get(), typed, length + 1);

    const ParsedLimits parsed =
        ParseUserLimits(std::string_view(text.get(), length), GetListSep(), true);
    if (parsed.message != 0) {
        m_pDrill->dsplst(0, m_pDrill->GetResourceString(parsed.message));
        return 0;
    }
    const int count = static_cast<int>(parsed.values.size());
    std::copy(parsed.values.begin(), parsed.values.end(), limits.get());
    m_pDrill->SetUserIntervals(limits.get(), count);
    // The categories of the variable are built afresh at the next scan.
    m_pDrill->SetIsset(m_pDrill->GetCurrentDown(), 0);
    return count;
}
