#include "workbench/documents/DocumentStore.h"

#include <algorithm>

namespace wb {

DocumentStore::DocumentStore() {
    m_list->changed = [this](int id) {
        if (const Document* document = find(id))
            tell([&](DocumentObserver& observer) { observer.stateChanged(*document); });
    };
}

// The states stay with their automation objects; they must not call a store that is gone.
DocumentStore::~DocumentStore() {
    m_list->changed = nullptr;
}

void DocumentStore::addObserver(DocumentObserver& observer) {
    m_observers.push_back(&observer);
}

void DocumentStore::removeObserver(DocumentObserver& observer) {
    std::erase(m_observers, &observer);
}

template <typename Tell> void DocumentStore::tell(Tell&& tell) {
    for (DocumentObserver* observer : m_observers)
        tell(*observer);
}

void DocumentStore::beginCommand(int command) {
    m_runs.push_back({command, 0});
}

void DocumentStore::endCommand() {
    if (!m_runs.empty())
        m_runs.pop_back();
}

int DocumentStore::currentCommand() const {
    return m_runs.empty() ? 0 : m_runs.back().command;
}

int DocumentStore::add(Document document) {
    document.id = ++m_lastId;
    document.command = currentCommand();
    document.output = m_runs.empty() ? 0 : ++m_runs.back().outputs;
    std::visit(
        [&](auto& content) {
            content.number = document.id;
            content.command = document.command;
        },
        document.content);
    auto state = std::make_shared<DocumentState>();
    state->number = document.id;
    state->name = document.name();
    state->list = m_list;
    m_states.push_back(std::move(state));
    m_documents.push_back(std::move(document));
    const Document& kept = m_documents.back();
    tell([&](DocumentObserver& observer) { observer.added(kept); });
    return kept.id;
}

std::size_t DocumentStore::indexOf(int id) const {
    const auto found = std::find_if(m_documents.begin(), m_documents.end(),
                                    [id](const Document& d) { return d.id == id; });
    return static_cast<std::size_t>(found - m_documents.begin());
}

void DocumentStore::replace(int id, Document document) {
    const std::size_t index = indexOf(id);
    if (index == m_documents.size())
        return;
    Document& kept = m_documents[index];
    document.id = kept.id;
    document.command = kept.command;
    document.output = kept.output;
    std::visit(
        [&](auto& content) {
            content.number = kept.id;
            content.command = kept.command;
        },
        document.content);
    kept = std::move(document);
    m_states[index]->name = kept.name();
    tell([&](DocumentObserver& observer) { observer.replaced(kept); });
}

void DocumentStore::close(int id) {
    const std::size_t index = indexOf(id);
    if (index == m_documents.size())
        return;
    const Document gone = std::move(m_documents[index]);
    const std::shared_ptr<DocumentState> state = m_states[index];
    m_documents.erase(m_documents.begin() + static_cast<std::ptrdiff_t>(index));
    m_states.erase(m_states.begin() + static_cast<std::ptrdiff_t>(index));
    CloseDocument(*state);
    tell([&](DocumentObserver& observer) { observer.closed(gone); });
}

const Document* DocumentStore::find(int id) const {
    const std::size_t index = indexOf(id);
    return index == m_documents.size() ? nullptr : &m_documents[index];
}

const Document* DocumentStore::find(int command, int output) const {
    const auto found = std::find_if(m_documents.begin(), m_documents.end(), [&](const Document& d) {
        return d.command == command && d.output == output;
    });
    return found == m_documents.end() ? nullptr : &*found;
}

std::shared_ptr<DocumentState> DocumentStore::state(int id) const {
    const std::size_t index = indexOf(id);
    return index == m_documents.size() ? nullptr : m_states[index];
}

} // namespace wb
