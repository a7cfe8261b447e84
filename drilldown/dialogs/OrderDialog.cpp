// The order dialog: the user moves the drill-down variables one by one from the current order
// (left list) to the end of a new order (right list), or back. m_Order keeps, per variable in
// the current set order, its place in the new order or -1; LeftAndRight shows both lists
// from it.

#include "../core/CDrillDown.h"
#include "../resources/ControlIds.h"
#include "../resources/Dialogs.h"
#include "../resources/StringIds.h"
#include "DrillDialogs.h"

namespace {


constexpr int Unplaced = -1;

} // namespace

CDDNOrderDlg::CDDNOrderDlg(CDrillDown* analysis)
    : CAnalysisModalDialog(analysis, DlgOrder, nullptr), m_pDrill(analysis) {
    m_Size = analysis->GetDrillDownsSize();
    void* block = nullptr;
    if (AllocMem(&block, static_cast<unsigned long>(m_Size) * sizeof(int)) != 0)
        return; // m_Order stays null: the dialog ends as soon as it opens
    m_Order = static_cast<int*>(block);
    for (int i = 0; i < m_Size; ++i)
        m_Order[i] = Unplaced;
}

CDDNOrderDlg::~CDDNOrderDlg() {
    if (m_Order != nullptr)
        FreeMem(m_Order);
}

long CDDNOrderDlg::EventHandler(HWND dialog, unsigned message, unsigned long wParam, long lParam) {
    switch (message) {
    case WM_INITDIALOG:
        InitOpeningDialog();
        if (m_Order == nullptr) {
            m_pDrill->dsplst(0, m_pDrill->GetResourceString(StrMemoryExhausted));
            ExitDialog(0, 0, 0);
            return 1;
        }
        m_pDrill->LeftAndRight(dialog, m_Order, m_Size);
        return 1;
    case WM_CTLCOLOR:
        if (lParam == ListUnplaced || lParam == ListPlaced)
            return HandleWM_CTLCOLOR(dialog, wParam, lParam, RGBAttrType(1));
        return 0;
    case WM_COMMAND:
        switch (LowWord(wParam)) {
        case ButtonPlace:
            Place(dialog);
            return 1;
        case ButtonUnplace:
            Unplace(dialog);
            return 1;
        case IDOK:
            if (m_Order != nullptr)
                m_pDrill->ReorderDrillDowns(m_Order, m_Size, m_Placed);
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

// The variable selected on the left goes to the end of the new order.
void CDDNOrderDlg::Place(HWND dialog) {
    HostDialogs& controls = Controls();
    const long row =
        controls.SendMessageA(controls.GetDlgItem(dialog, ListUnplaced), LB_GETCURSEL, 0, 0);
    if (row < 0 || m_Order == nullptr)
        return;
    long seen = 0;
    for (int i = 0; i < m_Size; ++i) {
        if (m_Order[i] != Unplaced)
            continue;
        if (seen++ == row) {
            m_Order[i] = m_Placed++;
            break;
        }
    }
    m_pDrill->LeftAndRight(dialog, m_Order, m_Size);
}

// The variable selected on the right leaves the new order; those behind it move up.
void CDDNOrderDlg::Unplace(HWND dialog) {
    HostDialogs& controls = Controls();
    const long place =
        controls.SendMessageA(controls.GetDlgItem(dialog, ListPlaced), LB_GETCURSEL, 0, 0);
    if (place < 0 || m_Order == nullptr)
        return;
    for (int i = 0; i < m_Size; ++i) {
        if (m_Order[i] == place) {
            m_Order[i] = Unplaced;
            --m_Placed;
        } else if (m_Order[i] > place) {
            --m_Order[i];
        }
    }
    m_pDrill->LeftAndRight(dialog, m_Order, m_Size);
}
