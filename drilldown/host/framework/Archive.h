#pragma once
// A byte stream of little-endian 32-bit numbers in memory, written or read in one direction,
// as the host's archives are. Reading past the end throws CArchiveException; nothing else
// is checked (the stream has no header of its own).

#include <cstdint>
#include <stdexcept>
#include <vector>

class CArchiveException : public std::runtime_error {
public:
    CArchiveException() : std::runtime_error("the archive ends too soon") {}
};

class CArchive {
public:
    // An archive that writes to `bytes`, appending.
    explicit CArchive(std::vector<unsigned char>& bytes) : m_out(&bytes) {}
    // An archive that reads `size` bytes from `data`.
    CArchive(const unsigned char* data, std::size_t size) : m_in(data), m_left(size) {}

    bool IsStoring() const { return m_out != nullptr; }
    // The bytes not yet read.
    std::size_t Left() const { return m_left; }

    CArchive& operator<<(uint32_t value) {
        for (int shift = 0; shift < 32; shift += 8)
            m_out->push_back(static_cast<unsigned char>(value >> shift));
        return *this;
    }
    CArchive& operator<<(int32_t value) { return *this << static_cast<uint32_t>(value); }

    CArchive& operator>>(uint32_t& value) {
        if (m_left < 4)
            throw CArchiveException();
        value = 0;
        for (int byte = 0; byte < 4; ++byte)
            value |= static_cast<uint32_t>(m_in[byte]) << (8 * byte);
        m_in += 4;
        m_left -= 4;
        return *this;
    }
    CArchive& operator>>(int32_t& value) {
        uint32_t bits = 0;
        *this >> bits;
        value = static_cast<int32_t>(bits);
        return *this;
    }

private:
    std::vector<unsigned char>* m_out = nullptr;
    const unsigned char* m_in = nullptr;
    std::size_t m_left = 0;
};
