#pragma once
// Where finished documents go: an output folder for the command line, a window later.
//
// The output service hands each document over once, as soon as it is made, on the thread
// that made it. A sink keeps what it needs: the document is not kept alive for it.

#include "workbench/documents/GraphDocument.h"
#include "workbench/documents/TableDocument.h"

namespace wb {

class DocumentSink {
public:
    virtual ~DocumentSink() = default;
    // Keep or show one document; throw std::runtime_error with a message for the user when
    // they cannot.
    virtual void addTable(const TableDocument& table) = 0;
    virtual void addGraph(const GraphDocument& graph) = 0;
};

} // namespace wb
