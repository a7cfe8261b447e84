#include "Brushing.h"

#include "CAnalysisSupport.h"

void CGraphBrushRgnGraph::set(int index, double bottom, double left, double top, double right,
                              const std::string& tip, int) {
    if (index < 0 || static_cast<std::size_t>(index) >= m_regions.size())
        return;
    m_regions[static_cast<std::size_t>(index)] = {left, bottom, right, top, tip, true};
}

bool CGraphBrushRgnGraph::getSelected(int& index) const {
    if (m_selected < 0 || static_cast<std::size_t>(m_selected) >= m_regions.size())
        return false;
    index = m_selected;
    return true;
}

CGraphBrushRgnGraph* CGraphBrushingExt::addGraph(int) {
    return m_graphs.emplace_back(std::make_unique<CGraphBrushRgnGraph>()).get();
}

bool CGraphBrushingExt::DoBrushing(COutDocument* document, const char* const* commands,
                                   int& command, bool, bool, bool) {
    HostBrushing* host = ModuleContext() != nullptr ? ModuleContext()->Host.Brushing : nullptr;
    if (host == nullptr || m_graphs.empty())
        return false;
    CGraphBrushRgnGraph& graph = *m_graphs.front();
    return host->DoBrushing(document, graph.Regions(), &graph.Selected(), commands, &command);
}
