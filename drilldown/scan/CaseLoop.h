#pragma once
// The one case loop that every scan walks: all cases of the file in file order, each read
// through ReadCase, the user's break polled once per case delivered, and cases of weight zero
// or below passed over.
//
// Cases are read ahead into blocks so that a scan can run its per-case tests over a whole
// block without a branch per case (see SubsetTest).
//
// A large file may be read in parts, one thread each, every part into a state of its own
// that the scan merges afterwards in file order. The first part is read on the calling
// thread through ReadCase, with the user's break polled per case; the others are read
// through cstrtw alone, the one host service that may be called from several threads, and
// write none of the host's blocks. Once every part is read, the calling thread polls the
// break once for each case the other parts delivered, so the host sees as many polls as in
// one pass.
//
// A scan in one part that is broken off hands over the cases read before the break, in file
// order, so it leaves exactly what a case-by-case loop would have left. A scan in several
// parts stops every part where it stands.

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstring>
#include <deque>
#include <exception>
#include <system_error>
#include <thread>
#include <vector>

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

// The weight a case counts with: 1 when the file is not weighted; the case's weight for
// weighted moments; otherwise the weight rounded to a whole number, halves away from zero.
inline double CaseWeight(bool weighted, double weight, bool weightedMoments) {
    if (!weighted)
        return 1.0;
    if (weightedMoments)
        return weight;
    if (weight < 0)
        return std::ceil(weight - 0.5);
    if (weight == 0)
        return 0.0;
    return std::floor(weight + 0.5);
}

namespace scan_detail {

// A case counts when its weight is not RealLessEqual to 0. Nothing but 0 is RealEqual to
// 0, so that is the plain comparison, which costs one instruction.
inline bool Counts(double weight) { return !(weight <= 0.0); }

// Hands blocks of read cases to a visitor.
class BlockFill {
public:
    BlockFill(double* rows, std::size_t stride) : m_rows(rows), m_stride(stride) {}
    double* NextRow() { return m_rows + std::size_t(m_held) * m_stride; }
    template <typename VisitBlock> void Keep(double weight, VisitBlock& visit) {
        m_weights[m_held++] = weight;
        if (m_held == CaseBlock::Capacity)
            HandOver(visit);
    }
    template <typename VisitBlock> void HandOver(VisitBlock& visit) {
        if (m_held > 0)
            visit(CaseBlock{m_rows, m_stride, m_weights, m_held});
        m_held = 0;
    }
    bool Empty() const { return m_held == 0; }

private:
    double* m_rows;
    std::size_t m_stride;
    double m_weights[CaseBlock::Capacity];
    int m_held = 0;
};

// The threads of the parts after the first; leaving, by any way, stops and joins them.
class PartThreads {
public:
    explicit PartThreads(std::atomic<bool>& stop) : m_stop(stop) {}
    ~PartThreads() {
        m_stop = true;
        Join();
    }
    // False when the system has no thread to give.
    template <typename Run> bool Start(Run&& run) {
        try {
            m_threads.emplace_back(std::forward<Run>(run));
            return true;
        } catch (const std::system_error&) {
            return false;
        }
    }
    int Started() const { return static_cast<int>(m_threads.size()); }
    void Join() {
        for (std::thread& thread : m_threads)
            if (thread.joinable())
                thread.join();
    }

private:
    std::atomic<bool>& m_stop;
    std::vector<std::thread> m_threads;
};

} // namespace scan_detail

template <typename VisitBlock> LoopEnd CDrillDown::RunCaseLoop(VisitBlock&& visit) {
    return RunPartedLoop(1, [&](int, const CaseBlock& block) { visit(block); });
}

template <typename VisitBlock>
LoopEnd CDrillDown::ReadCasesHere(CaseRange range, double* rows, VisitBlock&& visit) {
    const HostBlocks& blocks = ModuleBlocks();
    b1_com& b1 = ModuleBlocks().B1;
    const bool weightedMoments = WM == 1;
    const bool caseNames = blocks.Vmk88.CaseNameLen != 0;
    scan_detail::BlockFill fill(rows, std::size_t(blocks.Vmk.NVars) + 1);
    for (int caseNo = range.first; caseNo <= range.last; ++caseNo) {
        if (caseNames) {
            std::memset(b1.CaseName, 0, sizeof b1.CaseName);
            b1.CaseNamePos = 1;
        }
        const short read = ReadCase(*this, &caseNo, fill.NextRow());
        if (read == 2 || (read == 0 && lookbr() != 0)) {
            fill.HandOver(visit);
            return LoopEnd::BrokenOff;
        }
        if (read == 1)
            continue;
        // What DealWithWeights gives, from the block ReadCase has just written.
        const double weight =
            CaseWeight(blocks.Wght.WeightOn != 0, blocks.Wght.WeightValue, weightedMoments);
        if (scan_detail::Counts(weight))
            fill.Keep(weight, visit);
    }
    fill.HandOver(visit);
    return LoopEnd::Completed;
}

