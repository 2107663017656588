// Ignoring a Status does not compile. With STATUS_IS_USED the same code does, which shows that nothing
// else is wrong with it.
#include "krvcmd/frontend/base/status.h"

void Run() {
#ifdef STATUS_IS_USED
    (void)
#endif
        krvcmd::Status::SystemError(22);
}
