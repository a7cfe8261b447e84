// Memory, messages and progress of the headless host, with their test hooks.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "workbench/services/MemoryService.h"
#include "workbench/headless/HeadlessMessages.h"
#include "workbench/headless/HeadlessProgress.h"

namespace {

// Everything written to a temporary stream so far.
std::string contents(std::FILE* file) {
    std::fflush(file);
    std::rewind(file);
    std::string text;
    for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file))
        text += static_cast<char>(c);
    return text;
}

TEST(MemoryService, BlocksAreZeroFilledAndAccounted) {
    wb::MemoryService memory;
    void* first = nullptr;
    void* second = nullptr;
    ASSERT_EQ(memory.AllocMem(&first, 4096), 0);
    ASSERT_EQ(memory.AllocMem(&second, 0), 0);
    ASSERT_NE(first, nullptr);
    EXPECT_NE(second, nullptr);
    EXPECT_NE(first, second);
    const std::vector<unsigned char> zeros(4096, 0);
    EXPECT_EQ(std::memcmp(first, zeros.data(), zeros.size()), 0);
    EXPECT_EQ(memory.outstandingBlocks(), 2u);
    memory.FreeMem(first);
    memory.FreeMem(nullptr);
    EXPECT_EQ(memory.outstandingBlocks(), 1u);
    memory.FreeMem(second);
    EXPECT_EQ(memory.outstandingBlocks(), 0u);
}

const struct {
    bool fromOn; // failAllocationsFrom instead of failAllocation
    int n;
    const char* outcome; // of five allocations: '0' success, '1' failure
    const char* comment;
} FailureRows[] = {
    {false, 3, "00100", "the third from now fails once"},
    {true, 4, "00011", "the fourth and later fail"},
    {false, 0, "00000", "0 sets no failure"},
};

TEST(MemoryService, FailsTheRequestedAllocations) {
    for (const auto& row : FailureRows) {
        SCOPED_TRACE(row.comment);
        wb::MemoryService memory;
        void* warmUp = nullptr;
        ASSERT_EQ(memory.AllocMem(&warmUp, 8), 0); // counting starts from "now", not from 0
        if (row.fromOn)
            memory.failAllocationsFrom(row.n);
        else
            memory.failAllocation(row.n);
        std::string outcome;
        for (int i = 0; i < 5; ++i) {
            void* block = reinterpret_cast<void*>(0x1);
            const int result = memory.AllocMem(&block, 16);
            outcome += result == 0 ? '0' : '1';
            if (result != 0) {
                EXPECT_EQ(block, nullptr);
            }
            memory.FreeMem(block);
        }
        EXPECT_EQ(outcome, row.outcome);
        memory.FreeMem(warmUp);
        memory.clearFailures();
        EXPECT_EQ(memory.AllocMem(&warmUp, 8), 0) << "clearFailures restores allocation";
        memory.FreeMem(warmUp);
        EXPECT_EQ(memory.outstandingBlocks(), 0u);
        EXPECT_EQ(memory.allocationCount(), 7u);
    }
}

TEST(HeadlessMessages, KeepsMessagesAndEchoesOneLineEach) {
    std::FILE* echo = std::tmpfile();
    ASSERT_NE(echo, nullptr);
    wb::HeadlessMessages messages(echo);
    messages.dsplst(0, "Mémoire insuffisante");
    messages.dsplst(9, "deux\nlignes\n");
    messages.dsplst(0, nullptr);
    EXPECT_EQ(messages.messages(),
              (std::vector<std::string>{"Mémoire insuffisante", "deux\nlignes\n"}));
    EXPECT_EQ(contents(echo), "drilldown: Mémoire insuffisante\ndrilldown: deux\nlignes\n");
    std::fclose(echo);

    messages.clear();
    messages.setEcho(nullptr);
    messages.dsplst(0, "silence");
    EXPECT_EQ(messages.messages(), std::vector<std::string>{"silence"});
}

