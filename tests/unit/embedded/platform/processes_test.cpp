// Not on Windows: the processes are forks; processes_windows_test.cpp starts them as Windows does.

// Many processes with one farm, and processes that are killed.
#include <gtest/gtest.h>
#include <unistd.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/unit/embedded/platform/child_process.h"
#include "tests/unit/embedded/platform/farm_probe.h"
#include "tests/unit/embedded/platform/farm_work.h"
#include "tests/unit/embedded/support/client.h"
#include "tests/unit/embedded/support/farm_fixture.h"

namespace embedded_test {
namespace {

class Processes : public FarmFixture {
  protected:
    static int EndAll(std::vector<std::unique_ptr<ChildProcess>>& children) {
        int worst = 0;
        for (auto& child : children) {
            const int status = child->Wait();
            if (status != 0) worst = status;
        }
        return worst;
    }
};

TEST_F(Processes, FirstContactOfManyAtOnceWorksForAll) {
    for (int round = 0; round < 5; ++round) {
        FarmHome fresh;
        Signals go;
        std::vector<std::unique_ptr<ChildProcess>> children;
        children.reserve(8);
        for (int process = 0; process < 8; ++process) {
            children.push_back(std::make_unique<ChildProcess>([&] {
                go.ListenOnly();
                (void)go.Receive();  // all of them start when the parent lets go
                Client client;
                return client.GetOpening().ok && client.Volumes().size() == 50 ? 0 : 1;
            }));
        }
        go.ListenOnly();
        EXPECT_EQ(EndAll(children), 0);
        EXPECT_EQ(ReadNumber(fresh.LocalFarm(), "SELECT count(*) FROM server"), 1);
        EXPECT_EQ(ReadNumber(fresh.LocalFarm(), "SELECT count(*) FROM jukebox"), 8);
    }
}

TEST_F(Processes, EightThatMoveMediaLoseAndDoubleNone) {
    { const Client first; }
    const std::string before = MediaOf(m_home.LocalFarm());
    std::vector<std::unique_ptr<ChildProcess>> children;
    children.reserve(8);
    for (unsigned process = 0; process < 8; ++process) {
        children.push_back(
            std::make_unique<ChildProcess>([process] { return MoveAtRandom(process, 100, [] {}); }));
    }
    EXPECT_EQ(EndAll(children), 0);
    EXPECT_EQ(MediaOf(m_home.LocalFarm()), before);
    ExpectMediaInTheirPlaces(m_home.LocalFarm());
    const Client after;
    EXPECT_TRUE(after.GetOpening().ok);
}

TEST_F(Processes, KilledInTheMiddleOfWritesLeavesExactlyTheAcknowledgedOnes) {
    for (const int killAfter : {1, 37, 90, 150, 199}) {
        FarmHome fresh;
        { const Client first; }
        Signals done;
        ChildProcess writer([&] { return WriteNames([&] { done.Send(); }); });
        done.ListenOnly();
        int acknowledged = 0;
        while (acknowledged < killAfter && done.Receive())
            ++acknowledged;
        writer.Kill();
        (void)writer.Wait();
        while (done.Receive())
            ++acknowledged;  // sent before the kill
        ExpectExactlyTheAcknowledgedWrites(acknowledged);
        EXPECT_EQ(ReadText(fresh.LocalFarm(), "PRAGMA integrity_check"), "ok");
    }
}

TEST_F(Processes, KilledWhileCreatingLeavesAFarmThatTheNextOneCreates) {
    for (int round = 0; round < 10; ++round) {
        FarmHome fresh;
        Signals started;
        ChildProcess creator([&] {
            started.Send();
            const Client client;
            return 0;
        });
        started.ListenOnly();
        ASSERT_TRUE(started.Receive());
        usleep(static_cast<unsigned>(round) * 1500);
        creator.Kill();
        (void)creator.Wait();
        Client after;
        ASSERT_TRUE(after.GetOpening().ok) << Describe(after.GetOpening());
        EXPECT_EQ(after.Volumes().size(), 50U);
    }
}

}  // namespace
}  // namespace embedded_test
