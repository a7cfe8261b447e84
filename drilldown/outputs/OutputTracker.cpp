#include "OutputTracker.h"

#include <algorithm>

#include "../core/CDrillDown.h"
#include "../host/framework/AnalysisDialog.h"
#include "EventSinks.h"
#include "LateBound.h"

namespace {

// The host's window states.
constexpr int MinimisedWindow = 1;
constexpr int NormalWindow = 2;

} // namespace

CDDNOutputTracker::~CDDNOutputTracker() {
    for (COutputRecord& record : outputs)
        if (record.sink != nullptr) {
            record.sink->Disconnect();
            record.sink->Release();
        }
    for (COutputPlacement& place : placements)
        if (place.document != nullptr)
            place.document->Release();
}

std::list<COutputRecord>::iterator CDDNOutputTracker::Find(COutputKey key) {
    return std::find_if(outputs.begin(), outputs.end(),
                        [&](const COutputRecord& record) { return record.key == key; });
}

bool CDDNOutputTracker::Exists(COutputKey key) const {
    return std::any_of(outputs.begin(), outputs.end(),
                       [&](const COutputRecord& record) { return record.key == key; });
}

bool CDDNOutputTracker::KeyOfOutput(COutputKey* key) {
    CAnalysisDoc* document = analysis->Document();
    if (document == nullptr)
        return false;
    const CEventRecord& event = document->EventRecord();
    if (event.Message != WM_COMMAND && updating == 0)
        return false;
    key->command = static_cast<uint32_t>(event.WParam);
    key->number = event.OutputNumber;
    if (updating != 0 && currentCommand != 0)
        key->command = currentCommand;
    if (nextKey.command != 0) {
        key->command = nextKey.command;
        if (nextKey.number != 0)
            key->number = nextKey.number;
    }
    nextKey = {};
    return true;
}

bool CDDNOutputTracker::Route(IDispatch* document) {
    COutputKey key;
    if (!KeyOfOutput(&key))
        return false;
    expected.remove(key);

    const auto found = Find(key);
    if (found == outputs.end()) {
        // During a refresh an output without a record is one whose window the user closed:
        // it is not shown again.
        if (updating == 0) {
            Add(key, document);
            latebound::PutBool(document, "Saved", true);
            latebound::Call(document, "Activate");
        }
        document->Release();
        return true;
    }
    if (found->document == nullptr) {
        // A record of a loaded archive: the document waits for its placement.
        const auto place = std::find_if(placements.begin(), placements.end(),
                                        [&](const COutputPlacement& p) { return p.key == key; });
        if (place != placements.end()) {
            if (place->document != nullptr)
                place->document->Release();
            place->document = document; // the caller's reference passes to the placement
            return true;
        }
    } else if (Replace(found->document, document)) {
        document->Release();
        return true;
    }
    // The old window cannot take the content: the new document shows in a window of its own.
    Remove(key, true);
    Add(key, document);
    latebound::PutBool(document, "Saved", true);
    latebound::PutBool(document, "Visible", true);
    document->Release();
    return true;
}

void CDDNOutputTracker::Add(COutputKey key, IDispatch* document) {
    COutputEventSink* sink = nullptr;
    void* found = nullptr;
    if (SUCCEEDED(document->QueryInterface(IID_SpreadsheetDocument, &found))) {
        static_cast<IUnknown*>(found)->Release();
        sink = new CSpreadsheetEventSink(this, document, key);
    } else if (SUCCEEDED(document->QueryInterface(IID_GraphDocument, &found))) {
        static_cast<IUnknown*>(found)->Release();
        sink = new CGraphEventSink(this, document, key);
    }
    if (sink != nullptr && !sink->Connect()) {
        sink->Release();
        sink = nullptr;
    }
    outputs.push_back({key, document, sink});
}

bool CDDNOutputTracker::Replace(IDispatch* old, IDispatch* replacement) {
    const bool replaced = analysis->ReplaceContentOfDoc(old, replacement);
    if (replaced && analysis->Document() != nullptr)
        analysis->Document()->RemoveFromAnalysisList(replacement);
    latebound::PutBool(old, "Saved", true);
    if (updating == 0) {
        // A button pressed again brings its window up, out of the task bar if it was there.
        if (IDispatch* window = latebound::Window(old)) {
            int state = NormalWindow;
            latebound::GetInt(window, "State", &state);
            if (state == MinimisedWindow)
                latebound::PutInt(window, "State", NormalWindow);
            window->Release();
        }
        latebound::Call(old, "Activate");
    }
    return replaced;
}

void CDDNOutputTracker::Remove(COutputKey key, bool hide) {
    const auto found = Find(key);
    if (found == outputs.end())
        return;
    if (found->sink != nullptr) {
        found->sink->Disconnect();
        found->sink->Release();
    }
    if (hide && found->document != nullptr) {
        // The host's list may have held the last reference: keep the document for the hide.
        IDispatch* document = found->document;
        document->AddRef();
        if (analysis->Document() != nullptr)
            analysis->Document()->RemoveFromAnalysisList(document);
        latebound::PutBool(document, "Visible", false);
        document->Release();
    }
    outputs.erase(found);
}

void CDDNOutputTracker::Purge(uint32_t command) {
    for (auto entry = expected.begin(); entry != expected.end();) {
        if (entry->command != command) {
            ++entry;
            continue;
        }
        Remove(*entry, true);
        entry = expected.erase(entry);
    }
}

void CDDNOutputTracker::Clear(bool hide) {
    while (!outputs.empty())
        Remove(outputs.front().key, hide);
}

void CDDNOutputTracker::Update() {
    if (updating != 0)
        return;
    // The update's state goes on every way out, exceptions included.
    struct UpdateScope {
        CDDNOutputTracker& tracker;
        explicit UpdateScope(CDDNOutputTracker& t) : tracker(t) { tracker.updating = 1; }
        ~UpdateScope() {
            tracker.updating = 0;
            tracker.currentCommand = 0;
            tracker.expected.clear();
        }
    } scope(*this);
    const auto* dialog = static_cast<CAnalysisDialog*>(analysis->GetDialog());
    const HWND window = dialog != nullptr ? dialog->GetSafeHwnd() : nullptr;
    CAnalysisDoc* document = analysis->Document();
    if (window == nullptr || document == nullptr)
        return;

    std::vector<uint32_t> commands;
    for (const COutputRecord& record : outputs) {
        expected.push_back(record.key);
        if (std::find(commands.begin(), commands.end(), record.key.command) == commands.end())
            commands.push_back(record.key.command);
    }

    struct UpdatingFlag {
        CAnalysisDoc& document;
        explicit UpdatingFlag(CAnalysisDoc& d) : document(d) { document.SetUpdating(true); }
        ~UpdatingFlag() { document.SetUpdating(false); }
    } flag(*document);
    for (const uint32_t command : commands) {
        currentCommand = command;
        // The replay numbers its outputs afresh, as a press of the button does.
        const unsigned saved = std::exchange(document->EventRecord().OutputNumber, 0u);
        analysis->Dialogs().SendMessageA(window, WM_COMMAND, command, 0);
        Purge(command);
        document->EventRecord().OutputNumber = saved;
        currentCommand = 0;
    }
}
