// The keyword store: where it lives, persistence, and files it must not destroy.
#include <gtest/gtest.h>

#include <stdlib.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>

#include "support/TempDir.h"
#include "workbench/services/KeywordStore.h"

namespace {

namespace fs = std::filesystem;
using wb::KeywordStore;
using wb::testing::TempDir;

std::string readFile(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// Everything written to a temporary stream, which is closed.
std::string contents(std::FILE* stream) {
    std::rewind(stream);
    std::string text;
    for (int c = std::fgetc(stream); c != EOF; c = std::fgetc(stream))
        text += static_cast<char>(c);
    std::fclose(stream);
    return text;
}

std::size_t entries(const fs::path& directory) {
    return std::size_t(std::distance(fs::directory_iterator(directory), {}));
}

std::optional<std::string> getEnv(const char* name) {
    const char* value = std::getenv(name);
    return value ? std::optional<std::string>(value) : std::nullopt;
}

void setEnv(const char* name, const char* value) {
    if (value != nullptr)
        ::setenv(name, value, 1);
    else
        ::unsetenv(name);
}

TEST(KeywordStore, DefaultPathFollowsTheBaseDirectoryRules) {
    const struct {
        const char* xdg; // null: unset
        const char* home;
        const char* expected;
        const char* comment;
    } rows[] = {
        {"/cfg", "/home/u", "/cfg/drilldown/settings.json", "XDG_CONFIG_HOME first"},
        {nullptr, "/home/u", "/home/u/.config/drilldown/settings.json", "else under HOME"},
        {"", "/home/u", "/home/u/.config/drilldown/settings.json", "empty counts as unset"},
        {"cfg", "/home/u", "/home/u/.config/drilldown/settings.json", "relative is ignored"},
        {nullptr, nullptr, "", "neither: the store stays in memory"},
    };
    const std::optional<std::string> xdg = getEnv("XDG_CONFIG_HOME");
    const std::optional<std::string> home = getEnv("HOME");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.comment);
        setEnv("XDG_CONFIG_HOME", row.xdg);
        setEnv("HOME", row.home);
        EXPECT_EQ(KeywordStore::defaultPath(), fs::path(row.expected));
    }
    setEnv("XDG_CONFIG_HOME", xdg ? xdg->c_str() : nullptr);
    setEnv("HOME", home ? home->c_str() : nullptr);
}

TEST(KeywordStore, ValuesOutliveTheStore) {
    TempDir dir;
    const fs::path file = dir.path("a/b/settings.json"); // directories are made
    {
        KeywordStore store(file, nullptr);
        EXPECT_FALSE(store.get(0, "StandAloneResults").has_value()); // no file yet
        EXPECT_TRUE(store.put(0, "StandAloneResults", 1));
        EXPECT_TRUE(store.put(0, "StandAloneResults", 0)); // overwritten
        EXPECT_TRUE(store.put(3, "StandAloneResults", -7));
    }
    KeywordStore again(file, nullptr);
    EXPECT_EQ(again.get(0, "StandAloneResults"), 0);
    EXPECT_EQ(again.get(3, "StandAloneResults"), -7);            // sections apart
    EXPECT_FALSE(again.get(0, "standaloneresults").has_value()); // case matters
    EXPECT_EQ(entries(file.parent_path()), 1u);                  // no temporary file left
}

TEST(KeywordStore, KeepsWhatItDoesNotUnderstand) {
    TempDir dir;
    const fs::path file = dir.write(
        "settings.json", R"({"0": {"Note": "text", "Big": 3000000000}, "meta": {"list": [1]}})");
    KeywordStore store(file, nullptr);
    EXPECT_FALSE(store.get(0, "Note").has_value()); // no integer
    EXPECT_FALSE(store.get(0, "Big").has_value());  // beyond int
    ASSERT_TRUE(store.put(0, "Y", 2));
    EXPECT_EQ(nlohmann::json::parse(readFile(file)),
              nlohmann::json::parse(
                  R"({"0": {"Note": "text", "Big": 3000000000, "Y": 2}, "meta": {"list": [1]}})"));
}

// A settings file that cannot be read or written: the values stay for the run, the file is
// left as it is, and one line says so however often a value is put.
TEST(KeywordStore, UnusableFilesAreLeftAloneAndReportedOnce) {
    TempDir dir;
    const fs::path blocked =
        fs::path(dir.write("blocker", "a file where a directory should be")) / "settings.json";
    const struct {
        const char* contents; // of the settings file; null: `file` is used as it is
        fs::path file;
        std::string report; // how the report begins; empty: that of a corrupt file
        const char* comment;
    } rows[] = {
        {R"({"0": {"StandAloneResults": 1})", {}, "", "cut short"},
        {"[1, 2]", {}, "", "an array, not an object"},
        {R"({"0": 5})", {}, "", "a section that is no object"},
        {nullptr, blocked,
         "drilldown: settings file " + blocked.string() + ": it cannot be written (",
         "a file where its directory should be"},
        {nullptr, fs::path(),
         "drilldown: no configuration directory ($XDG_CONFIG_HOME or $HOME); "
         "settings are kept for this run only\n",
         "no file at all"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.comment);
        const TempDir own;
        const fs::path file = row.contents ? fs::path(own.write("settings.json", row.contents))
                                           : row.file;
        std::FILE* diagnostics = std::tmpfile();
        {
            KeywordStore store(file, diagnostics);
            EXPECT_FALSE(store.get(0, "StandAloneResults").has_value());
            EXPECT_FALSE(store.put(0, "StandAloneResults", 1));
            EXPECT_FALSE(store.put(0, "StandAloneResults", 2));
            EXPECT_EQ(store.get(0, "StandAloneResults"), 2); // kept in memory
        }
        const std::string report = contents(diagnostics);
        EXPECT_EQ(report.find('\n'), report.size() - 1) << report; // one line
        if (!row.report.empty()) {
            EXPECT_EQ(report.rfind(row.report, 0), 0u) << report;
            continue;
        }
        EXPECT_EQ(readFile(file), row.contents);
        EXPECT_EQ(entries(file.parent_path()), 1u);
        EXPECT_EQ(report.rfind("drilldown: settings file " + file.string() + ": it ", 0), 0u)
            << report;
        EXPECT_NE(report.find("it is left as it is"), std::string::npos) << report;
    }
}

} // namespace
