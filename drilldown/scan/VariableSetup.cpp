// The user's choice of variables becomes records. A choice is a fresh start: what hung on
// the earlier choice goes, and one scan reads the new variables.

#include <algorithm>
#include <cstring>
#include <vector>

#include "../core/CDrillDown.h"
#include "../host/framework/HostArray.h"
#include "../resources/ControlIds.h"
#include "../resources/StringIds.h"

namespace {

constexpr int VariableNameBytes = 9;

bool Contains(const short* list, int count, int variable) {
    return std::find(list, list + count, variable) != list + count;
}

// Keeps, in their order, the entries of list that stand in `allowed`; zeroes the rest.
int16_t KeepChosen(short* list, int count, int size, const short* allowed, int allowedCount) {
    short* end = std::remove_if(list, list + count, [&](short variable) {
        return !Contains(allowed, allowedCount, variable);
    });
    std::fill(end, list + size, 0);
    return static_cast<int16_t>(end - list);
}

} // namespace

// The variable's name as the user sees it: the short name, its token expanded, without
// blanks around it or formatting marks.
std::string CDrillDown::DisplayName(short variable, char* buffer) {
    std::memset(buffer, 0, VariableNameBytes);
    getvn5(variable, buffer);
    std::string name(buffer);
    const auto first = name.find_first_not_of(' ');
    name = first == std::string::npos ? std::string()
                                      : name.substr(first, name.find_last_not_of(' ') - first + 1);
    ExpandPossible8CharHash(name);
    StripFormatting(name);
    return name;
}

int CDrillDown::SetDDNVariable(HWND window, unsigned short mode, int min1, int max1, int min2,
                               int max2, int total) {
    const int chosen = Dialogs().DoubleVarListDialog(
        window, mode, GetResourceString(StrChooseDrillVariables), nullptr, min1, max1, min2, max2,
        total, Categorical, &NoCategorical, Continuous, &NoContinuous,
        GetResourceString(StrCategoricalVariables), GetResourceString(StrContinuousVariables), 0);
    if (chosen == 0)
        return 0;
    // Everything drilled so far goes, and with it the review side, as if never chosen.
    DrillDowns->clear();
    DrillUps->clear();
    const std::size_t listBytes = 2u * ModuleBlocks().Vmk.NVars + 2;
    NoRVCategorical = NoRVContinuous = NoHist3DFirst = NoHist3DSecond = 0;
    for (short* list : {RVCategorical, RVContinuous, Hist3DFirst, Hist3DSecond})
        std::memset(list, 0, listBytes);
    Reviews->clear();

    const int count = NoCategorical + NoContinuous;
    HostArray<const char*> texts(*this);
    HostArray<char> buffer(*this);
    if (!texts.Allocate(count + 1) || !buffer.Allocate(VariableNameBytes))
        return 0;
    std::vector<std::string> names;
    names.reserve(count);
    for (int slot = 0; slot < count; ++slot) {
        const bool categorical = slot < NoCategorical;
        const short variable = categorical ? Categorical[slot] : Continuous[slot - NoCategorical];
        names.push_back(DisplayName(variable, buffer.get()));
        DrillDowns->emplace(variable, categorical ? 0 : 1, slot, names.back());
    }
    for (int slot = 0; slot < count; ++slot)
        texts[slot] = names[slot].c_str();

    HostDialogs& dialogs = Dialogs();
    const HWND downs = dialogs.GetDlgItem(window, ListDrillDowns);
    dialogs.EnableWindow(downs, 1);
    dialogs.EnableWindow(dialogs.GetDlgItem(window, ButtonBrushing), 1);
    dialogs.InitStaticListBox(downs, texts.get());
    const HWND ups = dialogs.GetDlgItem(window, ListDrillUps);
    dialogs.EnableWindow(ups, 0);
    texts[0] = nullptr;
    dialogs.InitStaticListBox(ups, texts.get());

    ReadDDNV(0);
    return chosen;
}

int CDrillDown::SetRVVariable(HWND window, unsigned short mode, int min, int max) {
    const int nv = ModuleBlocks().Vmk.NVars;
    const int chosen = Dialogs().DoubleVarListDialog(
        window, mode, GetResourceString(StrChooseReviewVariables), nullptr, min, max, min, max, nv,
        RVCategorical, &NoRVCategorical, RVContinuous, &NoRVContinuous,
        GetResourceString(StrCategoricalReviews), GetResourceString(StrContinuousReviews), 0);
    if (chosen == 0)
        return 0;
    std::memset(AllReviews, 0, 4u * nv + 4);
    std::copy(RVCategorical, RVCategorical + NoRVCategorical, AllReviews);
    std::copy(RVContinuous, RVContinuous + NoRVContinuous, AllReviews + NoRVCategorical);
    // The 3D-histogram lists keep only the variables that are still under review.
    const int reviews = NoRVCategorical + NoRVContinuous;
    NoHist3DFirst = KeepChosen(Hist3DFirst, NoHist3DFirst, nv + 1, AllReviews, reviews);
    NoHist3DSecond = KeepChosen(Hist3DSecond, NoHist3DSecond, nv + 1, AllReviews, reviews);
    Reviews->clear();

    HostArray<char> buffer(*this);
    if (!buffer.Allocate(VariableNameBytes))
        return 0;
    for (int slot = 0; slot < reviews; ++slot) {
        const bool categorical = slot < NoRVCategorical;
        const short variable =
            categorical ? RVCategorical[slot] : RVContinuous[slot - NoRVCategorical];
        Reviews->emplace(variable, categorical ? 0 : 1, slot, DisplayName(variable, buffer.get()));
    }
    ReadRVV(0);
    NeedsRescan = 0;
    return chosen;
}

short CDrillDown::SelectedVariable(int variable) const {
    return Contains(Categorical, NoCategorical, variable) ||
                   Contains(Continuous, NoContinuous, variable) ||
                   Contains(RVCategorical, NoRVCategorical, variable) ||
                   Contains(RVContinuous, NoRVContinuous, variable)
               ? 1
               : 0;
}

short CDrillDown::IsCategoricalVariable(int variable) const {
    return Contains(Categorical, NoCategorical, variable) ||
                   Contains(RVCategorical, NoRVCategorical, variable)
               ? 1
               : 0;
}
