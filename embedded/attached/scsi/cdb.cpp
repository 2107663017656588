#include "embedded/attached/scsi/cdb.h"

namespace embedded::attached {

Cdb::Cdb(const Operation& operation) : m_length(operation.length), m_name(operation.name) {
    m_bytes[0] = operation.code;
}

Cdb& Cdb::Put8(size_t at, unsigned value) {
    Writer().Put8(at, static_cast<uint8_t>(value));
    return *this;
}

Cdb& Cdb::Put16(size_t at, uint16_t value) {
    Writer().Put16(at, value);
    return *this;
}

Cdb& Cdb::Put24(size_t at, uint32_t value) {
    Writer().Put24(at, value);
    return *this;
}

Cdb& Cdb::Put32(size_t at, uint32_t value) {
    Writer().Put32(at, value);
    return *this;
}

Error BadAnswer(const Operation& operation, const std::string& what) {
    return {ErrorKind::BadAnswer, std::string("the answer to ") + operation.name + " " + what, {}};
}

Error ShortAnswer(const Operation& operation, size_t received) {
    return BadAnswer(operation, "ends too early, after " + std::to_string(received) + " bytes");
}

}  // namespace embedded::attached
