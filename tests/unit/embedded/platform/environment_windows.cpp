#include <stdlib.h>

#include "tests/unit/embedded/support/farm_fixture.h"

namespace embedded_test {

void SetEnvironment(const char* name, const char* value) {
    ASSERT_EQ(_putenv_s(name, value == nullptr ? "" : value), 0);
}

}  // namespace embedded_test
