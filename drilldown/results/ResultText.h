#pragma once
// Small text helpers shared by the result tables.

#include <string>

class CAnalysisSupport;

// printf into a string.
std::string FormatText(const char* format, ...) __attribute__((format(printf, 1, 2)));

// A number as "%f" writes it, less its trailing zeros and then a trailing point: 2.500000
// reads 2.5, 20.000000 reads 20.
std::string TrimmedNumber(double value);

// The variable's short name as the host gives it, blanks included.
std::string RawShortName(CAnalysisSupport& host, int variable);

// The short name without surrounding blanks, its token expanded.
std::string ShortName(CAnalysisSupport& host, int variable);

// The name of a variable in a title: its short name without blanks, and the separator and
// the long name behind it when the variable has one.
std::string VariableLabel(CAnalysisSupport& host, int variable, const char* separator = ": ");
