// The drill moves: a drill-down pins the current variable to a category and moves it to
// DrillUps; a drill-up takes any pinned variable back. Also the reordering of both lists and
// the texts of the panel's two list boxes.

#include <algorithm>
#include <iterator>
#include <vector>

#include "../host/framework/HostArray.h"
#include "../host/RealNumbers.h"
#include "../resources/ControlIds.h"
#include "../resources/StringIds.h"
#include "CDrillDown.h"

namespace {


// Where row `row` of the category dialog, which lists only the non-empty categories, stands
// among all categories: its position (the element count behind the last category, which is
// the missing-data row) and the number of empty categories passed on the way.
struct RowPosition {
    int empties = 0;
    int position = 0;
};

RowPosition PositionOfRow(const CategorySet& categories, int row) {
    RowPosition found;
    int seen = 0;
    for (const Categories& category : categories) {
        if (RealEqual(category.Count, 0)) {
            ++found.empties;
        } else {
            if (seen == row)
                return found;
            ++seen;
        }
        ++found.position;
    }
    return found;
}

void Renumber(DrillSet& records, int first) {
    int order = first;
    for (const Drill& record : records)
        Mutable(record).Order = static_cast<int16_t>(order++);
}

} // namespace

int CDrillDown::MoveToDrillUps() {
    const auto current = LookFor(CurrentDown, DrillDowns.get());
    const int ups = static_cast<int>(DrillUps->size());
    Drill pinned = *current;
    pinned.Order = 0;
    // Selected counts the non-empty categories; DrilledItem is a position among all of them.
    pinned.DrilledItem = Selected + PositionOfRow(current->Categories, Selected).empties;
    // The existing steps move down by one, newest first, to leave Order 0 free.
    int order = ups;
    for (auto it = DrillUps->rbegin(); it != DrillUps->rend(); ++it)
        Mutable(*it).Order = static_cast<int16_t>(order--);
    DrillUps->insert(std::move(pinned));
    DrillDowns->erase(current);
    Renumber(*DrillDowns, 0);
    CurrentDown = DrillDowns->empty() ? -1 : DrillDowns->begin()->Variable;
    return 1;
}

int CDrillDown::MoveBackToDrillDowns() {
    const auto current = LookFor(CurrentUp, DrillUps.get());
    Drill released = *current;
    released.Order = 0;
    released.DrilledItem = -1;
    Renumber(*DrillDowns, 1);
    DrillDowns->insert(std::move(released));
    DrillUps->erase(current);
    Renumber(*DrillUps, 0);
    CurrentUp = DrillUps->empty() ? -1 : DrillUps->begin()->Variable;
    return 1;
}

namespace {
// Records with an entry of `order` take that place; the others follow, in their old order.
void Reorder(DrillSet& records, const int* order, int placed) {
    DrillSet reordered;
    int done = 0;
    int i = 0;
    for (const Drill& record : records) {
        Drill copy = record;
        const int entry = order[i++];
        if (entry != -1) {
            copy.Order = static_cast<int16_t>(entry);
            ++done;
        } else {
            copy.Order = static_cast<int16_t>(placed - done + record.Order);
        }
        reordered.insert(std::move(copy));
    }
    records.swap(reordered);
}
} // namespace

int CDrillDown::ReorderDrillDowns(const int* order, int, int placed) {
    Reorder(*DrillDowns, order, placed);
    return 1;
}

int CDrillDown::ReorderDrillUps(const int* order, int, int placed) {
    Reorder(*DrillUps, order, placed);
    return 1;
}

namespace {
// The rows of one list box as the null-terminated array of texts the host takes.
class ListRows {
public:
    ListRows(CAnalysisSupport& host, std::vector<std::string> rows)
        : m_rows(std::move(rows)), m_texts(host) {}
    bool Allocate() { return m_texts.Allocate(m_rows.size() + 1); }
    bool Empty() const { return m_rows.empty(); }
    // Fills the list box, enabled only when it has rows.
    void Show(HostDialogs& dialogs, HWND window, int id) const {
        for (std::size_t i = 0; i < m_rows.size(); ++i)
            m_texts[i] = m_rows[i].c_str();
        const HWND control = dialogs.GetDlgItem(window, id);
        dialogs.EnableWindow(control, Empty() ? 0 : 1);
        dialogs.InitStaticListBox(control, m_texts.get());
    }

private:
    std::vector<std::string> m_rows;
    HostArray<const char*> m_texts;
};
} // namespace

