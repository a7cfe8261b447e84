#pragma once
// Result documents as automation objects: what a macro gets back from a result member of
// an analysis, and the state that their properties read and write.
//
//   Document:        Name (the title), Saved, Visible, Activate, Window
//   DocumentWindow:  Left, Top, Width, Height (pixels), State (1 minimised, 2 normal,
//                    3 maximised)
//
// A table answers the spreadsheet interface, a graph the graph interface (both in
// drilldown/host/HostAnalysisDoc.h, with their event interfaces). When CloseDocument closes
// a document (the user closed its window), the sinks connected through
// IConnectionPointContainer to its kind's event interface hear its closing (one argument,
// 1) and then its close (no arguments), each while it stays connected.
//
// A document starts saved and visible (the headless front end writes it to its folder as it
// is made); the properties keep what a macro writes, and each change is told to the store's
// observers (DocumentStore.h), so that a desktop moves the real window. Flags read as 1 or 0
// and take any number, non-zero for true. The objects share their state with the store that
// made them and stay valid after it has gone.

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "drilldown/host/HostAnalysisDoc.h"
#include "drilldown/host/HostBrushing.h"
#include "drilldown/host/HostAutomation.h"

namespace wb {

inline constexpr GUID LIBID_WorkbenchDocuments = MakeGuid("6D0C7A12-5E1B-4C2A-9B3E-2F6A1D0C7A12");

inline constexpr int MinimisedWindow = 1;
inline constexpr int NormalWindow = 2;
inline constexpr int MaximisedWindow = 3;

struct DocumentWindowState {
    int left = 0;
    int top = 0;
    int width = 640;
    int height = 480;
    int state = NormalWindow;
    // Set once a macro or a window layout gave the window a place: a window made for the
    // document then goes there rather than where the front end would put it.
    bool placed = false;
};

// The documents of one store: which was activated last (its number, 0 for none), whom to
// tell when a macro changes a document's state, and whom when a document's object activates
// it or makes it visible (both empty once the store has gone).
struct DocumentList {
    int active = 0;
    std::function<void(int number)> changed;
    std::function<void(int number, IDispatch* object)> shown;
};

}  // namespace wb

// The document behind an automation object, as the module holds it (HostBrushing.h): the
// workbench gives its document states.
class COutDocument {};

namespace wb {

struct DocumentState : COutDocument {
    DocumentState() = default;
    DocumentState(const DocumentState&) = delete;
    DocumentState& operator=(const DocumentState&) = delete;
    ~DocumentState(); // releases the sinks still connected

    int number = 0;
    std::string name;
    bool graph = false; // which interface its objects answer
    bool saved = true;
    bool visible = true;
    bool closed = false;
    DocumentWindowState window;
    std::shared_ptr<DocumentList> list;
    // Sinks of the close event, by cookie; each holds one reference.
    std::vector<std::pair<DWORD, IDispatch*>> sinks;
    DWORD lastCookie = 0;
};

// Closes the document as its window's closing does: hidden, and every connected sink told
// once. A closed document stays closed.
void CloseDocument(DocumentState& state);

// Registers the library of the two interfaces; the registry's result.
HRESULT RegisterDocumentTypeLib(HostAutomation& automation);

// A new Document object over `state`, with one reference for the caller.
IDispatch* NewDocumentObject(HostAutomation& automation, std::shared_ptr<DocumentState> state);
// The state behind a Document object of this file; null for any other object.
DocumentState* DocumentStateOf(IUnknown* object);

} // namespace wb
