#include "tests/reliability/support/interrupt_switch.h"

#include <limits>

#include "krvcmd/service/interrupt.h"

namespace krvcmd {

namespace {

constexpr std::size_t kNever = std::numeric_limits<std::size_t>::max();

std::size_t questionsLeft = kNever;

}  // namespace

// These take the place of the program's own.

void InstallInterruptHandler() {}

bool InterruptRequested() {
    if (questionsLeft == kNever) return false;
    if (questionsLeft > 0) --questionsLeft;
    return questionsLeft == 0;
}

namespace reliability {

void InterruptAfterQuestions(std::size_t count) {
    questionsLeft = count;
}

void ForgetInterrupt() {
    questionsLeft = kNever;
}

}  // namespace reliability

}  // namespace krvcmd
