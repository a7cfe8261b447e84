#pragma once
// Result documents as automation objects: what a macro gets back from a result member of
// an analysis, and the state that their properties read and write.
//
//   Document:        Name (the title), Saved, Visible, Activate, Window
//   DocumentWindow:  Left, Top, Width, Height (pixels), State (0 normal, 1 minimised,
//                    2 maximised)
//
// A headless document is written to its folder as it is made, so it starts saved and
// visible; the properties keep what a macro writes, for the front ends and for the
// tracking of result windows to read. Flags read as 1 or 0 and take any number, non-zero
// for true. The objects share their state with the output that made them and stay valid
// after it has gone.

#include <memory>
#include <string>

#include "drilldown/host/HostAutomation.h"

namespace wb {

inline constexpr IID IID_WorkbenchDocument = MakeGuid("6D0C7A10-5E1B-4C2A-9B3E-2F6A1D0C7A10");
inline constexpr IID IID_WorkbenchDocumentWindow =
    MakeGuid("6D0C7A11-5E1B-4C2A-9B3E-2F6A1D0C7A11");
inline constexpr GUID LIBID_WorkbenchDocuments = MakeGuid("6D0C7A12-5E1B-4C2A-9B3E-2F6A1D0C7A12");

struct DocumentWindowState {
    int left = 0;
    int top = 0;
    int width = 640;
    int height = 480;
    int state = 0;
};

// The documents of one output: which was activated last (its number, 0 for none).
struct DocumentList {
    int active = 0;
};

struct DocumentState {
    int number = 0;
    std::string name;
    bool saved = true;
    bool visible = true;
    DocumentWindowState window;
    std::shared_ptr<DocumentList> list;
};

// Registers the library of the two interfaces; the registry's result.
HRESULT RegisterDocumentTypeLib(HostAutomation& automation);

// A new Document object over `state`, with one reference for the caller.
IDispatch* NewDocumentObject(HostAutomation& automation, std::shared_ptr<DocumentState> state);

} // namespace wb
