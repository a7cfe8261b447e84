#include "workbench/services/MemoryService.h"

#include <cassert>
#include <cstdlib>

namespace wb {

MemoryService::~MemoryService() {
    for (void* block : m_blocks)
        std::free(block);
}

int MemoryService::AllocMem(void** block, unsigned long bytes) {
    if (block == nullptr)
        return 1;
    *block = nullptr;
    const std::size_t request = ++m_requests;
    if (request == m_failAt || (m_failFrom != 0 && request >= m_failFrom))
        return 1;
    void* memory = std::calloc(bytes == 0 ? 1 : bytes, 1);
    if (memory == nullptr)
        return 1;
    m_blocks.insert(memory);
    *block = memory;
    return 0;
}

void MemoryService::FreeMem(void* block) {
    if (block == nullptr)
        return;
    const bool known = m_blocks.erase(block) == 1;
    assert(known && "FreeMem of a block that AllocMem did not give");
    if (known)
        std::free(block);
}

void MemoryService::failAllocation(int n) {
    m_failAt = n > 0 ? m_requests + static_cast<std::size_t>(n) : 0;
}

void MemoryService::failAllocationsFrom(int n) {
    m_failFrom = n > 0 ? m_requests + static_cast<std::size_t>(n) : 0;
}

void MemoryService::clearFailures() {
    m_failAt = 0;
    m_failFrom = 0;
}

} // namespace wb
