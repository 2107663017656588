#pragma once

#include <array>
#include <string>

#include "embedded/attached/base/big_endian.h"
#include "embedded/attached/base/result.h"
#include "embedded/attached/scsi/operations.h"

namespace embedded::attached {

// A command descriptor block; every byte that is not set is zero.
class Cdb {
  public:
    explicit Cdb(const Operation& operation);

    Cdb& Put8(size_t at, unsigned value);
    Cdb& Put16(size_t at, uint16_t value);
    Cdb& Put24(size_t at, uint32_t value);
    Cdb& Put32(size_t at, uint32_t value);

    Bytes GetBytes() const { return Bytes(m_bytes).first(m_length); }
    const char* GetName() const { return m_name; }

  private:
    BigEndianWriter Writer() { return BigEndianWriter(std::span(m_bytes).first(m_length)); }

    std::array<uint8_t, 16> m_bytes{};
    size_t m_length;
    const char* m_name;
};

// What an answer says that cannot be: "the answer to READ CAPACITY(10) " and the rest of the sentence.
Error BadAnswer(const Operation& operation, const std::string& what);

// The error of an answer that ends before what it must hold.
Error ShortAnswer(const Operation& operation, size_t received);

}  // namespace embedded::attached
