#include "tests/reliability/support/interrupt_switch.h"

#include <limits>

#include "krvcmd/service/interrupt/interrupt.h"

namespace krvcmd {
namespace {

constexpr size_t kNever = std::numeric_limits<size_t>::max();

size_t questionsLeft = kNever;

}  // namespace

// These take the place of the program's own.

void InstallInterruptHandler() {}

bool InterruptRequested() {
    if (questionsLeft == kNever) return false;
    if (questionsLeft > 0) --questionsLeft;
    return questionsLeft == 0;
}

namespace reliability {

void InterruptAfterQuestions(size_t count) {
    questionsLeft = count;
}

void ForgetInterrupt() {
    questionsLeft = kNever;
}

}  // namespace reliability

}  // namespace krvcmd
