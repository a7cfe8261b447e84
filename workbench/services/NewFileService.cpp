#include "workbench/services/NewFileService.h"

#include <bit>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

#include "workbench/data/NativeFile.h"

namespace wb {

// The module hands over its doubles in memory order, and the native format is little-endian.
static_assert(std::endian::native == std::endian::little,
              "the new-file service writes the module's doubles as they are in memory");

namespace {

constexpr std::size_t ShortNameBytes = 8;
constexpr int DoubleBytes = 8;
// The module writes a row as several 8-byte pieces: they are gathered up to this size
// before they go to the file.
constexpr std::size_t FlushBytes = 1 << 20;
constexpr int MaxFreshNumber = 999999;

std::string systemError() {
    return std::strerror(errno);
}

// A fixed-width name field without its padding: up to the first NUL, trailing blanks dropped.
std::string unpadded(const char* field, std::size_t width) {
    std::string_view text(field, width);
    text = text.substr(0, text.find('\0'));
    const std::size_t end = text.find_last_not_of(' ');
    return std::string(end == std::string_view::npos ? std::string_view()
                                                     : text.substr(0, end + 1));
}

// Writes all of `bytes` at `offset`; false with errno set on failure.
bool writeAt(int fd, std::string_view bytes, std::uint64_t offset) {
    while (!bytes.empty()) {
        const ssize_t written = ::pwrite(fd, bytes.data(), bytes.size(), off_t(offset));
        if (written < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        bytes.remove_prefix(std::size_t(written));
        offset += std::uint64_t(written);
    }
    return true;
}

// Byte ranges written so far, merged where they touch or overlap.
class WrittenRanges {
public:
    void add(std::uint64_t start, std::uint64_t end) {
        auto it = m_ranges.upper_bound(start);
        if (it != m_ranges.begin() && std::prev(it)->second >= start)
            --it;
        while (it != m_ranges.end() && it->first <= end) {
            start = std::min(start, it->first);
            end = std::max(end, it->second);
            it = m_ranges.erase(it);
        }
        m_ranges.emplace(start, end);
    }
    const std::map<std::uint64_t, std::uint64_t>& ranges() const { return m_ranges; }

private:
    std::map<std::uint64_t, std::uint64_t> m_ranges; // start -> end
};

} // namespace

struct NewFileService::OpenFile {
    int fd = -1;
    std::filesystem::path temporary;
    std::filesystem::path target;
    bool freshName = false; // picked by the service: never replaces a file
    std::uint64_t dataStart = 0;
    std::uint64_t dataEnd = 0; // the end of the declared data area
    std::uint64_t rowSize = 0;
    WrittenRanges written;
    // Bytes not yet in the file, which belong at pendingAt.
    std::string pending;
    std::uint64_t pendingAt = 0;

