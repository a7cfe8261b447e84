#include "workbench/data/DataFileLoader.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <limits>
#include <map>
#include <thread>
#include <unordered_map>
#include <utility>

#include "drilldown/host/RealNumbers.h"
#include "workbench/data/CsvDialect.h"
#include "workbench/data/CsvReader.h"
#include "workbench/data/Dictionary.h"
#include "workbench/data/MissingCode.h"
#include "workbench/data/NativeFile.h"
#include "workbench/data/ReadStatImport.h"
#include "workbench/data/TextPosition.h"
#include "workbench/data/WholeFile.h"
#include "workbench/text/Utf8.h"

namespace wb {

namespace {

// The module counts variables in a 16-bit signed field.
constexpr int MaxVariables = 32767;
constexpr std::size_t MaxCases = std::numeric_limits<int>::max() - 1;
// Cases between two reports of progress.
constexpr int ProgressCases = 1 << 16;
// The least text of cases worth a thread of its own.
constexpr std::size_t MinParallelBytes = 1 << 20;
// Stands for a missing value until the variable's missing code is known; no parsed value
// is ever NaN.
constexpr double Pending = std::numeric_limits<double>::quiet_NaN();

constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

// Text that went through several editors may begin with more than one mark.
std::string_view withoutByteOrderMark(std::string_view text) {
    while (text.starts_with(ByteOrderMark))
        text.remove_prefix(ByteOrderMark.size());
    return text;
}

std::string numberText(double value) {
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

// A separator as a message names it.
std::string separatorWord(char separator) {
    return separator == '\t' ? std::string("tabs") : "\"" + std::string(1, separator) + "\"";
}

std::string fieldCount(std::size_t count) {
    return std::to_string(count) + (count == 1 ? " field" : " fields");
}

// A whole field as a finite number; a leading + is allowed, blanks are not.
bool parseNumber(std::string_view text, double& value) {
    if (text.size() > 1 && text[0] == '+' && text[1] != '-')
        text.remove_prefix(1);
    const char* last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, value);
    return error == std::errc{} && end == last && std::isfinite(value);
}

// `digits` decimal digits from `at`, as a number; false when one is not a digit.
bool readDigits(std::string_view text, std::size_t at, std::size_t digits, int& value) {
    if (at + digits > text.size())
        return false;
    value = 0;
    for (std::size_t i = at; i < at + digits; ++i) {
        if (text[i] < '0' || text[i] > '9')
            return false;
        value = value * 10 + (text[i] - '0');
    }
    return true;
}

enum class Parsed { NotThatForm, Invalid, Valid };

// YYYY-M-D or YYYY-MM-DD, as days since 1899-12-30.
Parsed parseDate(std::string_view text, double& days) {
    int year = 0;
    int month = 0;
    int day = 0;
    if (!readDigits(text, 0, 4, year) || text.size() < 8 || text[4] != '-')
        return Parsed::NotThatForm;
    const std::size_t dash = text.find('-', 5);
    if (dash == std::string_view::npos || dash < 6 || dash > 7 ||
        !readDigits(text, 5, dash - 5, month) || text.size() - dash - 1 < 1 ||
        text.size() - dash - 1 > 2 || !readDigits(text, dash + 1, text.size() - dash - 1, day))
        return Parsed::NotThatForm;
    using namespace std::chrono;
    const year_month_day date{std::chrono::year{year}, std::chrono::month(unsigned(month)),
                              std::chrono::day(unsigned(day))};
    if (!date.ok())
        return Parsed::Invalid;
    constexpr sys_days Epoch = std::chrono::year{1899} / December / 30;
    days = double((sys_days{date} - Epoch).count());
    return Parsed::Valid;
}

// H:MM, HH:MM, H:MM:SS or HH:MM:SS, as seconds since midnight.
Parsed parseTime(std::string_view text, double& seconds) {
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos || colon < 1 || colon > 2)
        return Parsed::NotThatForm;
    int hours = 0;
    int minutes = 0;
    int secs = 0;
    const std::size_t rest = text.size() - colon - 1;
    if (!readDigits(text, 0, colon, hours) || (rest != 2 && rest != 5) ||
        !readDigits(text, colon + 1, 2, minutes))
        return Parsed::NotThatForm;
    if (rest == 5 && (text[colon + 3] != ':' || !readDigits(text, colon + 4, 2, secs)))
        return Parsed::NotThatForm;
    if (hours > 23 || minutes > 59 || secs > 59)
        return Parsed::Invalid;
    seconds = hours * 3600.0 + minutes * 60.0 + secs;
    return Parsed::Valid;
}

// What the loader knows of one CSV column while it reads the cases.
struct Column {
    std::string name;
    std::size_t headerOffset = 0;
    int var = 0; // 0 for the column of case names
    DisplayFormat format = DisplayFormat::Plain;
    // From the dictionary: the key of the entry, the missing code, and label texts to values.
    std::string dictionaryKey;
    bool hasGivenMissing = false;
    double givenMissing = 0.0;
    bool labelled = false;
    std::map<std::string, double, std::less<>> labelValues;
    // Found in the cells.
    bool sawNumber = false;
    bool sawMissing = false;
    std::map<std::string, double, std::less<>> codes; // of a coded column
    std::size_t firstTextOffset = 0;
    std::string firstText;
};

// The dictionary text of a loader, or none.
std::optional<Dictionary> dictionaryOf(std::optional<std::string_view> text,
                                       const std::string& csvName) {
    if (!text)
        return std::nullopt;
    return Dictionary(withoutByteOrderMark(*text), csvName + ".dict.json");
}

class Loader {
public:
    // `source`, when given, is the mapped file that `csvText` is the text of.
    Loader(std::string_view csvText, const std::string& csvName,
           std::optional<std::string_view> dictionaryText, const FileText* source = nullptr)
        : m_source(source), m_dictionary(dictionaryOf(dictionaryText, csvName)),
          m_original(withoutByteOrderMark(csvText)), m_dialect(chosenDialect()),
          m_converted(m_dialect.encoding == TextEncoding::Utf8
                          ? std::string()
                          : toUtf8(m_original, m_dialect.encoding)),
          m_csv(m_converted.empty() ? m_original : m_converted, csvName, m_dialect.separator) {
        checkText();
        // The checks read it all; what is read next comes back page by page.
        if (m_source != nullptr)
            m_source->release(m_original.data(), m_original.data() + m_original.size());
    }

