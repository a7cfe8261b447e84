// Bytes of a native data file. A refusal is a DataError naming the file; an accepted file
// writes back to bytes that read as the same file.

#include <cmath>
#include <string>

#include "FuzzCheck.h"
#include "workbench/data/NativeFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    wb::NativeContents contents;
    try {
        contents = wb::parseNativeFile(bytes, "data.ddf");
    } catch (const wb::DataError& error) {
        fuzz::check(std::string(error.what()).starts_with("data.ddf: "),
                    std::string("refusal that names no file: ") + error.what());
        return 0;
    }
    const wb::DataFile& file = contents.data;
    const wb::NativeContents back =
        wb::parseNativeFile(wb::nativeFileBytes(file, contents.categorical), "back.ddf");
    fuzz::check(back.data.caseCount() == file.caseCount(), "case count after writing");
    fuzz::check(back.data.variableCount() == file.variableCount(), "variables after writing");
    fuzz::check(back.categorical == contents.categorical, "categorical flags after writing");
    for (int v = 1; v <= file.variableCount(); ++v) {
        fuzz::check(back.data.variable(v).name == file.variable(v).name, "name after writing");
        for (int c = 1; c <= file.caseCount(); ++c) {
            const double x = file.value(c, v);
            fuzz::check(std::isfinite(x), "a value that is no finite number was accepted");
            fuzz::check(back.data.value(c, v) == x, "value after writing");
        }
    }
    return 0;
}