std::vector<std::string> CDrillDown::DrillUpTexts() const {
    std::vector<std::string> rows;
    for (const Drill& record : *DrillUps) {
        std::string text = record.Name;
        const int count = static_cast<int>(record.Categories.size());
        if (record.DrilledItem >= 0 && record.DrilledItem < count)
            text += " (" + std::next(record.Categories.begin(), record.DrilledItem)->Name + ")";
        if (record.DrilledItem == count)
            text += " (Missing)";
        rows.push_back(std::move(text));
    }
    return rows;
}

int CDrillDown::RefreshListBoxes(HWND window) {
    std::vector<std::string> names;
    for (const Drill& record : *DrillDowns)
        names.push_back(record.Name);
    ListRows downs(*this, std::move(names));
    ListRows ups(*this, DrillUpTexts());
    // Both arrays are had before either list changes, so that a failure leaves both as they were.
    if (!downs.Allocate() || !ups.Allocate())
        return 0;
    HostDialogs& dialogs = Dialogs();
    downs.Show(dialogs, window, ListDrillDowns);
    dialogs.EnableWindow(dialogs.GetDlgItem(window, ButtonBrushing), downs.Empty() ? 0 : 1);
    ups.Show(dialogs, window, ListDrillUps);
    return 1;
}

int CDrillDown::LeftAndRight(HWND window, const int* order, int) {
    const auto records = static_cast<std::ptrdiff_t>(DrillDowns->size());
    std::vector<std::string> unplacedNames;
    std::vector<std::string> placedNames(std::count_if(order, order + records,
                                                       [](int entry) { return entry != -1; }));
    const int* entry = order;
    for (const Drill& record : *DrillDowns) {
        if (*entry == -1)
            unplacedNames.push_back(record.Name);
        else
            placedNames.at(*entry) = record.Name;
        ++entry;
    }
    ListRows unplaced(*this, std::move(unplacedNames));
    ListRows placed(*this, std::move(placedNames));
    if (!unplaced.Allocate() || !placed.Allocate())
        return 0;
    HostDialogs& dialogs = Dialogs();
    dialogs.EnableWindow(dialogs.GetDlgItem(window, ButtonPlace), unplaced.Empty() ? 0 : 1);
    unplaced.Show(dialogs, window, ListUnplaced);
    dialogs.EnableWindow(dialogs.GetDlgItem(window, ButtonUnplace), placed.Empty() ? 0 : 1);
    placed.Show(dialogs, window, ListPlaced);
    return 1;
}

CDrillDown::CategoryRowList CDrillDown::CategoryRows() const {
    CategoryRowList rows;
    const Drill& record = *CurrentRecord();
    for (const Categories& category : record.Categories)
        if (!RealEqual(category.Count, 0))
            rows.Names.push_back(category.Name);
    rows.MissingRow = CountMD == 1 && !RealEqual(record.MCount, 0);
    return rows;
}

void CDrillDown::CountCategoriesIfOwed() {
    if (NeedsRescan == 1)
        ReadAfterDrill(0);
    if (GetCurrentIsset() == 0)
        ReadBeforeDrill(0);
}

int CDrillDown::SetSelectedItem(int row) {
    Selected = PositionOfRow(CurrentRecord()->Categories, row).position;
    return Selected;
}

short CDrillDown::SetCurrentUpItem(short position) {
    if (position < 0 || position >= static_cast<int>(DrillUps->size()))
        return CurrentUp = -1;
    return CurrentUp = std::next(DrillUps->begin(), position)->Variable;
}

short CDrillDown::GetCurrentUpItem() {
    const auto it = LookFor(CurrentUp, DrillUps.get());
    if (it == DrillUps->end()) {
        CurrentUp = -1;
        return -1;
    }
    return static_cast<short>(std::distance(DrillUps->begin(), it));
}
