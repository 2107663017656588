#pragma once

#include <memory>

#include "embedded/attached/transport/iscsi_address.h"
#include "embedded/attached/transport/transport.h"

namespace embedded::attached {

// A transport to a device file (/dev/sg3, /dev/sr0) or to iscsi://HOST[:PORT]/TARGET/LUN; the login is for
// the latter.
Result<std::unique_ptr<Transport>> OpenTransport(const std::string& address, const IscsiLogin& login);

}  // namespace embedded::attached
