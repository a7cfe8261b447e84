#pragma once
// The desktop's window area: one sub-window per document of the session's store, tied to
// the document.
//
//   1. make it over the store; it observes the store from then on and shows the documents
//      already there;
//   2. a document added gets its window (a table view, or the graph painted by the same
//      painter that writes SVG and PNG, with the hotspots' tooltips); a document replaced is
//      shown again in the same window, without moving it or taking the focus; a document
//      closed closes its window; a macro's change to the document's window (left, top,
//      width, height, state, visible) moves the real window;
//   3. the user closing a window closes the document in the store, which raises its close
//      event; moving, resizing or activating one is kept in the store (the document's window
//      state and the stacking order), where macros and the window layout read it.
// Views read their document from the store each time they draw; they keep no copy.

#include <map>

#include <QMdiArea>

#include "workbench/documents/DocumentStore.h"

class QMdiSubWindow;

namespace wb::desktop {

class DocumentArea : public QMdiArea, public DocumentObserver {
public:
    explicit DocumentArea(DocumentStore& store, QWidget* parent = nullptr);
    ~DocumentArea() override;
    DocumentArea(const DocumentArea&) = delete;
    DocumentArea& operator=(const DocumentArea&) = delete;

    // The window of a live document; null for none.
    QMdiSubWindow* windowOf(int id) const;

    void added(const Document& document) override;
    void replaced(const Document& document) override;
    void closed(const Document& document) override;
    void stateChanged(const Document& document) override;

private:
    QWidget* makeView(const Document& document);

    DocumentStore& m_store;
    std::map<int, QMdiSubWindow*> m_windows;
    bool m_activating = false; // the user activated a window, which the store is being told
};

} // namespace wb::desktop