    DataFile load(const std::string& path, const LoadProgress& progress = {}) {
        m_progress = progress;
        readHeader();
        const std::string caseNames = m_dictionary ? caseNameColumn() : std::string();
        makeVariables(caseNames);
        if (m_dictionary)
            applyDictionary();
        readCases();
        settleMissingCodes();
        m_file.setPath(path);
        return std::move(m_file);
    }

private:
    using Path = Dictionary::Path;
    using At = Dictionary::At;

    // The dialect guessed from the text, with what the dictionary forces.
    CsvDialect chosenDialect() {
        CsvDialect dialect = guessCsvDialect(m_original);
        if (!m_dictionary || !m_dictionary->root().is_object())
            return dialect;
        forced("separator", "\",\", \";\" or \"\\t\"", separatorNamed, dialect.separator);
        forced("decimal", "\".\" or \",\"", decimalNamed, dialect.decimal);
        forced("encoding", "\"UTF-8\", \"Windows-1252\" or \"Latin-1\"", encodingNamed,
               dialect.encoding);
        return dialect;
    }

    template <typename Value>
    void forced(const char* key, const char* allowed, bool (*named)(std::string_view, Value&),
                Value& value) {
        const auto& root = m_dictionary->root();
        if (!root.contains(key))
            return;
        const auto& word = root.at(key);
        if (!word.is_string() || !named(word.get<std::string>(), value))
            m_dictionary->fail({key}, At::Value,
                               inQuotes(key) + " must be " + allowed);
    }

