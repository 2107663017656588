#include "tools/common/interruption.h"

namespace embedded::tools {
namespace {

// A handler can reach nothing but a variable of the program.
volatile std::sig_atomic_t g_isInterrupted = 0;

extern "C" void NoteInterruption(int /*signal*/) {
    g_isInterrupted = 1;
}

}  // namespace

InterruptionNoted::InterruptionNoted() {
    g_isInterrupted = 0;
    m_interrupt = std::signal(SIGINT, &NoteInterruption);
    m_terminate = std::signal(SIGTERM, &NoteInterruption);
}

InterruptionNoted::~InterruptionNoted() {
    (void)std::signal(SIGINT, m_interrupt);
    (void)std::signal(SIGTERM, m_terminate);
}

bool InterruptionNoted::IsInterrupted() {
    return g_isInterrupted != 0;
}

}  // namespace embedded::tools
