#pragma once
// The workbench's application and analysis objects as automation sees them, over the
// session's document store:
//
//   Application:   OpenDocuments (the live documents, in window order), OutputSwitch (0:
//                  results go to their own windows), CurrentItem (the active document, or
//                  Nothing)
//   Analysis:      GraphDocuments (the live graphs, in window order)
//   DocumentList:  Count, Item(n) for n from 1
//
// Items are the documents' automation objects (DocumentObject.h). The objects read the store
// at each call; the caller keeps the store alive while it holds them.

#include "drilldown/host/HostAutomation.h"
#include "workbench/documents/DocumentStore.h"

namespace wb {

// Registers the library of the three interfaces; the registry's result.
HRESULT RegisterApplicationTypeLib(HostAutomation& automation);

// New objects with one reference for the caller.
IDispatch* NewApplicationObject(HostAutomation& automation, const DocumentStore& store);
IDispatch* NewAnalysisObject(HostAutomation& automation, const DocumentStore& store);

} // namespace wb
