#include <gtest/gtest.h>

#include <cstring>
#include <functional>

#include "krvcmd/console/query/column_catalogue.h"
#include "krvcmd/console/query/query_table.h"
#include "tests/support/captured_output.h"

namespace {

using namespace Ostrel::UI::Console;
using krvcmd::JukeboxInfo;
using krvcmd::VolumeInfo;
using krvcmd::test::Lines;
using krvcmd::test::OutputOf;

template <size_t N>
void SetText(char (&field)[N], std::string_view text) {
    field[text.copy(field, N - 1)] = '\0';
}

JukeboxInfo Tower(int32_t magazineCount) {
    JukeboxInfo jukebox;
    jukebox.key = {sizeof(JukeboxKey), 11};
    JukeboxRecord& record = jukebox.record;
    record.identity.scsiAddress[1] = 4;
    SetText(record.identity.vendor, "VEN   ");
    SetText(record.identity.product, "Changer");
    SetText(record.identity.revision, "1.07");
    record.enabled = 1;
    record.doubleSided = 0;
    record.driveCount = 3;
    record.magazineCount = magazineCount;
    record.slotCount = 120;
    SetText(record.name, "Tower");
    return jukebox;
}

// 650 MByte, of which 162.5 are used: a quarter.
VolumeInfo Backup() {
    VolumeInfo volume;
    volume.volumeId = 33;
    VolumeRecord& record = volume.record;
    record.type = 2;
    record.state = 1;
    SetText(record.fileSystem, "UDF 2.01");
    SetText(record.label, "BACKUP-7");
    record.totalCapacity = 681'574'400;
    record.freeCapacity = 511'180'800;
    volume.aspects = {"\\archive\\2001", "second"};
    return volume;
}

constexpr std::string_view kEveryLetter = "SDMIJNLmdsaCRPFnlvftxXzyYo";

// The cells of the one row that `add` adds, as "letter=text" in the order of the help.
std::string RowOf(const std::function<void(CKrvQueryTable&)>& add) {
    std::string row;
    for (const char letter : kEveryLetter) {
        CKrvQueryTable table;
        table.SetFormatted(false);
        EXPECT_TRUE(table.SetColumnLetters(std::string(1, letter)));
        add(table);
        EXPECT_EQ(table.GetRowsInOrder().size(), 1U);
        if (table.IsColumnEmpty(0)) continue;
        const std::string line = OutputOf([&] { table.Print(); });
        row.append(row.empty() ? "" : " ").append(1, letter).append(1, '=');
        row.append(line, 0, line.size() - 1);
    }
    return row;
}

// The text of a cell that no letter selects; "none" when the row does not have it.
std::string HiddenCellOf(uint32_t columnId, const std::function<void(CKrvQueryTable&)>& add) {
    CKrvQueryTable table;
    CTableColumn column;
    column.SetColumnId(columnId);
    table.SetColumns({column});
    add(table);
    const CTableItem* item = table.GetRowsInOrder().front()->FindItem(columnId);
    return item == nullptr ? "none" : std::string(item->GetText());
}

TEST(QueryTable, HasTheQuerysSettings) {
    const CKrvQueryTable table;
    EXPECT_EQ(table.GetSeparator(), "|");
    EXPECT_EQ(table.GetColumnCount(), 0U);
}

TEST(QueryTable, LeavesOutCellsThatItNeitherShowsNorSortsBy) {
    CKrvQueryTable table;
    EXPECT_TRUE(table.SetColumnLetters("Il"));
    EXPECT_TRUE(table.SetSortLetters("-Y"));
    table.AddSideRow(Tower(1), {sizeof(SideKey), 11, 0, 4, 0}, {}, Backup());
    const CTableRow& row = *table.GetRowsInOrder().front();
    for (const uint32_t used : {column_id::kVolumeId, column_id::kLabel, column_id::kTotalBytes})
        EXPECT_NE(row.FindItem(used), nullptr) << used;
    for (const uint32_t unused :
         {column_id::kLocation, column_id::kTotalCapacity, column_id::kUsedCapacity, column_id::kUsedBytes,
          column_id::kUsedPercent, column_id::kFileSystem, column_id::kDirectory, column_id::kVolumeType,
          column_id::kSlot, column_id::kSide, column_id::kMediaType, column_id::kFinalization,
          column_id::kRecordedState})
        EXPECT_EQ(row.FindItem(unused), nullptr) << unused;
}

TEST(QueryTable, ShowsALineForARowThatFillsNoneOfItsColumns) {
    CKrvQueryTable table;
    EXPECT_TRUE(table.SetColumnLetters("dS"));
    EXPECT_TRUE(table.SetSortLetters("F"));
    table.AddVolumeRow(Backup());
    table.AddSideRow(Tower(1), {sizeof(SideKey), 11, 0, 4, 0}, {}, Backup());
    // An empty header and underline, two rows, and the empty line at the end.
    EXPECT_EQ(OutputOf([&] { table.Print(); }), "\n\n\n\n\n");
}

TEST(JukeboxRow, ShowsTheJukebox) {
    EXPECT_EQ(RowOf([](CKrvQueryTable& table) { table.AddJukeboxRow(Tower(4)); }),
              "S=120 D=3 M=4 J=11 N=Tower C=0/4/0 R=1.07 P=VEN Changer F=no o=active");
}

TEST(JukeboxRow, ShowsTheOppositeFlags) {
    JukeboxInfo jukebox = Tower(1);
    jukebox.record.enabled = 0;
    jukebox.record.doubleSided = 1;
    jukebox.record.driveCount = 0;
    EXPECT_EQ(RowOf([&](CKrvQueryTable& table) { table.AddJukeboxRow(jukebox); }),
              "S=120 D=0 M=1 J=11 N=Tower C=0/4/0 R=1.07 P=VEN Changer F=yes o=disabled");
}

TEST(MagazineRow, ShowsTheMagazineOneBased) {
    const MagazineRecord magazine{sizeof(MagazineRecord), 30, 1};
    EXPECT_EQ(RowOf([&](CKrvQueryTable& table) {
                  table.AddMagazineRow(Tower(4), {sizeof(MagazineKey), 11, 2}, magazine);
              }),
              "S=30 J=11 N=Tower m=3 o=available");
}

TEST(MagazineRow, HasNoSlotCountWhenThatIsZero) {
    const MagazineRecord magazine{sizeof(MagazineRecord), 0, 0};
    EXPECT_EQ(RowOf([&](CKrvQueryTable& table) {
                  table.AddMagazineRow(Tower(1), {sizeof(MagazineKey), 11, 0}, magazine);
              }),
              "J=11 N=Tower m=1 o=n/a");
}

TEST(MagazineRow, ShowsASlotCountThatWasNotFilled) {
    const MagazineRecord magazine{sizeof(MagazineRecord), -1, 0};
    EXPECT_EQ(RowOf([&](CKrvQueryTable& table) {
                  table.AddMagazineRow(Tower(1), {sizeof(MagazineKey), 11, 0}, magazine);
              }),
              "S=-1 J=11 N=Tower m=1 o=n/a");
}

TEST(DriveRow, ShowsTheDrivesOwnDevice) {
    DriveRecord drive{};
    drive.identity.scsiAddress[0] = 1;
    drive.identity.scsiAddress[1] = 5;
    SetText(drive.identity.product, "Burner 9");
    SetText(drive.identity.revision, "A1");
    drive.enabled = 0;
    EXPECT_EQ(RowOf([&](CKrvQueryTable& table) {
                  table.AddDriveRow(Tower(4), {sizeof(DriveKey), 11, 0}, drive);
              }),
              "J=11 N=Tower d=1 C=1/5/0 R=A1 P=Burner 9 o=disabled");
    drive.enabled = 1;
    EXPECT_EQ(RowOf([&](CKrvQueryTable& table) {
                  table.AddDriveRow(Tower(4), {sizeof(DriveKey), 11, 6}, drive);
              }),
              "J=11 N=Tower d=7 C=1/5/0 R=A1 P=Burner 9 o=active");
}

TEST(SlotRow, ShowsTheMagazineWhenThereAreSeveral) {
    const SlotRecord slot{sizeof(SlotRecord), 4, 26};
    const SlotKey key{sizeof(SlotKey), 11, 2, 11};
    EXPECT_EQ(RowOf([&](CKrvQueryTable& table) { table.AddSlotRow(Tower(4), key, slot); }),
              "J=11 N=Tower m=3 s=12 t=BD-RE o=slot full");
    EXPECT_EQ(RowOf([&](CKrvQueryTable& table) { table.AddSlotRow(Tower(1), key, slot); }),
              "J=11 N=Tower s=12 t=BD-RE o=slot full");
}

TEST(SlotRow, HasNoTypeWithoutAMedium) {
    const SlotRecord slot{sizeof(SlotRecord), 3, 255};
    EXPECT_EQ(RowOf([&](CKrvQueryTable& table) {
                  table.AddSlotRow(Tower(1), {sizeof(SlotKey), 11, 0, 0}, slot);
              }),
              "J=11 N=Tower s=1 o=slot empty");
}

TEST(SlotRow, HasEmptyTextsForUnlistedCodes) {
    const SlotRecord slot{sizeof(SlotRecord), 9, 3};
    EXPECT_EQ(RowOf([&](CKrvQueryTable& table) {
                  table.AddSlotRow(Tower(1), {sizeof(SlotKey), 11, 0, 0}, slot);
              }),
              "J=11 N=Tower s=1 t= o=");
}

TEST(VolumeRow, ShowsTheVolumeAlone) {
    EXPECT_EQ(
        RowOf([](CKrvQueryTable& table) { table.AddVolumeRow(Backup()); }),
        // 170393600 used; 162.5 MByte is shown with the even digit
        "I=33 n=\\archive\\2001 l=BACKUP-7 v=Volume Set f=UDF 2.01 x=162 MByte X=170393600 z=25% y=650 MByte "
        "Y=681574400 o=disabled");
}

TEST(VolumeRow, HasNoDirectoryWhenTheVolumeHasNone) {
    VolumeInfo volume = Backup();
    volume.aspects.clear();
    EXPECT_EQ(RowOf([&](CKrvQueryTable& table) { table.AddVolumeRow(volume); }),
              "I=33 l=BACKUP-7 v=Volume Set f=UDF 2.01 x=162 MByte X=170393600 z=25% y=650 MByte Y=681574400 "
              "o=disabled");
}

TEST(VolumeRow, ShowsZeroPercentOfNothing) {
    VolumeInfo volume;
    volume.volumeId = 1;
    volume.record.state = 7;
    volume.record.type = 9;
    EXPECT_EQ(RowOf([&](CKrvQueryTable& table) { table.AddVolumeRow(volume); }),
              "I=1 l= v= f= x=0 X=0 z=0% y=0 Y=0 o=unknown");
}

TEST(VolumeRow, ShowsMoreFreeThanTotalAsNegativeUse) {
    VolumeInfo volume;
    volume.volumeId = 1;
    volume.record.totalCapacity = 100;
    volume.record.freeCapacity = 150;
    // -50 without a sign is 2^64 - 50.
    EXPECT_EQ(RowOf([&](CKrvQueryTable& table) { table.AddVolumeRow(volume); }),
              "I=1 l= v=Disc f= x=18446744073709551566 Byte X=-50 z=-50% y=100 Byte Y=100 o=active");
}

TEST(VolumeRow, ReadsTextsThatFillTheirFields) {
    VolumeInfo volume;
    volume.volumeId = 1;
    std::memset(volume.record.label, 'l', sizeof volume.record.label);
    std::memset(volume.record.fileSystem, 'f', sizeof volume.record.fileSystem);
    EXPECT_EQ(RowOf([&](CKrvQueryTable& table) { table.AddVolumeRow(volume); }),
              "I=1 l=" + std::string(256, 'l') + " v=Disc f=" + std::string(30, 'f') +
                  " x=0 X=0 z=0% y=0 Y=0 o=active");
}

constexpr SideKey kSideB{sizeof(SideKey), 11, 2, 11, 1};

TEST(SideRow, ShowsPlaceSideAndVolume) {
    const SideRecord side{sizeof(SideRecord), 6, 12, 2, 33};
    EXPECT_EQ(
        RowOf([&](CKrvQueryTable& table) { table.AddSideRow(Tower(4), kSideB, side, Backup()); }),
        "I=33 L=Tower\\3\\12.B m=3 s=12 a=B n=\\archive\\2001 l=BACKUP-7 v=Volume Set f=UDF 2.01 t=DVD-RAM "
        "x=162 MByte X=170393600 z=25% y=650 MByte Y=681574400 o=disabled");
}

TEST(SideRow, HasNoMagazineInAJukeboxOfOne) {
    const SideRecord side{sizeof(SideRecord), 6, 255, 2, 33};
    SideKey key = kSideB;
    key.side = 0;
    EXPECT_EQ(RowOf([&](CKrvQueryTable& table) { table.AddSideRow(Tower(1), key, side, Backup()); }),
              "I=33 L=Tower\\12.A s=12 a=A n=\\archive\\2001 l=BACKUP-7 v=Volume Set f=UDF 2.01 "
              "x=162 MByte X=170393600 z=25% y=650 MByte Y=681574400 o=disabled");
}

TEST(SideRow, CarriesItsStatesInCellsThatNoLetterSelects) {
    const SideRecord side{sizeof(SideRecord), 4, 12, 3, 33};
    const auto add = [&](CKrvQueryTable& table) { table.AddSideRow(Tower(4), kSideB, side, Backup()); };
    EXPECT_EQ(HiddenCellOf(27, add), "Closed.");
    EXPECT_EQ(HiddenCellOf(28, add), "Blank Side,");
    const auto addVolume = [](CKrvQueryTable& table) { table.AddVolumeRow(Backup()); };
    EXPECT_EQ(HiddenCellOf(27, addVolume), "none");
    EXPECT_EQ(HiddenCellOf(28, addVolume), "none");
}

TEST(QueryTable, ShowsSideSlotAndVolumeRowsInOneTable) {
    CKrvQueryTable table;
    table.SetMaxWidth(79);
    EXPECT_TRUE(table.SetColumnLetters("NmsaIotz"));
    EXPECT_TRUE(table.SetSortLetters("ms"));
    const SideRecord side{sizeof(SideRecord), 6, 12, 2, 33};
    table.AddSideRow(Tower(4), kSideB, side, Backup());
    table.AddSlotRow(Tower(4), {sizeof(SlotKey), 11, 2, 9}, {sizeof(SlotRecord), 2, 255});
    table.AddVolumeRow(Backup());
    // Jukebox 7, Magazine 8, Slot 4, Side 4, Vol ID 6, Status 11 ("scan failed"), Type 7, Used Capa 9: 56;
    // with 16 blanks and 7 separators 79. 79 - 23 = 56 is not more than 56, so fitting looks for elastic
    // columns: there are none. The last column does not count towards the limit with its separator; it fits.
    EXPECT_EQ(OutputOf([&] { table.Print(); }),
              Lines({
                  " Jukebox | Magazine | Slot | Side | Vol ID |   Status    |  Type   | Used Capa ",
                  "-------------------------------------------------------------------------------",
                  "         |          |      |      |     33 | disabled    |         |       25% ",
                  " Tower   |        3 |   10 |      |        | scan failed |         |           ",
                  "         |        3 |   12 | B    |     33 | disabled    | DVD-RAM |       25% ",
                  "",
              }));
}

TEST(QueryTable, KeepsTheCellsOfManyRowsApart) {
    CKrvQueryTable table;
    table.SetFormatted(false);
    EXPECT_TRUE(table.SetColumnLetters("Iov"));
    EXPECT_TRUE(table.SetSortLetters("I"));
    std::string expected;
    for (int32_t id = 1; id <= 1000; ++id) {
        VolumeInfo volume;
        volume.volumeId = id;
        volume.record.state = static_cast<uint32_t>(id % 3);
        volume.record.type = static_cast<uint32_t>(id % 2);
        table.AddVolumeRow(volume);
        static constexpr const char* kStates[] = {"active", "disabled", "offline"};
        static constexpr const char* kTypes[] = {"Disc", "Mirror"};
        expected += std::to_string(id) + "|" + kStates[id % 3] + "|" + kTypes[id % 2] + "\n";
    }
    EXPECT_EQ(OutputOf([&] { table.Print(); }), expected);
}

}  // namespace
