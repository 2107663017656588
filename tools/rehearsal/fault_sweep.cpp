#include "tools/rehearsal/fault_sweep.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <thread>

namespace embedded::tools {

std::vector<FaultRun> SweepFaults(const std::vector<CallOfRun>& calls,
                                  const std::function<FaultRun(const CallOfRun&)>& run,
                                  const std::function<void()>& onDone) {
    std::vector<FaultRun> runs(calls.size());
    std::atomic<size_t> next = 0;
    std::mutex mutex;
    std::exception_ptr failure;
    const auto work = [&] {
        for (size_t index = next++; index < calls.size(); index = next++) {
            try {
                runs[index] = run(calls[index]);
                const std::lock_guard<std::mutex> lock(mutex);
                onDone();
            } catch (...) {
                const std::lock_guard<std::mutex> lock(mutex);
                if (failure == nullptr) failure = std::current_exception();
                next = calls.size();
            }
        }
    };
    const size_t most = std::max<size_t>(1, std::thread::hardware_concurrency());
    std::vector<std::thread> threads;
    for (size_t count = 0; count < std::min(most, calls.size()); ++count)
        threads.emplace_back(work);
    for (std::thread& thread : threads)
        thread.join();
    if (failure != nullptr) std::rethrow_exception(failure);
    return runs;
}

}  // namespace embedded::tools
