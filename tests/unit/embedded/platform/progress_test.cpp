// Not on Windows: a terminal is a pseudo-terminal, and krvsim runs in a fork.

// How far a long task of krvsim is: shown on a terminal and taken away at the end, never in a pipe or a file.
// And what is left of one that is interrupted.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <regex>
#include <string>
#include <vector>

#include "tests/unit/embedded/support/client.h"
#include "tests/unit/embedded/support/farm_fixture.h"

namespace embedded_test {
namespace {

// What standard error is; standard output is thrown away.
enum class Channel { Terminal, Pipe };

// krvsim as a process of its own, with the far end of its standard error.
class RunningKrvsim {
  public:
    RunningKrvsim(Channel channel, std::vector<std::string> words) {
        int ends[2] = {-1, -1};
        if (channel == Channel::Pipe) {
            EXPECT_EQ(pipe(ends), 0);
        } else {
            ends[0] = posix_openpt(O_RDWR | O_NOCTTY);
            EXPECT_TRUE(grantpt(ends[0]) == 0 && unlockpt(ends[0]) == 0);
            ends[1] = open(ptsname(ends[0]), O_RDWR | O_NOCTTY);
        }
        EXPECT_GE(ends[1], 0);
        words.insert(words.begin(), KRVSIM_TOOL);
        std::vector<char*> arguments;
        arguments.reserve(words.size() + 1);
        for (std::string& word : words)
            arguments.push_back(word.data());
        arguments.push_back(nullptr);
        m_process = fork();
        if (m_process == 0) {
            dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
            dup2(ends[1], STDERR_FILENO);
            execv(KRVSIM_TOOL, arguments.data());
            _exit(127);
        }
        close(ends[1]);
        m_reading = ends[0];
    }
    RunningKrvsim(const RunningKrvsim&) = delete;
    RunningKrvsim& operator=(const RunningKrvsim&) = delete;
    ~RunningKrvsim() {
        close(m_reading);
        if (m_process > 0) (void)Wait();
    }

    void Interrupt() const { kill(m_process, SIGINT); }

    // Reads until the text is there, or until the end when it never comes.
    std::string ReadUntil(const std::string& text) {
        std::string all;
        std::array<char, 4096> part{};
        while (text.empty() || all.find(text) == std::string::npos) {
            const ssize_t size = read(m_reading, part.data(), part.size());
            if (size < 0 && errno == EINTR) continue;
            if (size <= 0) break;  // a terminal whose other end is closed fails
            all.append(part.data(), static_cast<size_t>(size));
        }
        return all;
    }
    std::string ReadAll() { return ReadUntil(""); }

    int Wait() {
        int status = 0;
        waitpid(m_process, &status, 0);
        m_process = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

  private:
    pid_t m_process = -1;
    int m_reading = -1;
};

// What a terminal shows of the last line: "\r" goes back to its start, the rest is written over.
std::string LastLineShown(const std::string& written) {
    std::string line;
    size_t column = 0;
    for (const char character : written) {
        if (character == '\r') {
            column = 0;
        } else if (character == '\n') {
            line.clear();
            column = 0;
        } else {
            if (column == line.size()) line += ' ';
            line[column++] = character;
        }
    }
    return line.substr(0, line.find_last_not_of(' ') + 1);
}

std::vector<int> PerCentsOf(const std::string& written) {
    static const std::regex kBar(R"(writing \[#*\.*\] +([0-9]+)%)");
    std::vector<int> found;
    for (std::sregex_iterator bar(written.begin(), written.end(), kBar), end; bar != end; ++bar)
        found.push_back(std::stoi((*bar)[1]));
    return found;
}

class KrvsimProgress : public FarmFixture {
  protected:
    // Long enough on any machine for a bar that waits a tenth of a second before it shows itself.
    static std::vector<std::string> Generate(const char* server) {
        return {"generate", "--server", server, "--magazines", "25", "--slots", "2000"};
    }
    static std::vector<std::string> Clone() {
        return {"clone", "--library", KRVSIM_LIBRARY, "--from", "large", "--to", "copy"};
    }
    static void ExpectABarThatGrowsAndGoes(const std::string& written) {
        const std::vector<int> perCents = PerCentsOf(written);
        ASSERT_FALSE(perCents.empty()) << written;
        EXPECT_TRUE(std::ranges::is_sorted(perCents)) << written;
        EXPECT_LE(perCents.back(), 100);
        EXPECT_EQ(LastLineShown(written), "");
    }
};

TEST_F(KrvsimProgress, BarOfGenerateGrowsOnATerminalAndIsClearedAtTheEnd) {
    RunningKrvsim run(Channel::Terminal, Generate("large"));
    const std::string written = run.ReadAll();
    EXPECT_EQ(run.Wait(), 0) << written;
    ExpectABarThatGrowsAndGoes(written);
}

TEST_F(KrvsimProgress, CloneCountsWhatItReadsAndShowsABarWhileItWrites) {
    EXPECT_EQ(RunningKrvsim(Channel::Pipe, Generate("large")).Wait(), 0);
    RunningKrvsim run(Channel::Terminal, Clone());
    const std::string written = run.ReadAll();
    EXPECT_EQ(run.Wait(), 0) << written;
    EXPECT_TRUE(std::regex_search(written, std::regex("\ritems read: [1-9][0-9]*"))) << written;
    ExpectABarThatGrowsAndGoes(written);
}

TEST_F(KrvsimProgress, NothingOfItGoesIntoAPipe) {
    RunningKrvsim generate(Channel::Pipe, Generate("large"));
    EXPECT_EQ(generate.ReadAll(), "");
    EXPECT_EQ(generate.Wait(), 0);
    RunningKrvsim clone(Channel::Pipe, Clone());
    EXPECT_EQ(clone.ReadAll(), "");
    EXPECT_EQ(clone.Wait(), 0);
}

TEST_F(KrvsimProgress, InterruptedGenerateLeavesNothingBehind) {
    RunningKrvsim run(Channel::Terminal, Generate("large"));
    std::string written = run.ReadUntil("writing [");
    run.Interrupt();
    written += run.ReadAll();
    EXPECT_EQ(run.Wait(), 1) << written;
    EXPECT_NE(written.find("krvsim: interrupted; nothing was changed"), std::string::npos) << written;
    EXPECT_TRUE(std::filesystem::is_empty(m_home.GetFolder()));
}

TEST_F(KrvsimProgress, InterruptedGenerateKeepsTheFarmThatItWasToReplace) {
    { const Client first; }
    std::vector<std::string> words = Generate(".");
    words.emplace_back("--force");
    RunningKrvsim run(Channel::Terminal, words);
    std::string written = run.ReadUntil("writing [");
    run.Interrupt();
    written += run.ReadAll();
    EXPECT_EQ(run.Wait(), 1) << written;
    Client after;
    EXPECT_EQ(after.Jukeboxes().size(), 8U);
    EXPECT_EQ(after.Volumes().size(), 50U);
}

}  // namespace
}  // namespace embedded_test
