#pragma once
// Stand-alone result windows that follow the drill.
//
// With "StandAloneResults" on, the analysis takes every result document that its panel's
// result buttons make (the host offers each through BeforeRouteOutput) and keeps it in a
// window of its own. A document is known by its key: the button's command and its number
// among that command's outputs. After every drill step Update presses again each button
// whose outputs are still open; each new output takes the place of the window with its key,
// so the windows keep their places, sizes and order, and none takes the focus. A window the
// user closed tells the tracker through its close event and is not made again; an output
// that a replay no longer makes is hidden and dropped.
//
// The tracker reaches the documents only by their member names (LateBound.h) and their
// close events; it holds no reference to a tracked document (the host's list of the
// analysis's documents keeps it alive). Its archive (TrackerArchive.cpp) stores where the
// windows stood, so that a later session makes them again in their places.
//
// Everything runs on the thread of the panel. `updating` guards Update against re-entry
// through the messages that a replay delivers.

#include <cstdint>
#include <list>
#include <string>
#include <vector>

#include "../host/Automation.h"

class CArchive;
class CDrillDown;
class COutputEventSink;

// Names an output across refreshes.
struct COutputKey {
    uint32_t command = 0; // the control id of the button whose handler made the output
    uint32_t number = 0;  // its number among the outputs of that command; the first is 1
    bool operator==(const COutputKey&) const = default;
};

struct COutputRecord {
    COutputKey key;
    IDispatch* document = nullptr;     // not owned; null for a record of a loaded archive
    COutputEventSink* sink = nullptr;  // owned, connected while the record exists
};

// Where a window of a loaded archive is to go once its output has been made again.
struct COutputPlacement {
    COutputKey key;
    int32_t left = 0;
    int32_t top = 0;
    int32_t right = 0;
    int32_t bottom = 0;
    int32_t zOrder = 0;            // 0 for the front-most tracked window
    IDispatch* document = nullptr; // owned; null until the output has arrived
};

class CDDNOutputTracker {
public:
    explicit CDDNOutputTracker(CDrillDown* analysis) : analysis(analysis) {}
    ~CDDNOutputTracker();
    CDDNOutputTracker(const CDDNOutputTracker&) = delete;
    CDDNOutputTracker& operator=(const CDDNOutputTracker&) = delete;

    // Decides what becomes of an output the host offers: true when the tracker took it (and
    // released the caller's reference), false when the host routes it itself.
    bool Route(IDispatch* document);
    // Tracks `document` under `key`, connected to its close event when it has one.
    void Add(COutputKey key, IDispatch* document);
    // Puts the content of `replacement` into the window of `old`; true on success.
    bool Replace(IDispatch* old, IDispatch* replacement);
    // Forgets the record of `key`; with `hide`, its document's window goes as well.
    void Remove(COutputKey key, bool hide);
    // Removes, hiding them, the outputs of `command` that the running update did not make
    // again.
    void Purge(uint32_t command);
    void Clear(bool hide);
    // Presses again, once each, the buttons whose outputs are tracked.
    void Update();

    bool Exists(COutputKey key) const;
    // The key of the next output, instead of the one the host's event record gives; a zero
    // command or number keeps the record's.
    void SetNextKey(COutputKey key) { nextKey = key; }
    std::size_t Count() const { return outputs.size(); }

    // The archive of where the tracked windows stand (TrackerArchive.cpp).
    void Serialize(CArchive& archive);
    int GetArchiveSize() const;
    // True with the archive in `buffer` and its size in *size. Without a buffer, or one
    // smaller than GetArchiveSize, false with the size needed in *size; -1 there when the
    // archive could not be made.
    bool SaveToBuffer(unsigned char* buffer, int* size);
    // False for a short or damaged archive, with what was read so far in place.
    bool LoadFromBuffer(const unsigned char* buffer, int size);
    // The archive as upper-case hexadecimal, two digits a byte.
    bool SaveToText(std::string& text);
    bool LoadFromText(const std::string& text);
    // Makes the outputs of a loaded archive again, in their windows' places and order.
    void RestoreWindows();

private:
    friend class COutputEventSink;
    // The close event of a tracked document's window.
    void WindowClosed(COutputKey key) { Remove(key, false); }
    std::list<COutputRecord>::iterator Find(COutputKey key);
    // The key of the output being routed; false when it is not an output of a command.
    bool KeyOfOutput(COutputKey* key);
    // The document's window moved to a placement's rectangle, stopping at the first failure.
    static void MoveWindow(IDispatch* document, const COutputPlacement& place);
    // Where each tracked document's window stands among the host's windows (0 front-most),
    // counted over the tracked ones only.
    std::vector<int32_t> TrackedZOrders();

    std::list<COutputRecord> outputs; // newest last
    CDrillDown* analysis;
    uint8_t updating = 0;
    uint32_t currentCommand = 0;
    COutputKey nextKey;
    std::list<COutputKey> expected;
    std::vector<COutputPlacement> placements;
};