    std::string path() const { return target.string(); }
    bool flush() {
        if (pending.empty())
            return true;
        if (!writeAt(fd, pending, pendingAt))
            return false;
        pending.clear();
        return true;
    }
    // Closes the file and removes the temporary; for every way a file is given up.
    void discard() {
        if (fd >= 0)
            ::close(fd);
        fd = -1;
        ::unlink(temporary.c_str());
    }
};

NewFileService::NewFileService(const DataService& data, std::filesystem::path folder,
                                 TokenTable& tokens)
    : m_data(data), m_folder(std::move(folder)), m_tokens(tokens) {}

NewFileService::~NewFileService() {
    for (auto& [handle, file] : m_files)
        file->discard();
}

std::string NewFileService::lastFinishedPath() const {
    return m_finished.empty() ? std::string() : m_finished.back();
}

short NewFileService::fail(const std::string& reason) {
    m_lastError = reason;
    return 0;
}

short NewFileService::SubsetAndAddEx(unsigned short, const char* name, short nVars, short,
                                     const short* vars, int nCases, const char* shortNames,
                                     const char* longNames, short longNameWidth,
                                     const char* header, short caseNameLen, int* position,
                                     const int* catPositions, const int* catVars, int nCat) {
    const DataFile* source = m_data.dataFile();
    if (source == nullptr)
        return fail("no data file is open");
    if (nVars < 1 || vars == nullptr || shortNames == nullptr)
        return fail("the new file has no variables");
    if (nCases < 0 || caseNameLen < 0 || nCat < 0 || position == nullptr)
        return fail("the new file's layout is not valid");
    if (nCat > 0 && (catPositions == nullptr || catVars == nullptr))
        return fail("the new file's list of categorical variables is missing");

    NativeDictionary dictionary;
    dictionary.rowCount = nCases;
    dictionary.caseNameWidth = caseNameLen;
    if (header != nullptr)
        dictionary.headerText = unpadded(header, NativeHeaderTextBytes);
    for (int i = 0; i < nVars; ++i) {
        const int var = vars[i];
        if (var < 1 || var > source->variableCount())
            return fail("variable " + std::to_string(var) +
                        " of the new file is not in the open data file");
        // Only the missing code, labels and format come from the open file: the names are
        // the caller's.
        Variable variable = source->variable(var);
        variable.name = m_tokens.expand(unpadded(shortNames + i * ShortNameBytes, ShortNameBytes));
        variable.longName = longNames != nullptr && longNameWidth > 0
                                ? unpadded(longNames + std::ptrdiff_t(i) * longNameWidth,
                                           std::size_t(longNameWidth))
                                : std::string();
        dictionary.variables.push_back(std::move(variable));
    }
    dictionary.categorical.assign(std::size_t(nVars), false);
    for (int j = 0; j < nCat; ++j) {
        const int place = catPositions[j];
        if (place < 0 || place >= nVars)
            return fail("categorical variable " + std::to_string(j + 1) + " is at place " +
                        std::to_string(place) + ", outside the new file's " +
                        std::to_string(nVars) + " variables");
        if (catVars[j] != vars[place] - 1)
            return fail("categorical variable " + std::to_string(j + 1) + " is variable " +
                        std::to_string(catVars[j] + 1) + ", but place " + std::to_string(place) +
                        " holds variable " + std::to_string(vars[place]));
        dictionary.categorical[std::size_t(place)] = true;
    }

    std::string bytes;
    try {
        bytes = encodeNativeDictionary(dictionary);
    } catch (const DataError& error) {
        return fail(std::string("the new file cannot be made: ") + error.what());
    }
    auto file = std::make_unique<OpenFile>();
    file->dataStart = bytes.size();
    file->rowSize = std::uint64_t(caseNameLen) + std::uint64_t(DoubleBytes) * std::uint64_t(nVars);
    file->dataEnd = file->dataStart + std::uint64_t(nCases) * file->rowSize;
    if (file->dataEnd > std::uint64_t(INT_MAX))
        return fail("the new file would end at byte " + std::to_string(file->dataEnd) +
                    ", past the module's reach of " + std::to_string(INT_MAX));

    std::error_code folderError;
    std::filesystem::create_directories(m_folder, folderError);
    if (folderError)
        return fail(m_folder.string() + ": cannot create the folder: " + folderError.message());
    file->freshName = name == nullptr || name[0] == '\0';
    file->target = file->freshName ? freshName() : m_folder / name;
    if (file->target.empty())
        return fail(m_folder.string() + ": no free name for a new file");

    // A name of our own beside the target; O_EXCL makes sure it is no one else's.
    for (int attempt = 0; attempt < 100 && file->fd < 0; ++attempt) {
        file->temporary = file->target.parent_path() /
                          ("." + file->target.filename().string() + ".tmp-" +
                           std::to_string(::getpid()) + "-" + std::to_string(++m_temporaryCount));
        file->fd = ::open(file->temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (file->fd < 0 && errno != EEXIST)
            break;
    }
    if (file->fd < 0)
        return fail(file->path() + ": cannot write the file: " + systemError());
    if (!writeAt(file->fd, bytes, 0)) {
        const std::string reason = systemError();
        file->discard();
        return fail(file->path() + ": cannot write the file: " + reason);
    }
    const short handle = nextHandle();
    if (handle == 0) {
        file->discard();
        return fail("too many new files are open");
    }
    *position = int(file->dataStart);
    m_files.emplace(handle, std::move(file));
    return handle;
}

short NewFileService::nextHandle() {
    for (int tries = 0; tries < SHRT_MAX; ++tries) {
        m_lastHandle = m_lastHandle == SHRT_MAX ? 1 : short(m_lastHandle + 1);
        if (!m_files.contains(m_lastHandle))
            return m_lastHandle;
    }
    return 0;
}

std::filesystem::path NewFileService::freshName() const {
    for (int number = 1; number <= MaxFreshNumber; ++number) {
        char name[32];
        std::snprintf(name, sizeof name, "subset-%03d.ddf", number);
        const std::filesystem::path candidate = m_folder / name;
        std::error_code ignored;
        // symlink_status: a dangling link takes its name too.
        if (std::filesystem::exists(std::filesystem::symlink_status(candidate, ignored)))
            continue;
        bool taken = false;
        for (const auto& [handle, file] : m_files)
            taken = taken || file->target == candidate;
        if (!taken)
            return candidate;
    }
    return {};
}

short NewFileService::PutDataF(short handle, const char* data, int position, int length) {
    const auto found = m_files.find(handle);
    if (found == m_files.end()) {
        m_lastError = "no new file has handle " + std::to_string(handle);
        return 1;
    }
    OpenFile& file = *found->second;
    if (length < 0 || (length > 0 && data == nullptr)) {
        m_lastError =
            file.path() + ": a write of " + std::to_string(length) + " bytes is not valid";
        return 1;
    }
    if (position < 0 || std::uint64_t(position) < file.dataStart) {
        m_lastError = file.path() + ": a write at byte " + std::to_string(position) +
                      " lies before the data area, which starts at byte " +
                      std::to_string(file.dataStart);
        return 1;
    }
    const std::uint64_t start = std::uint64_t(position);
    const std::uint64_t end = start + std::uint64_t(length);
    if (end > file.dataEnd) {
        m_lastError = file.path() + ": a write of " + std::to_string(length) + " bytes at byte " +
                      std::to_string(position) + " passes the end of the data area at byte " +
                      std::to_string(file.dataEnd);
        return 1;
    }
    if (length == 0)
        return 0;
    // Bytes that follow the pending ones join them; any other write goes after them.
    if (!file.pending.empty() && start != file.pendingAt + file.pending.size() && !file.flush()) {
        m_lastError = file.path() + ": cannot write the file: " + systemError();
        return 1;
    }
    if (file.pending.empty())
        file.pendingAt = start;
    file.pending.append(data, std::size_t(length));
    file.written.add(start, end);
    if (file.pending.size() >= FlushBytes && !file.flush()) {
        m_lastError = file.path() + ": cannot write the file: " + systemError();
        return 1;
    }
    return 0;
}

int NewFileService::MatClo(short handle) {
    const auto found = m_files.find(handle);
    if (found == m_files.end())
        return fail("no new file has handle " + std::to_string(handle));
    // From here on the file is no longer open, whatever happens.
    const std::unique_ptr<OpenFile> owned = std::move(found->second);
    m_files.erase(found);
    OpenFile& file = *owned;
    auto giveUp = [&](const std::string& reason) {
        file.discard();
        return fail(file.path() + ": " + reason);
    };

    const auto& ranges = file.written.ranges();
    std::uint64_t end = file.dataStart;
    if (!ranges.empty()) {
        const auto first = ranges.begin();
        if (first->first != file.dataStart)
            return giveUp("the data area was not written from its start at byte " +
                          std::to_string(file.dataStart));
        end = first->second;
        if (ranges.size() > 1)
            return giveUp("bytes " + std::to_string(end) + " to " +
                          std::to_string(std::next(first)->first - 1) +
                          " of the data area were never written");
    }
    const std::uint64_t bytes = end - file.dataStart;
    if (bytes % file.rowSize != 0)
        return giveUp("the data area ends inside row " + std::to_string(bytes / file.rowSize + 1) +
                      ", at byte " + std::to_string(end));
    const std::uint32_t rows = std::uint32_t(bytes / file.rowSize);
    char count[4];
    for (int i = 0; i < 4; ++i)
        count[i] = char(rows >> (8 * i));
    if (!file.flush() || !writeAt(file.fd, std::string_view(count, 4), NativeRowCountOffset) ||
        ::fsync(file.fd) != 0)
        return giveUp("cannot write the file: " + systemError());
    const int closed = ::close(file.fd);
    file.fd = -1;
    if (closed != 0)
        return giveUp("cannot write the file: " + systemError());
    if (!putInPlace(file))
        return giveUp("cannot put the file in place: " + systemError());
    m_finished.push_back(file.path());
    return 1;
}

bool NewFileService::putInPlace(OpenFile& file) {
    if (!file.freshName)
        return ::rename(file.temporary.c_str(), file.target.c_str()) == 0;
    // link fails rather than replace a file that took the name since it was picked; the
    // next free name is taken then.
    while (::link(file.temporary.c_str(), file.target.c_str()) != 0) {
        if (errno != EEXIST)
            return false;
        std::filesystem::path next = freshName();
        if (next.empty()) {
            errno = EEXIST;
            return false;
        }
        file.target = std::move(next);
    }
    ::unlink(file.temporary.c_str());
    return true;
}

void NewFileService::AbortOutput(short handle) {
    const auto found = m_files.find(handle);
    if (found == m_files.end())
        return;
    found->second->discard();
    m_files.erase(found);
}

} // namespace wb
