// Not on Windows: the processes are forks; processes_windows_test.cpp terminates processes there.

// A farm under load: many processes that read and write, some of them killed, on clocks that jump and in a
// folder that fills up. A run takes a few seconds; KRVSIM_LOAD_SECONDS=60 in the environment makes it longer.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>
#include <random>
#include <string>
#include <vector>

#include "tests/unit/embedded/platform/child_process.h"
#include "tests/unit/embedded/platform/farm_probe.h"
#include "tests/unit/embedded/platform/wall_clock.h"
#include "tests/unit/embedded/support/client.h"
#include "tests/unit/embedded/support/farm_fixture.h"

namespace embedded_test {
namespace {

using SteadyClock = std::chrono::steady_clock;
using Random = std::mt19937;

constexpr int kProcesses = 32;
constexpr int kSigkill = -9;
constexpr int64_t kYear = 365LL * 86'400;

std::chrono::seconds Duration() {
    const char* wanted = std::getenv("KRVSIM_LOAD_SECONDS");
    return std::chrono::seconds(wanted == nullptr ? 3 : std::max(1, std::atoi(wanted)));
}

int Below(Random& random, int limit) {
    return std::uniform_int_distribution<int>(0, limit - 1)(random);
}

// Sales Tower, three magazines of six slots.
Slot SomeSlot(Random& random) {
    return {29, Below(random, 3), Below(random, 6)};
}

uint32_t SomeVolume(Random& random) {
    return static_cast<uint32_t>(1 + Below(random, 120));
}

Outcome Look(Client& client, Random& random) {
    switch (Below(random, 5)) {
        case 0: {
            JukeboxRecord record{};
            return client.Jukebox(29, record);
        }
        case 1: {
            SlotRecord record{};
            return client.GetSlot(SomeSlot(random), record);
        }
        case 2: {
            SideRecord record{};
            return client.Side(SomeSlot(random), Below(random, 2), record);
        }
        case 3: {
            VolumeRecord record{};
            return client.Volume(SomeVolume(random), record);
        }
        default: {
            std::vector<SideKey> locations;
            return client.Locations(SomeVolume(random), locations);
        }
    }
}

Outcome Change(Client& client, Random& random) {
    switch (Below(random, 8)) {
        case 0:
        case 1:
            return client.Import(SomeSlot(random));
        case 2:
        case 3:
            return client.Export(SomeSlot(random));
        case 4:
            return client.Scan(SomeSlot(random));
        case 5:
            return client.SetDirectory(SomeVolume(random), "load\\" + std::to_string(Below(random, 1000)));
        case 6:
            return client.RenameJukebox(8, "Load " + std::to_string(Below(random, 1000)));
        default:
            return Below(random, 2) == 0 ? client.DisableVolume(SomeVolume(random))
                                         : client.EnableVolume(SomeVolume(random));
    }
}

// That others were faster, or that there is nothing to do; not that the service is in trouble.
bool IsOfTheWorld(const Outcome& outcome) {
    return outcome.ok || outcome.code < 1000 || outcome.code >= 1100;
}

// Successful calls of all processes, in memory that they share; they go on until it is over.
struct Tally {
    std::atomic<bool> isOver{false};
    std::atomic<int64_t> looks{0};
    std::atomic<int64_t> changes{0};
};

class SharedTally {
  public:
    SharedTally()
        : m_memory(mmap(nullptr, sizeof(Tally), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) {
        if (m_memory == MAP_FAILED) throw std::bad_alloc();
        m_tally = new (m_memory) Tally;
    }
    SharedTally(const SharedTally&) = delete;
    SharedTally& operator=(const SharedTally&) = delete;
    ~SharedTally() { munmap(m_memory, sizeof(Tally)); }

    Tally& Get() const { return *m_tally; }

  private:
    void* m_memory;
    Tally* m_tally = nullptr;
};

int ReadAndWrite(unsigned seed, Tally& tally) {
    Random random(seed);
    Client client;
    if (!client.GetOpening().ok) {
        std::fprintf(stderr, "opening: %s\n", Describe(client.GetOpening()).c_str());
        return 1;
    }
    while (!tally.isOver) {
        const bool changes = Below(random, 3) == 0;
        const Outcome outcome = changes ? Change(client, random) : Look(client, random);
        if (outcome.ok) ++(changes ? tally.changes : tally.looks);
        if (IsOfTheWorld(outcome)) continue;
        std::fprintf(stderr, "call: %s\n", Describe(outcome).c_str());
        return 2;
    }
    return 0;
}

class Load : public FarmFixture {
  protected:
    Load() {
        const Client first;
        m_media = Media();
    }

