#pragma once

#include "krvcmd/service/sdk/krv_sdk.h"

namespace krvcmd::fuzz {

// Opens a session on the local server, after starting its service when that is stopped. Ends the process when
// that fails.
KrvSession OpenSession();
void CloseSession(KrvSession session);

// For a session that may be closed already.
void TryToCloseSession(KrvSession session);

// Ends the process unless the farm of the local server is consistent: every enumerated ID can be looked up,
// every volume is where its locations say, no side carries a volume that is elsewhere, and no two sides carry
// the same volume.
void CheckFarm();

}  // namespace krvcmd::fuzz
