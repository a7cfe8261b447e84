#include "workbench/data/ReadStatImport.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <exception>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include <readstat.h>

#include "workbench/data/MissingCode.h"
#include "workbench/data/TextPosition.h"
#include "workbench/text/Utf8.h"

namespace wb {

namespace {

// The module counts variables in a 16-bit signed field.
constexpr int MaxVariables = 32767;
constexpr std::size_t MaxHeaderBytes = 80;
// Reserving room for the cases a file announces is only a speed-up; a damaged header must
// not make it ask for more memory than this.
constexpr std::size_t MaxReservedBytes = std::size_t(64) << 20;
// Stands for a missing value until the variable's missing code is known.
constexpr double Pending = std::numeric_limits<double>::quiet_NaN();

// The epochs of the files counted in days from the model's, 1899-12-30.
constexpr std::chrono::sys_days ModelEpoch{std::chrono::year{1899} / 12 / 30};
constexpr double SpssEpochDays =
    double((std::chrono::sys_days{std::chrono::year{1582} / 10 / 14} - ModelEpoch).count());
constexpr double Epoch1960Days =
    double((std::chrono::sys_days{std::chrono::year{1960} / 1 / 1} - ModelEpoch).count());
constexpr double SecondsPerDay = 86400.0;

enum class Family { Spss, Stata, Sas };

struct FileKind {
    std::string_view extension;
    Family family;
    readstat_error_t (*parse)(readstat_parser_t*, const char*, void*);
};

constexpr std::array FileKinds{
    FileKind{".sav", Family::Spss, readstat_parse_sav},
    FileKind{".zsav", Family::Spss, readstat_parse_sav},
    FileKind{".por", Family::Spss, readstat_parse_por},
    FileKind{".dta", Family::Stata, readstat_parse_dta},
    FileKind{".sas7bdat", Family::Sas, readstat_parse_sas7bdat},
};

char asciiUpper(char c) {
    return (c >= 'a' && c <= 'z') ? char(c - 'a' + 'A') : c;
}

const FileKind* kindOf(const std::string& path) {
    for (const FileKind& kind : FileKinds) {
        if (path.size() <= kind.extension.size())
            continue;
        const std::string_view tail =
            std::string_view(path).substr(path.size() - kind.extension.size());
        if (std::equal(tail.begin(), tail.end(), kind.extension.begin(),
                       [](char a, char b) { return asciiUpper(a) == asciiUpper(b); }))
            return &kind;
    }
    return nullptr;
}

const char* familyName(Family family) {
    switch (family) {
    case Family::Stata:
        return "Stata";
    case Family::Sas:
        return "SAS";
    case Family::Spss:
        break;
    }
    return "SPSS";
}

// How the stored numbers of a variable become the model's.
enum class Encoding {
    Plain,             // kept as they are
    SpssDate,          // seconds since 1582-10-14, to its day
    Days1960,          // days since 1960-01-01
    Seconds1960,       // seconds since 1960-01-01, to its day
    Milliseconds1960,  // milliseconds since 1960-01-01, to its day
    Seconds,           // a time in seconds, kept
    MillisecondsOfDay, // milliseconds since 1960-01-01, to the seconds since its midnight
};

DisplayFormat displayFormatOf(Encoding encoding) {
    switch (encoding) {
    case Encoding::Plain:
        return DisplayFormat::Plain;
    case Encoding::Seconds:
    case Encoding::MillisecondsOfDay:
        return DisplayFormat::Time;
    default:
        return DisplayFormat::Date;
    }
}

double decode(Encoding encoding, double value) {
    switch (encoding) {
    case Encoding::Plain:
    case Encoding::Seconds:
        return value;
    case Encoding::SpssDate:
        return std::floor(value / SecondsPerDay) + SpssEpochDays;
    case Encoding::Days1960:
        return std::floor(value) + Epoch1960Days;
    case Encoding::Seconds1960:
        return std::floor(value / SecondsPerDay) + Epoch1960Days;
    case Encoding::Milliseconds1960:
        return std::floor(value / (SecondsPerDay * 1000)) + Epoch1960Days;
    case Encoding::MillisecondsOfDay: {
        const double milliseconds = std::fmod(value, SecondsPerDay * 1000);
        return (milliseconds < 0 ? milliseconds + SecondsPerDay * 1000 : milliseconds) / 1000;
    }
    }
    return value;
}

// The name of an SPSS or SAS format without its width and decimals: "DATE11" is "DATE",
// "E8601DA10." is "E8601DA".
std::string formatName(std::string_view format) {
    while (!format.empty() &&
           (std::isdigit(static_cast<unsigned char>(format.back())) || format.back() == '.'))
        format.remove_suffix(1);
    std::string name(format);
    std::transform(name.begin(), name.end(), name.begin(), asciiUpper);
    return name;
}

bool isOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

Encoding spssEncoding(const std::string& name) {
    if (isOneOf(name, {"DATE", "ADATE", "EDATE", "SDATE", "JDATE", "MOYR", "QYR", "WKYR",
                       "DATETIME", "YMDHMS"}))
        return Encoding::SpssDate;
    if (isOneOf(name, {"TIME", "MTIME"}))
        return Encoding::Seconds;
    return Encoding::Plain;
}

Encoding sasEncoding(const std::string& name) {
    // Date formats that differ only by a separator letter (DDMMYYS, MMDDYYD...) share a stem.
    for (const std::string_view stem : {"DDMMYY", "MMDDYY", "YYMMDD", "MMYY", "YYMM", "YYQ"})
        if (name.starts_with(stem))
            return Encoding::Days1960;
    if (isOneOf(name,
                {"DATE",    "DAY",    "DOWNAME", "JULDAY",  "JULIAN",   "MINGUO",   "MONNAME",
                 "MONTH",   "MONYY",  "NENGO",   "QTR",     "QTRR",     "WEEKDATE", "WEEKDATX",
                 "WEEKDAY", "WEEKU",  "WEEKV",   "WEEKW",   "WORDDATE", "WORDDATX", "YEAR",
                 "YYMON",   "NLDATE", "NLDATEW", "E8601DA", "B8601DA"}))
        return Encoding::Days1960;
    if (isOneOf(name, {"DATETIME", "DATEAMPM", "DTDATE", "DTMONYY", "DTWKDATX", "DTYEAR", "DTYYQC",
                       "MDYAMPM", "NLDATM", "E8601DT", "E8601DZ", "E8601DN", "B8601DT", "B8601DZ",
                       "B8601DN", "IS8601DT", "IS8601DZ"}))
        return Encoding::Seconds1960;
    if (isOneOf(name, {"TIME", "TIMEAMPM", "TOD", "HHMM", "HOUR", "MMSS", "NLTIME", "E8601TM",
                       "E8601TZ", "B8601TM", "B8601TZ", "IS8601TM", "IS8601TZ"}))
        return Encoding::Seconds;
    return Encoding::Plain;
}

// Stata formats: %td and the old %d count days, %tc and %tC milliseconds; a %tc format
// whose display codes are only hours, minutes, seconds and am/pm shows a time of day.
Encoding stataEncoding(std::string_view format) {
    if (format.starts_with('%'))
        format.remove_prefix(1);
    if (format.starts_with('-'))
        format.remove_prefix(1);
    if (format.starts_with("td") || format.starts_with('d'))
        return Encoding::Days1960;
    if (!format.starts_with("tc") && !format.starts_with("tC"))
        return Encoding::Plain;
    const std::string_view codes = format.substr(2);
    if (!codes.empty() && codes.find_first_not_of("HhMmSs:._ apm") == std::string_view::npos)
        return Encoding::MillisecondsOfDay;
    return Encoding::Milliseconds1960;
}

Encoding encodingOf(Family family, const char* format) {
    if (format == nullptr)
        return Encoding::Plain;
    switch (family) {
    case Family::Spss:
        return spssEncoding(formatName(format));
    case Family::Sas:
        return sasEncoding(formatName(format));
    case Family::Stata:
        break;
    }
    return stataEncoding(format);
}

// A float as the double of its shortest decimal text, which is what the user typed.
double shortestDouble(float value) {
    char text[32];
    const auto written = std::to_chars(text, text + sizeof text, value);
    double result = value;
    std::from_chars(text, written.ptr, result);
    return result;
}

std::string_view withoutTrailingBlanks(std::string_view text) {
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

// `text` cut to at most `bytes` bytes, not inside a UTF-8 character.
std::string cutAtCharacter(std::string_view text, std::size_t bytes) {
    return std::string(text.substr(0, utf8PrefixLength(text, bytes)));
}

struct ValueLabel {
    bool isString = false;
    double number = 0.0;
    std::string string;
    std::string label;
};

// What the importer knows of one variable while it reads the cases.
struct Column {
    Encoding encoding = Encoding::Plain;
    bool isString = false;
    std::string labelSet;
    std::vector<std::pair<double, double>> missingRanges; // SPSS user-missing values
    std::map<std::string, double, std::less<>> codes;     // of a string variable
    std::vector<std::string> codeTexts;                   // by code - 1
    MissingCodeChooser missing;
};

class Importer {
public:
    Importer(std::string path, const FileKind& kind, const LoadProgress& progress)
        : m_path(std::move(path)), m_kind(kind), m_progress(progress) {}

    DataFile run() {
        checkReadable();
        const std::unique_ptr<readstat_parser_t, void (*)(readstat_parser_t*)> parser(
            readstat_parser_init(), readstat_parser_free);
        if (parser == nullptr)
            throw std::bad_alloc();
        setHandlers(parser.get());
        const readstat_error_t error = m_kind.parse(parser.get(), m_path.c_str(), this);
        if (m_failure)
            std::rethrow_exception(m_failure);
        if (error != READSTAT_OK)
            fail(std::string("cannot read the ") + familyName(m_kind.family) +
                 " file: " + readStatMessage(error));
        return finish();
    }

private:
    // ReadStat says only "Unable to open file"; the system's reason is worth more.
    void checkReadable() const {
        std::FILE* file = std::fopen(m_path.c_str(), "rb");
        if (file == nullptr)
            fail(std::string("cannot open the file: ") + std::strerror(errno));
        std::fclose(file);
    }

    std::string readStatMessage(readstat_error_t error) const {
        const char* text = readstat_error_message(error);
        std::string message = text != nullptr ? text : "error " + std::to_string(int(error));
        // The detail is worth adding only when it says more than the message.
        if (!m_readStatDetail.empty() && m_readStatDetail.find(message) == std::string::npos)
            message += " (" + m_readStatDetail + ")";
        return message;
    }

    [[noreturn]] void fail(const std::string& message) const {
        throw DataError(m_path + ": " + message);
    }

    // Runs a handler's work; an exception cannot cross ReadStat's C frames, so it is kept
    // and the parse is stopped, to be thrown again once ReadStat has returned.
    template <typename Work> static int guarded(void* context, Work work) {
        auto& importer = *static_cast<Importer*>(context);
        try {
            work(importer);
            return READSTAT_HANDLER_OK;
        } catch (...) {
            importer.m_failure = std::current_exception();
            return READSTAT_HANDLER_ABORT;
        }
    }

    static void setHandlers(readstat_parser_t* parser) {
        readstat_set_metadata_handler(parser, [](readstat_metadata_t* metadata, void* context) {
            return guarded(context, [&](Importer& importer) { importer.onMetadata(metadata); });
        });
        readstat_set_variable_handler(parser, [](int, readstat_variable_t* variable,
                                                 const char* labelSet, void* context) {
            return guarded(context,
                           [&](Importer& importer) { importer.onVariable(variable, labelSet); });
        });
        readstat_set_fweight_handler(parser, [](readstat_variable_t* variable, void* context) {
            return guarded(context, [&](Importer& importer) {
                importer.m_weightIndex = readstat_variable_get_index(variable);
            });
        });
        readstat_set_value_handler(parser, [](int caseIndex, readstat_variable_t* variable,
                                              readstat_value_t value, void* context) {
            return guarded(
                context, [&](Importer& importer) { importer.onValue(caseIndex, variable, value); });
        });
        readstat_set_value_label_handler(parser, [](const char* labelSet, readstat_value_t value,
                                                    const char* label, void* context) {
            return guarded(context, [&](Importer& importer) {
                importer.onValueLabel(labelSet, value, label);
            });
        });
        readstat_set_progress_handler(parser, [](double share, void* context) {
            return guarded(context, [&](Importer& importer) {
                if (importer.m_progress)
                    importer.m_progress(share);
            });
        });
        readstat_set_error_handler(parser, [](const char* message, void* context) {
            std::string& detail = static_cast<Importer*>(context)->m_readStatDetail;
            detail = message != nullptr ? message : "";
            while (!detail.empty() && (detail.back() == '\n' || detail.back() == ' '))
                detail.pop_back();
        });
    }

    void onMetadata(readstat_metadata_t* metadata) {
        if (const char* label = readstat_get_file_label(metadata))
            m_header = cutAtCharacter(withoutTrailingBlanks(label), MaxHeaderBytes);
        m_announcedCases = readstat_get_row_count(metadata);
        m_formatVersion = readstat_get_file_format_version(metadata);
    }

    // The bytes a label set's name may take. ReadStat hands a Stata file's name straight
    // from the file's fixed-width field, without a terminator when the field is full, so
    // it is read no further than that field: 9 bytes before format 110, 33 before 118, 129
    // from then on.
    std::size_t labelSetNameLimit() const {
        if (m_kind.family != Family::Stata)
            return std::string::npos;
        return m_formatVersion < 110 ? 9 : m_formatVersion < 118 ? 33 : 129;
    }

    void onVariable(readstat_variable_t* source, const char* labelSet) {
        if (m_file.variableCount() == MaxVariables)
            fail("too many variables; at most " + std::to_string(MaxVariables) + " are allowed");
        const char* name = readstat_variable_get_name(source);
        if (name == nullptr || *name == '\0')
            fail("variable " + std::to_string(m_file.variableCount() + 1) + " has no name");
        if (!m_names.insert(name).second)
            fail("duplicate variable name " + inQuotes(name));
        Column column;
        column.isString = readstat_variable_get_type_class(source) == READSTAT_TYPE_CLASS_STRING;
        if (!column.isString)
            column.encoding = encodingOf(m_kind.family, readstat_variable_get_format(source));
        if (labelSet != nullptr)
            column.labelSet.assign(labelSet, ::strnlen(labelSet, labelSetNameLimit()));
        for (int i = 0; i < readstat_variable_get_missing_ranges_count(source); ++i)
            column.missingRanges.emplace_back(
                readstat_double_value(readstat_variable_get_missing_range_lo(source, i)),
                readstat_double_value(readstat_variable_get_missing_range_hi(source, i)));

        Variable variable;
        variable.name = name;
        if (const char* label = readstat_variable_get_label(source))
            variable.longName = withoutTrailingBlanks(label);
        variable.format = displayFormatOf(column.encoding);
        m_file.addVariable(std::move(variable));
        m_columns.push_back(std::move(column));
    }

    void onValueLabel(const char* labelSet, readstat_value_t value, const char* label) {
        if (labelSet == nullptr || label == nullptr || readstat_value_is_system_missing(value) ||
            readstat_value_is_tagged_missing(value))
            return;
        ValueLabel entry;
        entry.label = label;
        if (readstat_value_type_class(value) == READSTAT_TYPE_CLASS_STRING) {
            const char* string = readstat_string_value(value);
            entry.isString = true;
            entry.string = withoutTrailingBlanks(string != nullptr ? string : "");
        } else {
            entry.number = numberOf(value);
        }
        m_labelSets[labelSet].push_back(std::move(entry));
    }

    void onValue(int caseIndex, readstat_variable_t* variable, readstat_value_t value) {
        if (caseIndex != m_caseIndex) {
            if (m_caseIndex >= 0)
                appendCase();
            else
                prepareCases();
            m_caseIndex = caseIndex;
        }
        const int index = readstat_variable_get_index(variable);
        if (index < 0 || std::size_t(index) >= m_columns.size())
            fail("a value of case " + std::to_string(caseIndex + 1) + " belongs to no variable");
        Column& column = m_columns[std::size_t(index)];
        if (readstat_value_is_missing(value, variable))
            return;
        m_case[std::size_t(index)] = column.isString ? code(column, value) : number(column, value);
    }

    static double numberOf(readstat_value_t value) {
        return readstat_value_type(value) == READSTAT_TYPE_FLOAT
                   ? shortestDouble(readstat_float_value(value))
                   : readstat_double_value(value);
    }

    static double number(Column& column, readstat_value_t value) {
        const double decoded = decode(column.encoding, numberOf(value));
        if (!std::isfinite(decoded))
            return Pending;
        column.missing.add(decoded);
        return decoded;
    }

    static double code(Column& column, readstat_value_t value) {
        const char* string = readstat_string_value(value);
        const std::string_view text = withoutTrailingBlanks(string != nullptr ? string : "");
        if (text.empty())
            return Pending;
        if (const auto known = column.codes.find(text); known != column.codes.end())
            return known->second;
        const double code = double(column.codeTexts.size() + 1);
        column.codes.emplace(std::string(text), code);
        column.codeTexts.emplace_back(text);
        column.missing.add(code);
        return code;
    }

    // Before the first value: all variables are known now.
    void prepareCases() {
        m_case.assign(m_columns.size(), Pending);
        if (m_announcedCases > 0)
            m_file.reserveCases(int(
                std::min<std::size_t>(std::size_t(m_announcedCases),
                                      MaxReservedBytes / sizeof(double) / (m_columns.size() + 1))));
    }

    // Appends the case read so far and starts an empty one.
    void appendCase() {
        m_file.appendCase(m_case);
        std::fill(m_case.begin(), m_case.end(), Pending);
    }

    DataFile finish() {
        if (m_file.variableCount() == 0)
            fail("the file has no variables");
        if (m_caseIndex >= 0)
            appendCase();
        for (int var = 1; var <= m_file.variableCount(); ++var)
            settleVariable(var);
        for (int c = 1; c <= m_file.caseCount(); ++c)
            for (int var = 1; var <= m_file.variableCount(); ++var)
                if (std::isnan(m_file.value(c, var)))
                    m_file.setValue(c, var, m_file.variable(var).missingCode);
        m_file.setHeaderText(m_header);
        if (m_weightIndex >= 0 && m_weightIndex < m_file.variableCount())
            m_file.setWeightVariable(m_weightIndex + 1);
        m_file.setPath(m_path);
        return std::move(m_file);
    }

    // Gives a variable its labels and its missing code.
    void settleVariable(int var) {
        Column& column = m_columns[std::size_t(var) - 1];
        Variable& variable = m_file.variable(var);
        const auto set = m_labelSets.find(column.labelSet);
        const std::vector<ValueLabel> none;
        const std::vector<ValueLabel>& labels = set == m_labelSets.end() ? none : set->second;
        if (column.isString) {
            std::map<std::string_view, std::string_view> labelOf;
            for (const ValueLabel& label : labels)
                if (label.isString)
                    labelOf.emplace(label.string, label.label);
            for (std::size_t i = 0; i < column.codeTexts.size(); ++i) {
                const auto label = labelOf.find(column.codeTexts[i]);
                variable.labels[double(i + 1)] =
                    label == labelOf.end() ? column.codeTexts[i] : std::string(label->second);
            }
        } else {
            for (const ValueLabel& label : labels) {
                if (label.isString || isUserMissing(column, label.number))
                    continue;
                const double value = decode(column.encoding, label.number);
                if (!std::isfinite(value))
                    continue;
                variable.labels[value] = label.label;
                column.missing.add(value);
            }
        }
        const std::optional<double> missing = column.missing.code();
        if (!missing)
            fail("no missing code is free for variable " + inQuotes(variable.name));
        variable.missingCode = *missing;
    }

    static bool isUserMissing(const Column& column, double value) {
        return std::any_of(
            column.missingRanges.begin(), column.missingRanges.end(),
            [value](const auto& range) { return value >= range.first && value <= range.second; });
    }

    std::string m_path;
    const FileKind& m_kind;
    const LoadProgress& m_progress;
    DataFile m_file;
    std::vector<Column> m_columns;
    std::unordered_set<std::string> m_names;
    std::unordered_map<std::string, std::vector<ValueLabel>> m_labelSets;
    std::string m_header;
    long m_announcedCases = -1;
    int m_formatVersion = 0;
    int m_weightIndex = -1;
    int m_caseIndex = -1;
    std::vector<double> m_case; // the case being read, one value per variable
    std::exception_ptr m_failure;
    std::string m_readStatDetail;
};

} // namespace

bool isStatisticalFile(const std::string& path) {
    return kindOf(path) != nullptr;
}

DataFile importStatisticalFile(const std::string& path, const LoadProgress& progress) {
    const FileKind* kind = kindOf(path);
    if (kind == nullptr)
        throw DataError(path + ": not a SPSS, Stata or SAS data file (.sav, .zsav, .por, .dta, "
                               ".sas7bdat)");
    return Importer(path, *kind, progress).run();
}

} // namespace wb
