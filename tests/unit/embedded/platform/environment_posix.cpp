#include <cstdlib>

#include "tests/unit/embedded/support/farm_fixture.h"

namespace embedded_test {

void SetEnvironment(const char* name, const char* value) {
    const int failure = value == nullptr ? unsetenv(name) : setenv(name, value, 1);
    ASSERT_EQ(failure, 0);
}

}  // namespace embedded_test