// Asking many times at once answers, and moves the bar, as asking one time after another; a
// break at a call, counted from when it is set, is reported once, and a request stands.
TEST(HeadlessProgress, PollBreaksDoesWhatAsManyLookbrCallsDo) {
    const struct {
        int count;
        unsigned long breakAt; // breakAtCall, 0 for none
        bool requested;
        int passed, after; // polls that pass, of `count` and of 3 more
    } rows[] = {
        {10, 0, false, 10, 3}, {10, 4, false, 3, 3}, {10, 10, false, 9, 3}, {10, 11, false, 10, 0},
        {10, 0, true, 0, 0},   {0, 0, true, 0, 0},   {1, 1, false, 0, 3},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.count << " polls, break at " << row.breakAt);
        wb::HeadlessProgress many(nullptr), one(nullptr);
        for (wb::HeadlessProgress* progress : {&many, &one}) {
            progress->dstart(100);
            progress->lookbr();
            progress->breakAtCall(row.breakAt);
            if (row.requested)
                progress->requestBreak();
        }
        auto pollOneByOne = [&one](int count) {
            int passed = 0;
            while (passed < count && one.lookbr() == 0)
                ++passed;
            return passed;
        };
        EXPECT_EQ(pollOneByOne(row.count), row.passed);
        EXPECT_EQ(many.PollBreaks(row.count), row.passed);
        EXPECT_EQ(many.lookbrCalls(), one.lookbrCalls());
        EXPECT_EQ(many.position(), one.position());
        EXPECT_EQ(pollOneByOne(3), row.after);
        EXPECT_EQ(many.PollBreaks(3), row.after);
    }
}

TEST(HeadlessProgress, BreakRequestStandsUntilCleared) {
    wb::HeadlessProgress progress(nullptr);
    EXPECT_EQ(progress.lookbr(), 0);
    std::thread other([&progress] { progress.requestBreak(); });
    other.join();
    EXPECT_NE(progress.lookbr(), 0);
    EXPECT_NE(progress.lookbr(), 0);
    progress.clearBreak();
    EXPECT_EQ(progress.lookbr(), 0);
}

// The bar moves with lookbr but is redrawn only when its percentage changes, and the line
// is cleared at the end.
TEST(HeadlessProgress, DrawsAtMostOncePerPercent) {
    std::FILE* terminal = std::tmpfile();
    ASSERT_NE(terminal, nullptr);
    wb::HeadlessProgress progress(terminal, std::chrono::milliseconds(0));
    progress.d_pbar("Scan ");
    progress.dstart(100000);
    for (int i = 0; i < 100000; ++i)
        progress.lookbr();
    const std::string drawn = contents(terminal);
    progress.dstop();
    const std::string all = contents(terminal);
    std::fclose(terminal);

    std::size_t redraws = 0;
    for (const char c : drawn)
        redraws += c == '\r' ? 1 : 0;
    EXPECT_EQ(redraws, 101u); // 0% to 100%
    EXPECT_NE(drawn.find("Scan [......"), std::string::npos);
    EXPECT_NE(drawn.find(" 50%"), std::string::npos);
    EXPECT_NE(drawn.find("[##############################] 100%"), std::string::npos);
    // After dstop the line ends blank.
    const std::string tail = all.substr(all.rfind('\r', all.size() - 2));
    EXPECT_EQ(tail.find_first_not_of(" \r"), std::string::npos);
}

// Work done within the delay shows no bar at all; advanceTo moves the bar as lookbr does.
TEST(HeadlessProgress, QuickWorkShowsNothingAndAdvanceToMovesTheBar) {
    for (const auto delay : {std::chrono::milliseconds(3'600'000), std::chrono::milliseconds(0)}) {
        std::FILE* terminal = std::tmpfile();
        ASSERT_NE(terminal, nullptr);
        wb::HeadlessProgress progress(terminal, delay);
        progress.d_pbar("Chargement ");
        progress.dstart(1000);
        progress.advanceTo(500);
        const std::string drawn = contents(terminal);
        progress.dstop();
        std::fclose(terminal);
        if (delay.count() > 0)
            EXPECT_EQ(drawn, "");
        else
            EXPECT_NE(drawn.find(" 50%"), std::string::npos) << drawn;
    }
}

} // namespace
