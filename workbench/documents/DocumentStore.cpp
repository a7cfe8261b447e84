#include "workbench/documents/DocumentStore.h"

#include <algorithm>

namespace wb {

namespace {

// Gives the document the numbers it is known by; its content carries them too.
void number(Document& document, int id, int command, int output) {
    document.id = id;
    document.command = command;
    document.output = output;
    std::visit(
        [&](auto& content) {
            content.number = id;
            content.command = command;
        },
        document.content);
}

} // namespace

DocumentStore::DocumentStore() {
    m_list->changed = [this](int id) {
        if (const Document* document = find(id))
            tell([&](DocumentObserver& observer) { observer.stateChanged(*document); });
    };
    m_list->shown = [this](int id, IDispatch* object) { shown(id, object); };
}

// The states stay with their automation objects; they must not call a store that is gone.
DocumentStore::~DocumentStore() {
    m_list->changed = nullptr;
    m_list->shown = nullptr;
    for (IDispatch* object : m_objects)
        if (object != nullptr)
            object->Release();
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

int DocumentStore::currentOutputs() const {
    return m_runs.empty() ? 0 : m_runs.back().outputs;
}

int DocumentStore::add(Document document) {
    const auto [id, state] = reserve(std::move(document));
    state->visible = true;
    admit(id);
    return id;
}

std::pair<int, std::shared_ptr<DocumentState>> DocumentStore::reserve(Document document) {
    std::erase_if(m_waiting, [](const Waiting& waiting) { return waiting.state.expired(); });
    number(document, ++m_lastId, currentCommand(), m_runs.empty() ? 0 : ++m_runs.back().outputs);
    auto state = std::make_shared<DocumentState>();
    state->number = document.id;
    state->name = document.name();
    state->graph = document.isGraph();
    state->visible = false;
    state->list = m_list;
    m_waiting.push_back({std::move(document), state});
    return {m_lastId, std::move(state)};
}

std::vector<DocumentStore::Waiting>::iterator DocumentStore::findWaiting(int id) {
    return std::find_if(m_waiting.begin(), m_waiting.end(),
                        [id](const Waiting& waiting) { return waiting.document.id == id; });
}

void DocumentStore::admit(int id, IDispatch* object) {
    const auto waiting = findWaiting(id);
    if (waiting == m_waiting.end())
        return;
    std::shared_ptr<DocumentState> state = waiting->state.lock();
    if (state == nullptr) {
        m_waiting.erase(waiting);
        return;
    }
    state->visible = true;
    m_documents.push_back(std::move(waiting->document));
    m_waiting.erase(waiting);
    m_states.push_back(std::move(state));
    if (object != nullptr)
        object->AddRef();
    m_objects.push_back(object);
    m_stacking.insert(m_stacking.begin(), id);
    const Document& kept = m_documents.back();
    tell([&](DocumentObserver& observer) { observer.added(kept); });
}

void DocumentStore::shown(int id, IDispatch* object) {
    if (findWaiting(id) != m_waiting.end())
        admit(id, object);
    else if (m_list->active == id)
        activate(id);
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
    number(document, kept.id, kept.command, kept.output);
    kept = std::move(document);
    m_states[index]->name = kept.name();
    tell([&](DocumentObserver& observer) { observer.replaced(kept); });
}

bool DocumentStore::replaceFrom(int id, int from) {
    const auto waiting = findWaiting(from);
    if (waiting == m_waiting.end() || find(id) == nullptr)
        return false;
    Document content = std::move(waiting->document);
    m_waiting.erase(waiting);
    replace(id, std::move(content));
    return true;
}

void DocumentStore::close(int id) {
    const auto waiting = findWaiting(id);
    if (waiting != m_waiting.end()) {
        m_waiting.erase(waiting);
        return;
    }
    const std::size_t index = indexOf(id);
    if (index == m_documents.size())
        return;
    const auto at = [&](auto& column) { return column.begin() + static_cast<std::ptrdiff_t>(index); };
    const Document gone = std::move(m_documents[index]);
    const std::shared_ptr<DocumentState> state = m_states[index];
    IDispatch* object = m_objects[index];
    m_documents.erase(at(m_documents));
    m_states.erase(at(m_states));
    m_objects.erase(at(m_objects));
    std::erase(m_stacking, id);
    CloseDocument(*state);
    tell([&](DocumentObserver& observer) { observer.closed(gone); });
    if (object != nullptr)
        object->Release();
}

void DocumentStore::activate(int id) {
    const auto found = std::find(m_stacking.begin(), m_stacking.end(), id);
    if (found == m_stacking.end())
        return;
    if (found == m_stacking.begin() && m_list->active == id)
        return;
    std::rotate(m_stacking.begin(), found, found + 1);
    m_list->active = id;
    m_list->changed(id);
}

int DocumentStore::windowPlace(int id) const {
    const auto found = std::find(m_stacking.begin(), m_stacking.end(), id);
    return found == m_stacking.end() ? -1 : static_cast<int>(found - m_stacking.begin());
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
