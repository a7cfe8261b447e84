// Brushing: the graph whose bars the user picks, one pass of picking, and the search for the
// graph's document among the host's open documents.

#include <cstring>
#include <memory>
#include <string_view>

#include "../core/CDrillDown.h"
#include "../host/RealNumbers.h"
#include "../host/framework/Brushing.h"
#include "../host/framework/HostArray.h"
#include "../outputs/LateBound.h"
#include "../resources/StringIds.h"
#include "../results/ChartBuilder.h"
#include "../results/ResultText.h"

namespace {

// Half the bar width: a bar's region spans X - 0.45 to X + 0.45.
constexpr double HalfBar = 0.45;
// The graph's own flag on top of the histograms': the host gets 138 instead of 130.
constexpr unsigned short BrushingChartFlag = 8;

// Whether `object`, a graph document, is the brushing graph: its name holds string 10021.
bool IsBrushingGraph(IDispatch* object, const char* title) {
    void* graph = nullptr;
    if (object == nullptr || FAILED(object->QueryInterface(IID_GraphDocument, &graph)))
        return false;
    static_cast<IDispatch*>(graph)->Release();
    COleVariant name;
    return latebound::Get(object, "Name", &name) && name.vt == VT_BSTR &&
           std::string_view(BstrView(name.bstrVal)).find(title) != std::string_view::npos;
}

// Searches `list` from its last item down to item 1 for the brushing graph. What is in hand
// at the end is given: the graph, or item 1 when none matched; empty for an empty list.
COleVariant SearchBrushingGraph(IDispatch* list, const char* title) {
    COleVariant count;
    if (!latebound::Get(list, "Count", &count) || count.vt != VT_I4)
        return {};
    COleVariant item;
    for (LONG number = count.lVal; number >= 1; --number) {
        if (!latebound::Item(list, number, &item))
            return {};
        if (item.vt == VT_DISPATCH && IsBrushingGraph(item.pdispVal, title))
            break;
    }
    return item;
}

// The document behind a host object; null when it gives none.
COutDocument* DocumentBehind(const COleVariant& object) {
    if (object.vt != VT_DISPATCH || object.pdispVal == nullptr)
        return nullptr;
    void* found = nullptr;
    if (FAILED(object.pdispVal->QueryInterface(IID_IMFCPointer, &found)))
        return nullptr;
    auto* pointer = static_cast<IMFCPointer*>(found);
    void* document = nullptr;
    const HRESULT got = pointer->GetPointer(&document);
    pointer->Release();
    return SUCCEEDED(got) ? static_cast<COutDocument*>(document) : nullptr;
}

// "\nCOUNT: 12" for 12, "1.5" for 1.5: the count without trailing zeros or point.
std::string CountTip(const char* format, double count) {
    std::string text = FormatText(format, count);
    while (!text.empty() && text.back() == '0')
        text.pop_back();
    if (!text.empty() && text.back() == '.')
        text.pop_back();
    return text;
}

} // namespace

short CDrillDown::DDNGraphForBrushing(HWND) {
    RescanIfNeeded();
    const Drill* record = CurrentRecord();
    if (record == nullptr)
        return 0;
    for (const Drill& down : *DrillDowns)
        if (down.Isset == 0) {
            ReadBeforeDrill(0);
            break;
        }
    HostArray<double> work(*this);
    const bool missingBar = CountMD == 1 && !RealEqual(GetCurrentMCount(), 0);
    std::unique_ptr<CGeneralChart> chart = CountBars(*record, missingBar, work);
    if (chart == nullptr)
        return 0;
    // Not hashed: the brushing pass finds the graph by this text in its name.
    chart->SetTitle(GetResourceString(StrBrushingTitle) + VariableLabel(*this, record->Variable));
    chart->chartFlags += BrushingChartFlag;
    chart->DrawHistogram(1);

    IDispatch* application = OleAGetApplication();
    if (application == nullptr)
        return 0;
    application->Release();
    return 1;
}

