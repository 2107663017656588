#include "embedded/attached/device/waiting.h"

#include <thread>

namespace embedded::attached {

Waiting::Instant Waiting::Now() {
    return std::chrono::steady_clock::now();
}

void Waiting::Pause(std::chrono::milliseconds time) {
    std::this_thread::sleep_for(time);
}

Waiting& RealWaiting() {
    static Waiting waiting;
    return waiting;
}

}  // namespace embedded::attached
