// CSV text with an optional dictionary behind a "\n#dict\n" line. A refusal is a DataError
// located in the CSV or the dictionary; an accepted file exports and reloads to the same
// names and values.

#include <filesystem>
#include <string>
#include <unistd.h>

#include "FuzzCheck.h"
#include "workbench/data/CsvExport.h"
#include "workbench/data/DataFileLoader.h"

namespace {

bool sameValue(const wb::DataFile& a, const wb::DataFile& b, int c, int v) {
    const double x = a.value(c, v);
    const double y = b.value(c, v);
    return x == y || (a.isMissing(v, x) && b.isMissing(v, y));
}

void checkRoundTrip(const wb::DataFile& file) {
    static const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("csv-fuzz-" + std::to_string(::getpid()));
    std::filesystem::create_directories(folder);
    const std::string path = (folder / "round.csv").string();
    try {
        wb::exportCsv(file, path);
    } catch (const wb::DataError&) {
        return; // a file the CSV form cannot hold is refused with its reason
    }
    const wb::DataFile back = wb::loadDataFile(path);
    fuzz::check(back.caseCount() == file.caseCount(), "case count after reload");
    fuzz::check(back.variableCount() == file.variableCount(), "variable count after reload");
    for (int v = 1; v <= file.variableCount(); ++v) {
        fuzz::check(back.variable(v).name == file.variable(v).name, "name after reload");
        for (int c = 1; c <= file.caseCount(); ++c)
            fuzz::check(sameValue(file, back, c, v), "value after reload");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    constexpr std::string_view Marker = "\n#dict\n";
    const std::size_t marker = input.find(Marker);
    const std::string_view csv = input.substr(0, marker);
    std::optional<std::string_view> dictionary;
    if (marker != std::string_view::npos)
        dictionary = input.substr(marker + Marker.size());
    wb::DataFile file;
    try {
        file = wb::parseDataFile(csv, "data.csv", dictionary);
    } catch (const wb::DataError& error) {
        const std::string message = error.what();
        fuzz::check(fuzz::locatedIn(message, "data.csv", fuzz::lineCount(csv)) ||
                        (dictionary && fuzz::locatedIn(message, "data.csv.dict.json",
                                                       fuzz::lineCount(*dictionary))),
                    "refusal without a position in its text: " + message);
        return 0;
    }
    checkRoundTrip(file);
    return 0;
}
