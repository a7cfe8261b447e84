#pragma once
// A block of host memory (AllocMem) that goes back to the host (FreeMem) on every way out.

#include <cstddef>

#include "CAnalysisSupport.h"

template <typename T> class HostArray {
public:
    explicit HostArray(CAnalysisSupport& host) : m_host(host) {}
    ~HostArray() {
        if (m_data != nullptr)
            m_host.FreeMem(m_data);
    }
    HostArray(const HostArray&) = delete;
    HostArray& operator=(const HostArray&) = delete;

    // A zero-filled block of `count` elements; false when the host has no memory.
    bool Allocate(std::size_t count) {
        return m_host.AllocMem(reinterpret_cast<void**>(&m_data), count * sizeof(T)) == 0;
    }
    T* get() const { return m_data; }
    T& operator[](std::size_t i) const { return m_data[i]; }

private:
    CAnalysisSupport& m_host;
    T* m_data = nullptr;
};
