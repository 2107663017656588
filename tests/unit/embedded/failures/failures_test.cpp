// Not on Windows: the processes whose files and memory fail are forks; what fails is refused by means of
// POSIX.

// Every function of the embedded service, with each of its requests for memory and each of its database's
// file operations refused: the call ends with an error of the service or as if nothing had happened, and what
// it was to change is either changed whole or not at all.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/unit/embedded/failures/refusals.h"
#include "tests/unit/embedded/platform/farm_probe.h"
#include "tests/unit/embedded/support/client.h"
#include "tests/unit/embedded/support/farm_fixture.h"

namespace embedded_test {
namespace {

using std::filesystem::path;

// A call with arguments of its own: what a client prepares is not to be refused.
struct Function {
    const char* name;
    std::function<KrvBool(KrvCallContext*)> call;
};

template <typename Record>
Record Prepared() {
    Record record{};
    record.size = sizeof(Record);
    return record;
}

std::vector<Function> AllFunctions() {
    static JukeboxKey jukebox{sizeof(JukeboxKey), 29};
    static MagazineKey magazine{sizeof(MagazineKey), 29, 0};
    static DriveKey drive{sizeof(DriveKey), 29, 0};
    static const SlotKey slot = KeyOf(Slot{29, 0, 0});
    static const SideKey side = KeyOf(Slot{29, 0, 0}, 0);
    static const SideKey medium = KeyOf(Slot{29, 0, 0}, 2);
    static FormatOptions format = Prepared<FormatOptions>();
    static SideKey location = Prepared<SideKey>();
    static auto jukeboxRecord = Prepared<JukeboxRecord>();
    static auto magazineRecord = Prepared<MagazineRecord>();
    static auto driveRecord = Prepared<DriveRecord>();
    static auto slotRecord = Prepared<SlotRecord>();
    static auto sideRecord = Prepared<SideRecord>();
    static auto volumeRecord = Prepared<VolumeRecord>();
    static char buffer[512];
    static uint32_t number = 0;
    std::strcpy(format.label, "A label that is longer than a short text");
    constexpr const char* kText = "a name that is longer than a short text";
    using Context = KrvCallContext*;
    return {
        {"KrvGetNextJukebox", [](Context c) { return KrvGetNextJukebox(c, 0, &number); }},
        {"KrvGetJukebox", [](Context c) { return KrvGetJukebox(c, &jukebox, &jukeboxRecord); }},
        {"KrvGetMagazine", [](Context c) { return KrvGetMagazine(c, &magazine, &magazineRecord); }},
        {"KrvGetDrive", [](Context c) { return KrvGetDrive(c, &drive, &driveRecord); }},
        {"KrvGetSlot", [](Context c) { return KrvGetSlot(c, &slot, &slotRecord); }},
        {"KrvGetSide", [](Context c) { return KrvGetSide(c, &side, &sideRecord); }},
        {"KrvGetNextVolume", [](Context c) { return KrvGetNextVolume(c, 0, &number); }},
        {"KrvVolumeDetail", [](Context c) { return KrvVolumeDetail(c, 33, &volumeRecord); }},
        {"KrvVolumeAspects",
         [](Context c) { return KrvVolumeAspects(c, 33, buffer, sizeof buffer, &number); }},
        {"KrvVolumeLocations", [](Context c) { return KrvVolumeLocations(c, 33, &location, 1, &number); }},
        {"KrvVolumeSetAspects", [](Context c) { return KrvVolumeSetAspects(c, 33, kText, 1); }},
        {"KrvVolumeActivate", [](Context c) { return KrvVolumeActivate(c, 33, nullptr); }},
        {"KrvVolumeDeactivate", [](Context c) { return KrvVolumeDeactivate(c, 33); }},
        {"KrvVolumeErase", [](Context c) { return KrvVolumeErase(c, &side); }},
        {"KrvVolumeFinalize", [](Context c) { return KrvVolumeFinalize(c, &medium); }},
        {"KrvVolumeFormat", [](Context c) { return KrvVolumeFormat(c, &side, &format); }},
        {"KrvMediaImport", [](Context c) { return KrvMediaImport(c, &slot); }},
        {"KrvMediaExport", [](Context c) { return KrvMediaExport(c, &slot); }},
        {"KrvMediaScan", [](Context c) { return KrvMediaScan(c, &medium); }},
        {"KrvActivateJukebox", [](Context c) { return KrvActivateJukebox(c, &jukebox); }},
        {"KrvDeactivateJukebox", [](Context c) { return KrvDeactivateJukebox(c, &jukebox); }},
        {"KrvActivateMagazine", [](Context c) { return KrvActivateMagazine(c, &magazine); }},
        {"KrvDeactivateMagazine", [](Context c) { return KrvDeactivateMagazine(c, &magazine); }},
        {"KrvActivateDrive", [](Context c) { return KrvActivateDrive(c, &drive); }},
        {"KrvDeactivateDrive", [](Context c) { return KrvDeactivateDrive(c, &drive); }},
        {"KrvJukeboxSetName", [](Context c) { return KrvJukeboxSetName(c, &jukebox, kText); }},
        {"KrvServiceStop", [](Context c) { return KrvServiceStop(c); }},
        {"KrvServiceRestart", [](Context c) { return KrvServiceRestart(c); }},
        {"KrvSessionClose", [](Context c) { return KrvSessionClose(c); }},
        {"KrvServiceStart", [](Context c) { return KrvServiceStart(c, "."); }},
        {"KrvSessionCreate",
         [](Context c) {
             KrvSession session = 0;
             const KrvBool created = KrvSessionCreate(c, ".", &session);
             if (created != 0) c->session = session;
             return created;
         }},
    };
}

// All that a farm holds, as one text.
std::string Everything(const path& farm) {
    const std::string statement = ReadText(
        farm,
        "SELECT group_concat('SELECT group_concat(' || columns || ', char(10)) AS t FROM (SELECT * FROM ' "
        "|| name || ' ORDER BY ' || numbers || ')', ' UNION ALL ') FROM (SELECT m.name, "
        "group_concat('quote(' || c.name || ')', '||') AS columns, group_concat(c.cid + 1) AS numbers "
        "FROM sqlite_master m JOIN pragma_table_info(m.name) c WHERE m.type = 'table' AND m.name NOT LIKE "
        "'sqlite%' GROUP BY m.name)");
    return ReadText(farm, "SELECT group_concat(t, char(10)) FROM (" + statement + ")");
}

std::string Bytes(const path& file) {
    std::string bytes(std::filesystem::file_size(file), '\0');
    std::ifstream(file, std::ios::binary).read(bytes.data(), std::ssize(bytes));
    return bytes;
}

class Failures : public FarmFixture, public testing::WithParamInterface<size_t> {
  protected:
    static void SetUpTestSuite() {
        static bool isDone = false;
        if (!std::exchange(isDone, true)) TakeTheDatabasesPlaceOfResources();
    }

