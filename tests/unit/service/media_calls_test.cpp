#include "krvcmd/service/access/media_calls.h"

#include <cstring>

#include "krvcmd/service/sdk/keys.h"
#include "tests/support/service_fixture.h"

namespace krvcmd {
namespace {

using krvfake::Occurrence;
using test::Calls;
using test::Text;

class MediaCallsTest : public test::ServiceTest {};

struct Row {
    std::string call;
    Status status;
};

// Each wrapper once.
std::vector<Row> CallEach() {
    FormatOptions options{};
    options.size = sizeof(options);
    std::strcpy(options.label, "Sales 2005");
    options.certify = 1;
    const MagazineKey magazine = MakeMagazineKey(MakeJukeboxKey(8), 1);
    const DriveKey drive = MakeDriveKey(MakeJukeboxKey(8), 1);
    const SlotKey slot{sizeof(SlotKey), 8, 0, 2};
    const SideKey side = MakeSideKey(slot, kSideB);
    return {
        {"KrvMediaImport J=8 M=0 S=2", ImportMedium(slot)},
        {"KrvMediaExport J=8 M=0 S=2", ExportMedium(slot)},
        {"KrvMediaScan J=8 M=0 S=2 side=1", ScanMedium(side)},
        {"KrvVolumeErase J=8 M=0 S=2 side=1", EraseVolume(side)},
        {"KrvVolumeFinalize J=8 M=0 S=2 side=1", FinalizeMedium(side)},
        {"KrvVolumeFormat J=8 M=0 S=2 side=1 label=\"Sales 2005\" certify=1 sequential=0",
         FormatVolume(side, options)},
        {"KrvActivateJukebox J=8", SetJukeboxActive(Enable::Yes, 8)},
        {"KrvDeactivateJukebox J=8", SetJukeboxActive(Enable::No, 8)},
        {"KrvActivateMagazine J=8 M=1", SetMagazineActive(Enable::Yes, magazine)},
        {"KrvDeactivateMagazine J=8 M=1", SetMagazineActive(Enable::No, magazine)},
        {"KrvActivateDrive J=8 D=1", SetDriveActive(Enable::Yes, drive)},
        {"KrvDeactivateDrive J=8 D=1", SetDriveActive(Enable::No, drive)},
        {"KrvVolumeActivate V=33", SetVolumeActive(Enable::Yes, 33)},
        {"KrvVolumeDeactivate V=33", SetVolumeActive(Enable::No, 33)},
        {"KrvJukeboxSetName J=8 name=\"My New Name\"", RenameJukebox(8, "My New Name")},
        {"KrvVolumeSetAspects V=33 text=\"dir1/volume33\"", SetVolumeDirectory(33, "dir1/volume33")},
    };
}

TEST_F(MediaCallsTest, MakeOneCallEach) {
    const std::vector<Row> rows = CallEach();
    Calls expected;
    for (const Row& row : rows) {
        EXPECT_EQ(Text(row.status), "OK") << row.call;
        expected.push_back(row.call);
    }
    EXPECT_EQ(TakeCalls(), expected);
}

TEST_F(MediaCallsTest, HandOnTheServiceError) {
    Fake().FailCall("*", Occurrence::Every(), {502, "not usable"});
    for (const Row& row : CallEach())
        EXPECT_EQ(Text(row.status), "service error 502: not usable") << row.call;
}

TEST_F(MediaCallsTest, HandOverAnEmptyName) {
    EXPECT_TRUE(RenameJukebox(8, "").IsOk());
    EXPECT_TRUE(SetVolumeDirectory(33, "").IsOk());
    EXPECT_EQ(TakeCalls(), (Calls{"KrvJukeboxSetName J=8 name=\"\"", "KrvVolumeSetAspects V=33 text=\"\""}));
}

}  // namespace
}  // namespace krvcmd
