#pragma once
// The documents of a session: tables and graphs kept under stable ids, in window order, each
// with the command that made it, its output number within that command's run, and the state
// that its automation object reads and writes. The output folder and a desktop's window area
// observe the store; the output service writes into it.
//
//   1. beginCommand(id) when a result command starts, endCommand() when it ends; a command
//      run inside another (a posted one) restores the outer run when it ends. The outputs of
//      each run count afresh from 1;
//   2. add(document) keeps a new document: the next id (never reused), the current command
//      and the next output number of its run;
//   3. replace(id, document) puts new content into a document: same id, same place, same
//      command and output number; close(id) takes it out (its close event is raised);
//   4. observers are told after each change, in the order they were added. An observer that
//      throws stops the telling; the change stands and the exception reaches the caller.
//
// A document may also wait before it shows: reserve(document) gives it its id, command,
// output number and state without telling anyone (an analysis decides its fate first).
// It becomes live when its automation object activates it or makes it visible (the store
// then keeps that object as long as the document lives), with admit(id), or by giving its
// content to a live document (replaceFrom). A waiting document whose automation objects
// have all gone is forgotten.
//
// The stacking order of the live documents' windows (front first) follows additions and
// activations; a front end tells the store when the user brings a window to the front.

#include <memory>
#include <vector>

#include "workbench/documents/Document.h"
#include "workbench/documents/DocumentObject.h"

namespace wb {

class DocumentObserver {
public:
    virtual ~DocumentObserver() = default;
    virtual void added(const Document& document) = 0;
    virtual void replaced(const Document& document) = 0;
    virtual void closed(const Document& document) = 0;
    // The state of the document's window (a macro moved or hid it).
    virtual void stateChanged(const Document& document) = 0;
};

class DocumentStore {
public:
    DocumentStore();
    ~DocumentStore();
    DocumentStore(const DocumentStore&) = delete;
    DocumentStore& operator=(const DocumentStore&) = delete;

    // The observer stays until removed; the caller keeps it alive meanwhile.
    void addObserver(DocumentObserver& observer);
    void removeObserver(DocumentObserver& observer);

    void beginCommand(int command);
    void endCommand();
    // The command being run, 0 for none, and the outputs its run has made so far.
    int currentCommand() const;
    int currentOutputs() const;

    // Gives the new document's id.
    int add(Document document);
    // A document that waits (see above): its id and its state.
    std::pair<int, std::shared_ptr<DocumentState>> reserve(Document document);
    // Makes a waiting document live, keeping `object` (may be null) while it lives.
    void admit(int id, IDispatch* object = nullptr);
    // The live document `id` takes the content of the waiting document `from`, which goes;
    // false when either is not there.
    bool replaceFrom(int id, int from);
    // Brings the live document's window to the front and makes it the active one.
    void activate(int id);
    // The place of the live document's window in the stacking order, 0 for the front-most;
    // -1 for none.
    int windowPlace(int id) const;
    // Unknown ids change nothing.
    void replace(int id, Document document);
    // A live document closes (its close event is raised); a waiting one is forgotten.
    void close(int id);

    // The live documents, in window order.
    const std::vector<Document>& documents() const { return m_documents; }
    // Null when no live document has the id, or that command and output number.
    const Document* find(int id) const;
    const Document* find(int command, int output) const;
    // The state of a live document, shared with its automation objects; null when none.
    std::shared_ptr<DocumentState> state(int id) const;
    // The id of the document activated last, 0 for none.
    int activeDocument() const { return m_list->active; }

private:
    struct CommandRun {
        int command = 0;
        int outputs = 0;
    };
    struct Waiting {
        Document document;
        std::weak_ptr<DocumentState> state;
    };
    std::size_t indexOf(int id) const;
    std::vector<Waiting>::iterator findWaiting(int id);
    template <typename Tell> void tell(Tell&& tell);
    // The document's automation object asked to show it.
    void shown(int id, IDispatch* object);

    std::vector<Document> m_documents;
    std::vector<std::shared_ptr<DocumentState>> m_states; // beside m_documents
    std::vector<IDispatch*> m_objects;                    // beside m_documents, owned or null
    std::vector<Waiting> m_waiting;
    std::vector<int> m_stacking; // ids of the live documents, front first
    std::vector<DocumentObserver*> m_observers;
    std::vector<CommandRun> m_runs;
    int m_lastId = 0;
    // Shared with every state, which may outlive the store.
    std::shared_ptr<DocumentList> m_list = std::make_shared<DocumentList>();
};

} // namespace wb