    Failures() {
        { const Client first; }
        std::filesystem::copy_file(m_home.LocalFarm(), Template());
        m_before = Everything(m_home.LocalFarm());
    }

    // Calls the function on a farm as new, with one request or all from one on refused.
    Outcome CallOnNewFarm(const Function& function, Resource resource, size_t number, Extent extent) {
        Restore();
        Client client;
        EXPECT_TRUE(client.GetOpening().ok);
        Context context(client.GetSession());
        KrvBool success = 0;
        {
            const Refusals refusals(resource, number, extent);
            success = function.call(context.Get());
        }
        const Outcome outcome = context.Result(success);
        if (context.Get()->session != client.GetSession()) {
            KrvSessionClose(context.Get());
        } else if (!outcome.ok) {
            // The session goes on as if nothing had happened.
            JukeboxRecord record{};
            const Outcome next = client.Jukebox(29, record);
            EXPECT_TRUE(next.ok) << function.name << ", request " << number << ": " << Describe(next);
        }
        return outcome;
    }

    void RefuseEachRequest(Resource resource, Extent extent) {
        constexpr size_t kNever = 0x7FFFFFFF;
        const Function function = AllFunctions()[GetParam()];
        const Outcome whole = CallOnNewFarm(function, resource, kNever, extent);
        const size_t requests = Refusals::Requests();
        const std::string after = Everything(m_home.LocalFarm());
        // Where a failure begins that stays matters less than which request fails alone: a hundred places do.
        const size_t step = extent == Extent::Once ? 1 : 1 + requests / 100;
        size_t errors = 0;
        for (size_t number = 1; number <= requests; number += step) {
            const Outcome outcome = CallOnNewFarm(function, resource, number, extent);
            SCOPED_TRACE(std::string(function.name) + ", request " + std::to_string(number) + " of " +
                         std::to_string(requests) + ": " + Describe(outcome));
            const std::string& now = SoundContent();
            const bool isAsUsual = outcome.ok == whole.ok && outcome.code == whole.code;
            EXPECT_TRUE(isAsUsual || IsRefusal(resource, outcome));
            EXPECT_TRUE(now == (isAsUsual ? after : m_before) || (!outcome.ok && now == after));
            if (!isAsUsual) ++errors;
            if (HasFailure()) return;
        }
        std::printf("%s: %zu requests, one in %zu refused, %zu errors\n", function.name, requests, step,
                    errors);
    }

