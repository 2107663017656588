// Not on Windows: limits and signals are as POSIX has them.

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <utility>

#include "tests/unit/embedded/platform/child_process.h"
#include "tests/unit/embedded/platform/farm_probe.h"
#include "tests/unit/embedded/support/client.h"
#include "tests/unit/embedded/support/farm_fixture.h"

namespace embedded_test {
namespace {

// A limit for the size of files stands for a disk without room.
class FullDisk : public FarmFixture {
  protected:
    void CreateFarm() { const Client first; }
};

TEST_F(FullDisk, IsReportedAndNothingIsLost) {
    CreateFarm();
    ChildProcess child([&] {
        Client client;
        if (!client.GetOpening().ok) return 1;
        if (!client.RenameJukebox(8, "Before").ok) return 2;
        LimitFileSize(4096);
        const Outcome full = client.RenameJukebox(8, "Too much");
        if (full.ok || full.code != 1065) return 3;
        if (!full.text.starts_with("The farm file \"" + m_home.LocalFarm().string() + "\" cannot grow: "))
            return 4;
        JukeboxRecord record{};
        if (!client.Jukebox(8, record).ok) return 5;
        return std::string(record.name) == "Before" ? 0 : 6;
    });
    EXPECT_EQ(child.Wait(), 0);
    Client after;
    JukeboxRecord record{};
    ASSERT_TRUE(after.Jukebox(8, record).ok);
    EXPECT_STREQ(record.name, "Before");
    EXPECT_TRUE(after.RenameJukebox(8, "After").ok);
}

// Wherever the change meets the end of the room: in its log, or when the log is put into the farm.
TEST_F(FullDisk, EndsForASessionWhenThereIsRoomAgain) {
    CreateFarm();
    ChildProcess child([&] {
        Client client;
        if (!client.GetOpening().ok) return 1;
        int refused = 0;
        for (size_t room = 0; room < 40'000; room += 1'500) {
            LimitFileSize(room);
            const Outcome full = client.Export({29, 1, 0});
            LiftFileSizeLimit();
            if (!full.ok && full.code != 1065) return 2;
            if (!full.ok) ++refused;
            if (!full.ok && !client.Export({29, 1, 0}).ok) return 3;
            if (client.SlotState({29, 1, 0}) != 3U) return 4;
            ChangeFarm(m_home.LocalFarm(),
                       "UPDATE medium SET place = 2, slot = -1 WHERE place = 3 AND jukebox = 29 AND slot = "
                       "(SELECT max(slot) FROM medium WHERE place = 3 AND jukebox = 29)");
            if (!client.Import({29, 1, 0}).ok) return 5;
        }
        return refused > 5 ? 0 : 6;
    });
    EXPECT_EQ(child.Wait(), 0);
}

TEST_F(FullDisk, HasNoNewFarmUntilThereIsRoom) {
    ChildProcess child([&] {
        LimitFileSize(8192);
        const Client client;
        if (client.GetOpening().ok || client.GetOpening().code != 1065) return 1;
        return 0;
    });
    EXPECT_EQ(child.Wait(), 0);
    EXPECT_TRUE(std::filesystem::is_empty(m_home.GetFolder())) << "no unfinished farm stays";
    Client after;
    ASSERT_TRUE(after.GetOpening().ok) << Describe(after.GetOpening());
    EXPECT_EQ(after.Jukeboxes().size(), 8U);
}

// Whether the signal of a file that has become too large is blocked, and whether one waits.
std::pair<bool, bool> StateOfFileSizeSignal() {
    sigset_t blocked;
    sigset_t pending;
    (void)pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
    (void)sigpending(&pending);
    return {sigismember(&blocked, SIGXFSZ) == 1, sigismember(&pending, SIGXFSZ) == 1};
}

TEST_F(FullDisk, LeavesTheSignalsOfTheProgramAsTheyWere) {
    CreateFarm();
    ChildProcess child([&] {
        Client client;
        LimitFileSize(4096);
        if (client.RenameJukebox(8, "Too much").code != 1065) return 1;
        if (StateOfFileSizeSignal() != std::pair(false, false)) return 2;
        // One that the program itself keeps waiting stays its own.
        sigset_t set;
        (void)sigemptyset(&set);
        (void)sigaddset(&set, SIGXFSZ);
        (void)pthread_sigmask(SIG_BLOCK, &set, nullptr);
        (void)raise(SIGXFSZ);
        if (client.RenameJukebox(8, "Too much").code != 1065) return 3;
        if (StateOfFileSizeSignal() != std::pair(true, true)) return 4;
        struct sigaction action {};
        (void)sigaction(SIGXFSZ, nullptr, &action);
        return action.sa_handler == SIG_DFL ? 0 : 5;
    });
    EXPECT_EQ(child.Wait(), 0);
}

TEST_F(FullDisk, CanBeLookedAtWithAJournalWhichLeavesAMark) {
    CreateFarm();
    ChangeFarm(m_home.LocalFarm(), "UPDATE server SET journal_limit = 100");
    ChildProcess child([&] {
        Client client;
        LimitFileSize(4096);
        JukeboxRecord record{};
        for (int look = 0; look < 3; ++look) {
            if (!client.Jukebox(8, record).ok || std::string(record.name) != "MyBox") return 1;
        }
        if (!client.Close().ok) return 2;
        return client.RenameJukebox(8, "x").ok ? 3 : 0;
    });
    EXPECT_EQ(child.Wait(), 0);
    EXPECT_TRUE(std::filesystem::exists(m_home.LocalFarm().string() + "-unrecorded"));
    EXPECT_EQ(ReadNumber(m_home.LocalFarm(), "SELECT count(*) FROM journal"), 1)
        << "the opening of the session";
}

// Like a query that begins when the disk is full already.
int LookAndChangeWithoutRoom(const std::string& name) {
    LimitFileSize(4096);
    Client client;
    if (!client.GetOpening().ok) return 1;
    JukeboxRecord record{};
    if (!client.Jukebox(8, record).ok || record.name != name) return 2;
    if (client.Volumes().size() != 50) return 3;
    if (client.RenameJukebox(8, "x").code != 1065) return 4;
    return client.Jukebox(8, record).ok && record.name == name ? 0 : 5;
}

TEST_F(FullDisk, CanBeLookedAtBySessionsThatBeginOnIt) {
    CreateFarm();
    for (const char* const script :
         {"UPDATE server SET journal_limit = 0", "UPDATE server SET journal_limit = 100"}) {
        ChangeFarm(m_home.LocalFarm(), script);
        ChildProcess child([&] { return LookAndChangeWithoutRoom("MyBox"); });
        EXPECT_EQ(child.Wait(), 0) << script;
    }
}

TEST_F(FullDisk, ShowsWhatAKilledProcessHasChanged) {
    CreateFarm();
    ChildProcess killed([&] {
        Client client;
        if (!client.RenameJukebox(8, "Before").ok) return 1;
        (void)raise(SIGKILL);
        return 2;
    });
    (void)killed.Wait();
    ASSERT_GT(std::filesystem::file_size(m_home.LocalFarm().string() + "-wal"), 0U);
    ChildProcess child([&] { return LookAndChangeWithoutRoom("Before"); });
    EXPECT_EQ(child.Wait(), 0);
}

}  // namespace
}  // namespace embedded_test
