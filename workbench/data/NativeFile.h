#pragma once
// The workbench's native data file (.ddf by convention): one DataFile whole, dictionary and
// cases, in a binary file whose data area is laid out as the drill-down module writes a new
// file (row after row: case name, then one double per variable), so that the module's rows
// go to disk as they come. docs/native-format.md gives the layout byte by byte.
//
//   magic (8) | version (4) | header text (80) | variables (4) | rows (4) | case-name width (4)
//   | weight variable (4) | data offset (8) | selection | per variable: short name, long name,
//   missing code, display format, categorical flag, text labels | data area
//
// All numbers little-endian; strings are a 32-bit byte count and that many bytes of UTF-8.
//
// To use it:
//   1. writeNativeFile saves a DataFile; nativeFileBytes gives the same bytes in memory;
//   2. readNativeFile loads one, the rows a piece at a time, and a large file's rows in parts,
//      one thread each (loadDataFile does too: it knows the file by its magic number,
//      whatever its name); parseNativeFile reads bytes in memory;
//   3. a writer that makes the data area itself (the new-file service) encodes the
//      dictionary with encodeNativeDictionary, writes the rows behind it, and when fewer
//      rows came than it declared, patches the count at NativeRowCountOffset.
//
// Errors. A malformed file throws DataError naming the file and the byte where the fault
// lies: "FILE: not a drill-down data file (bad magic number)", "FILE: truncated at byte N
// (in the text labels of variable AGE)", "FILE: byte N: message". Nothing is returned on
// failure.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/data/DataFile.h"

namespace wb {

// Starts with a byte that no text file starts with; CR LF and ^Z catch a file that went
// through a text-mode copy.
inline constexpr std::string_view NativeMagic{"\x89"
                                              "DDF\r\n\x1A\n",
                                              8};
inline constexpr std::uint32_t NativeVersion = 1;
inline constexpr std::size_t NativeHeaderTextBytes = 80;
// Where the 32-bit row count lies, so that a writer can set it last.
inline constexpr std::size_t NativeRowCountOffset = 96;
// Where the 64-bit offset of the data area lies, the last of the fixed fields.
inline constexpr std::size_t NativeDataOffsetAt = 108;
// The module counts variables and case-name bytes in 16-bit signed fields.
inline constexpr int NativeMaxVariables = 32767;
inline constexpr int NativeMaxCaseNameWidth = 32767;

// Everything of a native file before its data area.
struct NativeDictionary {
    std::string headerText; // at most 80 bytes; written blank padded
    std::vector<Variable> variables;
    std::vector<bool> categorical; // one flag per variable, or empty for none categorical
    int rowCount = 0;
    int caseNameWidth = 0; // 0: the rows hold no case names
    int weightVariable = 0;
    std::string selection;
};

// What a native file holds: a data file, and the categorical flags it has no place for.
struct NativeContents {
    DataFile data;
    std::vector<bool> categorical; // one per variable
};

// True when `bytes` begin with the native magic number.
bool hasNativeMagic(std::string_view bytes);

// The bytes of the dictionary; the data area starts right behind them. Throws DataError
// (with no file name) when the dictionary breaks a rule the reader checks, so that no file
// is written that cannot be read back.
std::string encodeNativeDictionary(const NativeDictionary& dictionary);

// Reads a whole native file held in memory; `name` stands for it in messages and becomes
// the data file's path.
NativeContents parseNativeFile(std::string_view bytes, const std::string& name);
NativeContents readNativeFile(const std::string& path, const LoadProgress& progress = {});

// The native form of `file`. `categorical` holds one flag per variable, or is empty.
std::string nativeFileBytes(const DataFile& file, const std::vector<bool>& categorical = {});
// Writes the native form of `file` to `path` through a temporary file beside it, renamed
// into place once complete; throws DataError "PATH: ..." when it cannot.
void writeNativeFile(const DataFile& file, const std::string& path,
                     const std::vector<bool>& categorical = {});

} // namespace wb