    // What the reader cannot tell: bytes that are no text, text that is not what the
    // dictionary says, and a header of one column whose name holds another separator,
    // which is the file of another separator read with the wrong one.
    void checkText() {
        if (const std::size_t nul = m_original.find('\0'); nul != std::string_view::npos)
            m_csv.fail(nul, "the file holds a NUL byte: it is no text file");
        if (m_dialect.encoding == TextEncoding::Utf8 && !isValidUtf8(m_original))
            m_csv.fail(firstInvalidUtf8(m_original),
                       "the file is not valid UTF-8 here; set \"encoding\" in the dictionary "
                       "to \"Windows-1252\" or \"Latin-1\" if that is what it is");
    }

    void checkOneColumnHeader() {
        if (m_columns.size() != 1)
            return;
        for (const char separator : {',', ';', '\t'})
            if (separator != m_dialect.separator &&
                m_columns[0].name.find(separator) != std::string::npos)
                m_csv.fail(m_columns[0].headerOffset,
                           "the header is one column named " + inQuotes(m_columns[0].name) +
                               "; its fields seem separated by " + separatorWord(separator) +
                               ", not by " + separatorWord(m_dialect.separator) +
                               ": set \"separator\" in the dictionary accordingly");
    }

    void readHeader() {
        if (!m_csv.startRow())
            m_csv.fail(0, "the file is empty; its first line must name the variables");
        std::unordered_map<std::string, std::size_t> fieldOf;
        CsvReader::Field field;
        bool more = true;
        while (more) {
            more = m_csv.readField(field);
            const std::size_t number = m_columns.size() + 1;
            if (field.text.empty())
                m_csv.fail(field.offset, "empty variable name in field " + std::to_string(number) +
                                             " of the header");
            const auto [it, added] = fieldOf.emplace(std::string(field.text), number);
            if (!added)
                m_csv.fail(field.offset, "duplicate variable name " + inQuotes(field.text) +
                                             "; field " + std::to_string(it->second) +
                                             " of the header has it too");
            Column column;
            column.name = field.text;
            column.headerOffset = field.offset;
            m_columns.push_back(std::move(column));
        }
        checkOneColumnHeader();
    }

    // The dictionary's "caseNames", checked, or empty.
    std::string caseNameColumn() {
        const auto& root = m_dictionary->root();
        if (!root.is_object())
            m_dictionary->fail({}, At::Value, "the dictionary must be a JSON object");
        if (!root.contains("caseNames"))
            return {};
        const std::string name = stringMember(root, {"caseNames"});
        const bool known = std::any_of(m_columns.begin(), m_columns.end(),
                                       [&](const Column& column) { return column.name == name; });
        if (!known)
            m_dictionary->fail({"caseNames"}, At::Value,
                               "caseNames: the data file has no column " + inQuotes(name));
        return name;
    }

    void makeVariables(const std::string& caseNames) {
        for (Column& column : m_columns) {
            if (column.name == caseNames)
                continue;
            if (m_file.variableCount() == MaxVariables)
                m_csv.fail(column.headerOffset, "too many variables; at most " +
                                                    std::to_string(MaxVariables) + " are allowed");
            Variable variable;
            variable.name = column.name;
            column.var = m_file.addVariable(std::move(variable));
        }
    }

    std::string stringMember(const nlohmann::json& value, const Path& path) {
        if (!value.at(path.back()).is_string())
            m_dictionary->fail(path, At::Value, inQuotes(path.back()) + " must be a string");
        return value.at(path.back()).get<std::string>();
    }

    void applyDictionary() {
        const auto& root = m_dictionary->root();
        for (const auto& [key, value] : root.items()) {
            if (key == "caseNames" || key == "separator" || key == "decimal" ||
                key == "encoding")
                continue;
            if (key == "header") {
                const std::string header = stringMember(root, {key});
                located({key}, [&] { m_file.setHeaderText(header); });
            } else if (key == "weight") {
                const std::string name = stringMember(root, {key});
                const int var = m_file.findVariable(name);
                if (var == 0)
                    m_dictionary->fail({key}, At::Value,
                                       "weight: unknown variable " + inQuotes(name));
                m_file.setWeightVariable(var);
            } else if (key == "selection") {
                const std::string text = stringMember(root, {key});
                located({key}, [&] { m_file.setSelection(text); });
            } else if (key == "variables") {
                applyVariables(value);
            } else {
                m_dictionary->fail({key}, At::Key,
                                   "unknown key " + inQuotes(key) +
                                       "; expected \"header\", \"caseNames\", \"weight\", "
                                       "\"selection\", \"variables\", \"separator\", "
                                       "\"decimal\" or \"encoding\"");
            }
        }
    }

