// Not on Windows: nothing stands in for programs there.

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "tests/unit/embedded/support/farm_fixture.h"
#include "tools/common/streams.h"
#include "tools/rehearsal/closed_off.h"
#include "tools/rehearsal/process.h"

namespace embedded_test {
namespace {

namespace fs = std::filesystem;

class StandInPrograms : public FarmFixture {
  protected:
    // The krvcmd that is found on the PATH ends with 7.
    void SetUp() override {
        const fs::path folder = m_home.GetFolder() / "installed";
        fs::create_directories(folder);
        std::ofstream(folder / "krvcmd") << "#!/bin/sh\nexit 7\n";
        fs::permissions(folder / "krvcmd", fs::perms::owner_all);
        setenv("PATH", (folder.string() + ":" + m_path).c_str(), 1);
    }

    void TearDown() override { setenv("PATH", m_path.c_str(), 1); }

    // What a stand-in ends with that was made just before.
    int RunNewStandIn(const std::string& name) const {
        const fs::path folder = m_home.GetFolder() / name;
        fs::create_directories(folder);
        std::map<std::string, std::string> environment;
        embedded::tools::AddProgramsOnPath({folder / "library.so", folder, folder}, environment);
        embedded::tools::ProcessRequest request;
        request.words = {(folder / "krvcmd").string()};
        request.environment = environment;
        request.output = folder / "output";
        return embedded::tools::RunProcess(request);
    }

  private:
    std::string m_path = std::getenv("PATH");
};

// A process inherits the files that are open when it starts, and nobody can run a program that some process
// has open for writing.
TEST_F(StandInPrograms, RunWhileOtherThreadsMakeAndStartTheirs) {
    constexpr int kThreads = 8;
    constexpr int kRuns = 40;
    std::atomic<int> good = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([this, thread, &good] {
            for (int run = 0; run < kRuns; ++run) {
                const std::string name = std::to_string(thread) + "-" + std::to_string(run);
                try {
                    if (RunNewStandIn(name) == 7) ++good;
                } catch (const embedded::tools::ToolFailure& failure) {
                    ADD_FAILURE() << failure.what();
                }
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(good, kThreads * kRuns);
}

}  // namespace
}  // namespace embedded_test
