#pragma once
// A dialog object of the module's kind that records the messages its window gets, for tests
// of the windows that deliver them.

#include <functional>
#include <vector>

#include "drilldown/host/framework/AnalysisDialog.h"

namespace test {

// A message as a dialog got it.
struct Message {
    unsigned message = 0;
    int id = 0;        // control of a command or notification
    unsigned code = 0; // notification code (of WM_NOTIFY: its negation)
    int item = -1;     // row of a list view notification
    bool operator==(const Message&) const = default;
};

// A dialog that records its messages and runs `onCommand` for each command.
template <typename Base> class RecordingDialog : public Base {
public:
    RecordingDialog(CAnalysisSupport* analysis, int resourceId)
        : Base(analysis, resourceId, nullptr) {}

    long EventHandler(HWND dialog, unsigned message, unsigned long wParam, long lParam) override {
        Message got{message};
        if (message == WM_COMMAND) {
            got.id = LowWord(wParam);
            got.code = HighWord(wParam);
        } else if (message == WM_NOTIFY) {
            const auto* notice = reinterpret_cast<const NMLISTVIEW*>(lParam);
            got.id = static_cast<int>(notice->hdr.idFrom);
            got.code = static_cast<unsigned>(-notice->hdr.code);
            got.item = notice->iItem;
        }
        messages.push_back(got);
        if (message == WM_COMMAND && onCommand)
            onCommand(dialog, got.id);
        return 0;
    }
    void PostNcDestroy() override { ++destroyed; }

    std::vector<Message> messages;
    std::function<void(HWND, int)> onCommand;
    int destroyed = 0;
};

} // namespace test
