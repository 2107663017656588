#include <cstdlib>

#include "tests/unit/embedded/support/farm_home.h"

namespace simulator_test {

void SetEnvironment(const char* name, const char* value) {
    const int failure = value == nullptr ? unsetenv(name) : setenv(name, value, 1);
    ASSERT_EQ(failure, 0);
}

}  // namespace simulator_test
