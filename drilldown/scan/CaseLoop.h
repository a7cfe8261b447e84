#pragma once
// The one case loop that every scan walks: all cases of the file in file order, each read
// through ReadCase, the user's break polled once per case delivered, and cases of weight zero
// or below passed over.
//
// Cases are read ahead into blocks so that a scan can run its per-case tests over a whole
// block without a branch per case (see SubsetTest). Reading stops at a break; the cases read
// before it are still handed over, in file order, so a broken-off scan leaves exactly what a
// case-by-case loop would have left.

#include <cstring>

#include "../core/CDrillDown.h"
#include "../host/framework/HostArray.h"
#include "../host/framework/ReadCase.h"
#include "../host/RealNumbers.h"
#include "../resources/StringIds.h"

enum class LoopEnd {
    Completed,  // every case was seen
    NoMemory,   // the value buffer could not be had; the message is shown
    BrokenOff,  // reading was broken off or the user asked to stop; nothing is shown
};

// Cases read ahead: `count` rows of `stride` doubles (the value buffer layout: slot 0 unused,
// then one value per variable) and the weight each case counts with.
struct CaseBlock {
    static constexpr int Capacity = 128;
    const double* rows;
    std::size_t stride;
    const double* weights;
    int count;

    const double* Row(int i) const { return rows + std::size_t(i) * stride; }
};

template <typename VisitBlock> LoopEnd CDrillDown::RunCaseLoop(VisitBlock&& visit) {
    const HostBlocks& blocks = ModuleBlocks();
    const std::size_t stride = std::size_t(blocks.Vmk.NVars) + 1;
    HostArray<double> rows(*this);
    if (!rows.Allocate(stride * CaseBlock::Capacity)) {
        dsplst(0, GetResourceString(StrMemoryExhausted));
        return LoopEnd::NoMemory;
    }
    double weights[CaseBlock::Capacity];
    tdstar(blocks.Vmk.NCases, GetResourceString(StrCalculating));
    b1_com& b1 = ModuleBlocks().B1;
    // Without case names ReadCase never writes the field, so clearing it once is the same as
    // clearing it before every case.
    const bool caseNames = blocks.Vmk88.CaseNameLen != 0;
    std::memset(b1.CaseName, 0, sizeof b1.CaseName);
    b1.CaseNamePos = 1;

    const int cases = blocks.Vmk.NCases;
    int held = 0;
    auto handOver = [&] {
        if (held > 0)
            visit(CaseBlock{rows.get(), stride, weights, held});
        held = 0;
    };
    for (int caseNo = 1; caseNo <= cases; ++caseNo) {
        if (caseNames) {
            std::memset(b1.CaseName, 0, sizeof b1.CaseName);
            b1.CaseNamePos = 1;
        }
        double* row = rows.get() + std::size_t(held) * stride;
        const short read = ReadCase(*this, &caseNo, row);
        if (read == 2 || (read == 0 && lookbr() != 0)) {
            handOver();
            ddstop();
            return LoopEnd::BrokenOff;
        }
        if (read == 1)
            continue;
        const double weight = DealWithWeights(0);
        if (RealLessEqual(weight, 0.0))
            continue;
        weights[held++] = weight;
        if (held == CaseBlock::Capacity)
            handOver();
    }
    handOver();
    ddstop();
    return LoopEnd::Completed;
}
