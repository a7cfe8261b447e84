#include "workbench/services/KeywordStore.h"

#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>
#include <system_error>

namespace wb {

namespace {

// An absolute directory named by an environment variable, or empty: the XDG base
// directory rules ignore a relative value.
std::filesystem::path directoryFromEnvironment(const char* name) {
    const char* value = std::getenv(name);
    if (value == nullptr || *value == '\0')
        return {};
    std::filesystem::path directory(value);
    return directory.is_absolute() ? directory : std::filesystem::path();
}

// Every section is an object; anything else means the file is not one of ours, and
// writing our sections over it would destroy what it holds.
bool isStore(const nlohmann::json& document) {
    if (!document.is_object())
        return false;
    for (const auto& section : document)
        if (!section.is_object())
            return false;
    return true;
}

std::optional<int> asInt(const nlohmann::json& value) {
    if (value.is_number_unsigned()) {
        const auto number = value.get<std::uint64_t>();
        return number <= INT_MAX ? std::optional<int>(static_cast<int>(number)) : std::nullopt;
    }
    if (value.is_number_integer()) {
        const auto number = value.get<std::int64_t>();
        return number >= INT_MIN && number <= INT_MAX ? std::optional<int>(static_cast<int>(number))
                                                      : std::nullopt;
    }
    return std::nullopt;
}

// The last C library error; EIO when the failing call left errno unset, which a short
// fwrite may do.
std::error_code lastError() {
    return {errno != 0 ? errno : EIO, std::generic_category()};
}

// Writes `text` to `file` and makes it durable before the caller renames it into place.
std::error_code writeDurably(const std::filesystem::path& file, const std::string& text) {
    errno = 0;
    std::FILE* stream = std::fopen(file.c_str(), "wb");
    if (stream == nullptr)
        return lastError();
    const bool written = std::fwrite(text.data(), 1, text.size(), stream) == text.size() &&
                         std::fflush(stream) == 0 && ::fsync(::fileno(stream)) == 0;
    const std::error_code writeError = written ? std::error_code() : lastError();
    if (std::fclose(stream) != 0 && written)
        return lastError();
    return writeError;
}

} // namespace

KeywordStore::KeywordStore(std::FILE* diagnostics) : KeywordStore(defaultPath(), diagnostics) {}

KeywordStore::KeywordStore(std::filesystem::path file, std::FILE* diagnostics)
    : m_path(std::move(file)), m_diagnostics(diagnostics) {
    load();
}

std::filesystem::path KeywordStore::defaultPath() {
    std::filesystem::path base = directoryFromEnvironment("XDG_CONFIG_HOME");
    if (base.empty()) {
        const std::filesystem::path home = directoryFromEnvironment("HOME");
        if (home.empty())
            return {};
        base = home / ".config";
    }
    return base / "drilldown" / "settings.json";
}

void KeywordStore::load() {
    if (m_path.empty())
        return;
    std::error_code error;
    const bool exists = std::filesystem::exists(m_path, error);
    if (!error && !exists)
        return;
    std::ifstream stream(m_path, std::ios::binary);
    nlohmann::json document;
    std::string problem;
    if (error || !stream) {
        problem = "it cannot be read";
    } else {
        try {
            document = nlohmann::json::parse(stream);
            if (!isStore(document))
                problem = "it is not a settings file";
        } catch (const nlohmann::json::exception& failure) {
            // The stream's own failure (a directory, an I/O error) also ends up here.
            problem = std::string("it is not valid JSON: ") + failure.what();
        }
    }
    if (problem.empty()) {
        m_document = std::move(document);
        return;
    }
    m_writable = false;
    report(problem + "; it is left as it is and settings are kept for this run only");
}

std::optional<int> KeywordStore::get(int section, std::string_view keyword) const {
    const auto found = m_document.find(std::to_string(section));
    if (found == m_document.end())
        return std::nullopt;
    const auto value = found->find(std::string(keyword));
    if (value == found->end())
        return std::nullopt;
    return asInt(*value);
}

bool KeywordStore::put(int section, std::string_view keyword, int value) {
    m_document[std::to_string(section)][std::string(keyword)] = value;
    return save();
}

bool KeywordStore::save() {
    if (!m_writable)
        return false;
    if (m_path.empty()) {
        report("no configuration directory ($XDG_CONFIG_HOME or $HOME); settings are kept "
               "for this run only");
        return false;
    }
    std::error_code error;
    if (m_path.has_parent_path())
        std::filesystem::create_directories(m_path.parent_path(), error);
    // A name of this process's own, so that two programs saving at once do not write into
    // each other's temporary file.
    std::filesystem::path temporary = m_path;
    temporary += ".tmp" + std::to_string(::getpid());
    // A keyword that is not UTF-8 is written with replacement characters rather than thrown at.
    const std::string text =
        m_document.dump(4, ' ', false, nlohmann::json::error_handler_t::replace) + '\n';
    if (!error)
        error = writeDurably(temporary, text);
    if (!error)
        std::filesystem::rename(temporary, m_path, error);
    if (!error)
        return true;
    std::error_code ignored;
    std::filesystem::remove(temporary, ignored);
    report("it cannot be written (" + error.message() + "); settings are kept for this run only");
    return false;
}

void KeywordStore::report(const std::string& problem) {
    if (m_reported || m_diagnostics == nullptr)
        return;
    m_reported = true;
    if (m_path.empty())
        std::fprintf(m_diagnostics, "drilldown: %s\n", problem.c_str());
    else
        std::fprintf(m_diagnostics, "drilldown: settings file %s: %s\n", m_path.c_str(),
                     problem.c_str());
}

} // namespace wb
