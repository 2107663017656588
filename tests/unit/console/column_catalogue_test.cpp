#include "krvcmd/console/query/column_catalogue.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace Ostrel::UI::Console;

TEST(ColumnCatalogue, ListsTheLettersInTheOrderOfTheHelp) {
    std::string letters;
    for (const ColumnInfo& column : GetColumnCatalogue())
        letters += column.letter;
    EXPECT_EQ(letters, "SDMIJNLmdsaCRPFnlvftxXzyYo");
}

struct ColumnCase {
    std::string_view letter;
    uint32_t id;
    std::string_view title;
    int32_t minWidth;
    int32_t maxWidth;
    std::string_view description;
};

TEST(ColumnCatalogue, DescribesEveryColumn) {
    const ColumnCase cases[] = {
        {"S", 17, "Slots", 0, 0, "Number of slots in magazine or jukebox."},
        {"D", 18, "Drives", 0, 0, "Number of drives in the jukebox."},
        {"M", 20, "Magazines", 0, 0, "Number of magazines in the jukebox."},
        {"I", 2, "Vol ID", 0, 0, "Unique identifier of the volume."},
        {"J", 5, "Jbx ID", 0, 0, "Unique identifier of the jukebox."},
        {"N", 1, "Jukebox", 0, 0, "Name of the jukebox."},
        {"L", 9, "Location", 10, 0, "Formatted location of a disc in a jukebox."},
        {"m", 6, "Magazine", 0, 0, "Number of the magazine."},
        {"d", 19, "Drive", 0, 0, "Number of the drive."},
        {"s", 7, "Slot", 0, 0, "Number of the slot."},
        {"a", 8, "Side", 0, 0, "Identifies the disc side (A or B)."},
        {"C", 24, "SCSI Address", 0, 0, "SCSI address of the jukebox or drive."},
        {"R", 23, "Revision", 0, 0, "Firmware revision of jukebox or drive."},
        {"P", 22, "Product", 0, 0, "Device type (product and vendor ID) of jukebox or drive."},
        {"F", 21, "Flipper", 0, 0, "Shows if the jukebox supports double sided media."},
        {"n", 14, "Directory", 10, 40, "Shows the directory name for this volume (even if not active)."},
        {"l", 15, "Label", 0, 0, "Volume label of the volume."},
        {"v", 16, "Volume Type", 0, 0, "Volume Type (Volume Set container or optical disc)."},
        {"f", 10, "File System", 11, 0, "Type of the file system on the volume."},
        {"t", 4, "Type", 0, 0, "Media type of a disc."},
        {"x", 11, "Used Capa", 0, 0, "Used capacity on a volume with dimension (MByte, GByte, ...)."},
        {"X", 26, "Used Capa", 0, 0, "Used capacity in bytes without dimension."},
        {"z", 12, "Used Capa", 0, 0, "Used capacity in per cent from total capacity."},
        {"y", 13, "Total Capa", 0, 0, "Total capacity on a volume with dimension."},
        {"Y", 25, "Total Capa", 0, 0, "Total capacity in bytes without dimension."},
        {"o", 3, "Status", 0, 0, "Status of the item."},
    };
    EXPECT_EQ(std::size(cases), GetColumnCatalogue().size());
    for (const ColumnCase& c : cases) {
        const ColumnInfo& info = FindColumnInfo(c.letter);
        EXPECT_EQ(info.columnId, c.id) << c.letter;
        EXPECT_EQ(info.letter, c.letter);
        EXPECT_EQ(info.title, c.title) << c.letter;
        EXPECT_EQ(info.minWidth, c.minWidth) << c.letter;
        EXPECT_EQ(info.maxWidth, c.maxWidth) << c.letter;
        EXPECT_EQ(info.description, c.description) << c.letter;
    }
}

TEST(ColumnCatalogue, GivesTheEmptyRowForAnythingElse) {
    for (const std::string_view letter : {"", "Q", "ö", "IL", "+", "-", " "}) {
        const ColumnInfo& info = FindColumnInfo(letter);
        EXPECT_EQ(info.columnId, 0U) << letter;
        EXPECT_EQ(info.letter, "");
        EXPECT_EQ(info.title, "");
        EXPECT_EQ(info.description, "");
        EXPECT_EQ(info.minWidth, 0);
        EXPECT_EQ(info.maxWidth, 0);
    }
}

TEST(ColumnCatalogue, MakesColumnsWithTitleWidthAndLimits) {
    const CTableColumn column = MakeColumn("n");
    EXPECT_EQ(column.GetColumnId(), 14U);
    EXPECT_EQ(column.GetTitle(), "Directory");
    EXPECT_EQ(column.GetWidth(/*useTitle=*/false), 9U);
    EXPECT_EQ(column.GetMinWidth(), 10);
    EXPECT_EQ(column.GetMaxWidth(), 40);
    EXPECT_EQ(MakeColumn("o").GetMinWidth(), 0);
    EXPECT_EQ(MakeColumn("Q").GetColumnId(), 0U);
}

TEST(ColumnCatalogue, HasOneColumnWhoseCellsHideASign) {
    for (const ColumnInfo& column : GetColumnCatalogue())
        EXPECT_EQ(MakeColumn(column.letter).HidesSign(), column.letter == "z") << column.letter;
}

}  // namespace
