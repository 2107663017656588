#include "tests/reliability/support/small_farm.h"

namespace krvcmd::reliability {

using krvfake::kSideA;
using krvfake::kSideB;

void BuildSmallFarm(krvfake::Farm& farm) {
    farm.AddJukebox(8, "Tower")
        .WithChanger({"HP", "C1160A", "1.10", {0, 3, 0}})
        .DoubleSided()
        .WithDrive({"HP", "C1113F", "3.02", {0, 4, 0}})
        .WithDrive({"", "C1113F", "3.02", {0, 4, 1}}, false)
        .WithMagazine(3)
        .WithMissingMagazine(0)
        .WithMagazine(2)
        .WithSlot(2, 0, krvfake::slot_state::kScanFailed, 254);
    farm.AddJukebox(11, "MyBox").Disabled().WithMagazine(3);
    farm.AddJukebox(29, "Shelf");

    farm.AddVolume(33, "Sales 2005").WithCapacity(4'700'000'000, 700'000'000).At(8, 0, 0, kSideA);
    farm.AddVolume(34, "Sales 2006").WithDirectory("sales\\2006").WithDirectory("old").At(8, 0, 0, kSideB);
    farm.AddVolume(273, "Disc-9").WithMedium(20).WithFileSystem("FAT").At(8, 0, 2, kSideA);
    farm.AddVolume(517, "100% full").InState(1).WithCapacity(1000, 0).At(11, 0, 1, kSideA);
    farm.AddVolume(600, "Away").InState(2);
    farm.AddVolume(700, "Set").WithType(2).SaysItIsAt(8, 0, 0, kSideA).SaysItIsAt(8, 2, 9, kSideA);
}

}  // namespace krvcmd::reliability
