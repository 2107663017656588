#pragma once

#include <memory>

#include "embedded/attached/transport/iscsi_session.h"

namespace embedded::attached {

// One login for one logical unit.
Result<std::unique_ptr<Transport>> OpenIscsiTransport(const IscsiAddress& address, const IscsiLogin& login,
                                                      const IscsiLimits& limits);

// Which targets a portal names (SendTargets, RFC 7143, appendix C).
Result<std::vector<IscsiTarget>> ListIscsiTargets(const IscsiPortal& portal, const IscsiLogin& login,
                                                  const IscsiLimits& limits);

}  // namespace embedded::attached