bool CDrillDown::GetActiveChartInfo(COutDocument** document) {
    *document = nullptr;
    IDispatch* application = OleAGetApplication();
    if (application == nullptr)
        return false;
    const COleVariant held(application); // released with `held`
    application->Release();
    IDispatch* analysisObject = GetAnalysisAutomationObject();
    if (analysisObject == nullptr)
        return false;
    analysisObject->Release();

    const char* title = GetResourceString(StrBrushingTitle);
    COleVariant found;
    COleVariant outputSwitch;
    const bool searched = StandAloneResults != 0 ||
                          (latebound::Get(application, "OutputSwitch", &outputSwitch) &&
                           outputSwitch.vt == VT_I4 && outputSwitch.lVal == 0);
    if (searched) {
        COleVariant documents;
        if (latebound::Get(application, "OpenDocuments", &documents) &&
            documents.vt == VT_DISPATCH)
            found = SearchBrushingGraph(documents.pdispVal, title);
    }
    const bool foundGraph = found.vt == VT_DISPATCH && found.pdispVal != nullptr;
    if (StandAloneResults == 0 && (!searched || !foundGraph))
        latebound::Get(application, "CurrentItem", &found);
    *document = DocumentBehind(found);
    return *document != nullptr;
}

short CDrillDown::DDNBrushing(int* picked, int* direction) {
    RescanIfNeeded();
    const Drill* record = CurrentRecord();
    if (record == nullptr)
        return 0;
    const bool missingBar = CountMD == 1 && !RealEqual(GetCurrentMCount(), 0);
    const int bars = static_cast<int>(record->Categories.size()) + (missingBar ? 1 : 0);
    CGraphBrushingExt brushing(true);
    CGraphBrushRgnGraph* graph = brushing.addGraph(-1);
    graph->resize(bars);
    HostArray<double> work(*this);
    if (!work.Allocate(2 * static_cast<std::size_t>(bars)))
        return 0;
    double* xy = work.get();
    std::memset(xy, 0xFF, 2 * static_cast<std::size_t>(bars) * sizeof(double));
    for (const Drill& down : *DrillDowns)
        if (down.Isset == 0) {
            ReadBeforeDrill(0);
            break;
        }

    int i = 0;
    auto region = [&](const std::string& name, double count) {
        if (i >= bars)
            return;
        const double x = i + 1;
        xy[i] = x;
        xy[bars + i] = count;
        std::string tip = FormatText(GetResourceString(StrBrushCategoryTip), name.c_str()) +
                          CountTip(GetResourceString(StrBrushCountTip), count);
        Replace8CharGrow(tip, true);
        StripFormatting(tip);
        graph->set(i, 0.0, x - HalfBar, count, x + HalfBar, tip, 4);
        ++i;
    };
    for (const Categories& category : record->Categories)
        region(category.Name, category.Count);
    if (missingBar)
        region(GetResourceString(StrMissingRow), GetCurrentMCount());

    COutDocument* document = nullptr;
    if (!GetActiveChartInfo(&document))
        return 0;
    // The first bar with cases is offered selected.
    int first = 0;
    for (const Categories& category : record->Categories) {
        if (!RealEqual(category.Count, 0))
            break;
        ++first;
    }
    graph->setSelected(first);

    const bool drillUpOffered = GetDrillUpsSize() > 0;
    const char* const commands[] = {GetResourceString(StrBrushDrillDown),
                                    drillUpOffered ? GetResourceString(StrBrushDrillUp) : nullptr,
                                    nullptr};
    int command = 0;
    if (!brushing.DoBrushing(document, commands, command, true, true, false)) {
        *picked = *direction = -1;
        return 0;
    }
    int bar = *picked;
    if (!graph->getSelected(bar)) {
        if (command != 1) {
            *picked = *direction = -1;
            return -1;
        }
        *picked = bar;
        *direction = 1;
        return 1;
    }
    if (RealEqual(xy[bars + bar], 0)) {
        *picked = *direction = -1;
        return -1;
    }
    *picked = bar;
    *direction = command == 1 ? 1 : 0;
    // The row of the bar's category in the category dialog, which offers no empty category.
    int row = 0;
    int position = 0;
    for (const Categories& category : record->Categories) {
        if (position++ == bar)
            break;
        if (!RealEqual(category.Count, 0))
            ++row;
    }
    Selected = row;
    return 1;
}
