#pragma once

#include "krvcmd/service/sdk/krv_sdk.h"

namespace krvcmd::fuzz {

// A session on the local server, whose service is started when it was stopped. Ends the process when there is
// none to be had.
KrvSession OpenSession();
void CloseSession(KrvSession session);

// For a session that may be gone.
void TryToCloseSession(KrvSession session);

// Ends the process unless the farm of the local server makes sense: every ID that is enumerated can be looked
// up, every volume lies where it says, no side carries a volume that lies elsewhere, and none carries the
// same as another.
void CheckFarm();

}  // namespace krvcmd::fuzz
