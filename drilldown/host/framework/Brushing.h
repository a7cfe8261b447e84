#pragma once
// The host's brushing classes as the module uses them: a brushing object that owns the
// regions of one graph and runs the host's modal brushing on a document (HostBrushing.h).
//
//   1. CGraphBrushingExt brushing(true); CGraphBrushRgnGraph* graph = brushing.addGraph(-1);
//   2. graph->resize(n); graph->set(i, ...) for each region; graph->setSelected(s);
//   3. brushing.DoBrushing(document, commands, command, ...): false when the user left;
//   4. graph->getSelected(s): the region the user picked.

#include <memory>
#include <vector>

#include "../HostBrushing.h"

class CGraphBrushRgnGraph {
public:
    void resize(int count) { m_regions.resize(count > 0 ? static_cast<std::size_t>(count) : 0); }
    // Region `index` as the rectangle from (left, bottom) to (right, top), in the graph's
    // coordinates, with its tool tip; `kind` is always 4, a rectangle.
    void set(int index, double bottom, double left, double top, double right,
             const std::string& tip, int kind);
    void setSelected(int index) { m_selected = index; }
    // True with the selected region, false when none is.
    bool getSelected(int& index) const;

    const std::vector<CBrushRegion>& Regions() const { return m_regions; }
    int& Selected() { return m_selected; }

private:
    std::vector<CBrushRegion> m_regions;
    int m_selected = -1;
};

class CGraphBrushingExt {
public:
    explicit CGraphBrushingExt(bool) {}
    // A new graph of regions, owned by the brushing object; the argument is always -1.
    CGraphBrushRgnGraph* addGraph(int);
    // The modal brushing on `document` (the first graph's regions); false when the user left
    // without a choice. *command becomes the index of the command used.
    bool DoBrushing(COutDocument* document, const char* const* commands, int& command, bool, bool,
                    bool);

private:
    std::vector<std::unique_ptr<CGraphBrushRgnGraph>> m_graphs;
};
