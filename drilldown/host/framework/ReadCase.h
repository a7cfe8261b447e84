#pragma once
// The module's layer over the host's reading of cases: the scans read a stretch of cases at
// a time, and the weight and case-name blocks end as if they had read them one by one.

#include "CAnalysisSupport.h"

// Writes the case's name into the case-name block at its position, blank padded to the
// file's case-name width; a name longer than that goes as its token. Nothing without names.
void PutCaseName(CAnalysisSupport& analysis, int caseNo);

// Reads the stretch of cases that `rows` asks for, as a loop over its cases would read them
// one by one: each through cstrtw, each case delivered followed by a lookbr, stopping at a
// case given 2 or at a break. Gives how many cases that loop would have gone through before
// it stopped: rows.count when it did not. poll(n) asks n times for a break and gives how
// many times went by before one came, n when none did.
template <typename Poll> int ReadCase(CAnalysisSupport& analysis, CaseRows& rows, Poll&& poll) {
    analysis.ReadCaseRows(rows);
    int readable = 0;
    int delivered = 0;
    for (; readable < rows.count && rows.results[readable] != 2; ++readable)
        delivered += rows.results[readable] == 0 ? 1 : 0;
    const int polled = poll(delivered);
    if (polled == delivered)
        return readable;
    // The break came with the case delivered after `polled` others.
    for (int i = 0, passed = 0;; ++i)
        if (rows.results[i] == 0 && passed++ == polled)
            return i;
}

// Leaves the weight and case-name blocks as reading the cases of `rows` up to the one at
// `last` one by one leaves them.
void KeepCaseBlocks(CAnalysisSupport& analysis, const CaseRows& rows, int last);
