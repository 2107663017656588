#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace embedded::attached {

using Bytes = std::span<const uint8_t>;

// Reads big-endian numbers at the offsets that the standards name. Reading past the end returns zero or
// nothing, and IsComplete() is false from then on.
class BigEndianReader {
  public:
    explicit BigEndianReader(Bytes bytes) : m_bytes(bytes) {}

    size_t GetSize() const { return m_bytes.size(); }

    // False once something behind the end was asked for.
    bool IsComplete() const { return m_isComplete; }

    uint8_t Get8(size_t at) { return static_cast<uint8_t>(GetNumber(at, 1)); }
    uint16_t Get16(size_t at) { return static_cast<uint16_t>(GetNumber(at, 2)); }
    uint32_t Get24(size_t at) { return static_cast<uint32_t>(GetNumber(at, 3)); }
    uint32_t Get32(size_t at) { return static_cast<uint32_t>(GetNumber(at, 4)); }
    uint64_t Get64(size_t at) { return GetNumber(at, 8); }

    // Bits are numbered from 0, the least significant one.
    bool GetBit(size_t at, unsigned bit) { return GetBits(at, bit, bit) != 0; }
    uint8_t GetBits(size_t at, unsigned highest, unsigned lowest);

    // The bytes from `at` on: as many as there are, `length` at most.
    Bytes GetBytes(size_t at, size_t length);

    // The same as text, without the blanks and NULs around it. Any other byte may be in it.
    std::string GetText(size_t at, size_t length);

  private:
    bool Has(size_t at, size_t length);
    uint64_t GetNumber(size_t at, size_t length);

    Bytes m_bytes;
    bool m_isComplete = true;
};

// Writes big-endian numbers at the offsets that the standards name. What does not fit is not written at all,
// and the writer remembers it.
class BigEndianWriter {
  public:
    explicit BigEndianWriter(std::span<uint8_t> bytes) : m_bytes(bytes) {}

    bool IsComplete() const { return m_isComplete; }

    void Put8(size_t at, uint8_t value) { PutNumber(at, 1, value); }
    void Put16(size_t at, uint16_t value) { PutNumber(at, 2, value); }
    void Put24(size_t at, uint32_t value) { PutNumber(at, 3, value); }
    void Put32(size_t at, uint32_t value) { PutNumber(at, 4, value); }
    void Put64(size_t at, uint64_t value) { PutNumber(at, 8, value); }

  private:
    void PutNumber(size_t at, size_t length, uint64_t value);

    std::span<uint8_t> m_bytes;
    bool m_isComplete = true;
};

}  // namespace embedded::attached
