#pragma once
// Files read and written whole. Writing is all or nothing: the content goes to a temporary
// file beside the target, which is renamed into place once complete. A reader never sees
// half a file, and a failed write (a full disk) leaves the older file, if any, as it was and
// no temporary file.

#include <cstddef>
#include <filesystem>
#include <limits>
#include <string>
#include <string_view>

namespace wb {

// The file's first `limit` bytes, all of them by default. Throws DataError naming the file
// when it cannot be opened or read.
std::string readFileBytes(const std::string& path,
                          std::size_t limit = std::numeric_limits<std::size_t>::max());

// A file's bytes for reading. A regular file is mapped rather than copied, so that its text
// is not held twice and the pages read can be let go as a reader moves on; anything else (a
// pipe, an empty file) is read whole. As with any mapping, a file that another program cuts
// short while it is read stops the process; files are read for a moment, not kept mapped.
class FileText {
public:
    // Throws DataError naming the file when it cannot be opened or read.
    explicit FileText(const std::string& path);
    ~FileText();
    FileText(const FileText&) = delete;
    FileText& operator=(const FileText&) = delete;

    std::string_view text() const { return m_text; }
    // Lets go of the whole pages of the text between `begin` and `end`; reading them again
    // brings them back from the file. A range outside a mapped text changes nothing.
    void release(const char* begin, const char* end) const;

private:
    void* m_mapping = nullptr;
    std::string m_read; // the bytes of a file that is not mapped
    std::string_view m_text;
};

// Writes `content` to `path`; the system's reason when it could not, empty on success.
[[nodiscard]] std::string writeWholeFile(const std::filesystem::path& path,
                                         std::string_view content);

} // namespace wb
