#pragma once
// Loading a data file: a CSV file of cases and, beside it, an optional JSON dictionary.
//
// The CSV file (RFC 4180 style, leading byte order marks are ignored):
//   - separated by commas, semicolons or tabs, and written in UTF-8 or Windows-1252, as
//     CsvDialect.h guesses or the dictionary says; rows end with LF, CRLF or CR; empty
//     lines are skipped; a NUL byte is refused;
//   - a field in double quotes may hold commas, line breaks and doubled quotes ("");
//     blanks around an unquoted field, or around the quotes of a quoted one, are dropped;
//   - the first row names the variables, one per field: none empty, no two the same;
//   - every further row is a case with exactly as many fields as the header;
//   - an empty field or NA is a missing value;
//   - a number is written as C writes it (-12, 3.5, 1e6); a leading + is allowed; in a
//     file of decimal commas, 3,5 is 3.5 and a number with a point is refused;
//   - in a variable whose dictionary entry has labels, a field may be the text of one of
//     them and stands for its value;
//   - in a variable of format "date" a field may be a date YYYY-MM-DD, in one of format
//     "time" a time HH:MM or HH:MM:SS; they become days since 1899-12-30 and seconds
//     since midnight (DataFile.h);
//   - a column with no number at all, with neither labels nor a date or time format in the
//     dictionary, is a coded variable: each distinct text gets the code 1, 2, 3... in the
//     order of first appearance and becomes the text label of its code.
//
// The dictionary, FILE.dict.json for a data file FILE (every key optional):
//   {
//     "header": "Customer survey 2024",   header text, at most 80 bytes
//     "caseNames": "CUSTOMER",            the column that names the cases; not a variable
//     "weight": "WEIGHT",                 the weight variable
//     "selection": "AGE >= 18",           a selection condition (SelectionCondition.h)
//     "separator": ";",                   ",", ";" or "\t", instead of the guess
//     "decimal": ",",                     "." or ","
//     "encoding": "Windows-1252",         "UTF-8", "Windows-1252" or "Latin-1"
//     "variables": {                      by short name, as in the CSV header
//       "AGE": { "longName": "Age in years", "missingCode": -1 },
//       "REGION": { "labels": { "11": "Île-de-France", "93": "Provence-Alpes-Côte d'Azur" } },
//       "SEX": { "labels": [[1, "Female"], [2, "Male"]] },
//       "FIRSTBUY": { "format": "date" }  "plain" (the default), "date" or "time"
//     }
//   }
// Unknown keys are errors, so that a misspelt key does not pass unnoticed.
//
// Missing codes. A dictionary's missingCode must differ from every value of the variable
// (a field holding it is an error: write the field empty or NA). Without one the code is
// -99999999 when no value of the variable equals it, and otherwise the smallest value of
// the variable minus the larger of 1 and that value's magnitude. Values are compared as the
// module compares them (RealEqual).
//
// Errors. Bad input throws DataError with the message "FILE:LINE:COLUMN: text", where FILE
// is the CSV or the dictionary file, LINE counts from 1 and COLUMN counts characters (UTF-8
// code points) from 1 on that line; a problem with a field points at its first character.
// A file that cannot be read gives "FILE: text". Nothing is returned on failure: a data file
// is built apart and handed over only complete.

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "workbench/data/DataFile.h"

namespace wb {

// Loads the CSV file at `path` and, when it exists, the dictionary `path` + ".dict.json".
// A file that starts with the native magic number is loaded as a native file instead
// (NativeFile.h), whatever its name.
// An SPSS, Stata or SAS file, known by its extension, is imported instead (ReadStatImport.h).
// `progress`, when given, hears how far loading has come.
DataFile loadDataFile(const std::string& path, const LoadProgress& progress = {});

// Loads from text in memory; `csvName` names the CSV text in messages and with
// ".dict.json" appended names the dictionary. Without dictionary text there is none.
DataFile parseDataFile(std::string_view csvText, const std::string& csvName,
                       std::optional<std::string_view> dictionaryText = std::nullopt);

} // namespace wb
