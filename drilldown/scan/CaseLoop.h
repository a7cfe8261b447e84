#pragma once
// The one case loop that every scan walks: all cases of the file in file order, each read
// through ReadCase, the user's break polled once per case, and cases of weight zero or
// below passed over. The scan's own tests and work come in as `visit`, called with the
// value buffer of each remaining case.

#include <cstring>

#include "../core/CDrillDown.h"
#include "../host/HostArray.h"
#include "../host/ReadCase.h"
#include "../host/RealNumbers.h"
#include "../resources/StringIds.h"

enum class LoopEnd {
    Completed,  // every case was seen
    NoMemory,   // the value buffer could not be had; the message is shown
    BrokenOff,  // reading was broken off or the user asked to stop; nothing is shown
};

template <typename Visit> LoopEnd CDrillDown::RunCaseLoop(Visit&& visit) {
    HostArray<double> buffer(*this);
    const HostBlocks& blocks = ModuleBlocks();
    if (!buffer.Allocate(std::size_t(blocks.Vmk.NVars) + 1)) {
        dsplst(0, GetResourceString(StrMemoryExhausted));
        return LoopEnd::NoMemory;
    }
    tdstar(blocks.Vmk.NCases, GetResourceString(StrCalculating));
    b1_com& b1 = ModuleBlocks().B1;
    const int cases = blocks.Vmk.NCases;
    for (int caseNo = 1; caseNo <= cases; ++caseNo) {
        std::memset(b1.CaseName, 0, sizeof b1.CaseName);
        b1.CaseNamePos = 1;
        const short read = ReadCase(*this, &caseNo, buffer.get());
        if (read == 2 || (read == 0 && lookbr() != 0)) {
            ddstop();
            return LoopEnd::BrokenOff;
        }
        if (read == 1 || RealLessEqual(DealWithWeights(0), 0.0))
            continue;
        visit(buffer.get());
    }
    ddstop();
    return LoopEnd::Completed;
}
