#pragma once
// The one case loop that every scan walks: all cases of the file in file order, read through
// ReadCase a stretch at a time, the user's break polled once per case delivered, and cases of
// weight zero or below passed over.
//
// The cases of a stretch come as one block, so that a scan can run its per-case tests over a
// whole block without a branch per case (see SubsetTest), and the host can hand over the rows
// it holds without copying them.
//
// A large file may be read in parts, one thread each, every part into a state of its own
// that the scan merges afterwards in file order. The first part is read on the calling
// thread, with the user's break polled per case and the host's blocks kept as a loop over
// single cases keeps them; the others are read through the host's ReadCaseRows alone, one
// of the two host services that may be called from several threads, and write none of the
// host's blocks. Once every part is read, the calling thread polls the break once for each
// case the other parts delivered, so the host sees as many polls as in one pass.
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
#include "../resources/StringIds.h"

enum class LoopEnd {
    Completed,  // every case was seen
    NoMemory,   // the value buffer could not be had; the message is shown
    BrokenOff,  // reading was broken off or the user asked to stop; nothing is shown
};

// Cases read a stretch at a time: `count` rows of `stride` doubles (laid out as a value
// buffer: slot 0 unused, then one value per variable) and the weight each case counts with,
// 0 for a case that does not count (left out by the host, or of weight 0 or below).
struct CaseBlock {
    static constexpr int Capacity = 128;
    const double* rows;
    std::size_t stride;
    const double* weights;
    int count;

    const double* Row(int i) const { return rows + std::size_t(i) * stride; }
    // A case counts when its weight is not RealLessEqual to 0. Nothing but 0 is RealEqual to
    // 0, so that is the plain comparison, which costs one instruction.
    bool Counts(int i) const { return !(weights[i] <= 0.0); }
};

// The weight a case counts with: 1 when the file is not weighted; the case's weight for
// weighted moments; otherwise the weight rounded to a whole number, halves away from zero.
// Written without branches, so that a loop over many cases can take them in vectors.
inline double CaseWeight(bool weighted, double weight, bool weightedMoments) {
    const double down = std::ceil(weight - 0.5);
    const double up = std::floor(weight + 0.5);
    const double rounded = weight < 0 ? down : weight == 0 ? 0.0 : up;
    return !weighted ? 1.0 : weightedMoments ? weight : rounded;
}

// Turns the weights of a stretch of cases, as the host read them, into the weights they count
// with (CaseWeight): 0 for a case that results[i] leaves out.
void CountingWeights(const short* results, double* weights, int count, bool weighted,
                     bool weightedMoments);

namespace scan_detail {

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

template <typename Poll, typename VisitBlock>
LoopEnd CDrillDown::ReadPart(CaseRange range, double* buffer, PartReader reader, Poll&& poll,
                             VisitBlock&& visit) {
    const bool weightedMoments = WM == 1;
    short results[CaseBlock::Capacity];
    double weights[CaseBlock::Capacity];
    for (int first = range.first; first <= range.last; first += CaseBlock::Capacity) {
        if (reader.stop != nullptr && reader.stop->load(std::memory_order_relaxed))
            return LoopEnd::BrokenOff;
        CaseRows rows{first,   std::min(CaseBlock::Capacity, range.last - first + 1),
                      buffer,  std::size_t(ModuleBlocks().Vmk.NVars) + 1,
                      results, weights};
        const int read = ReadCase(*this, rows, poll);
        if (reader.keepsBlocks)
            KeepCaseBlocks(*this, rows, std::min(read, rows.count - 1));
        CountingWeights(results, weights, read, rows.hasWeight != 0, weightedMoments);
        if (read > 0)
            visit(CaseBlock{rows.values, rows.stride, weights, read});
        if (read < rows.count)
            return LoopEnd::BrokenOff;
    }
    return LoopEnd::Completed;
}

template <typename VisitPart> LoopEnd CDrillDown::RunPartedLoop(int parts, VisitPart&& visit) {
    const HostBlocks& blocks = ModuleBlocks();
    const int cases = blocks.Vmk.NCases;
    const std::size_t stride = std::size_t(blocks.Vmk.NVars) + 1;
    // Every part's value buffer comes from the host on this thread, before any reading.
    std::deque<HostArray<double>> buffers;
    for (int k = 0; k < parts; ++k) {
        if (!buffers.emplace_back(*this).Allocate(stride * CaseBlock::Capacity)) {
            dsplst(0, GetResourceString(StrMemoryExhausted));
            return LoopEnd::NoMemory;
        }
    }
    auto rangeOf = [&](int k) {
        return CaseRange{int(1 + std::int64_t(cases) * k / parts),
                         int(std::int64_t(cases) * (k + 1) / parts)};
    };
    tdstar(cases, GetResourceString(StrCalculating));

    std::atomic<bool> stop{false};
    std::vector<int> delivered(parts, 0);
    std::vector<LoopEnd> ends(parts, LoopEnd::Completed);
    std::vector<std::exception_ptr> failures(parts);
    auto readAside = [&](int k) {
        auto count = [&delivered, k](int n) {
            delivered[k] += n;
            return n;
        };
        try {
            ends[k] = ReadPart(rangeOf(k), buffers[k].get(), PartReader{false, &stop}, count,
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
        end = ReadPart(
            rangeOf(0), buffers[0].get(), PartReader{true, nullptr},
            [this](int n) { return PollBreaks(n); },
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
        if (end == LoopEnd::Completed && PollBreaks(delivered[k]) < delivered[k])
            end = LoopEnd::BrokenOff;
    }
    ddstop();
    return end;
}
