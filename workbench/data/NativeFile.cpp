#include "workbench/data/NativeFile.h"
#include "workbench/data/WholeFile.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <functional>
#include <iterator>
#include <memory>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace wb {

namespace {

constexpr std::size_t DoubleBytes = 8;
// A data area is read in parts from this many bytes each on.
constexpr std::size_t MinPartBytes = std::size_t(4) << 20;

void putU32(std::string& out, std::uint32_t value) {
    for (int i = 0; i < 4; ++i)
        out.push_back(char(value >> (8 * i)));
}

void putU64(std::string& out, std::uint64_t value) {
    for (int i = 0; i < 8; ++i)
        out.push_back(char(value >> (8 * i)));
}

void putDouble(std::string& out, double value) {
    putU64(out, std::bit_cast<std::uint64_t>(value));
}

void putString(std::string& out, std::string_view text) {
    putU32(out, std::uint32_t(text.size()));
    out.append(text);
}

std::uint64_t getLittleEndian(const char* bytes, int count) {
    std::uint64_t value = 0;
    for (int i = count - 1; i >= 0; --i)
        value = (value << 8) | static_cast<unsigned char>(bytes[i]);
    return value;
}

double getDouble(const char* bytes) {
    return std::bit_cast<double>(getLittleEndian(bytes, 8));
}

// A fixed-width text field without its padding: up to the first NUL, trailing blanks dropped.
std::string_view unpadded(std::string_view field) {
    field = field.substr(0, field.find('\0'));
    const std::size_t end = field.find_last_not_of(' ');
    return end == std::string_view::npos ? std::string_view() : field.substr(0, end + 1);
}

std::string counted(std::uint64_t count, const char* thing) {
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

std::string numberText(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.17g", value);
    return text;
}

// The rules that the reader checks and the encoder keeps, each giving the fault or nothing.

std::string variableCountFault(std::uint64_t count) {
    if (count == 0)
        return "the file has no variables";
    if (count > std::uint64_t(NativeMaxVariables))
        return counted(count, "variable") + "; at most " + std::to_string(NativeMaxVariables) +
               " are allowed";
    return {};
}

std::string caseNameWidthFault(std::uint64_t width) {
    if (width > std::uint64_t(NativeMaxCaseNameWidth))
        return "case names of " + counted(width, "byte") + "; at most " +
               std::to_string(NativeMaxCaseNameWidth) + " are allowed";
    return {};
}

std::string weightFault(std::uint64_t weight, std::uint64_t variables) {
    if (weight > variables)
        return "weight variable " + std::to_string(weight) + " does not exist; the file has " +
               counted(variables, "variable");
    return {};
}

std::string missingCodeFault(double code, const std::string& variable) {
    if (!std::isfinite(code))
        return "the missing code of variable " + variable + " is not a finite number";
    return {};
}

std::string labelValueFault(double value, const std::string& variable) {
    if (!std::isfinite(value))
        return "a text label of variable " + variable + " has a value that is not a finite number";
    return {};
}

// Hands out `count` bytes of the file from byte `offset` on: a view of what is in memory, or
// what was read from the file into `buffer`. Parts of the data area call it from threads of
// their own, each with its own buffer.
using DataArea =
    std::function<std::string_view(std::size_t offset, std::size_t count, std::string& buffer)>;

// Reads a native file whose first bytes, the dictionary at least, are in `bytes`; the file
// has `size` bytes, and the data area comes from `area`.
class Parser {
public:
    Parser(std::string_view bytes, const std::string& name, std::uint64_t size, DataArea area,
           LoadProgress progress = {})
        : m_bytes(bytes), m_size(size), m_area(std::move(area)), m_progress(std::move(progress)),
          m_name(name) {}

    NativeContents parse() {
        if (!hasNativeMagic(m_bytes))
            throw DataError(m_name + ": not a drill-down data file (bad magic number)");
        m_at = NativeMagic.size();
        const std::uint32_t version = u32("the format version");
        if (version != NativeVersion)
            throw DataError(m_name + ": format version " + std::to_string(version) +
                            " is not supported; this workbench reads version " +
                            std::to_string(NativeVersion));
        const std::string header(unpadded(take(NativeHeaderTextBytes, "the header text")));

        const std::size_t countAt = m_at;
        const std::uint32_t variableCount = u32("the variable count");
        check(countAt, variableCountFault(variableCount));
        const std::size_t rowsAt = m_at;
        const std::uint32_t rows = u32("the row count");
        if (rows > std::uint32_t(INT_MAX))
            fail(rowsAt,
                 counted(rows, "row") + "; at most " + std::to_string(INT_MAX) + " are allowed");
        const std::size_t widthAt = m_at;
        const std::uint32_t width = u32("the case-name width");
        check(widthAt, caseNameWidthFault(width));
        const std::size_t weightAt = m_at;
        const std::uint32_t weight = u32("the weight variable");
        check(weightAt, weightFault(weight, variableCount));
        const std::size_t offsetAt = m_at;
        const std::uint64_t dataOffset = u64("the data offset");
        const std::size_t selectionAt = m_at;
        const std::string selection = string("the selection condition");

        NativeContents contents;
        std::vector<Variable> variables(variableCount);
        contents.categorical.resize(variableCount);
        for (std::uint32_t i = 0; i < variableCount; ++i) {
            bool categorical = false;
            readVariable(i + 1, variables[i], categorical);
            contents.categorical[i] = categorical;
        }

        if (dataOffset != m_at)
            fail(offsetAt, "the data area is said to start at byte " + std::to_string(dataOffset) +
                               "; the dictionary ends at byte " + std::to_string(m_at));
        const std::uint64_t rowSize = width + DoubleBytes * variableCount;
        const std::uint64_t needed = rows * rowSize;
        const std::uint64_t held = m_size - m_at;
        if (held != needed)
            fail(m_at, "the data area holds " + counted(held, "byte") + "; " +
                           counted(rows, "row") + " of " + counted(rowSize, "byte") + " need " +
                           std::to_string(needed));

        DataFile& file = contents.data;
        for (Variable& variable : variables)
            file.addVariable(std::move(variable));
        file.reserveCases(int(rows));
        readRows(file, rows, width);
        file.setHeaderText(header);
        file.setWeightVariable(int(weight));
        try {
            file.setSelection(selection);
        } catch (const DataError& error) {
            fail(selectionAt, error.what());
        }
        file.setPath(m_name);
        return contents;
    }

private:
    void readVariable(std::uint32_t number, Variable& variable, bool& categorical) {
        const std::size_t nameAt = m_at;
        variable.name = string("the short name of variable " + std::to_string(number));
        if (variable.name.empty())
            fail(nameAt, "variable " + std::to_string(number) + " has no short name");
        const std::string& name = variable.name;
        variable.longName = string("the long name of variable " + name);

        const std::size_t missingAt = m_at;
        variable.missingCode =
            getDouble(take(DoubleBytes, "the missing code of variable " + name).data());
        check(missingAt, missingCodeFault(variable.missingCode, name));

        const std::size_t formatAt = m_at;
        const std::uint8_t format = u8("the display format of variable " + name);
        if (format > std::uint8_t(DisplayFormat::Time))
            fail(formatAt,
                 "unknown display format " + std::to_string(format) + " of variable " + name);
        variable.format = static_cast<DisplayFormat>(format);

        const std::size_t flagAt = m_at;
        const std::uint8_t flag = u8("the categorical flag of variable " + name);
        if (flag > 1)
            fail(flagAt, "categorical flag " + std::to_string(flag) + " of variable " + name +
                             " is neither 0 nor 1");
        categorical = flag == 1;

        const std::string labelsField = "the text labels of variable " + name;
        // The count is not trusted for an allocation: a forged one runs into the file's end.
        const std::uint32_t labels = u32(labelsField);
        for (std::uint32_t l = 0; l < labels; ++l) {
            const std::size_t valueAt = m_at;
            const double value = getDouble(take(DoubleBytes, labelsField).data());
            check(valueAt, labelValueFault(value, name));
            std::string text = string(labelsField);
            if (!variable.labels.emplace(value, std::move(text)).second)
                fail(valueAt, "variable " + name + " has two text labels for the value " +
                                  numberText(value));
        }
    }

    // Values are finite, as a CSV file's must be: a missing value is the missing code.
    // A large data area is read in parts, one thread each, straight into the data file's
    // rows: most of loading is the system handing over fresh memory, which goes faster on
    // several cores. Each part reads its rows a megabyte at a time, so that loading needs
    // little more memory than the values it loads, and stops at its first fault; the first
    // fault in file order is the one reported.
    void readRows(DataFile& file, std::uint32_t rows, std::uint32_t width) {
        const RowLayout layout{width, std::size_t(file.variableCount()), file.stride()};
        const std::size_t parts = std::clamp<std::size_t>(
            rows * layout.rowBytes() / MinPartBytes, 1,
            std::max(1u, std::thread::hardware_concurrency()));
        std::vector<RowsPart> part(parts);
        for (std::size_t k = 0; k < parts; ++k)
            part[k] = {rows * k / parts, rows * (k + 1) / parts, {}, 0, {}, nullptr};
        double* const room = file.roomForCases(int(rows));
        {
            std::vector<std::jthread> threads;
            std::size_t started = 1;
            try {
                for (; started < parts; ++started)
                    threads.emplace_back(
                        [&, k = started] { readPart(file, layout, room, part[k], {}); });
            } catch (const std::system_error&) {
                // No thread to be had: the parts left are read here.
            }
            readPart(file, layout, room, part[0], [&](std::size_t rowsRead) {
                // The parts go at about the same pace: the first one's stands for all.
                report(std::min(1.0, double(m_at + parts * rowsRead * layout.rowBytes()) /
                                         double(m_size)));
            });
            for (std::size_t k = started; k < parts; ++k)
                readPart(file, layout, room, part[k], {});
        }
        std::vector<std::string> names;
        for (RowsPart& p : part) {
            if (p.failure)
                std::rethrow_exception(p.failure);
            if (!p.badValue.empty())
                fail(p.badValueAt, p.badValue);
            std::move(p.names.begin(), p.names.end(), std::back_inserter(names));
        }
        file.commitCases(int(rows), std::move(names));
        report(1.0);
    }

    struct RowLayout {
        std::size_t width;      // bytes of case name before the values
        std::size_t variables;  // values per row
        std::size_t stride;     // doubles per row of the data file
        std::size_t rowBytes() const { return width + DoubleBytes * variables; }
    };
    // The rows [first, end) of the data area, 0-based, and what reading them found.
    struct RowsPart {
        std::size_t first, end;
        std::vector<std::string> names;
        std::size_t badValueAt = 0;
        std::string badValue;            // the first value that is no finite number, if any
        std::exception_ptr failure;      // anything else that stopped the part
    };

    // Reads the rows of one part into their places among `room`, telling `done` how many it
    // has read after each megabyte.
    void readPart(const DataFile& file, const RowLayout& layout, double* room, RowsPart& part,
                  const std::function<void(std::size_t)>& done) const {
        const std::size_t rowBytes = layout.rowBytes();
        const std::size_t chunk = std::max<std::size_t>(1, (1 << 20) / std::max<std::size_t>(rowBytes, 1));
        std::string buffer;
        try {
            for (std::size_t first = part.first; first < part.end; first += chunk) {
                const std::size_t count = std::min(chunk, part.end - first);
                const std::string_view bytes = m_area(m_at + first * rowBytes, count * rowBytes, buffer);
                for (std::size_t r = 0; r < count; ++r) {
                    const char* at = bytes.data() + r * rowBytes;
                    if (layout.width != 0)
                        part.names.emplace_back(unpadded(std::string_view(at, layout.width)));
                    double* row = room + (first + r) * layout.stride;
                    row[0] = 0.0;
                    for (std::size_t v = 0; v < layout.variables; ++v) {
                        const char* cell = at + layout.width + v * DoubleBytes;
                        row[v + 1] = getDouble(cell);
                        if (!std::isfinite(row[v + 1])) {
                            part.badValueAt = m_at + (first + r) * rowBytes + std::size_t(cell - at);
                            part.badValue = "case " + std::to_string(first + r + 1) + " has " +
                                            numberText(row[v + 1]) + " in variable " +
                                            file.variable(int(v) + 1).name +
                                            ", which is not a finite number";
                            return;
                        }
                    }
                }
                if (done)
                    done(first + count - part.first);
            }
        } catch (...) {
            // Handed to the loading thread, which throws it once every part has stopped.
            part.failure = std::current_exception();
        }
    }

    void report(double share) const {
        if (m_progress)
            m_progress(share);
    }

    std::string_view take(std::size_t count, std::string_view what) {
        if (m_bytes.size() - m_at < count)
            throw DataError(m_name + ": truncated at byte " + std::to_string(m_bytes.size()) +
                            " (in " + std::string(what) + ")");
        const std::string_view field = m_bytes.substr(m_at, count);
        m_at += count;
        return field;
    }
    std::uint8_t u8(std::string_view what) { return std::uint8_t(take(1, what)[0]); }
    std::uint32_t u32(std::string_view what) {
        return std::uint32_t(getLittleEndian(take(4, what).data(), 4));
    }
    std::uint64_t u64(std::string_view what) { return getLittleEndian(take(8, what).data(), 8); }
    std::string string(std::string_view what) {
        const std::uint32_t length = u32(what);
        return std::string(take(length, what));
    }

    void check(std::size_t at, const std::string& fault) const {
        if (!fault.empty())
            fail(at, fault);
    }
    [[noreturn]] void fail(std::size_t at, const std::string& message) const {
        throw DataError(m_name + ": byte " + std::to_string(at) + ": " + message);
    }

    std::string_view m_bytes;
    std::uint64_t m_size;
    DataArea m_area;
    LoadProgress m_progress;  // on the loading thread only
    const std::string& m_name;
    std::size_t m_at = 0;
};

void throwIf(const std::string& fault) {
    if (!fault.empty())
        throw DataError(fault);
}

// Reads `count` bytes from byte `offset` on into `buffer`, wherever the file stands: several
// threads may read one file at once.
void readAt(int descriptor, std::size_t offset, std::size_t count, std::string& buffer,
            const std::string& path) {
    buffer.resize(count);
    for (std::size_t done = 0; done < count;) {
        const ssize_t got = ::pread(descriptor, buffer.data() + done, count - done,
                                    off_t(offset + done));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            throw DataError(path + ": cannot read the file: " + std::strerror(errno));
        if (got == 0)
            throw DataError(path + ": the file ended while it was read");
        done += std::size_t(got);
    }
}

std::string systemError() {
    return std::strerror(errno);
}

} // namespace

bool hasNativeMagic(std::string_view bytes) {
    return bytes.starts_with(NativeMagic);
}

std::string encodeNativeDictionary(const NativeDictionary& d) {
    const std::size_t variables = d.variables.size();
    if (!d.categorical.empty() && d.categorical.size() != variables)
        throw std::invalid_argument("encodeNativeDictionary: one categorical flag per variable");
    if (d.headerText.size() > NativeHeaderTextBytes)
        throw DataError("header text is " + counted(d.headerText.size(), "byte") +
                        " long; at most 80 are allowed");
    throwIf(variableCountFault(variables));
    if (d.rowCount < 0)
        throw std::invalid_argument("encodeNativeDictionary: negative row count");
    if (d.caseNameWidth < 0)
        throw std::invalid_argument("encodeNativeDictionary: negative case-name width");
    throwIf(caseNameWidthFault(std::uint64_t(d.caseNameWidth)));
    if (d.weightVariable < 0)
        throw std::invalid_argument("encodeNativeDictionary: negative weight variable");
    throwIf(weightFault(std::uint64_t(d.weightVariable), variables));

    std::string out(NativeMagic);
    putU32(out, NativeVersion);
    out += d.headerText;
    out.append(NativeHeaderTextBytes - d.headerText.size(), ' ');
    putU32(out, std::uint32_t(variables));
    putU32(out, std::uint32_t(d.rowCount));
    putU32(out, std::uint32_t(d.caseNameWidth));
    putU32(out, std::uint32_t(d.weightVariable));
    const std::size_t offsetAt = out.size();
    putU64(out, 0); // the data offset, known at the end
    putString(out, d.selection);
    for (std::size_t i = 0; i < variables; ++i) {
        const Variable& variable = d.variables[i];
        if (variable.name.empty())
            throw DataError("variable " + std::to_string(i + 1) + " has no short name");
        throwIf(missingCodeFault(variable.missingCode, variable.name));
        putString(out, variable.name);
        putString(out, variable.longName);
        putDouble(out, variable.missingCode);
        out.push_back(char(variable.format));
        out.push_back(char(!d.categorical.empty() && d.categorical[i] ? 1 : 0));
        putU32(out, std::uint32_t(variable.labels.size()));
        for (const auto& [value, text] : variable.labels) {
            throwIf(labelValueFault(value, variable.name));
            putDouble(out, value);
            putString(out, text);
        }
    }
    const std::uint64_t dataOffset = out.size();
    for (int i = 0; i < 8; ++i)
        out[offsetAt + std::size_t(i)] = char(dataOffset >> (8 * i));
    return out;
}

NativeContents parseNativeFile(std::string_view bytes, const std::string& name) {
    return Parser(bytes, name, bytes.size(),
                  [&](std::size_t offset, std::size_t count, std::string&) {
                      return bytes.substr(offset, count);
                  })
        .parse();
}

NativeContents readNativeFile(const std::string& path, const LoadProgress& progress) {
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr)
        throw DataError(path + ": cannot open the file: " + systemError());
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> closing(file, std::fclose);
    std::error_code error;
    const std::uint64_t size = std::filesystem::file_size(path, error);
    if (error)
        throw DataError(path + ": cannot read the file: " + error.message());
    // The fixed fields tell where the data area starts: everything before it is read first,
    // the rows are then read in pieces as the parser takes them.
    std::string dictionary;
    readAt(fileno(file), 0, std::size_t(std::min<std::uint64_t>(size, NativeDataOffsetAt + 8)),
           dictionary, path);
    const std::uint64_t offset = dictionary.size() == NativeDataOffsetAt + 8
                                     ? getLittleEndian(dictionary.data() + NativeDataOffsetAt, 8)
                                     : size;
    std::string rest;
    readAt(fileno(file), dictionary.size(), std::size_t(std::min(offset, size) - dictionary.size()),
           rest, path);
    dictionary += rest;
    std::atomic<bool> readingRows = false;  // set by the parts' threads
    try {
        return Parser(
                   dictionary, path, size,
                   [&](std::size_t offset, std::size_t count, std::string& buffer) {
                       readingRows.store(true, std::memory_order_relaxed);
                       readAt(fileno(file), offset, count, buffer, path);
                       return std::string_view(buffer);
                   },
                   progress)
            .parse();
    } catch (const DataError&) {
        // A data offset that points into the dictionary cut it short: the whole file, as
        // parseNativeFile reads it, says where the fault really lies.
        if (readingRows || dictionary.size() == size)
            throw;
    }
    return parseNativeFile(readFileBytes(path), path);
}