    // Nothing lost, nothing doubled, nothing out of order.
    void ExpectSoundFarm() {
        EXPECT_EQ(Media(), m_media);
        EXPECT_EQ(ReadNumber(m_home.LocalFarm(),
                             "SELECT count(*) - count(DISTINCT place || '/' || jukebox || '/' || magazine || "
                             "'/' || slot) FROM medium"),
                  0);
        EXPECT_EQ(ReadText(m_home.LocalFarm(), "PRAGMA integrity_check"), "ok");
        ExpectDone("check");
    }

    static void ExpectDone(const std::string& words) {
        const std::string command = std::string("'") + KRVSIM_TOOL + "' " + words + " >/dev/null";
        EXPECT_EQ(std::system(command.c_str()), 0) << words;
    }

  private:
    std::string Media() {
        return ReadText(m_home.LocalFarm(),
                        "SELECT group_concat(id || ':' || type || ':' || sides) FROM (SELECT * FROM medium "
                        "ORDER BY id)");
    }

    std::string m_media;
};

TEST_F(Load, OfManyProcessesThatAreKilledLosesAndDoublesNoMedium) {
    constexpr int kFewestKills = 11;
    const auto end = SteadyClock::now() + Duration();
    const auto latestEnd = end + std::chrono::minutes(2);  // on a busy machine
    const SharedTally tally;
    unsigned seed = 0;
    const auto start = [&] {
        return std::make_unique<ChildProcess>([&] { return ReadAndWrite(seed, tally.Get()); });
    };
    std::vector<std::unique_ptr<ChildProcess>> children;
    for (; seed < kProcesses; ++seed)
        children.push_back(start());

    Random random(1);
    int kills = 0;
    for (auto now = SteadyClock::now(); now < end || (kills < kFewestKills && now < latestEnd);
         now = SteadyClock::now()) {
        usleep(static_cast<unsigned>(2000 + Below(random, 30'000)));
        auto& child = children[static_cast<size_t>(Below(random, kProcesses))];
        child->Kill();
        EXPECT_EQ(child->Wait(), kSigkill);
        child = start();
        ++seed;
        ++kills;
    }
    tally.Get().isOver = true;
    for (auto& child : children)
        EXPECT_EQ(child->Wait(), 0);
    const auto looks = static_cast<long long>(tally.Get().looks);
    const auto changes = static_cast<long long>(tally.Get().changes);
    std::printf("%d processes at a time, %d killed; %lld looks and %lld changes done\n", kProcesses, kills,
                looks, changes);
    EXPECT_GE(kills, kFewestKills);
    EXPECT_GT(looks, 100);
    EXPECT_GT(changes, 10);
    ExpectSoundFarm();
}

// Calls are written down with the time of day, so that the journal is what a jump could disturb.
TEST_F(Load, OnClocksThatJumpLosesNothing) {
    ExpectDone("journal --on");
    std::vector<std::unique_ptr<ChildProcess>> children;
    for (unsigned process = 0; process < 4; ++process) {
        children.push_back(std::make_unique<ChildProcess>([process] {
            Random random(process);
            Client client;
            if (!client.GetOpening().ok) return 1;
            for (int step = 0; step < 100; ++step) {
                SetWallClockAhead((Below(random, 100) - 50) * kYear);
                const Outcome outcome = step % 2 == 0 ? Change(client, random) : Look(client, random);
                if (!IsOfTheWorld(outcome)) return 2;
            }
            return 0;
        }));
    }
    for (auto& child : children)
        EXPECT_EQ(child->Wait(), 0);
    // Four times 100 calls, an opening and a closing.
    EXPECT_EQ(ReadNumber(m_home.LocalFarm(), "SELECT count(*) FROM journal"), 4 * 102);
    EXPECT_GT(ReadNumber(m_home.LocalFarm(), "SELECT (max(time) - min(time)) / 1000000 FROM journal"), kYear);
    for (const char* form : {"journal", "journal --json", "journal --summary", "journal --since 200"})
        ExpectDone(form);
    ExpectSoundFarm();
}

// Half a second is far below the patience of a call, whatever the time of day does meanwhile.
TEST_F(Load, OnAClockThatJumpsKeepsItsPatience) {
    Signals go;
    ChildProcess waiting([&go] {
        go.ListenOnly();
        (void)go.Receive();  // the parent holds the farm now
        Client client;
        if (!client.GetOpening().ok) return 1;
        SetWallClockAhead(10 * kYear);
        const auto start = SteadyClock::now();
        if (!client.RenameJukebox(8, "Patient").ok) return 2;
        return SteadyClock::now() - start > std::chrono::milliseconds(200) ? 0 : 3;
    });
    {
        const FarmHold hold(m_home.LocalFarm());
        go.ListenOnly();
        usleep(500'000);
    }
    EXPECT_EQ(waiting.Wait(), 0);
    ExpectSoundFarm();
}

// The n-th write of a process, on a volume of its own. Its length makes the files grow.
std::string LongName(unsigned process, int write) {
    return "full\\" + std::to_string(process) + "\\" + std::to_string(write) + "\\" + std::string(150, 'x');
}

TEST_F(Load, InAFolderThatFillsUpKeepsWhatWasAcknowledged) {
    constexpr size_t kRoom = 256 * 1024;
    constexpr int kWrites = 5000;
    const std::vector<uint32_t> volumes = {1, 2, 3, 5};
    std::vector<std::unique_ptr<Signals>> acknowledged;
    std::vector<std::unique_ptr<ChildProcess>> children;
    for (unsigned process = 0; process < volumes.size(); ++process) {
        acknowledged.push_back(std::make_unique<Signals>());
        const Signals& written = *acknowledged.back();
        children.push_back(std::make_unique<ChildProcess>([&written, &volumes, process] {
            Client client;
            if (!client.GetOpening().ok) return 1;
            LimitFileSize(kRoom);
            for (int write = 0; write < kWrites; ++write) {
                const Outcome outcome = client.SetDirectory(volumes[process], LongName(process, write));
                if (outcome.ok) {
                    written.Send();
                    continue;
                }
                std::vector<std::string> names;
                const bool canRead = client.Aspects(volumes[process], names).ok;
                return outcome.code == 1065 && canRead ? 0 : 2;
            }
            return 3;  // never full
        }));
    }
    for (unsigned process = 0; process < volumes.size(); ++process) {
        acknowledged[process]->ListenOnly();
        int writes = 0;
        while (acknowledged[process]->Receive())
            ++writes;
        EXPECT_EQ(children[process]->Wait(), 0);
        Client after;
        std::vector<std::string> names;
        ASSERT_TRUE(after.Aspects(volumes[process], names).ok);
        ASSERT_EQ(names.size(), 1U);
        if (writes > 0) {
            EXPECT_EQ(names[0], LongName(process, writes - 1));
        }
        EXPECT_TRUE(after.SetDirectory(volumes[process], "room\\" + std::to_string(process)).ok);
    }
    ExpectSoundFarm();
}

}  // namespace
}  // namespace embedded_test
