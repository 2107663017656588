#pragma once

#include <cstdint>
#include <vector>

#include "embedded/attached/base/big_endian.h"
#include "embedded/attached/base/result.h"

namespace embedded::attached {

// A nameless file in memory that holds only what was written to it and ends with the object; the rest reads
// as zeros.
class SparseFile {
  public:
    // Bytes from `start` on that were written, up to `end`. Whole pages of the memory, so that there may be
    // zeros at both ends.
    struct Extent {
        uint64_t start = 0;
        uint64_t end = 0;

        bool operator==(const Extent&) const = default;
    };

    static Result<SparseFile> Create(uint64_t size);

    SparseFile(SparseFile&& other) noexcept;
    SparseFile& operator=(SparseFile&& other) noexcept;
    ~SparseFile();

    // For functions of the system; stays the property of this object.
    int GetDescriptor() const { return m_descriptor; }

    Result<uint64_t> GetSize() const;

    // Within the size only.
    Result<Nothing> Write(uint64_t at, Bytes bytes);

    // Zeros behind the end.
    Result<Nothing> Read(uint64_t at, std::span<uint8_t> bytes) const;

    Result<std::vector<Extent>> ListWritten() const;

  private:
    explicit SparseFile(int descriptor) : m_descriptor(descriptor) {}

    int m_descriptor;
};

}  // namespace embedded::attached