std::string nativeFileBytes(const DataFile& file, const std::vector<bool>& categorical) {
    NativeDictionary dictionary;
    dictionary.headerText = file.headerText();
    for (int var = 1; var <= file.variableCount(); ++var)
        dictionary.variables.push_back(file.variable(var));
    dictionary.categorical = categorical;
    dictionary.rowCount = file.caseCount();
    dictionary.caseNameWidth = file.caseNameWidth();
    dictionary.weightVariable = file.weightVariable();
    dictionary.selection = file.selectionText();
    std::string out = encodeNativeDictionary(dictionary);

    const std::size_t width = std::size_t(dictionary.caseNameWidth);
    out.reserve(out.size() + std::size_t(file.caseCount()) *
                                 (width + DoubleBytes * dictionary.variables.size()));
    for (int c = 1; c <= file.caseCount(); ++c) {
        if (width != 0) {
            const std::string& name = file.caseName(c);
            out += name;
            out.append(width - name.size(), ' ');
        }
        const double* row = file.row(c);
        for (int var = 1; var <= file.variableCount(); ++var)
            putDouble(out, row[var]);
    }
    return out;
}

void writeNativeFile(const DataFile& file, const std::string& path,
                     const std::vector<bool>& categorical) {
    std::string bytes;
    try {
        bytes = nativeFileBytes(file, categorical);
    } catch (const DataError& error) {
        throw DataError(path + ": " + error.what());
    }
    if (const std::string reason = writeWholeFile(path, bytes); !reason.empty())
        throw DataError(path + ": cannot write the file: " + reason);
}

} // namespace wb
