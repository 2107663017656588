#pragma once

#include <vector>

#include "embedded/attached/scsi/cdb.h"

namespace embedded::attached {

// How CD-R, CD-RW, DVD-R and DVD-RW are written (MMC-6, 7.5).
constexpr uint8_t kWriteParametersPage = 0x05;

enum class WriteType { TrackAtOnce, Incremental };

// Whether another session may follow the one that is written and closed.
enum class NextSession { No, Yes };

// The data that MODE SELECT(10) sends, made from the page as the drive has it: TrackAtOnce for CD,
// Incremental for DVD.
Result<std::vector<uint8_t>> WriteParameters(Bytes page, WriteType type, NextSession next);

// SPC-4, 6.10. The parameters go with the command.
Cdb ModeSelect10(uint16_t length);

}  // namespace embedded::attached
