#pragma once

#include <cstddef>

namespace krvcmd::reliability {

// Stands in for the operator's Ctrl-C. The program asks whether it was interrupted before every library
// call and in every loop; the answer becomes yes after so many questions.
void InterruptAfterQuestions(size_t count);

// Never again until the next InterruptAfterQuestions.
void ForgetInterrupt();

}  // namespace krvcmd::reliability