    // Runs `change`, which may throw DataError with a message of its own, and places that
    // message at the dictionary member it came from.
    template <typename Change> void located(const Path& path, Change change) {
        try {
            change();
        } catch (const DataError& error) {
            m_dictionary->fail(path, At::Value, error.what());
        }
    }

    void applyVariables(const nlohmann::json& variables) {
        if (!variables.is_object())
            m_dictionary->fail({"variables"}, At::Value,
                               "\"variables\" must be an object with an entry per variable");
        for (const auto& [name, entry] : variables.items()) {
            const Path path{"variables", name};
            const int var = m_file.findVariable(name);
            if (var == 0) {
                const bool caseNames = std::any_of(m_columns.begin(), m_columns.end(),
                                                   [&key = name](const Column& c) { return c.name == key; });
                m_dictionary->fail(path, At::Key,
                                   caseNames
                                       ? inQuotes(name) + " is the case-name column, not a variable"
                                       : "unknown variable " + inQuotes(name) +
                                             "; the data file has no such column");
            }
            if (!entry.is_object())
                m_dictionary->fail(path, At::Value,
                                   "the entry of variable " + inQuotes(name) +
                                       " must be an object");
            applyVariable(columnOf(var), path, entry);
        }
    }

    Column& columnOf(int var) {
        return *std::find_if(m_columns.begin(), m_columns.end(),
                             [var](const Column& column) { return column.var == var; });
    }

    void applyVariable(Column& column, const Path& entryPath, const nlohmann::json& entry) {
        Variable& variable = m_file.variable(column.var);
        column.dictionaryKey = entryPath.back();
        for (const auto& [key, value] : entry.items()) {
            Path path = entryPath;
            path.push_back(key);
            if (key == "longName") {
                variable.longName = stringMember(entry, path);
            } else if (key == "missingCode") {
                if (!value.is_number())
                    m_dictionary->fail(path, At::Value, "\"missingCode\" must be a number");
                column.hasGivenMissing = true;
                column.givenMissing = value.get<double>();
                variable.missingCode = column.givenMissing;
            } else if (key == "format") {
                variable.format = format(value, path);
                column.format = variable.format;
            } else if (key == "labels") {
                readLabels(variable, column, value, path);
            } else {
                m_dictionary->fail(path, At::Key,
                                   "unknown key " + inQuotes(key) + " in variable " +
                                       inQuotes(variable.name) +
                                       "; expected \"longName\", \"missingCode\", \"labels\" or "
                                       "\"format\"");
            }
        }
    }

    DisplayFormat format(const nlohmann::json& value, const Path& path) {
        for (const DisplayFormat candidate :
             {DisplayFormat::Plain, DisplayFormat::Date, DisplayFormat::Time})
            if (value.is_string() && value.get<std::string>() == displayFormatName(candidate))
                return candidate;
        m_dictionary->fail(path, At::Value, "\"format\" must be \"plain\", \"date\" or \"time\"");
    }

    void readLabels(Variable& variable, Column& column, const nlohmann::json& labels,
                    const Path& path) {
        column.labelled = true;
        if (labels.is_object()) {
            for (const auto& [key, text] : labels.items()) {
                Path at = path;
                at.push_back(key);
                double value = 0.0;
                if (!parseNumber(key, value))
                    m_dictionary->fail(at, At::Key,
                                       "label value " + inQuotes(key) + " is not a number");
                addLabel(variable, column, value, text, at);
            }
            return;
        }
        if (!labels.is_array())
            m_dictionary->fail(path, At::Value,
                               "\"labels\" must be an object or an array of [value, \"text\"]");
        for (std::size_t i = 0; i < labels.size(); ++i) {
            Path at = path;
            at.push_back(std::to_string(i));
            const auto& label = labels[i];
            if (!label.is_array() || label.size() != 2 || !label[0].is_number())
                m_dictionary->fail(at, At::Value, "a label must be an array [value, \"text\"]");
            at.push_back("1");
            addLabel(variable, column, label[0].get<double>(), label[1], at);
        }
    }

