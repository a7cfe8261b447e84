#pragma once
// Importing the data files of other statistics packages through ReadStat: SPSS (.sav,
// .zsav, .por), Stata (.dta) and SAS (.sas7bdat). loadDataFile() hands such files here by
// their extension, so every command reads them like CSV files.
//
// What becomes of a file:
//   - a variable keeps its name, even longer than 8 bytes (it then travels as a token); its
//     label becomes the long name;
//   - value labels become the variable's text labels; labels of values that count as
//     missing are dropped, as those values no longer occur;
//   - numbers are kept as they are, except that a Stata float becomes the double of its
//     shortest decimal text (1.1f is 1.1, not 1.100000023841858);
//   - date formats give the format Date and values counted in days since 1899-12-30:
//       SPSS DATE, ADATE, EDATE, SDATE, JDATE, MOYR, QYR, WKYR (seconds since 1582-10-14),
//       Stata %td and %d (days since 1960-01-01), SAS date formats such as DATE, DDMMYY,
//       MMDDYY, YYMMDD, E8601DA (days since 1960-01-01);
//   - date-and-time formats also give the format Date: the model has no date with a time of
//     day, so the time is dropped and the value is the day it falls on (SPSS DATETIME and
//     YMDHMS, Stata %tc and %tC in milliseconds, SAS DATETIME and the like in seconds);
//     Stata's leap seconds in %tC are not counted;
//   - time formats give the format Time, in seconds: SPSS TIME and MTIME, SAS TIME, TOD,
//     HHMM and the like as they are (a duration past 24 hours stays as it is), and Stata
//     %tc shown as a time of day only (%tcHH:MM:SS) as the seconds since its midnight;
//   - other formats (Stata %tm, %tq and the like, SPSS DTIME, WKDAY, MONTH) keep the
//     format Plain and their numbers;
//   - system-missing, user-missing (SPSS) and tagged missing values (Stata .a to .z, SAS .A
//     to .Z and ._), and infinite values, become the variable's missing code, chosen by the
//     rule of MissingCode.h among the values the variable takes and those of its labels;
//   - a string variable becomes a coded variable: trailing blanks are dropped; each
//     distinct string gets the code 1, 2, 3... in the order of first appearance, and its
//     text label is the string's value label when it has one (SPSS) and the string itself
//     otherwise; an empty string, or one that SPSS counts as missing, is missing;
//   - the file label becomes the header text, cut to 80 bytes at a character boundary;
//   - the SPSS weight variable becomes the weight variable.
//
// Errors throw DataError "PATH: message", with ReadStat's own text for a file it cannot
// read; nothing is returned on failure.

#include <string>

#include "workbench/data/DataFile.h"

namespace wb {

// True when `path` ends in .sav, .zsav, .por, .dta or .sas7bdat, in any case.
bool isStatisticalFile(const std::string& path);

// Imports the file at `path`; its extension says which format it is in. `progress`, when
// given, hears how far reading has come.
DataFile importStatisticalFile(const std::string& path, const LoadProgress& progress = {});

} // namespace wb
