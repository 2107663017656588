#include "krvcmd/frontend/standard_streams.h"

namespace krvcmd {

// There is no signal for a broken pipe here, and the C runtime's streams stay closed when the
// caller gave none: a file that is opened later takes neither their place nor their number.
void PrepareStandardStreams() {}

}  // namespace krvcmd
