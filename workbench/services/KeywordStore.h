#pragma once
// The workbench's keyword store: integers kept under (section, keyword) from one run to the
// next, in a small JSON file of the user's:
//
//   { "0": { "StandAloneResults": 1 } }
//
// Sections are the members of the top object, named by their number; keywords are matched
// exactly, case included. Members the store does not understand (a value that is no
// integer of int range, a member that is no number) are kept as they are when it writes.
//
// The file is read once, when the store is made, and rewritten whole on every put, through
// a temporary file in the same directory and a rename, so that a crash leaves the old file
// or the new one, never a half-written one. Of two stores on the same file, the last to
// write wins.
//
// Failures never stop the caller: a missing file is an empty store; a file that cannot be
// read or is no store of ours is left in place, untouched, and the values live in memory
// only; so do they when the file cannot be written. Each store reports the first such
// problem once, naming the file, and keeps quiet about the rest.

#include <cstdio>
#include <filesystem>
#include <optional>
#include <string_view>

#include <nlohmann/json.hpp>

namespace wb {

class KeywordStore {
public:
    // The user's store, defaultPath(); in memory only when there is no such path.
    explicit KeywordStore(std::FILE* diagnostics = stderr);
    // The store in `file`; an empty path keeps it in memory. Problems are reported to
    // `diagnostics` (null: not at all).
    explicit KeywordStore(std::filesystem::path file, std::FILE* diagnostics = stderr);

    // $XDG_CONFIG_HOME/drilldown/settings.json, else $HOME/.config/drilldown/settings.json;
    // empty when neither variable gives an absolute directory.
    static std::filesystem::path defaultPath();

    const std::filesystem::path& path() const { return m_path; }

    std::optional<int> get(int section, std::string_view keyword) const;
    // Keeps the value and writes the file; false when the value could be kept in memory only.
    bool put(int section, std::string_view keyword, int value);

private:
    void load();
    bool save();
    void report(const std::string& problem);

    std::filesystem::path m_path;
    std::FILE* m_diagnostics;
    nlohmann::json m_document = nlohmann::json::object();
    // False once the file turned out unreadable or foreign: it is then never overwritten.
    bool m_writable = true;
    bool m_reported = false;
};

} // namespace wb
