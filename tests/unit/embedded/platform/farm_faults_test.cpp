// Not on Windows: rights, limits and stopped processes are as POSIX has them.

// Farm files that cannot be used: one clear error that names the file, nothing lost, no endless waiting.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <utility>

#include "tests/unit/embedded/platform/child_process.h"
#include "tests/unit/embedded/platform/farm_probe.h"
#include "tests/unit/embedded/support/client.h"
#include "tests/unit/embedded/support/farm_fixture.h"

namespace embedded_test {
namespace {

using std::filesystem::path;

class FarmFaults : public FarmFixture {
  protected:
    void CreateFarm() { const Client first; }

    static void WriteFile(const path& file, const std::string& content) {
        std::ofstream(file, std::ios::binary) << content;
    }

    static std::string ReadFile(const path& file) {
        std::stringstream content;
        content << std::ifstream(file, std::ios::binary).rdbuf();
        return content.str();
    }

    static unsigned ModeOf(const path& file) {
        struct stat status {};
        EXPECT_EQ(stat(file.c_str(), &status), 0) << file;
        return status.st_mode & 0777U;
    }

    std::string Farm() const { return "\"" + m_home.LocalFarm().string() + "\""; }
};

TEST_F(FarmFaults, FolderAndFilesBelongToTheirUserAlone) {
    const path folder = m_home.GetFolder() / "above" / "krvsim";
    SetEnvironment("KRVSIM_HOME", nullptr);
    SetEnvironment("XDG_STATE_HOME", folder.parent_path().c_str());
    const mode_t before = umask(0);
    Client open;
    ASSERT_TRUE(open.GetOpening().ok);
    ASSERT_TRUE(open.RenameJukebox(8, "x").ok);
    umask(before);
    EXPECT_EQ(ModeOf(folder), 0700U);
    EXPECT_EQ(ModeOf(folder.parent_path()), 0700U);
    size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        EXPECT_EQ(ModeOf(entry.path()), 0600U) << entry.path();
        ++files;
    }
    EXPECT_EQ(files, 3U) << "the farm, its log and the log's index";
    SetEnvironment("XDG_STATE_HOME", nullptr);
}

TEST_F(FarmFaults, RelativeHomeIsRefused) {
    SetEnvironment("KRVSIM_HOME", "farms");
    const Client client;
    EXPECT_EQ(
        Describe(client.GetOpening()),
        "1060: The folder for the farms, \"farms\", cannot be used: KRVSIM_HOME is not an absolute path.");
    EXPECT_FALSE(std::filesystem::exists("farms"));
}

TEST_F(FarmFaults, HomeThatDoesNotExistIsRefusedAndNotMade) {
    const path folder = m_home.GetFolder() / "misspelt";
    SetEnvironment("KRVSIM_HOME", folder.c_str());
    const std::string refusal = "1060: The folder for the farms, \"" + folder.string() +
                                "\", cannot be used: KRVSIM_HOME names a folder that does not exist.";
    for (const char* server : {".", "my_server", "unknown"}) {
        const Client client(server);
        EXPECT_EQ(Describe(client.GetOpening()), refusal) << server;
        EXPECT_EQ(Describe(StartService(server)), refusal) << server;
    }
    EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_F(FarmFaults, LinkThatCannotBeFollowedIsNeverReplaced) {
    const std::pair<const char*, const char*> cases[] = {
        {"unmounted/farm.db", "it is a symbolic link that leads nowhere"},
        {"server-%2e.db", "Too many levels of symbolic links"},
    };
    for (const auto& [target, reason] : cases) {
        std::filesystem::create_symlink(target, m_home.LocalFarm());
        const Client client;
        EXPECT_EQ(Describe(client.GetOpening()),
                  "1061: The farm file " + Farm() + " cannot be opened: " + reason + ".");
        EXPECT_EQ(std::filesystem::read_symlink(m_home.LocalFarm()), target);
        std::filesystem::remove(m_home.LocalFarm());
    }
}

TEST_F(FarmFaults, StateFolderFollowsTheEnvironment) {
    const path home = m_home.GetFolder();
    SetEnvironment("KRVSIM_HOME", nullptr);
    SetEnvironment("XDG_STATE_HOME", (home / "state").c_str());
    SetEnvironment("HOME", (home / "user").c_str());
    { const Client byState; }
    EXPECT_TRUE(std::filesystem::exists(home / "state/krvsim/server-%2e.db"));
    SetEnvironment("XDG_STATE_HOME", "relative/path");
    { const Client byHome; }
    EXPECT_TRUE(std::filesystem::exists(home / "user/.local/state/krvsim/server-%2e.db"));
    SetEnvironment("XDG_STATE_HOME", nullptr);
    SetEnvironment("KRVSIM_HOME", home.c_str());
    { const Client own; }
    EXPECT_TRUE(std::filesystem::exists(home / "server-%2e.db"));
}

TEST_F(FarmFaults, FileThatIsNoDatabaseIsRefusedAndKept) {
    const std::string content =
        "This is not a database, but the shopping list of a friend.\n" + std::string(4096, '.');
    WriteFile(m_home.LocalFarm(), content);
    const Client client;
    EXPECT_EQ(Describe(client.GetOpening()),
              "1062: The file " + Farm() + " is not a farm of the simulated service.");
    EXPECT_EQ(Describe(StartService(".")),
              "1062: The file " + Farm() + " is not a farm of the simulated service.");
    EXPECT_EQ(ReadFile(m_home.LocalFarm()), content);
}

TEST_F(FarmFaults, DatabaseOfAnotherProgramIsRefusedAndKept) {
    ChangeFarm(m_home.LocalFarm(), "CREATE TABLE address (name TEXT); INSERT INTO address VALUES ('Ann');");
    const std::string content = ReadFile(m_home.LocalFarm());
    const Client client;
    EXPECT_EQ(Describe(client.GetOpening()),
              "1062: The file " + Farm() + " is not a farm of the simulated service.");
    EXPECT_EQ(ReadFile(m_home.LocalFarm()), content);
}

TEST_F(FarmFaults, FarmOfALaterReleaseIsRefusedAndKept) {
    CreateFarm();
    ChangeFarm(m_home.LocalFarm(), "PRAGMA user_version = 6");
    const std::string content = ReadFile(m_home.LocalFarm());
    const Client client;
    EXPECT_EQ(Describe(client.GetOpening()),
              "1063: The farm file " + Farm() + " has version 6, this program knows versions up to 5.");
    EXPECT_EQ(ReadFile(m_home.LocalFarm()), content);
}

TEST_F(FarmFaults, EmptyFileOfADemonstrationServerBecomesItsFarm) {
    WriteFile(m_home.LocalFarm(), "");
    Client client;
    EXPECT_TRUE(client.GetOpening().ok) << Describe(client.GetOpening());
    EXPECT_EQ(client.Jukeboxes().size(), 8U);
}

TEST_F(FarmFaults, EmptyFileOfAnotherServerMakesNoServer) {
    WriteFile(m_home.GetFolder() / "server-other.db", "");
    const Client client("other");
    EXPECT_EQ(client.GetOpening().code, 1010);
}

TEST_F(FarmFaults, FolderInPlaceOfTheFileIsRefused) {
    std::filesystem::create_directory(m_home.LocalFarm());
    const Client client;
    EXPECT_EQ(client.GetOpening().code, 1061);
    EXPECT_TRUE(client.GetOpening().text.starts_with("The farm file " + Farm() + " cannot be opened: "))
        << client.GetOpening().text;
}

TEST_F(FarmFaults, FileInPlaceOfTheFolderIsRefused) {
    const path file = m_home.GetFolder() / "file";
    WriteFile(file, "x");
    SetEnvironment("KRVSIM_HOME", file.c_str());
    const Client client;
    EXPECT_FALSE(client.GetOpening().ok);
    EXPECT_NE(client.GetOpening().text.find(file.string()), std::string::npos) << client.GetOpening().text;
    EXPECT_EQ(ReadFile(file), "x");
}

TEST_F(FarmFaults, DamagedFarmIsRefusedWithAReason) {
    CreateFarm();
    std::string content = ReadFile(m_home.LocalFarm());
    for (size_t position = 200; position < content.size(); ++position)
        content[position] = '\x55';
    WriteFile(m_home.LocalFarm(), content);
    const Client client;
    EXPECT_EQ(client.GetOpening().code, 1067) << Describe(client.GetOpening());
    EXPECT_TRUE(client.GetOpening().text.starts_with("The farm file " + Farm() + " cannot be used: "))
        << client.GetOpening().text;
    EXPECT_EQ(ReadFile(m_home.LocalFarm()), content);
}

// Runs in a child, because the rights that it gives up do not come back.
int LookInReadOnlyFolder(const std::string& farm, const std::string& name) {
    if (!BecomeOrdinaryUser()) return 1;
    Client client;
    if (!client.GetOpening().ok) return 2;
    JukeboxRecord record{};
    if (!client.Jukebox(8, record).ok || record.name != name) return 3;
    if (client.Volumes().size() != 50) return 4;
    const Outcome change = client.RenameJukebox(8, "x");
    const std::string refusal =
        "The farm file \"" + farm + "\" cannot be written: the file or its folder is read-only.";
    return change.code == 1066 && change.text == refusal ? 0 : 5;
}

TEST_F(FarmFaults, ReadOnlyFolderCanBeLookedAtAndChangesAreRefused) {
    CreateFarm();
    const std::string content = ReadFile(m_home.LocalFarm());
    std::filesystem::permissions(m_home.LocalFarm(), std::filesystem::perms(0644));
    std::filesystem::permissions(m_home.GetFolder(), std::filesystem::perms(0555));
    ChildProcess child([&] { return LookInReadOnlyFolder(m_home.LocalFarm().string(), "MyBox"); });
    EXPECT_EQ(child.Wait(), 0);
    std::filesystem::permissions(m_home.GetFolder(), std::filesystem::perms(0700));
    EXPECT_EQ(ReadFile(m_home.LocalFarm()), content);
}

TEST_F(FarmFaults, FolderWithLettersOfAnAddressCanBeLookedAt) {
    const path folder = m_home.GetFolder() / "100% of it? #1";
    std::filesystem::create_directory(folder);
    SetEnvironment("KRVSIM_HOME", folder.c_str());
    CreateFarm();
    const path farm = folder / m_home.LocalFarm().filename();
    std::filesystem::permissions(m_home.GetFolder(), std::filesystem::perms(0755));
    std::filesystem::permissions(farm, std::filesystem::perms(0644));
    std::filesystem::permissions(folder, std::filesystem::perms(0555));
    ChildProcess child([&] { return LookInReadOnlyFolder(farm.string(), "MyBox"); });
    EXPECT_EQ(child.Wait(), 0);
    std::filesystem::permissions(folder, std::filesystem::perms(0700));
}

TEST_F(FarmFaults, ReadOnlyFolderShowsWhatAProcessWithMoreRightsHasChangedLast) {
    CreateFarm();
    // Forked before the session: its first signal lets it look.
    Signals go;
    ChildProcess child([&] {
        go.ListenOnly();
        if (!go.Receive()) return 90;
        return LookInReadOnlyFolder(m_home.LocalFarm().string(), "After");
    });
    Client writer;
    ASSERT_TRUE(writer.RenameJukebox(8, "After").ok);
    for (const auto& entry : std::filesystem::directory_iterator(m_home.GetFolder())) {
        std::filesystem::permissions(entry.path(), std::filesystem::perms(0644));
    }
    ASSERT_TRUE(std::filesystem::exists(m_home.LocalFarm().string() + "-wal"));
    std::filesystem::permissions(m_home.GetFolder(), std::filesystem::perms(0555));
    go.Send();
    EXPECT_EQ(child.Wait(), 0);
    std::filesystem::permissions(m_home.GetFolder(), std::filesystem::perms(0700));
    EXPECT_TRUE(writer.RenameJukebox(8, "Later").ok);
}

TEST_F(FarmFaults, FileThatMayNotBeReadIsReported) {
    CreateFarm();
    std::filesystem::permissions(m_home.LocalFarm(), std::filesystem::perms(0));
    std::filesystem::permissions(m_home.GetFolder(), std::filesystem::perms(0755));
    ChildProcess child([&] {
        if (!BecomeOrdinaryUser()) return 1;
        const Client client;
        if (client.GetOpening().code != 1061) return 2;
        return client.GetOpening().text == "The farm file " + Farm() + " cannot be opened: Permission denied."
                   ? 0
                   : 3;
    });
    EXPECT_EQ(child.Wait(), 0);
}

int CreateInReadOnlyFolder(const std::string& farm) {
    if (!BecomeOrdinaryUser()) return 1;
    const Client client;
    return client.GetOpening().text == "The farm file \"" + farm + "\" cannot be opened: Permission denied."
               ? 0
               : 2;
}

TEST_F(FarmFaults, NewFarmInAReadOnlyFolderIsReported) {
    std::filesystem::permissions(m_home.GetFolder(), std::filesystem::perms(0555));
    ChildProcess child([&] { return CreateInReadOnlyFolder(m_home.LocalFarm().string()); });
    EXPECT_EQ(child.Wait(), 0);
    std::filesystem::permissions(m_home.GetFolder(), std::filesystem::perms(0700));
}

TEST_F(FarmFaults, LookingAtAReadOnlyFarmWorksWithAJournalAndAFault) {
    CreateFarm();
    ChangeFarm(
        m_home.LocalFarm(),
        "UPDATE server SET journal_limit = 100, fault_count = 1;"
        "INSERT INTO fault SELECT 1, '*', NULL, NULL, NULL, NULL, NULL, NULL, 0, NULL, 1, 1, 7, '', 0, 0, 0");
    std::filesystem::permissions(m_home.LocalFarm(), std::filesystem::perms(0644));
    std::filesystem::permissions(m_home.GetFolder(), std::filesystem::perms(0555));
    ChildProcess child([&] { return LookInReadOnlyFolder(m_home.LocalFarm().string(), "MyBox"); });
    EXPECT_EQ(child.Wait(), 0);
    std::filesystem::permissions(m_home.GetFolder(), std::filesystem::perms(0700));
}

double SecondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

TEST_F(FarmFaults, StoppedWriterHoldsUpWritersForTenSecondsAndReadersNotAtAll) {
    CreateFarm();
    ChildProcess stopped([&] {
        Hold(m_home.LocalFarm(), "BEGIN IMMEDIATE", &StopMyself);
        return 0;
    });
    stopped.WaitUntilStopped();
    Client client;
    auto start = std::chrono::steady_clock::now();
    JukeboxRecord record{};
    EXPECT_TRUE(client.Jukebox(8, record).ok);
    EXPECT_LT(SecondsSince(start), 1.0);
    start = std::chrono::steady_clock::now();
    EXPECT_EQ(Describe(client.RenameJukebox(8, "x")),
              "1064: The farm file " + Farm() + " has been locked by another process for 10 seconds.");
    EXPECT_GT(SecondsSince(start), 9.0);
    EXPECT_LT(SecondsSince(start), 10.5);
    stopped.Kill();
    (void)stopped.Wait();
    EXPECT_TRUE(client.RenameJukebox(8, "x").ok);
}

TEST_F(FarmFaults, JournalDoesNotMakeAStoppedWriterHoldUpACallTwice) {
    CreateFarm();
    ChangeFarm(m_home.LocalFarm(), "UPDATE server SET journal_limit = 100");
    Signals go;  // the fork comes before the session
    ChildProcess stopped([&] {
        go.ListenOnly();
        if (!go.Receive()) return 1;
        Hold(m_home.LocalFarm(), "BEGIN IMMEDIATE", &StopMyself);
        return 0;
    });
    auto client = std::make_unique<Client>();
    ASSERT_TRUE(client->GetOpening().ok);
    go.Send();
    stopped.WaitUntilStopped();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(client->RenameJukebox(8, "x").code, 1064);
    client.reset();
    EXPECT_GT(SecondsSince(start), 9.0);
    EXPECT_LT(SecondsSince(start), 10.5);
}

TEST_F(FarmFaults, FarmThatAnotherProcessHasForItselfIsReportedAfterTenSeconds) {
    CreateFarm();
    ChildProcess stopped([&] {
        Hold(m_home.LocalFarm(), "PRAGMA locking_mode = EXCLUSIVE; BEGIN IMMEDIATE", &StopMyself);
        return 0;
    });
    stopped.WaitUntilStopped();
    const auto start = std::chrono::steady_clock::now();
    const Client client;
    EXPECT_EQ(Describe(client.GetOpening()),
              "1064: The farm file " + Farm() + " has been locked by another process for 10 seconds.");
    EXPECT_GT(SecondsSince(start), 9.0);
    EXPECT_LT(SecondsSince(start), 10.5);
}

}  // namespace
}  // namespace embedded_test
