#include "workbench/data/CsvExport.h"

#include <cerrno>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <unordered_map>

#include <fcntl.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "workbench/data/TextPosition.h"
#include "workbench/text/Utf8.h"

namespace wb {

namespace {

constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
constexpr std::chrono::sys_days ModelEpoch{std::chrono::year{1899} / 12 / 30};
constexpr std::size_t FlushBytes = std::size_t(1) << 16;

std::string numberText(double value) {
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

// A field is quoted when it holds a separator of any kind the loader may guess (a semicolon
// or a tab would otherwise make it guess wrong), a quote or a line break, or starts or ends
// with a blank.
void appendField(std::string& out, std::string_view text) {
    const bool quoted = text.find_first_of(",;\t\"\r\n") != std::string_view::npos ||
                        (!text.empty() && (isBlank(text.front()) || isBlank(text.back()))) ||
                        text.starts_with(ByteOrderMark);
    if (!quoted) {
        out.append(text);
        return;
    }
    out.push_back('"');
    for (const char c : text) {
        if (c == '"')
            out.push_back('"');
        out.push_back(c);
    }
    out.push_back('"');
}

std::string twoDigits(long value) {
    return std::string{char('0' + value / 10), char('0' + value % 10)};
}


// A JSON number that reads back as the same double; whole values without a decimal point.
nlohmann::ordered_json jsonNumber(double value) {
    if (value == std::floor(value) && std::abs(value) < 9007199254740992.0 &&
        !(value == 0 && std::signbit(value)))
        return static_cast<std::int64_t>(value);
    return value;
}

// A file written under a temporary name beside its target and renamed over it on commit;
// removed if never committed.
class PendingFile {
public:
    explicit PendingFile(std::string target) : m_target(std::move(target)) {
        static int counter = 0;
        for (int attempt = 0; m_fd < 0; ++attempt) {
            m_path =
                m_target + ".tmp-" + std::to_string(::getpid()) + "-" + std::to_string(++counter);
            m_fd = ::open(m_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
            if (m_fd < 0 && (errno != EEXIST || attempt == 100))
                fail();
        }
    }
    ~PendingFile() {
        if (m_fd >= 0)
            ::close(m_fd);
        if (!m_committed)
            ::unlink(m_path.c_str());
    }
    PendingFile(const PendingFile&) = delete;
    PendingFile& operator=(const PendingFile&) = delete;

    // Text to write; written out once it grows large.
    std::string& buffer() { return m_buffer; }
    void flushIfFull() {
        if (m_buffer.size() >= FlushBytes)
            flush();
    }

    void close() {
        flush();
        const int fd = m_fd;
        m_fd = -1;
        if (::close(fd) != 0)
            fail();
    }

    void commit() {
        if (::rename(m_path.c_str(), m_target.c_str()) != 0)
            fail();
        m_committed = true;
    }

private:
    void flush() {
        std::string_view rest = m_buffer;
        while (!rest.empty()) {
            const ssize_t written = ::write(m_fd, rest.data(), rest.size());
            if (written < 0 && errno == EINTR)
                continue;
            if (written <= 0)
                fail();
            rest.remove_prefix(std::size_t(written));
        }
        m_buffer.clear();
    }

    [[noreturn]] void fail() const {
        throw DataError(m_target + ": cannot write the file: " + std::strerror(errno));
    }

    std::string m_target;
    std::string m_path;
    int m_fd = -1;
    bool m_committed = false;
    std::string m_buffer;
};

class Exporter {
public:
    Exporter(const DataFile& file, const std::string& csvPath)
        : m_file(file), m_csvPath(csvPath), m_dictionaryPath(csvPath + ".dict.json") {}

    void run() {
        checkNames();
        const std::string dictionary = dictionaryText();
        PendingFile csv(m_csvPath);
        writeCases(csv);
        PendingFile dictionaryFile(m_dictionaryPath);
        dictionaryFile.buffer() = dictionary;
        csv.close();
        dictionaryFile.close();
        dictionaryFile.commit();
        csv.commit();
    }

private:
    [[noreturn]] void refuse(const std::string& message) const {
        throw DataError(m_csvPath + ": cannot export: " + message);
    }

    std::string variableText(int var) const {
        return "variable " + inQuotes(m_file.variable(var).name);
    }

    void checkNames() {
        if (m_file.variableCount() == 0)
            refuse("the file has no variables");
        std::unordered_map<std::string_view, int> numberOf;
        for (int var = 1; var <= m_file.variableCount(); ++var) {
            const std::string& name = m_file.variable(var).name;
            if (name.empty())
                refuse("variable " + std::to_string(var) + " has no name");
            const auto [known, added] = numberOf.emplace(name, var);
            if (!added)
                refuse("variables " + std::to_string(known->second) + " and " +
                       std::to_string(var) + " are both named " + inQuotes(name));
        }
        if (!m_file.hasCaseNames())
            return;
        m_caseNameColumn = "CASE_NAME";
        for (int suffix = 2; numberOf.contains(m_caseNameColumn); ++suffix)
            m_caseNameColumn = "CASE_NAME_" + std::to_string(suffix);
    }

    std::string checkedText(const std::string& text, const std::string& what) const {
        if (!isValidUtf8(text))
            refuse(what + " is not valid UTF-8");
        return text;
    }

    nlohmann::ordered_json checkedNumber(double value, const std::string& what) const {
        if (!std::isfinite(value))
            refuse(what + " is not a finite number");
        return jsonNumber(value);
    }

    // One line per setting and per variable: readable, and short however many labels.
    std::string dictionaryText() const {
        nlohmann::ordered_json root = nlohmann::ordered_json::object();
        if (!m_file.headerText().empty())
            root["header"] = checkedText(m_file.headerText(), "the header text");
        if (m_file.hasCaseNames())
            root["caseNames"] = m_caseNameColumn;
        if (m_file.weightVariable() != 0)
            root["weight"] = m_file.variable(m_file.weightVariable()).name;
        if (!m_file.selectionText().empty())
            root["selection"] = checkedText(m_file.selectionText(), "the selection");
        std::string text = "{\n";
        for (const auto& [key, value] : root.items())
            text += "  " + nlohmann::json(key).dump() + ": " + value.dump() + ",\n";
        text += "  \"variables\": {\n";
        for (int var = 1; var <= m_file.variableCount(); ++var) {
            const Variable& variable = m_file.variable(var);
            const std::string what = variableText(var);
            nlohmann::ordered_json entry = nlohmann::ordered_json::object();
            if (!variable.longName.empty())
                entry["longName"] = checkedText(variable.longName, "the long name of " + what);
            entry["missingCode"] =
                checkedNumber(variable.missingCode, "the missing code of " + what);
            if (variable.format != DisplayFormat::Plain)
                entry["format"] = displayFormatName(variable.format);
            if (!variable.labels.empty()) {
                nlohmann::ordered_json labels = nlohmann::ordered_json::array();
                for (const auto& [value, text] : variable.labels) {
                    const std::string label = "the label of " + numberText(value) + " in " + what;
                    labels.push_back({checkedNumber(value, label), checkedText(text, label)});
                }
                entry["labels"] = std::move(labels);
            }
            text += "    " +
                    nlohmann::json(checkedText(variable.name, "the name of " + what)).dump() +
                    ": " + entry.dump() + (var < m_file.variableCount() ? ",\n" : "\n");
        }
        return text + "  }\n}\n";
    }

    void writeCases(PendingFile& csv) const {
        std::string& out = csv.buffer();
        if (m_file.hasCaseNames()) {
            appendField(out, m_caseNameColumn);
            out.push_back(',');
        }
        for (int var = 1; var <= m_file.variableCount(); ++var) {
            appendField(out, m_file.variable(var).name);
            out.push_back(var < m_file.variableCount() ? ',' : '\n');
        }
        for (int c = 1; c <= m_file.caseCount(); ++c) {
            const std::size_t rowStart = out.size();
            if (m_file.hasCaseNames()) {
                appendField(out, m_file.caseName(c));
                out.push_back(',');
            }
            for (int var = 1; var <= m_file.variableCount(); ++var) {
                appendValue(out, c, var);
                if (var < m_file.variableCount())
                    out.push_back(',');
            }
            // An empty line would be skipped, and the case with it.
            if (out.size() == rowStart)
                out.append("\"\"");
            out.push_back('\n');
            csv.flushIfFull();
        }
    }

    void appendValue(std::string& out, int caseNo, int var) const {
        const double value = m_file.value(caseNo, var);
        if (m_file.isMissing(var, value))
            return;
        if (!std::isfinite(value))
            refuse("the value of " + variableText(var) + " in case " + std::to_string(caseNo) +
                   " is not a finite number");
        const DisplayFormat format = m_file.variable(var).format;
        if (format != DisplayFormat::Plain) {
            const std::string text = dateOrTimeText(format, value);
            if (!text.empty()) {
                out.append(text);
                return;
            }
        }
        char buffer[32];
        out.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr);
    }

    const DataFile& m_file;
    std::string m_csvPath;
    std::string m_dictionaryPath;
    std::string m_caseNameColumn;
};

} // namespace

std::string dateOrTimeText(DisplayFormat format, double value) {
    if (value != std::floor(value))
        return {};
    if (format == DisplayFormat::Time) {
        if (value < 0 || value >= 86400)
            return {};
        const long seconds = long(value);
        return twoDigits(seconds / 3600) + ":" + twoDigits(seconds / 60 % 60) + ":" +
               twoDigits(seconds % 60);
    }
    // Years 0 to 9999 lie within a few million days of the epoch.
    if (std::abs(value) > 1e7)
        return {};
    const std::chrono::year_month_day date{ModelEpoch + std::chrono::days(long(value))};
    const int year = int(date.year());
    if (year < 0 || year > 9999)
        return {};
    const std::string digits = std::to_string(year);
    return std::string(4 - digits.size(), '0') + digits + "-" +
           twoDigits(long(unsigned(date.month()))) + "-" + twoDigits(long(unsigned(date.day())));
}


void exportCsv(const DataFile& file, const std::string& csvPath) {
    Exporter(file, csvPath).run();
}

} // namespace wb
