#include "tests/unit/embedded/platform/child_process.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>

namespace embedded_test {
namespace {

constexpr int kThrew = 99;
constexpr uid_t kOrdinaryUser = 65534;

}  // namespace

Signals::Signals() {
    int ends[2] = {-1, -1};
    if (pipe(ends) != 0) throw std::runtime_error("no pipe");
    m_reading = ends[0];
    m_writing = ends[1];
}

Signals::~Signals() {
    close(m_reading);
    ListenOnly();
}

void Signals::ListenOnly() {
    if (m_writing >= 0) close(m_writing);
    m_writing = -1;
}

void Signals::Send() const {
    if (write(m_writing, "!", 1) != 1) _exit(kThrew);
}

bool Signals::Receive() {
    char byte = 0;
    return read(m_reading, &byte, 1) == 1;
}

ChildProcess::ChildProcess(const std::function<int()>& work) : m_process(fork()) {
    if (m_process < 0) throw std::runtime_error("no second process");
    if (m_process > 0) return;
    int status = kThrew;
    try {
        status = work();
    } catch (const std::exception&) {
        status = kThrew;
    }
    _exit(status);
}

ChildProcess::~ChildProcess() {
    if (m_process < 0) return;
    Kill();
    (void)Wait();
}

int ChildProcess::Wait() {
    int status = 0;
    const pid_t ended = waitpid(m_process, &status, 0);
    m_process = -1;
    if (ended < 0) return kThrew;
    return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

void ChildProcess::Kill() const {
    kill(m_process, SIGKILL);
}

void ChildProcess::WaitUntilStopped() const {
    int status = 0;
    if (waitpid(m_process, &status, WUNTRACED) < 0 || !WIFSTOPPED(status)) {
        throw std::runtime_error("the process did not stop");
    }
}

bool BecomeOrdinaryUser() {
    if (geteuid() != 0) return true;
    return setgid(kOrdinaryUser) == 0 && setuid(kOrdinaryUser) == 0;
}

void LimitFileSize(size_t bytes) {
    rlimit limit{};
    if (getrlimit(RLIMIT_FSIZE, &limit) != 0) throw std::runtime_error("no limit");
    limit.rlim_cur = bytes;
    if (setrlimit(RLIMIT_FSIZE, &limit) != 0) throw std::runtime_error("no limit");
    // Whoever started the tests may have ignored it.
    (void)std::signal(SIGXFSZ, SIG_DFL);
}

void LiftFileSizeLimit() {
    rlimit limit{};
    if (getrlimit(RLIMIT_FSIZE, &limit) != 0) throw std::runtime_error("no limit");
    limit.rlim_cur = limit.rlim_max;
    if (setrlimit(RLIMIT_FSIZE, &limit) != 0) throw std::runtime_error("no limit");
}

void StopMyself() {
    (void)raise(SIGSTOP);
}

}  // namespace embedded_test
