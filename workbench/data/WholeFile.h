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

// Writes `content` to `path`; the system's reason when it could not, empty on success.
[[nodiscard]] std::string writeWholeFile(const std::filesystem::path& path,
                                         std::string_view content);

} // namespace wb