    void addLabel(Variable& variable, Column& column, double value,
                  const nlohmann::json& text, const Path& path) {
        if (!text.is_string())
            m_dictionary->fail(path, At::Value, "the text of a label must be a string");
        variable.labels[value] = text.get<std::string>();
        column.labelValues.emplace(text.get<std::string>(), value);
    }

    void readCases() {
        if (readPlainCasesInParallel())
            return;
        // Room for as many cases as the text can hold: a million empty lines are not a
        // million cases.
        const std::string_view text = m_csv.text();
        m_file.reserveCases(int(std::min(rowsAtMost(text), MaxCases)));
        releaseText(0, text.size());
        readCasesInOrder();
    }

    // A row takes a line, ended by LF, CR or both, and a byte for each field but the last.
    std::size_t rowsAtMost(std::string_view text) const {
        const auto lineBreaks = std::size_t(std::count_if(
            text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; }));
        return std::min(lineBreaks, text.size() / std::max<std::size_t>(1, m_columns.size())) + 1;
    }

    // Lets go of the pages of a mapped file's text between two offsets, once read; a message
    // that needs them again brings them back.
    void releaseText(std::size_t begin, std::size_t end) const {
        if (m_source != nullptr)
            m_source->release(m_csv.text().data() + begin, m_csv.text().data() + end);
    }

    // What a stretch of plain rows holds.
    struct PlainRows {
        std::size_t begin = 0; // of its text in the file's
        std::string_view text;
        std::size_t room = 0;    // rows it may hold
        double* rows = nullptr;  // where they go, laid out as DataFile::row gives them
        int count = 0;
        std::vector<std::string> caseNames;  // when the file has them
        std::vector<char> sawNumber, sawMissing;  // per column
    };

    // Rows of plain numbers, the common large file, are read in stretches of lines, one
    // thread each, straight into the file's rows. Anything else in a stretch (a text, a
    // missing code written as a value, a row of another length, a malformed field) gives up
    // the attempt and leaves the file without cases: the rows are then read in order, where
    // every case gets its exact message. False when the attempt was given up or not worth
    // making.
    bool readPlainCasesInParallel() {
        std::vector<PlainRows> stretches = plainStretches();
        if (stretches.size() < 2)
            return false;
        inEachStretch(stretches, [&](PlainRows& stretch, bool) {
            stretch.room = rowsAtMost(stretch.text);
            releaseText(stretch.begin, stretch.begin + stretch.text.size());
        });
        std::size_t room = 0;
        for (const PlainRows& stretch : stretches)
            room += stretch.room;
        if (room > MaxCases)
            return false;
        double* const rows = m_file.roomForCases(int(room));
        double* next = rows;
        for (PlainRows& stretch : stretches) {
            stretch.rows = next;
            next += stretch.room * m_file.stride();
        }
        std::atomic<bool> givenUp = false;
        inEachStretch(stretches, [&](PlainRows& stretch, bool first) {
            readPlainRows(stretch, first, givenUp);
        });
        if (givenUp) {
            m_file.commitCases(0, {});
            return false;
        }
        commitStretches(stretches, rows);
        m_csv.skipTo(m_csv.text().size());
        return true;
    }

