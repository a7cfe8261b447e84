#pragma once
// The workbench's memory service: zero-filled blocks from the C heap, with a ledger of the
// blocks given out so that tests can see what was not freed, and failure injection so
// that they can walk the module's paths for exhausted memory.

#include <cstddef>
#include <unordered_set>

#include "drilldown/host/HostServices.h"

namespace wb {

class MemoryService : public HostMemory {
public:
    MemoryService() = default;
    // Frees what is still outstanding, so a leak of the module is not a leak of the process;
    // tests see it through outstandingBlocks() first.
    ~MemoryService() override;
    MemoryService(const MemoryService&) = delete;
    MemoryService& operator=(const MemoryService&) = delete;

    // A request of 0 bytes still gives a block of its own. On failure *block is null.
    int AllocMem(void** block, unsigned long bytes) override;
    // A block this service did not give out is a programmer error: asserted, not freed.
    void FreeMem(void* block) override;

    // The n-th allocation from now fails, once (1 = the next one).
    void failAllocation(int n);
    // The n-th allocation from now and every later one fail (1 = from the next one on).
    void failAllocationsFrom(int n);
    void clearFailures();

    std::size_t outstandingBlocks() const { return m_blocks.size(); }
    // Requests made so far, failed ones included.
    std::size_t allocationCount() const { return m_requests; }

private:
    std::unordered_set<void*> m_blocks;
    std::size_t m_requests = 0;
    std::size_t m_failAt = 0;   // request number that fails once; 0 for none
    std::size_t m_failFrom = 0; // first request number of a failing run; 0 for none
};

} // namespace wb
