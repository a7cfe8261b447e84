// The archive of the stand-alone result windows: where each tracked window stood, so that
// a later session makes the outputs again in their places and order. Contents are not
// stored; they are made again by pressing the buttons anew.
//
// Layout, little-endian: version (1), record count n, then n records of seven 32-bit
// words: command, output number, left, top, right, bottom, z-order (0 the front-most
// tracked window). The text form is the same bytes as upper-case hexadecimal.

#include <algorithm>
#include <map>

#include "../core/CDrillDown.h"
#include "../host/framework/Archive.h"
#include "../outputs/LateBound.h"
#include "../outputs/OutputTracker.h"

namespace {

constexpr int32_t ArchiveVersion = 1;
constexpr int HeaderBytes = 8;
constexpr int RecordBytes = 28;

struct Rectangle {
    int32_t left = 0;
    int32_t top = 0;
    int32_t right = 0;
    int32_t bottom = 0;
};

// Where the document's window stands; all zero when it cannot be read (the window is gone).
Rectangle WindowRectangle(IDispatch* document) {
    IDispatch* window = latebound::Window(document);
    if (window == nullptr)
        return {};
    int top = 0, left = 0, width = 0, height = 0;
    const bool read = latebound::GetInt(window, "Top", &top) &&
                      latebound::GetInt(window, "Left", &left) &&
                      latebound::GetInt(window, "Width", &width) &&
                      latebound::GetInt(window, "Height", &height);
    window->Release();
    if (!read)
        return {};
    return {left, top, left + width, top + height};
}

char HexDigit(int value) { return static_cast<char>(value < 10 ? '0' + value : 'A' + value - 10); }

// Any character that is not a decimal digit counts as an upper-case hexadecimal letter.
int HexValue(char digit) { return digit >= '0' && digit <= '9' ? digit - '0' : digit - 0x37; }

} // namespace

std::vector<int32_t> CDDNOutputTracker::TrackedZOrders() {
    std::vector<std::pair<int, std::size_t>> placed; // host's place, record index
    std::size_t index = 0;
    for (const COutputRecord& record : outputs) {
        const int place = analysis->Document() != nullptr && record.document != nullptr
                              ? analysis->Document()->WindowPlace(record.document)
                              : -1;
        if (place >= 0)
            placed.emplace_back(place, index);
        ++index;
    }
    std::sort(placed.begin(), placed.end());
    std::vector<int32_t> zOrders(outputs.size(), 0);
    for (std::size_t rank = 0; rank < placed.size(); ++rank)
        zOrders[placed[rank].second] = static_cast<int32_t>(rank);
    return zOrders;
}

void CDDNOutputTracker::Serialize(CArchive& archive) {
    if (archive.IsStoring()) {
        const std::vector<int32_t> zOrders = TrackedZOrders();
        archive << ArchiveVersion << static_cast<int32_t>(outputs.size());
        std::size_t index = 0;
        for (const COutputRecord& record : outputs) {
            const Rectangle rect = WindowRectangle(record.document);
            archive << record.key.command << record.key.number << rect.left << rect.top
                    << rect.right << rect.bottom << zOrders[index++];
        }
        return;
    }
    int32_t version = 0;
    archive >> version; // one format so far
    Clear(false);
    int32_t count = 0;
    archive >> count;
    placements.clear();
    // A damaged count must not ask for more room than the stream could fill.
    placements.reserve(std::min<std::size_t>(static_cast<uint32_t>(count),
                                             archive.Left() / RecordBytes));
    for (int32_t i = 0; i < count; ++i) {
        COutputPlacement place;
        archive >> place.key.command >> place.key.number >> place.left >> place.top >>
            place.right >> place.bottom >> place.zOrder;
        placements.push_back(place);
        outputs.push_back({place.key, nullptr, nullptr});
    }
}

int CDDNOutputTracker::GetArchiveSize() const {
    return HeaderBytes + RecordBytes * static_cast<int>(outputs.size());
}

bool CDDNOutputTracker::SaveToBuffer(unsigned char* buffer, int* size) {
    const int needed = GetArchiveSize();
    if (buffer == nullptr || *size < needed) {
        *size = needed;
        return false;
    }
    try {
        std::vector<unsigned char> bytes;
        bytes.reserve(static_cast<std::size_t>(needed));
        CArchive archive(bytes);
        Serialize(archive);
        std::copy(bytes.begin(), bytes.end(), buffer);
        *size = static_cast<int>(bytes.size());
        return true;
    } catch (...) {
        *size = -1;
        return false;
    }
}

bool CDDNOutputTracker::LoadFromBuffer(const unsigned char* buffer, int size) {
    try {
        CArchive archive(buffer, size > 0 ? static_cast<std::size_t>(size) : 0);
        Serialize(archive);
        return true;
    } catch (...) {
        return false;
    }
}

bool CDDNOutputTracker::SaveToText(std::string& text) {
    std::vector<unsigned char> bytes(static_cast<std::size_t>(GetArchiveSize()));
    int size = static_cast<int>(bytes.size());
    if (!SaveToBuffer(bytes.data(), &size))
        return false;
    text.clear();
    text.reserve(2 * static_cast<std::size_t>(size));
    for (int i = 0; i < size; ++i) {
        text += HexDigit(bytes[i] >> 4);
        text += HexDigit(bytes[i] & 0xF);
    }
    return true;
}

bool CDDNOutputTracker::LoadFromText(const std::string& text) {
    std::vector<unsigned char> bytes(text.size() / 2);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<unsigned char>(HexValue(text[2 * i]) * 16 + HexValue(text[2 * i + 1]));
    return LoadFromBuffer(bytes.data(), static_cast<int>(bytes.size()));
}

void CDDNOutputTracker::MoveWindow(IDispatch* document, const COutputPlacement& place) {
    IDispatch* window = latebound::Window(document);
    if (window == nullptr)
        return;
    (void)(latebound::PutInt(window, "Top", place.top) &&
           latebound::PutInt(window, "Left", place.left) &&
           latebound::PutInt(window, "Width", place.right - place.left) &&
           latebound::PutInt(window, "Height", place.bottom - place.top));
    window->Release();
}

void CDDNOutputTracker::RestoreWindows() {
    if (placements.empty())
        return;
    Update();
    // Back-most first: each window made visible comes to the front, so the front-most goes last.
    std::sort(placements.begin(), placements.end(),
              [](const COutputPlacement& a, const COutputPlacement& b) { return a.zOrder > b.zOrder; });
    for (COutputPlacement& place : placements) {
        if (place.document == nullptr)
            continue;
        Remove(place.key, true);
        Add(place.key, place.document);
        const bool empty = place.left == 0 && place.top == 0 && place.right == 0 && place.bottom == 0;
        if (!empty)
            MoveWindow(place.document, place);
        latebound::PutBool(place.document, "Saved", true);
        latebound::PutBool(place.document, "Visible", true);
    }
    for (COutputPlacement& place : placements)
        if (place.document != nullptr)
            place.document->Release();
    placements.clear();
}
