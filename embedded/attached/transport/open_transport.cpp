#include "embedded/attached/transport/open_transport.h"

#include "embedded/attached/base/device_text.h"
#include "embedded/attached/transport/iscsi_transport.h"
#include "embedded/attached/transport/sg_transport.h"

namespace embedded::attached {

Result<std::unique_ptr<Transport>> OpenTransport(const std::string& address, const IscsiLogin& login) {
    if (address.starts_with("/")) return OpenSgTransport(address);
    if (!address.starts_with("iscsi://")) {
        return Error{ErrorKind::NotFound,
                     "\"" + Printable(address) +
                         "\" is no address of a device: neither a device file such as /dev/sg3 nor "
                         "iscsi://HOST:PORT/TARGET/LUN",
                     {}};
    }
    const auto parsed = ParseIscsiAddress(address);
    if (!parsed) return parsed.GetError();
    return OpenIscsiTransport(*parsed, login, IscsiLimits());
}

}  // namespace embedded::attached