    // The text of the cases cut at line breaks into a stretch per thread; none when the file
    // is too small to be worth it, or has quotes, which may hold line breaks.
    std::vector<PlainRows> plainStretches() const {
        const std::string_view text = m_csv.text();
        const std::size_t start = m_csv.position();
        const std::size_t parts =
            std::min<std::size_t>(std::max(1u, std::thread::hardware_concurrency()),
                                  (text.size() - start) / MinParallelBytes);
        if (parts < 2 || text.find('"', start) != std::string_view::npos)
            return {};
        std::vector<std::size_t> cuts{start};
        for (std::size_t k = 1; k < parts; ++k) {
            const std::size_t lineEnd = text.find('\n', start + (text.size() - start) * k / parts);
            if (lineEnd == std::string_view::npos)
                break;
            cuts.push_back(std::max(cuts.back(), lineEnd + 1));
        }
        cuts.push_back(text.size());
        std::vector<PlainRows> stretches(cuts.size() - 1);
        for (std::size_t k = 0; k < stretches.size(); ++k) {
            stretches[k].begin = cuts[k];
            stretches[k].text = text.substr(cuts[k], cuts[k + 1] - cuts[k]);
            stretches[k].sawNumber.assign(m_columns.size(), 0);
            stretches[k].sawMissing.assign(m_columns.size(), 0);
        }
        return stretches;
    }

    // Runs `read` on each stretch, one thread each; the first stretch on this thread.
    template <typename Read> static void inEachStretch(std::vector<PlainRows>& stretches, Read read) {
        std::vector<std::jthread> threads;
        for (std::size_t k = 1; k < stretches.size(); ++k)
            threads.emplace_back([&, k] { read(stretches[k], false); });
        read(stretches[0], true);
    }

    void readPlainRows(PlainRows& rows, bool reportProgress, std::atomic<bool>& givenUp) const {
        try {
            const std::size_t stride = m_file.stride();
            const bool named = hasCaseNameColumn();
            CsvReader csv(rows.text, std::string(), m_dialect.separator);
            std::size_t released = 0;
            std::string buffer;
            CsvReader::Field field;
            bool plain = true;
            while (plain && csv.startRow()) {
                double* const row = rows.rows + std::size_t(rows.count) * stride;
                row[0] = 0.0;
                if (named)
                    rows.caseNames.emplace_back();
                std::size_t count = 0;
                for (bool more = true; more && plain; ++count) {
                    more = csv.readField(field);
                    plain = count < m_columns.size() &&
                            plainField(count, field.text, rows, row, buffer);
                }
                plain = plain && count == m_columns.size();
                if (++rows.count % ProgressCases != 0)
                    continue;
                plain = plain && !givenUp;
                releaseText(rows.begin + std::exchange(released, csv.position()),
                            rows.begin + csv.position());
                if (reportProgress && m_progress)
                    m_progress(double(csv.position()) / double(rows.text.size()));
            }
            if (!plain)
                givenUp = true;
        } catch (const std::exception&) {
            givenUp = true;
        }
    }

    bool hasCaseNameColumn() const {
        return std::any_of(m_columns.begin(), m_columns.end(),
                           [](const Column& column) { return column.var == 0; });
    }

    // Takes a field of a plain row into the row's values; false when it is not plain.
    bool plainField(std::size_t index, std::string_view text, PlainRows& rows, double* row,
                    std::string& buffer) const {
        const Column& column = m_columns[index];
        if (column.var == 0) {
            rows.caseNames.back() = text;
            return true;
        }
        double& value = row[column.var];
        if (text.empty() || text == "NA") {
            rows.sawMissing[index] = 1;
            value = Pending;
            return true;
        }
        rows.sawNumber[index] = 1;
        return number(text, value, buffer) &&
               !(column.hasGivenMissing && RealEqual(value, column.givenMissing));
    }

    // Closes the gaps that empty lines left between the stretches' rows and counts the cases.
    void commitStretches(std::vector<PlainRows>& stretches, double* rows) {
        const std::size_t stride = m_file.stride();
        std::size_t cases = 0;
        std::vector<std::string> names;
        for (PlainRows& stretch : stretches) {
            std::memmove(rows + cases * stride, stretch.rows,
                         std::size_t(stretch.count) * stride * sizeof(double));
            cases += std::size_t(stretch.count);
            std::move(stretch.caseNames.begin(), stretch.caseNames.end(), std::back_inserter(names));
            for (std::size_t index = 0; index < m_columns.size(); ++index) {
                m_columns[index].sawNumber = m_columns[index].sawNumber || stretch.sawNumber[index];
                m_columns[index].sawMissing = m_columns[index].sawMissing || stretch.sawMissing[index];
            }
        }
        m_file.commitCases(int(cases), std::move(names));
    }

