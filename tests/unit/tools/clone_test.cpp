#include <gtest/gtest.h>

#include <algorithm>

#include "embedded/store/farm_file.h"
#include "tests/unit/embedded/support/client.h"
#include "tests/unit/tools/tool_fixture.h"

namespace embedded_test {
namespace {

class KrvsimClone : public ToolFixture {
  protected:
    static constexpr const char* kEmbedded = KRVSIM_EMBEDDED_LIBRARY;

    // The farm as the embedded library shows it.
    static std::string Shown(const std::string& server) {
        const ToolResult result = RunKrvsim({"dump", "--library", kEmbedded, "--from", server});
        EXPECT_EQ(result.status, 0) << result.err;
        return Body(result.out);
    }

    // Clones and expects that every item which the library shows could be read.
    static std::string Cloned(std::vector<std::string> words) {
        words.insert(words.begin(), {"clone", "--library", kEmbedded});
        const ToolResult result = RunKrvsim(words);
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_EQ(result.err.find("not read"), std::string::npos) << result.err;
        return result.out;
    }
};

TEST_F(KrvsimClone, CopyOfTheDemonstrationFarmShowsTheSame) {
    EXPECT_EQ(Cloned({"--from", ".", "--to", "copy"}),
              "Server \"copy\" has a copy of 8 jukeboxes and 50 volumes of server \".\".\n");
    EXPECT_EQ(Shown("copy"), Shown("."));
    Done({"check", "--server", "copy"});
}

TEST_F(KrvsimClone, ReportsWhatNoCallShows) {
    // Volumes 401 and 402 are on the shelf and in an import station, 117 is in a magazine that is not
    // present.
    const ToolResult result = RunKrvsim({"clone", "--library", kEmbedded, "--to", "copy"});
    EXPECT_EQ(result.status, 0) << result.err;
    for (const char* volume : {"401", "402", "117"}) {
        const std::string line =
            std::string("not visible: the medium of volume ") + volume + ": it is in no visible slot\n";
        EXPECT_NE(result.err.find(line), std::string::npos) << line << result.err;
    }
    EXPECT_NE(result.err.find("not visible: the media in magazine "), std::string::npos) << result.err;
    EXPECT_EQ(result.err.find("not visible: the medium of volume 33:"), std::string::npos);
    Client copy("copy");
    EXPECT_EQ(copy.VolumeOf(401).state, 2U);
}

TEST_F(KrvsimClone, CopiesOfGeneratedFarmsShowTheSame) {
    for (const char* seed : {"1", "2", "3", "4", "5"}) {
        Done(
            {"generate", "--force", "--jukeboxes", "2", "--magazines", "2", "--slots", "30", "--seed", seed});
        Cloned({"--to", "copy", "--force"});
        EXPECT_EQ(Shown("copy"), Shown(".")) << seed;
        Done({"check", "--server", "copy"});
    }
}

TEST_F(KrvsimClone, ChangesNothingInTheOriginal) {
    Done({"init"});
    const std::string before = Done({"dump"});
    Done({"journal", "--on"});
    Cloned({"--to", "copy"});
    EXPECT_EQ(Done({"dump"}), before);
    EXPECT_NE(Done({"journal", "--summary"}).find("0 changes; "), std::string::npos);
}

TEST_F(KrvsimClone, CopyCanBeChanged) {
    Cloned({"--to", "copy"});
    Client copy("copy");
    EXPECT_TRUE(copy.Export({8, 0, 2}).ok);
    EXPECT_TRUE(copy.Format({11, 0, 9}, 0, "New").ok);
    EXPECT_EQ(copy.VolumeOf(33).state, 2U);
    EXPECT_EQ(Client().VolumeOf(33).state, 0U) << "the original is another farm";
}

TEST_F(KrvsimClone, ReportsEveryItemThatCannotBeRead) {
    Done({"init"});
    Done({"fault", "add", "-f", "GetSlot", "-J", "@8", "-S", "1", "--code", "900", "--text", "Slot lost."});
    Done({"fault", "add", "-f", "GetDrive", "-J", "@8", "-D", "2", "--code", "901", "--text", "Drive lost."});
    Done({"fault", "add", "-f", "VolumeDetail", "-V", "33", "--code", "902", "--text", "Volume lost."});
    Done({"fault", "add", "-f", "GetJukebox", "-J", "@41", "--code", "903", "--text", "Jukebox lost."});
    const ToolResult result = RunKrvsim({"clone", "--library", kEmbedded, "--to", "copy"});
    EXPECT_EQ(result.status, 3) << result.err;
    for (
        const char* line :
        {"not read: slot 1 of magazine 1 of jukebox 8: KRV error 900: Slot lost.\n",
         "not read: drive 2 of jukebox 8: KRV error 901: Drive lost.\n",
         "not read: volume 33: KRV error 902: Volume lost.\n",
         "not read: volume 33 on side A of slot 3 of magazine 1 of jukebox 8: the volume could not be read\n",
         "not read: jukebox 41: KRV error 903: Jukebox lost.\n"}) {
        EXPECT_NE(result.err.find(line), std::string::npos) << line << "\n" << result.err;
    }
    EXPECT_NE(result.err.find("5 items could not be read.\n"), std::string::npos) << result.err;
    EXPECT_TRUE(result.err.ends_with("krvsim: the copy is incomplete (--partial-ok accepts it)\n"))
        << result.err;
    Done({"check", "--server", "copy"});
    Client copy("copy");
    EXPECT_EQ(copy.SlotState({8, 0, 0}), 0U);
    EXPECT_EQ(copy.SideOf({8, 0, 2}, 1).volumeId, 34);
    EXPECT_EQ(copy.Jukeboxes().size(), 7U);
}

TEST_F(KrvsimClone, ReportsSlotsThatDifferFromTheMagazines) {
    Done({"init"});
    embedded::OpenFarmAt(m_home.LocalFarm())->Execute("UPDATE jukebox SET slot_count = 9 WHERE id = 8");
    const ToolResult result = RunKrvsim({"clone", "--library", kEmbedded, "--to", "copy"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_NE(result.err.find("changed: jukebox 8: 9 slots but 12 in its magazines, copied with those\n"),
              std::string::npos)
        << result.err;
    Done({"check", "--server", "copy"});
}

TEST_F(KrvsimClone, KeepsAnExistingFarmUnlessForced) {
    Done({"init", "--server", "copy", "--empty"});
    EXPECT_NE(Failed({"clone", "--library", kEmbedded, "--to", "copy"}), "");
    Client kept("copy");
    EXPECT_TRUE(kept.Jukeboxes().empty());
}

TEST_F(KrvsimClone, UnknownLibraryAndServerAreNamed) {
    const std::string missing = Failed({"clone", "--library", "/nowhere/lib.so", "--to", "copy"});
    EXPECT_NE(missing.find("/nowhere/lib.so"), std::string::npos) << missing;
    EXPECT_EQ(
        Failed({"clone", "--library", kEmbedded, "--from", "nowhere", "--to", "copy"}),
        "krvsim: no session with server \"nowhere\": KRV error 1010: Server \"nowhere\" is not known.\n");
}

// ---- Through the scripted library

class KrvsimCloneOfScript : public ToolFixture {
  protected:
    // A copy of the library in the test's folder, which reads its script afresh.
    ToolResult CloneOf(const std::string& script, const std::vector<std::string>& options = {}) {
        const std::filesystem::path library =
            m_home.GetFolder() / ("scripted" + std::to_string(++m_copies) + ".so");
        std::filesystem::copy_file(KRVSIM_SCRIPTED_LIBRARY, library);
        m_log = m_home.GetFolder() / ("log" + std::to_string(m_copies));
        SetEnvironment("KRVFAKE_SCRIPT", WriteFile("script", script).c_str());
        SetEnvironment("KRVFAKE_LOG", m_log.string().c_str());
        std::vector<std::string> words = {"clone", "--library", library.string(), "--from",
                                          "far",   "--to",      "copy",           "--force"};
        words.insert(words.end(), options.begin(), options.end());
        const ToolResult result = RunKrvsim(words);
        SetEnvironment("KRVFAKE_SCRIPT", nullptr);
        SetEnvironment("KRVFAKE_LOG", nullptr);
        return result;
    }

    std::string Log() const {
        std::stringstream text;
        text << std::ifstream(m_log, std::ios::binary).rdbuf();
        return text.str();
    }

    static constexpr const char* kFarm =
        "jukebox 8 name=Tower doublesided=1\n"
        "drive vendor=V product=P\n"
        "magazine slots=4\n"
        "volume 33 label=\"Sales 2005\" at=8/0/1/0 dir=sales\n"
        "volume 34 label=\"Sales 2006\" at=8/0/1/1\n"
        "volume 40 label=Gone state=2\n";

    int m_copies = 0;
    std::filesystem::path m_log;
};

TEST_F(KrvsimCloneOfScript, EveryCallKeepsToTheBinaryInterface) {
    const ToolResult result = CloneOf(kFarm);
    EXPECT_EQ(result.status, 0) << result.err;
    const std::string log = Log();
    EXPECT_NE(log.find("KrvSessionCreate"), std::string::npos);
    EXPECT_NE(log.find("KrvSessionClose"), std::string::npos);
    EXPECT_EQ(log.find("ERROR"), std::string::npos) << log;
    for (const char* acting : {"Set", "Activate", "Deactivate", "Erase", "Format", "Finalize", "Import",
                               "Export", "Scan", "Service"}) {
        EXPECT_EQ(log.find(std::string("Krv") + acting), std::string::npos) << acting;
        EXPECT_EQ(log.find(std::string("KrvVolume") + acting), std::string::npos) << acting;
        EXPECT_EQ(log.find(std::string("KrvMedia") + acting), std::string::npos) << acting;
    }
}

TEST_F(KrvsimCloneOfScript, FarmIsCopied) {
    ASSERT_EQ(CloneOf(kFarm).status, 0);
    Client copy("copy");
    ASSERT_TRUE(copy.GetOpening().ok) << Describe(copy.GetOpening());
    EXPECT_EQ(copy.Jukeboxes(), std::vector<uint32_t>{8});
    EXPECT_EQ(copy.Volumes(), (std::vector<uint32_t>{33, 34, 40}));
    EXPECT_EQ(copy.LabelOf(33), "Sales 2005");
    EXPECT_EQ(copy.SideOf({8, 0, 1}, 1).volumeId, 34);
    EXPECT_EQ(copy.VolumeOf(40).state, 2U);
    std::vector<std::string> aspects;
    ASSERT_TRUE(copy.Aspects(33, aspects).ok);
    EXPECT_EQ(aspects, std::vector<std::string>{"sales"});
    Done({"check", "--server", "copy"});
}

struct FailingCase {
    const char* script;
    const char* report;
};

TEST_F(KrvsimCloneOfScript, FailingItemsAreReportedAndTheRestIsCopied) {
    const std::vector<FailingCase> cases = {
        {"fail KrvGetSlot nth=1 code=9 text=No\n",
         "not read: slot 1 of magazine 1 of jukebox 8: KRV error 9: No\n"},
        {"fail KrvGetDrive code=9 text=No\n", "not read: drive 1 of jukebox 8: KRV error 9: No\n"},
        {"fail KrvGetMagazine code=9 text=No\n", "not read: magazine 1 of jukebox 8: KRV error 9: No\n"},
        {"fail KrvGetJukebox code=9 text=No\n", "not read: jukebox 8: KRV error 9: No\n"},
        {"fail KrvVolumeAspects nth=1 code=9 text=No\n",
         "not read: the directory names of volume 33: KRV error 9: No\n"},
        {"fail KrvVolumeLocations nth=1 code=9 text=No\n",
         "not read: the locations of volume 33: KRV error 9: No\n"},
        {"fail KrvGetNextVolume nth=2 code=9 text=No\n",
         "not read: the volumes after ID 33: KRV error 9: No\n"},
        {"enumerate volumes 33 33 ...\n",
         "not read: the volumes after ID 33: the next ID, 33, was listed before\n"},
        {"enumerate jukeboxes 8 8 ...\n",
         "not read: the jukeboxes after ID 8: the next ID, 8, was listed before\n"},
    };
    for (const FailingCase& failing : cases) {
        const ToolResult result = CloneOf(std::string(kFarm) + failing.script);
        EXPECT_EQ(result.status, 3) << failing.script << result.err;
        EXPECT_NE(result.err.find(failing.report), std::string::npos) << failing.script << result.err;
        Done({"check", "--server", "copy"});
    }
}

TEST_F(KrvsimCloneOfScript, InvalidAnswersAreCorrected) {
    const std::vector<FailingCase> cases = {
        {"jukebox 8 name=x\nmagazine slots=1\nslot state=9\n",
         "changed: slot 1 of magazine 1 of jukebox 8: invalid state 9, copied as unknown\n"},
        {"volume 5 type=7\n", "changed: volume 5: invalid type 7, copied as a disc\n"},
        {"volume 5 total=3 free=4\n",
         "changed: volume 5: more free than total bytes, copied with all bytes free\n"},
        {"volume 5 dir=same\nvolume 6 dir=same\n",
         "changed: volume 6: directory name \"same\" of another volume, left out\n"},
    };
    for (const FailingCase& nonsense : cases) {
        const ToolResult result = CloneOf(nonsense.script);
        EXPECT_EQ(result.status, 0) << nonsense.script << result.err;
        EXPECT_NE(result.err.find(nonsense.report), std::string::npos) << nonsense.script << result.err;
        Done({"check", "--server", "copy"});
    }
}

TEST_F(KrvsimCloneOfScript, ImpossibleCountsCannotBeRead) {
    const std::vector<FailingCase> cases = {
        {"jukebox 8 name=x\nmagazine slots=-5\n",
         "not read: the slots of magazine 1 of jukebox 8: impossible count -5\n"},
        {"jukebox 8 name=x\ndrive claimed=2000000000\n",
         "not read: the drives of jukebox 8: impossible count 2000000000\n"},
    };
    for (const FailingCase& impossible : cases) {
        const ToolResult result = CloneOf(impossible.script);
        EXPECT_EQ(result.status, 3) << impossible.script << result.err;
        EXPECT_NE(result.err.find(impossible.report), std::string::npos) << impossible.script << result.err;
        Done({"check", "--server", "copy"});
    }
}

TEST_F(KrvsimCloneOfScript, EnumerationEndsAtZeroWhateverTheOrderOfItsIds) {
    const ToolResult result = CloneOf(
        "volume 3\nvolume 5\nvolume 9\nenumerate volumes 5 3 9\n"
        "jukebox 8 name=x\njukebox 11 name=y\nenumerate jukeboxes 11 8\n");
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err.find("not read"), std::string::npos) << result.err;
    Client copy("copy");
    EXPECT_EQ(copy.Volumes(), (std::vector<uint32_t>{3, 5, 9}));
    EXPECT_EQ(copy.Jukeboxes(), (std::vector<uint32_t>{8, 11}));
}

TEST_F(KrvsimCloneOfScript, EnumerationEndsAtAnEarlierId) {
    const ToolResult result = CloneOf("volume 3\nvolume 5\nvolume 9\nenumerate volumes 5 3 9 3 9 3\n");
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.err,
              "not read: the volumes after ID 9: the next ID, 3, was listed before\n"
              "not visible: the medium of volume 3: it is in no visible slot\n"
              "not visible: the medium of volume 5: it is in no visible slot\n"
              "not visible: the medium of volume 9: it is in no visible slot\n"
              "1 item could not be read.\n"
              "krvsim: the copy is incomplete (--partial-ok accepts it)\n");
    EXPECT_EQ(Client("copy").Volumes(), (std::vector<uint32_t>{3, 5, 9}));
}

TEST_F(KrvsimCloneOfScript, VolumeThatOnlyASideNamesIsCopied) {
    const ToolResult result = CloneOf(std::string(kFarm) + "enumerate volumes 40 33\n");
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_NE(
        result.err.find("changed: volume 34: missing in the list of volumes, copied because side B of slot "
                        "2 of magazine 1 of jukebox 8 names it\n"),
        std::string::npos)
        << result.err;
    Client copy("copy");
    EXPECT_EQ(copy.Volumes(), (std::vector<uint32_t>{33, 34, 40}));
    EXPECT_EQ(copy.SideOf({8, 0, 1}, 1).volumeId, 34);
}

TEST_F(KrvsimCloneOfScript, IncompleteCopyIsAcceptedOnRequest) {
    const std::string script = std::string(kFarm) + "fail KrvGetDrive code=9 text=No\n";
    const ToolResult refused = CloneOf(script);
    EXPECT_EQ(refused.status, 3);
    EXPECT_TRUE(refused.out.starts_with("Server \"copy\" has a copy of 1 jukebox")) << refused.out;
    EXPECT_TRUE(
        refused.err.ends_with("1 item could not be read.\n"
                              "krvsim: the copy is incomplete (--partial-ok accepts it)\n"))
        << refused.err;
    const ToolResult accepted = CloneOf(script, {"--partial-ok"});
    EXPECT_EQ(accepted.status, 0);
    EXPECT_TRUE(accepted.err.ends_with("1 item could not be read.\n")) << accepted.err;
}

TEST_F(KrvsimCloneOfScript, ItemsOfOneKindAreGroupedUnlessVerbose) {
    std::string script;
    for (int volume = 1; volume <= 900; ++volume)
        script += "volume " + std::to_string(volume) + "\n";
    const ToolResult grouped = CloneOf(script);
    EXPECT_EQ(grouped.status, 0);
    EXPECT_EQ(grouped.err,
              "not visible: the medium of volume 1: it is in no visible slot\n"
              "not visible: the medium of volume 2: it is in no visible slot\n"
              "not visible: the medium of volume 3: it is in no visible slot\n"
              "not visible: the medium of volume 4: it is in no visible slot\n"
              "not visible: the medium of volume 5: it is in no visible slot\n"
              "895 more items (--verbose lists all) like: not visible: the medium of volume 1: "
              "it is in no visible slot\n");
    const ToolResult verbose = CloneOf(script, {"--verbose"});
    EXPECT_EQ(std::ranges::count(verbose.err, '\n'), 900);
}

TEST_F(KrvsimCloneOfScript, LocationsThatDifferFromTheSidesAreReported) {
    const ToolResult result = CloneOf(
        "jukebox 8 name=x\nmagazine slots=4\n"
        "volume 33 at=8/0/1/0 says=8/0/3/0\n");
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_NE(
        result.err.find("changed: volume 33: locations (2) that differ from the sides that name it (1), "
                        "copied on these sides\n"),
        std::string::npos)
        << result.err;
    Done({"check", "--server", "copy"});
}

TEST_F(KrvsimCloneOfScript, FailsWithoutASession) {
    const ToolResult result = CloneOf("fail KrvSessionCreate code=77 text=\"Nobody home.\"\n");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "krvsim: no session with server \"far\": KRV error 77: Nobody home.\n");
}

}  // namespace
}  // namespace embedded_test
