#include "workbench/desktop/DocumentArea.h"

#include <QCloseEvent>
#include <QMoveEvent>
#include <QResizeEvent>
#include <QMdiSubWindow>

#include "workbench/desktop/DocumentViews.h"
#include "workbench/desktop/QtText.h"

namespace wb::desktop {

namespace {

// A document's window: closing it by hand closes the document in the store, which then
// takes the window away; moving or resizing it is kept in the document's state, where a
// macro and the window layout read it.
class DocumentWindow : public QMdiSubWindow {
public:
    DocumentWindow(DocumentStore& store, int id) : m_store(store), m_id(id) {
        setAttribute(Qt::WA_DeleteOnClose);
    }
    int id() const { return m_id; }
    // From now on the window's place is the document's: set once the window stands where it
    // should, so that the moves of its making do not overwrite a place given beforehand.
    void followGeometry() {
        m_following = true;
        keepGeometry();
    }

protected:
    void moveEvent(QMoveEvent* event) override {
        QMdiSubWindow::moveEvent(event);
        keepGeometry();
    }
    void resizeEvent(QResizeEvent* event) override {
        QMdiSubWindow::resizeEvent(event);
        keepGeometry();
    }

    void closeEvent(QCloseEvent* event) override {
        if (m_store.find(m_id) != nullptr) {
            event->ignore();
            m_store.close(m_id); // the area's closed() deletes the window
            return;
        }
        QMdiSubWindow::closeEvent(event);
    }

private:
    void keepGeometry() {
        if (!m_following)
            return;
        if (const std::shared_ptr<DocumentState> state = m_store.state(m_id))
            state->window = {x(), y(), width(), height(), state->window.state,
                             state->window.placed};
    }

    DocumentStore& m_store;
    int m_id;
    bool m_following = false;
};

} // namespace

DocumentArea::DocumentArea(DocumentStore& store, QWidget* parent)
    : QMdiArea(parent), m_store(store) {
    for (const Document& document : store.documents())
        added(document);
    store.addObserver(*this);
    // The store keeps the stacking order that the window layout stores.
    connect(this, &QMdiArea::subWindowActivated, this, [this](QMdiSubWindow* window) {
        const auto* document = dynamic_cast<DocumentWindow*>(window);
        if (document == nullptr)
            return;
        // The window is where the user put it: the store's echo must not move it.
        m_activating = true;
        m_store.activate(document->id());
        m_activating = false;
    });
}

DocumentArea::~DocumentArea() {
    m_store.removeObserver(*this);
}

QMdiSubWindow* DocumentArea::windowOf(int id) const {
    const auto found = m_windows.find(id);
    return found == m_windows.end() ? nullptr : found->second;
}

QWidget* DocumentArea::makeView(const Document& document) {
    if (document.isGraph())
        return new GraphView(m_store, document.id);
    return new TableView(m_store, document.id);
}

void DocumentArea::added(const Document& document) {
    auto* window = new DocumentWindow(m_store, document.id);
    window->setWidget(makeView(document));
    window->setWindowTitle(qtext(document.name()));
    addSubWindow(window);
    m_windows[document.id] = window;
    window->show();
    if (const std::shared_ptr<DocumentState> state = m_store.state(document.id);
        state != nullptr && state->window.placed)
        stateChanged(document);
    window->followGeometry();
}

void DocumentArea::replaced(const Document& document) {
    QMdiSubWindow* window = windowOf(document.id);
    if (window == nullptr)
        return;
    window->setWindowTitle(qtext(document.name()));
    // In place: the window keeps its place, size and stacking, and the focus stays where it is.
    if (document.isTable())
        static_cast<TableView*>(window->widget())->refresh();
    else
        static_cast<GraphView*>(window->widget())->refresh();
}

void DocumentArea::closed(const Document& document) {
    QMdiSubWindow* window = windowOf(document.id);
    m_windows.erase(document.id);
    if (window != nullptr) {
        removeSubWindow(window);
        window->deleteLater();
    }
}

void DocumentArea::stateChanged(const Document& document) {
    if (m_activating)
        return;
    QMdiSubWindow* window = windowOf(document.id);
    const std::shared_ptr<DocumentState> state = m_store.state(document.id);
    if (window == nullptr || state == nullptr)
        return;
    // The state first: going back to normal restores the window's former size.
    const DocumentWindowState place = state->window;
    window->setWindowState(place.state == MinimisedWindow   ? Qt::WindowMinimized
                           : place.state == MaximisedWindow ? Qt::WindowMaximized
                                                            : Qt::WindowNoState);
    window->setGeometry(place.left, place.top, place.width, place.height);
    window->setVisible(state->visible);
    if (m_store.activeDocument() == document.id && activeSubWindow() != window)
        setActiveSubWindow(window);
}

} // namespace wb::desktop