  private:
    // All that the farm holds, which the database itself finds undamaged. Most failures leave the bytes of an
    // earlier one, which need no second look; a farm with more files than one always gets it.
    const std::string& SoundContent() {
        const path farm = m_home.LocalFarm();
        const bool isOneFile = !std::filesystem::exists(path(farm) += "-wal");
        std::string& content = m_contents[isOneFile ? Bytes(farm) : std::string()];
        if (!isOneFile || content.empty()) {
            content = Everything(farm);
            EXPECT_EQ(ReadText(farm, "PRAGMA integrity_check"), "ok");
        }
        return content;
    }

    // Codes of memory that is short, and of a farm file that cannot be used.
    static bool IsRefusal(Resource resource, const Outcome& outcome) {
        if (outcome.ok || outcome.text.empty()) return false;
        if (outcome.code == 1003) return true;
        return resource == Resource::Files && outcome.code >= 1060 && outcome.code <= 1067;
    }

    path Template() const { return m_home.GetFolder() / "template"; }

    void Restore() {
        for (const char* more : {"-wal", "-shm", "-journal"})
            std::filesystem::remove(path(m_home.LocalFarm()) += more);
        std::filesystem::copy_file(Template(), m_home.LocalFarm(),
                                   std::filesystem::copy_options::overwrite_existing);
    }

    std::string m_before;
    std::map<std::string, std::string> m_contents;  // by the bytes of the file
};

TEST_P(Failures, OfOneRequestForMemoryAreErrorsOfTheService) {
    RefuseEachRequest(Resource::Memory, Extent::Once);
}

TEST_P(Failures, OfAllMemoryAreErrorsOfTheService) {
    RefuseEachRequest(Resource::Memory, Extent::FromThereOn);
}

TEST_P(Failures, OfOneFileOperationAreErrorsOfTheService) {
    RefuseEachRequest(Resource::Files, Extent::Once);
}

TEST_P(Failures, OfAllFileOperationsAreErrorsOfTheService) {
    RefuseEachRequest(Resource::Files, Extent::FromThereOn);
}

INSTANTIATE_TEST_SUITE_P(EveryFunction, Failures, testing::Range<size_t>(0, 31), [](const auto& function) {
    return std::string(AllFunctions()[function.param].name);
});

}  // namespace
}  // namespace embedded_test
