#pragma once
// Brushing: the user picks a bar of a graph document with the mouse instead of a row of a
// dialog. The module describes each bar as a region of the graph (CGraphBrushRgnGraph,
// host/framework/Brushing.h) and asks the host to run the modal brushing on the document.
//
// The host runs it as its front end can: a desktop highlights the region under the mouse
// with its tool tip, selects a region on a click and offers the commands as buttons; a
// headless host answers from what a macro queued. DoBrushing may throw when the host cannot
// run it (as the dialogs of HostDialogs.h may); no other call here throws.

#include <string>
#include <vector>

#include "Automation.h"

// The host's document behind a graph's automation object; opaque to the module.
class COutDocument;

// Answered by the host's document objects: the document behind the object.
inline constexpr IID IID_IMFCPointer = MakeGuid("5B2E0C1A-7D44-4E55-9A0B-3C6F1E2D4A10");
class IMFCPointer : public IUnknown {
public:
    // The document, without a reference of its own; null for none.
    virtual HRESULT GetPointer(void** pointer) = 0;

protected:
    ~IMFCPointer() = default;
};

// The automation interface of the host's object of an analysis (its CAnalysisDoc's object):
// GraphDocuments, the list of the analysis's graph documents.
inline constexpr IID IID_Analysis = MakeGuid("C9E2A012-3D45-11D4-9FF4-00C04FA0D540");

// One region of a graph: a rectangle in the graph's coordinates, and its tool tip.
struct CBrushRegion {
    double Left = 0;
    double Bottom = 0;
    double Right = 0;
    double Top = 0;
    std::string Tip;
    bool Defined = false; // set by CGraphBrushRgnGraph::set
};

class HostBrushing {
public:
    virtual ~HostBrushing() = default;
    // Runs the modal brushing on `document` with those regions. *selected is the region
    // selected on entry (-1 for none) and on return; `commands` is closed by a null pointer,
    // and *command is the index of the command used on return (left alone when none was).
    // False when the user left without a choice.
    virtual bool DoBrushing(COutDocument* document, const std::vector<CBrushRegion>& regions,
                            int* selected, const char* const* commands, int* command) = 0;
};
