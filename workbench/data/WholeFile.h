#pragma once
// Writing a file all or nothing: the content goes to a temporary file beside the target,
// which is renamed into place once complete. A reader never sees half a file, and a failed
// write (a full disk) leaves the older file, if any, as it was and no temporary file.

#include <filesystem>
#include <string>
#include <string_view>

namespace wb {

// Writes `content` to `path`; the system's reason when it could not, empty on success.
[[nodiscard]] std::string writeWholeFile(const std::filesystem::path& path,
                                         std::string_view content);

} // namespace wb
