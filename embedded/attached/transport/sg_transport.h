#pragma once

#include <memory>

#include "embedded/attached/transport/transport.h"

struct sg_io_hdr;

namespace embedded::attached {

// A device file of Linux: /dev/sg3, /dev/sr0.
Result<std::unique_ptr<Transport>> OpenSgTransport(const std::string& path);

// What the kernel says of a command that it has carried to the device at `path`.
Result<Completion> InterpretSgResult(const std::string& path, const sg_io_hdr& result);

}  // namespace embedded::attached
