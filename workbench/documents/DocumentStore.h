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
    // The command being run, 0 for none.
    int currentCommand() const;

    // Gives the new document's id.
    int add(Document document);
    // Unknown ids change nothing.
    void replace(int id, Document document);
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
    std::size_t indexOf(int id) const;
    template <typename Tell> void tell(Tell&& tell);

    std::vector<Document> m_documents;
    std::vector<std::shared_ptr<DocumentState>> m_states; // beside m_documents
    std::vector<DocumentObserver*> m_observers;
    std::vector<CommandRun> m_runs;
    int m_lastId = 0;
    // Shared with every state, which may outlive the store.
    std::shared_ptr<DocumentList> m_list = std::make_shared<DocumentList>();
};

} // namespace wb
