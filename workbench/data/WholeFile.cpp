#include "workbench/data/WholeFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <system_error>

#include <unistd.h>

namespace wb {

namespace {

std::string reasonOf(int error) {
    return std::generic_category().message(error != 0 ? error : EIO);
}

} // namespace

std::string writeWholeFile(const std::filesystem::path& path, std::string_view content) {
    // Beside the target, so that the rename stays on one file system and is atomic.
    const std::filesystem::path temporary =
        path.parent_path() /
        ("." + path.filename().string() + ".tmp-" + std::to_string(::getpid()));
    std::FILE* out = std::fopen(temporary.c_str(), "wb");
    if (out == nullptr)
        return reasonOf(errno);
    std::string reason;
    if (std::fwrite(content.data(), 1, content.size(), out) != content.size())
        reason = reasonOf(errno);
    if (std::fclose(out) != 0 && reason.empty()) // a full disk may only show here
        reason = reasonOf(errno);
    if (reason.empty()) {
        std::error_code renamed;
        std::filesystem::rename(temporary, path, renamed);
        if (!renamed)
            return {};
        reason = renamed.message();
    }
    std::error_code ignored;
    std::filesystem::remove(temporary, ignored);
    return reason;
}

} // namespace wb