    void readCasesInOrder() {
        const std::string_view text = m_csv.text();
        std::vector<double> values(std::size_t(m_file.variableCount()));
        std::size_t released = 0;
        CsvReader::Field field;
        while (m_csv.startRow()) {
            const std::size_t rowStart = m_csv.position();
            std::string caseName;
            std::size_t count = 0;
            std::size_t extraOffset = 0;
            bool more = true;
            while (more) {
                more = m_csv.readField(field);
                if (count < m_columns.size()) {
                    Column& column = m_columns[count];
                    if (column.var == 0)
                        caseName = field.text;
                    else
                        values[std::size_t(column.var) - 1] = convert(column, field);
                } else if (count == m_columns.size()) {
                    extraOffset = field.offset;
                }
                ++count;
            }
            if (count != m_columns.size())
                m_csv.fail(count > m_columns.size() ? extraOffset : m_csv.rowEnd(),
                           "row has " + fieldCount(count) + "; the header has " +
                               fieldCount(m_columns.size()));
            m_file.appendCase(values, std::move(caseName));
            if (m_file.caseCount() % ProgressCases != 0)
                continue;
            releaseText(std::exchange(released, rowStart), rowStart);
            if (m_progress)
                m_progress(double(m_csv.position()) / double(text.size()));
        }
    }

    double convert(Column& column, const CsvReader::Field& field) {
        const std::string_view text = field.text;
        if (text.empty() || text == "NA") {
            column.sawMissing = true;
            return Pending;
        }
        double value = 0.0;
        if (number(text, value)) {
            if (!column.codes.empty())
                notAValue(column, column.firstTextOffset, column.firstText);
            if (column.hasGivenMissing && RealEqual(value, column.givenMissing))
                m_csv.fail(field.offset, inQuotes(text) + " in variable " + inQuotes(column.name) +
                                             " is its missing code; leave the field empty or "
                                             "write NA for a missing value");
            column.sawNumber = true;
            return value;
        }
        if (column.format != DisplayFormat::Plain) {
            const bool date = column.format == DisplayFormat::Date;
            const Parsed parsed = date ? parseDate(text, value) : parseTime(text, value);
            if (parsed == Parsed::Valid)
                return value;
            if (parsed == Parsed::Invalid)
                m_csv.fail(field.offset, inQuotes(text) + " in variable " + inQuotes(column.name) +
                                             " is not a valid " + (date ? "date" : "time"));
        }
        if (const auto label = column.labelValues.find(text); label != column.labelValues.end())
            return label->second;
        if (column.labelled || column.format != DisplayFormat::Plain || column.sawNumber)
            notAValue(column, field.offset, text);
        return code(column, field.offset, text);
    }

    // The code of a text in a coded column, a new one for a text not seen before.
    double code(Column& column, std::size_t offset, std::string_view text) {
        if (const auto known = column.codes.find(text); known != column.codes.end())
            return known->second;
        if (column.codes.empty()) {
            column.firstTextOffset = offset;
            column.firstText = text;
        }
        const double value = double(column.codes.size() + 1);
        column.codes.emplace(std::string(text), value);
        m_file.variable(column.var).labels[value] = text;
        return value;
    }

    // A field as a number in the file's decimal mark: with a decimal comma, "3,5" is 3.5 and
    // a point is not a number's, lest "1.234" pass for a thousand and more.
    bool number(std::string_view text, double& value) { return number(text, value, m_number); }
    // The same with a buffer of the caller's for a decimal comma.
    bool number(std::string_view text, double& value, std::string& buffer) const {
        if (m_dialect.decimal == '.')
            return parseNumber(text, value);
        if (text.find('.') != std::string_view::npos)
            return false;
        buffer.assign(text);
        std::replace(buffer.begin(), buffer.end(), ',', '.');
        return parseNumber(buffer, value);
    }

