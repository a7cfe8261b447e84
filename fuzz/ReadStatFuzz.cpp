// Bytes of an SPSS, Stata or SAS file, its kind chosen by the first byte. A refusal is a
// DataError that names the file; an accepted file holds only finite values.

#include <cmath>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

#include "FuzzCheck.h"
#include "workbench/data/ReadStatImport.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    static const char* const Extensions[] = {".sav", ".dta", ".sas7bdat", ".por", ".zsav"};
    const std::filesystem::path path =
        std::filesystem::temp_directory_path() /
        ("readstat-fuzz-" + std::to_string(::getpid()) + Extensions[data[0] % 5]);
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(data + 1), std::streamsize(size - 1));
    try {
        const wb::DataFile file = wb::importStatisticalFile(path.string());
        for (int v = 1; v <= file.variableCount(); ++v)
            for (int c = 1; c <= file.caseCount(); ++c)
                fuzz::check(std::isfinite(file.value(c, v)), "a value that is not finite");
    } catch (const wb::DataError& error) {
        fuzz::check(std::string(error.what()).starts_with(path.string()),
                    std::string("refusal that names no file: ") + error.what());
    }
    std::filesystem::remove(path);
    return 0;
}
