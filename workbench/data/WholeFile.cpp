#include "workbench/data/WholeFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdint>
#include <cstring>
#include <system_error>

#include "workbench/data/DataFile.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace wb {

std::string readFileBytes(const std::string& path, std::size_t limit) {
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr)
        throw DataError(path + ": cannot open the file: " + std::strerror(errno));
    std::string text;
    std::error_code sizeUnknown;
    const auto size = std::filesystem::file_size(path, sizeUnknown);
    if (!sizeUnknown)
        text.reserve(std::min<std::uintmax_t>(size, limit));
    char buffer[1 << 16];
    std::size_t count = 0;
    while (text.size() < limit &&
           (count = std::fread(buffer, 1, std::min(sizeof buffer, limit - text.size()), file)) > 0)
        text.append(buffer, count);
    const bool failed = std::ferror(file) != 0;
    std::fclose(file);
    if (failed)
        throw DataError(path + ": cannot read the file");
    return text;
}

FileText::FileText(const std::string& path) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        throw DataError(path + ": cannot open the file: " + std::strerror(errno));
    struct stat status {};
    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0) {
        void* mapping = ::mmap(nullptr, std::size_t(status.st_size), PROT_READ, MAP_PRIVATE,
                               descriptor, 0);
        if (mapping != MAP_FAILED) {
            m_mapping = mapping;
            m_text = std::string_view(static_cast<const char*>(mapping), std::size_t(status.st_size));
        }
    }
    ::close(descriptor);
    if (m_mapping == nullptr) {
        m_read = readFileBytes(path);
        m_text = m_read;
    }
}

FileText::~FileText() {
    if (m_mapping != nullptr)
        ::munmap(m_mapping, m_text.size());
}

void FileText::release(const char* begin, const char* end) const {
    if (m_mapping == nullptr)
        return;
    const auto page = std::uintptr_t(::sysconf(_SC_PAGESIZE));
    const auto first = std::uintptr_t(m_text.data());
    const auto from = (std::max(std::uintptr_t(begin), first) + page - 1) / page * page;
    const auto to = std::min(std::uintptr_t(end), first + m_text.size()) / page * page;
    if (from < to)
        ::madvise(reinterpret_cast<void*>(from), to - from, MADV_DONTNEED);
}

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
