// Many processes with one farm, and processes that are killed.
#include <gtest/gtest.h>
#include <unistd.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/unit/simulator/platform/child_process.h"
#include "tests/unit/simulator/platform/farm_reader.h"
#include "tests/unit/simulator/support/client.h"
#include "tests/unit/simulator/support/farm_home.h"

namespace simulator_test {
namespace {

class Processes : public FarmTest {
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

// Imports and exports at random places of Sales Tower. 501 and 502 are what others leave behind.
int MoveAtRandom(unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_int_distribution<int32_t> magazine(0, 2);
    std::uniform_int_distribution<int32_t> slot(0, 5);
    Client client;
    if (!client.GetOpening().ok) return 1;
    for (int step = 0; step < 100; ++step) {
        const Slot place{29, magazine(random), slot(random)};
        const Outcome outcome = step % 2 == 0 ? client.Import(place) : client.Export(place);
        if (!outcome.ok && outcome.code != 501 && outcome.code != 502) return 2;
    }
    return 0;
}

TEST_F(Processes, EightThatMoveMediaLoseAndDoubleNone) {
    { const Client first; }
    const std::string media =
        "SELECT group_concat(id || ':' || type) FROM (SELECT id, type FROM medium ORDER BY id)";
    const std::string before = ReadText(m_home.LocalFarm(), media);
    std::vector<std::unique_ptr<ChildProcess>> children;
    children.reserve(8);
    for (unsigned process = 0; process < 8; ++process) {
        children.push_back(std::make_unique<ChildProcess>([process] { return MoveAtRandom(process); }));
    }
    EXPECT_EQ(EndAll(children), 0);
    EXPECT_EQ(ReadText(m_home.LocalFarm(), media), before);
    EXPECT_EQ(ReadNumber(m_home.LocalFarm(),
                         "SELECT count(*) - count(DISTINCT place || '/' || jukebox || '/' || "
                         "magazine || '/' || slot) FROM medium"),
              0);
    EXPECT_EQ(
        ReadNumber(
            m_home.LocalFarm(),
            "SELECT count(*) FROM slot s LEFT JOIN medium d ON d.place = 1 AND d.jukebox = s.jukebox AND "
            "d.magazine = s.magazine AND d.slot = s.number WHERE s.jukebox = 29 AND (s.state = 4) <> "
            "(d.id IS NOT NULL)"),
        0)
        << "a slot is full exactly when a medium is in it";
    EXPECT_EQ(ReadText(m_home.LocalFarm(), "PRAGMA integrity_check"), "ok");
    Client after;
    EXPECT_TRUE(after.GetOpening().ok);
}

// ---- Killed in the middle

constexpr int kWrites = 200;

std::string NameOfWrite(int write) {
    return "write\\" + std::to_string(write);
}

// The n-th write sets the directory name of one of these.
const std::vector<uint32_t>& Targets() {
    static const std::vector<uint32_t> targets = {1,   2,   3,   5,   6,   9,   10,  33,  34,  101,
                                                  102, 103, 104, 105, 106, 107, 108, 111, 112, 113};
    return targets;
}

uint32_t TargetOf(int write) {
    return Targets()[static_cast<size_t>(write) % Targets().size()];
}

TEST_F(Processes, KilledInTheMiddleOfWritesLeavesExactlyTheAcknowledgedOnes) {
    { const Client first; }
    for (const int killAfter : {1, 37, 90, 150, 199}) {
        FarmHome fresh;
        { const Client first; }
        Signals done;
        ChildProcess writer([&] {
            Client client;
            for (int write = 0; write < kWrites; ++write) {
                if (!client.SetDirectory(TargetOf(write), NameOfWrite(write)).ok) return 1;
                done.Send();
            }
            return 0;
        });
        done.ListenOnly();
        int acknowledged = 0;
        while (acknowledged < killAfter && done.Receive())
            ++acknowledged;
        writer.Kill();
        (void)writer.Wait();
        while (done.Receive())
            ++acknowledged;  // sent before the kill

        Client after;
        ASSERT_TRUE(after.GetOpening().ok) << Describe(after.GetOpening());
        for (const uint32_t volume : Targets()) {
            std::vector<std::string> aspects;
            ASSERT_TRUE(after.Aspects(volume, aspects).ok);
            const std::string name = aspects.empty() ? "" : aspects[0];
            // The last acknowledged write to this volume counts. The one that was under way when the
            // process was killed may be there whole, but nothing after it.
            std::string expected;
            for (int write = 0; write < acknowledged; ++write) {
                if (TargetOf(write) == volume) expected = NameOfWrite(write);
            }
            if (acknowledged < kWrites && TargetOf(acknowledged) == volume &&
                name == NameOfWrite(acknowledged)) {
                continue;
            }
            if (expected.empty()) {
                EXPECT_FALSE(name.starts_with("write\\")) << volume << ": " << name;
            } else {
                EXPECT_EQ(name, expected) << volume;
            }
        }
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
}  // namespace simulator_test
