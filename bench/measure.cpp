// Runs commands in turns and tells what each run cost:
//
//     measure RUNS DISCARD|KEEP OUTPUT -- [NAME=VALUE ...] COMMAND [ARGUMENT ...] [-- ...]
//
// Every command writes its standard output into the file OUTPUT.<index>, which is empty when it begins, so
// that all of them pay for writing the same way; with KEEP the files of the last round stay. All runs are
// bound to one processor. One line per run:
//
//     <index of the command> <microseconds of CPU time> <KiB of peak memory> <exit status>
//
// The costs are those that the kernel counts for the process and the children it waited for; the peak of a
// pipeline is that of its largest process. This program is small because a process starts with its
// parent's memory counted as its own peak.
#include <fcntl.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Words = std::vector<char*>;

struct Cost {
    int64_t cpuMicroseconds;
    long peakKibibytes;  // the kernel's own type
    int status;
};

[[noreturn]] void GiveUp(const std::string& what) {
    std::perror(what.c_str());
    std::exit(1);
}

// The last processor that this process may use: the first ones serve most interrupts.
void BindToOneProcessor() {
    cpu_set_t allowed;
    if (sched_getaffinity(0, sizeof allowed, &allowed) != 0) GiveUp("sched_getaffinity");
    int processor = CPU_SETSIZE - 1;
    while (processor > 0 && !CPU_ISSET(processor, &allowed))
        --processor;
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(processor, &one);
    if (sched_setaffinity(0, sizeof one, &one) != 0) GiveUp("sched_setaffinity");
}

std::vector<Words> SplitCommands(int argc, char** argv, int first) {
    std::vector<Words> commands;
    for (int i = first; i < argc; ++i) {
        if (std::string_view(argv[i]) == "--") {
            commands.emplace_back();
        } else if (!commands.empty()) {
            commands.back().push_back(argv[i]);
        }
    }
    for (Words& words : commands)
        words.push_back(nullptr);
    return commands;
}

[[noreturn]] void Become(const Words& words, int output) {
    dup2(output, STDOUT_FILENO);
    size_t program = 0;
    while (words[program] != nullptr && std::strchr(words[program], '=') != nullptr)
        putenv(words[program++]);
    if (words[program] != nullptr) execvp(words[program], words.data() + program);
    std::perror(words[program] != nullptr ? words[program] : "no command");
    _exit(127);
}

int64_t Microseconds(const timeval& time) {
    return int64_t{time.tv_sec} * 1'000'000 + time.tv_usec;
}

Cost Run(const Words& words, const std::string& outputPath) {
    const int output = open(outputPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (output == -1) GiveUp(outputPath);
    const pid_t child = fork();
    if (child == -1) GiveUp("fork");
    if (child == 0) Become(words, output);
    close(output);
    int status = 0;
    rusage usage{};
    if (wait4(child, &status, 0, &usage) != child) GiveUp("wait4");
    return {Microseconds(usage.ru_utime) + Microseconds(usage.ru_stime), usage.ru_maxrss,
            WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status)};
}

}  // namespace

int main(int argc, char** argv) {
    constexpr int kFirstCommand = 4;
    const std::vector<Words> commands = SplitCommands(argc, argv, kFirstCommand);
    if (commands.empty()) {
        std::fputs("usage: measure RUNS DISCARD|KEEP OUTPUT -- [NAME=VALUE ...] COMMAND ... [-- ...]\n",
                   stderr);
        return 2;
    }
    int runs = 0;
    std::from_chars(argv[1], argv[1] + std::strlen(argv[1]), runs);
    const bool keep = std::string_view(argv[2]) == "KEEP";

    BindToOneProcessor();
    for (int run = 0; run < runs; ++run) {
        for (size_t i = 0; i < commands.size(); ++i) {
            const std::string outputPath = std::string(argv[3]) + '.' + std::to_string(i);
            const Cost cost = Run(commands[i], outputPath);
            std::printf("%zu %lld %ld %d\n", i, static_cast<long long>(cost.cpuMicroseconds),
                        cost.peakKibibytes, cost.status);
            if (!keep || run + 1 < runs) (void)unlink(outputPath.c_str());
        }
    }
}
