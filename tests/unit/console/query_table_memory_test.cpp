#include <gtest/gtest.h>

#include <new>
#include <set>

#include "krvcmd/console/query/query_table.h"
#include "tests/unit/console/support/failing_allocation.h"

namespace {

using namespace Ostrel::UI::Console;
using krvcmd::test::FailingAllocation;

krvcmd::VolumeInfo LongNamedVolume() {
    krvcmd::VolumeInfo volume;
    volume.volumeId = 33;
    std::string_view("a label that does not fit into a cell").copy(volume.record.label, 255);
    std::string_view("a file system of that kind").copy(volume.record.fileSystem, 29);
    volume.aspects = {R"(\a\directory\with\a\long\name)"};
    return volume;
}

krvcmd::JukeboxInfo LongNamedJukebox() {
    krvcmd::JukeboxInfo jukebox;
    std::string_view("a jukebox with a long name").copy(jukebox.record.name, 51);
    jukebox.record.magazineCount = 2;
    return jukebox;
}

std::set<uint32_t> ColumnIdsOf(const CTableRow& row) {
    std::set<uint32_t> ids;
    for (const CTableItem* item : row.GetItems())
        ids.insert(item->GetColumnId());
    return ids;
}

TEST(QueryTableMemory, LeavesACellOutForWhichThereIsNone) {
    CKrvQueryTable complete;
    ASSERT_TRUE(complete.SetColumnLetters("I"));
    complete.AddSideRow(LongNamedJukebox(), {}, {}, LongNamedVolume());
    const std::set<uint32_t> allIds = ColumnIdsOf(*complete.GetRowsInOrder().front());
    ASSERT_EQ(allIds.size(), 18U);

    std::set<uint32_t> missing;
    bool reachedTheEnd = false;
    for (size_t number = 1; !reachedTheEnd; ++number) {
        const krvcmd::JukeboxInfo jukebox = LongNamedJukebox();
        const krvcmd::VolumeInfo volume = LongNamedVolume();
        CKrvQueryTable table;
        ASSERT_TRUE(table.SetColumnLetters("I"));
        {
            const FailingAllocation failure(number);
            try {
                table.AddSideRow(jukebox, {}, {}, volume);
            } catch (const std::bad_alloc&) {
                // No memory for the row itself.
                EXPECT_TRUE(table.GetRowsInOrder().empty());
                continue;
            }
            reachedTheEnd = !failure.HasFailed();
        }
        const std::vector<const CTableRow*> rows = table.GetRowsInOrder();
        ASSERT_EQ(rows.size(), 1U);
        const std::set<uint32_t> ids = ColumnIdsOf(*rows.front());
        EXPECT_GE(ids.size(), allIds.size() - 1) << "allocation " << number;
        for (const uint32_t id : allIds) {
            if (!ids.contains(id)) missing.insert(id);
        }
    }
    // Location, label, file system and directory need memory of their own in every table.
    for (const uint32_t id : {9U, 15U, 10U, 14U})
        EXPECT_TRUE(missing.contains(id)) << id;
}

}  // namespace
