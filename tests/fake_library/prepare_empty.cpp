#include "tests/fake_library/fake_library.h"

namespace krvfake {

// Linked into a test program: the tests script the library themselves.
void Prepare(FakeLibrary& library) {
    library.Reset();
}

}  // namespace krvfake
