// Loading a large file reports how far it has come, whatever the kind of file: shares from 0
// to 1 that never go back, all on the thread that loads, which a window may then redraw.

#include <algorithm>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "support/TempDir.h"
#include "workbench/data/DataFileLoader.h"
#include "workbench/data/NativeFile.h"

namespace {

// Enough for several reports from every reader, reading in stretches too.
constexpr int Rows = 300000;

// Rows of two numbers; `quoted` quotes the first name, which makes the rows read in order.
std::string csvText(bool quoted) {
    std::string text = quoted ? "\"A\",B\n" : "A,B\n";
    for (int i = 0; i < Rows; ++i)
        text += std::to_string(i) + "," + std::to_string(i % 7) + ".125\n";
    return text;
}

std::string writeNative(const wb::testing::TempDir& dir) {
    wb::DataFile file;
    file.addVariable({"A", "", -1.0, {}, wb::DisplayFormat::Plain});
    file.addVariable({"B", "", -1.0, {}, wb::DisplayFormat::Plain});
    for (int i = 0; i < Rows; ++i)
        file.appendCase({double(i), double(i % 7)});
    const std::string path = dir.path("data.ddf");
    wb::writeNativeFile(file, path);
    return path;
}

TEST(LoadProgress, RisesOnTheLoadingThread) {
    const wb::testing::TempDir dir;
    const struct {
        const char* what;
        std::function<std::string()> write;
        double last; // the least the last report may be
    } kinds[] = {
        {"CSV read in stretches", [&] { return dir.write("plain.csv", csvText(false)); }, 0.5},
        {"CSV read in order", [&] { return dir.write("quoted.csv", csvText(true)); }, 0.5},
        {"native file", [&] { return writeNative(dir); }, 1.0},
    };
    for (const auto& kind : kinds) {
        SCOPED_TRACE(kind.what);
        std::vector<double> shares;
        bool elsewhere = false;
        const std::thread::id loader = std::this_thread::get_id();
        const wb::DataFile file = wb::loadDataFile(kind.write(), [&](double share) {
            shares.push_back(share);
            elsewhere = elsewhere || std::this_thread::get_id() != loader;
        });
        EXPECT_EQ(file.caseCount(), Rows);
        ASSERT_GE(shares.size(), 2u);
        EXPECT_GT(shares.front(), 0.0);
        EXPECT_TRUE(std::is_sorted(shares.begin(), shares.end()));
        EXPECT_GE(shares.back(), kind.last);
        EXPECT_LE(shares.back(), 1.0);
        EXPECT_FALSE(elsewhere);
    }
}

} // namespace