    [[noreturn]] void notAValue(const Column& column, std::size_t offset, std::string_view text) {
        std::string what = m_dialect.decimal == ','
                               ? "a number with a decimal comma, a label of the variable or NA"
                               : "a number, a label of the variable or NA";
        if (column.format == DisplayFormat::Date)
            what = "a date (YYYY-MM-DD), " + what;
        else if (column.format == DisplayFormat::Time)
            what = "a time (HH:MM or HH:MM:SS), " + what;
        m_csv.fail(offset,
                   inQuotes(text) + " in variable " + inQuotes(column.name) + " is not " + what);
    }

    // Gives every variable its missing code and writes it into the cells left missing.
    void settleMissingCodes() {
        const int variables = m_file.variableCount();
        std::vector<MissingCodeChooser> choosers(std::size_t(variables) + 1);
        for (int c = 1; c <= m_file.caseCount(); ++c) {
            const double* row = m_file.row(c);
            for (int v = 1; v <= variables; ++v)
                if (!std::isnan(row[v]))
                    choosers[std::size_t(v)].add(row[v]);
        }
        bool anyMissing = false;
        for (const Column& column : m_columns) {
            if (column.var == 0)
                continue;
            anyMissing = anyMissing || column.sawMissing;
            if (column.hasGivenMissing) {
                checkGivenAgainstCodes(column);
                continue;
            }
            const std::optional<double> missing = choosers[std::size_t(column.var)].code();
            if (!missing)
                m_csv.fail(column.headerOffset,
                           "no missing code is free for variable " + inQuotes(column.name) +
                               "; give one as \"missingCode\" in the dictionary");
            m_file.variable(column.var).missingCode = *missing;
        }
        if (!anyMissing)
            return;
        for (int c = 1; c <= m_file.caseCount(); ++c)
            for (int v = 1; v <= variables; ++v)
                if (std::isnan(m_file.value(c, v)))
                    m_file.setValue(c, v, m_file.variable(v).missingCode);
    }

    void checkGivenAgainstCodes(const Column& column) {
        for (const auto& [text, value] : column.codes)
            if (RealEqual(value, column.givenMissing))
                m_dictionary->fail({"variables", column.dictionaryKey, "missingCode"}, At::Value,
                                   "missing code " + numberText(column.givenMissing) +
                                       " of variable " + inQuotes(column.name) +
                                       " is the code of its text " + inQuotes(text));
    }

    const FileText* m_source;
    std::optional<Dictionary> m_dictionary;
    std::string_view m_original;
    CsvDialect m_dialect;
    std::string m_converted; // the text in UTF-8, when it came in another encoding
    CsvReader m_csv;
    std::vector<Column> m_columns;
    DataFile m_file;
    std::string m_number; // a field with a decimal comma, as from_chars reads it
    LoadProgress m_progress;
};

} // namespace

DataFile parseDataFile(std::string_view csvText, const std::string& csvName,
                       std::optional<std::string_view> dictionaryText) {
    try {
        return Loader(csvText, csvName, dictionaryText).load({});
    } catch (const std::bad_alloc&) {
        throw DataError(csvName + ": there is not enough memory to load the file");
    }
}

DataFile loadDataFile(const std::string& path, const LoadProgress& progress) {
    if (isStatisticalFile(path))
        return importStatisticalFile(path, progress);
    // A native file is known by its magic number, whatever its name; it has no dictionary
    // beside it.
    if (hasNativeMagic(readFileBytes(path, NativeMagic.size())))
        return readNativeFile(path, progress).data;
    const FileText csv(path);
    const std::string dictionaryPath = path + ".dict.json";
    std::optional<std::string> dictionary;
    if (std::filesystem::exists(dictionaryPath))
        dictionary = readFileBytes(dictionaryPath);
    std::optional<std::string_view> dictionaryText;
    if (dictionary)
        dictionaryText = *dictionary;
    try {
        return Loader(csv.text(), path, dictionaryText, &csv).load(path, progress);
    } catch (const std::bad_alloc&) {
        throw DataError(path + ": there is not enough memory to load the file");
    }
}

} // namespace wb
