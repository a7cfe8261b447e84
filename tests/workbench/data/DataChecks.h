#pragma once
// Checks of data files: the same file as another, the values one expects, the message of a
// file refused.

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "workbench/data/DataFile.h"

namespace wb::testing {

// The dictionary, the settings, the case names and the values; `bitwise` compares the rows
// bit for bit from the unused row 0 on, so that -0.0 must stay -0.0.
inline void expectSameFile(const DataFile& got, const DataFile& want, bool bitwise = false) {
    EXPECT_EQ(got.headerText(), want.headerText());
    EXPECT_EQ(got.weightVariable(), want.weightVariable());
    EXPECT_EQ(got.selectionText(), want.selectionText());
    ASSERT_EQ(got.variableCount(), want.variableCount());
    for (int v = 1; v <= want.variableCount(); ++v) {
        const Variable &in = got.variable(v), &out = want.variable(v);
        EXPECT_EQ(in.name, out.name) << "variable " << v;
        EXPECT_EQ(in.longName, out.longName) << "variable " << v;
        EXPECT_EQ(in.missingCode, out.missingCode) << "variable " << v;
        EXPECT_EQ(in.labels, out.labels) << "variable " << v;
        EXPECT_EQ(in.format, out.format) << "variable " << v;
    }
    ASSERT_EQ(got.caseCount(), want.caseCount());
    ASSERT_EQ(got.hasCaseNames(), want.hasCaseNames());
    for (int c = 1; c <= want.caseCount() && want.hasCaseNames(); ++c)
        ASSERT_EQ(got.caseName(c), want.caseName(c)) << "case " << c;
    if (bitwise) {
        const std::size_t doubles = want.stride() * (std::size_t(want.caseCount()) + 1);
        EXPECT_EQ(std::memcmp(got.row(0), want.row(0), sizeof(double) * doubles), 0);
        return;
    }
    for (int c = 1; c <= want.caseCount(); ++c)
        for (int v = 1; v <= want.variableCount(); ++v)
            ASSERT_EQ(got.value(c, v), want.value(c, v)) << "case " << c << " variable " << v;
}

// The values of variable `var`, case after case; NaN stands for its missing code.
inline void expectValues(const DataFile& file, int var, const std::vector<double>& values) {
    ASSERT_EQ(file.caseCount(), int(values.size()));
    for (int c = 1; c <= file.caseCount(); ++c) {
        const double want = values[std::size_t(c) - 1], got = file.value(c, var);
        if (std::isnan(want))
            EXPECT_TRUE(file.isMissing(var, got)) << "case " << c << " variable " << var << ": "
                                                  << got;
        else
            EXPECT_EQ(got, want) << "case " << c << " variable " << var;
    }
}

// The message of the DataError that `read` throws, or "no error".
template <typename Read> std::string dataError(Read&& read) {
    try {
        read();
    } catch (const DataError& error) {
        return error.what();
    }
    return "no error";
}

} // namespace wb::testing
