// The category dialog: one row per non-empty category of the current drill-down variable, in
// category order, then the missing-data row. The row chosen is handed to the analysis with
// SetSelected, which counts rows exactly so: empty categories have none, missing data last.

#include <string>

#include "../core/CDrillDown.h"
#include "../host/HostBlocks.h"
#include "../host/RealNumbers.h"
#include "../resources/ControlIds.h"
#include "../resources/Dialogs.h"
#include "../resources/StringIds.h"
#include "../results/ResultText.h"
#include "DrillDialogs.h"

namespace {


constexpr int ColumnName = 0;
constexpr int ColumnCount = 1;
constexpr int ColumnDescription = 2;

constexpr unsigned long ListStyleGridFullRow = 33;
constexpr unsigned long ListTextColour = 0xff0000;

// A text label travels as a token of 8 characters and its terminator.
constexpr int TokenBytes = 9;

// The text label of `value`, expanded and without the host's formatting; false when the
// value has none.
bool TextLabel(CDrillDown& analysis, short variable, double value, std::string& label) {
    char token[TokenBytes] = {};
    if (analysis.RetrieveLongTextLabelAsHashedString(token, variable - 1, value) == 0)
        return false;
    label = token;
    analysis.ExpandPossible8CharHash(label);
    analysis.StripFormatting(label);
    return true;
}

// Whether any category of a categorical variable has a text label, empty ones included.
bool AnyTextLabel(CDrillDown& analysis, short variable, const CategorySet& categories) {
    char token[TokenBytes] = {};
    for (const Categories& category : categories)
        if (analysis.RetrieveLongTextLabelAsHashedString(token, variable - 1, category.Upper) != 0)
            return true;
    return false;
}

} // namespace

CDDNCategoryDlg::CDDNCategoryDlg(CDrillDown* analysis)
    : CAnalysisModalDialog(analysis, DlgCategory, nullptr), m_pDrill(analysis) {}

long CDDNCategoryDlg::EventHandler(HWND dialog, unsigned message, unsigned long wParam,
                                   long lParam) {
    switch (message) {
    case WM_INITDIALOG:
        return Initialise(dialog);
    case WM_CTLCOLOR:
        if (lParam == CaptionCategoryVariable)
            return HandleWM_CTLCOLOR(dialog, wParam, lParam, RGBAttrType(1));
        return 0;
    case WM_NOTIFY: {
        const auto* notice = reinterpret_cast<const NMLISTVIEW*>(lParam);
        if (notice == nullptr || notice->hdr.idFrom != static_cast<unsigned>(ListCategories))
            return 0;
        if (notice->hdr.code == LVN_ITEMCHANGED) {
            m_Item = notice->iItem;
            return 1;
        }
        if (notice->hdr.code == NM_DBLCLK) {
            m_Item = notice->iItem;
            return Accept(dialog);
        }
        return 0;
    }
    case WM_COMMAND:
        switch (LowWord(wParam)) {
        case IDOK:
            return Accept(dialog);
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

long CDDNCategoryDlg::Initialise(HWND dialog) {
    InitOpeningDialog();
    HostDialogs& controls = Controls();
    const short variable = m_pDrill->GetCurrentDrillDown();
    controls.WriteVarListToCaption(dialog, CaptionCategoryVariable, 1, &variable);

    const HWND list = controls.GetDlgItem(dialog, ListCategories);
    controls.InsertListColumn(list, ColumnName, "Category", 120, 0);
    controls.InsertListColumn(list, ColumnCount,
                              ModuleBlocks().Wght.WeightOn != 0 ? "Weight" : "Count", 60, 0);

    int rows = 0;
    if (variable >= 0) {
        const CategorySet& categories = *m_pDrill->GetCurrentCategories();
        const bool describe = m_pDrill->GetCurrentVariableType() == 0 &&
                              AnyTextLabel(*m_pDrill, variable, categories);
        if (describe)
            controls.InsertListColumn(list, ColumnDescription, "Description", 200, 0);

        for (const Categories& category : categories) {
            if (RealEqual(category.Count, 0))
                continue;
            controls.InsertListRow(list, rows, category.Name.c_str());
            controls.SetListCell(list, rows, ColumnCount, TrimmedNumber(category.Count).c_str());
            std::string label;
            if (describe && TextLabel(*m_pDrill, variable, category.Upper, label))
                controls.SetListCell(list, rows, ColumnDescription, label.c_str());
            ++rows;
        }
        const double missing = m_pDrill->GetCurrentMCount();
        if (m_pDrill->GetCountMD() == 1 && missing != 0) {
            controls.InsertListRow(list, rows, szLoadResString(StrMissingRow));
            controls.SetListCell(list, rows, ColumnCount, TrimmedNumber(missing).c_str());
            ++rows;
        }
    }

    controls.SetListViewLook(list, ListStyleGridFullRow, ListTextColour);
    // The first row starts selected, and a selected row is the user's choice until another
    // is picked: OK at once drills into it. An empty list leaves nothing to accept.
    if (rows > 0) {
        controls.SendMessageA(list, LB_SETCURSEL, 0, 0);
        m_Item = 0;
    }
    return 1;
}

long CDDNCategoryDlg::Accept(HWND) {
    if (m_Item < 0)
        return 0;
    m_pDrill->SetSelected(m_Item);
    ExitDialog(1, 0, 0);
    return 1;
}