template <typename VisitBlock>
LoopEnd CDrillDown::ReadCasesAside(CaseRange range, double* rows, const std::atomic<bool>& stop,
                                   int& delivered, VisitBlock&& visit) {
    const bool weightedMoments = WM == 1;
    scan_detail::BlockFill fill(rows, std::size_t(ModuleBlocks().Vmk.NVars) + 1);
    for (int caseNo = range.first; caseNo <= range.last; ++caseNo) {
        if (fill.Empty() && stop.load(std::memory_order_relaxed))
            return LoopEnd::BrokenOff;
        int weighted = 0;
        double weight = 0;
        const short read = cstrtw(caseNo, fill.NextRow(), &weighted, &weight, nullptr);
        if (read == 2)
            return LoopEnd::BrokenOff;
        if (read == 1)
            continue;
        ++delivered;
        const double w = CaseWeight(weighted != 0, weight, weightedMoments);
        if (scan_detail::Counts(w))
            fill.Keep(w, visit);
    }
    fill.HandOver(visit);
    return LoopEnd::Completed;
}

template <typename VisitPart> LoopEnd CDrillDown::RunPartedLoop(int parts, VisitPart&& visit) {
    const HostBlocks& blocks = ModuleBlocks();
    const int cases = blocks.Vmk.NCases;
    const std::size_t stride = std::size_t(blocks.Vmk.NVars) + 1;
    // Every part's value buffer comes from the host on this thread, before any reading.
    std::deque<HostArray<double>> rows;
    for (int k = 0; k < parts; ++k) {
        if (!rows.emplace_back(*this).Allocate(stride * CaseBlock::Capacity)) {
            dsplst(0, GetResourceString(StrMemoryExhausted));
            return LoopEnd::NoMemory;
        }
    }
    auto rangeOf = [&](int k) {
        return CaseRange{int(1 + std::int64_t(cases) * k / parts),
                         int(std::int64_t(cases) * (k + 1) / parts)};
    };
    tdstar(cases, GetResourceString(StrCalculating));
    // Without case names ReadCase never writes the field, so clearing it once is the same as
    // clearing it before every case.
    std::memset(ModuleBlocks().B1.CaseName, 0, sizeof ModuleBlocks().B1.CaseName);
    ModuleBlocks().B1.CaseNamePos = 1;

    std::atomic<bool> stop{false};
    std::vector<int> delivered(parts, 0);
    std::vector<LoopEnd> ends(parts, LoopEnd::Completed);
    std::vector<std::exception_ptr> failures(parts);
    auto readAside = [&](int k) {
        try {
            ends[k] = ReadCasesAside(rangeOf(k), rows[k].get(), stop, delivered[k],
                                     [&](const CaseBlock& block) { visit(k, block); });
        } catch (...) {
            failures[k] = std::current_exception();
        }
        if (ends[k] != LoopEnd::Completed || failures[k])
            stop = true;
    };
    LoopEnd end;
    {
        scan_detail::PartThreads threads(stop);
        for (int k = 1; k < parts && threads.Start([&readAside, k] { readAside(k); }); ++k) {
        }
        end = ReadCasesHere(rangeOf(0), rows[0].get(),
                            [&](const CaseBlock& block) { visit(0, block); });
        if (end != LoopEnd::Completed)
            stop = true;
        threads.Join();
        // Parts that got no thread are read here.
        for (int k = threads.Started() + 1; k < parts && !stop; ++k)
            readAside(k);
    }
    for (const std::exception_ptr& failure : failures) {
        if (failure) {
            ddstop();
            std::rethrow_exception(failure);
        }
    }
    for (int k = 1; k < parts && end == LoopEnd::Completed; ++k) {
        end = ends[k];
        for (int i = 0; i < delivered[k] && end == LoopEnd::Completed; ++i)
            if (lookbr() != 0)
                end = LoopEnd::BrokenOff;
    }
    ddstop();
    return end;
}
