#include <algorithm>
#include <cstdio>
#include <string>

#include "krvcmd/console/query/query_table.h"
#include "tests/fuzz/bytes_reader.h"
#include "tests/reliability/support/program_run.h"

namespace krvcmd::fuzz {
namespace {

using Ostrel::UI::Console::CKrvQueryTable;

template <size_t N>
void FillField(BytesReader& reader, char (&field)[N]) {
    const std::string_view text = reader.TakeText(N);
    std::copy(text.begin(), text.end(), field);
}

JukeboxInfo TakeJukebox(BytesReader& reader) {
    JukeboxInfo jukebox;
    jukebox.key = {sizeof(JukeboxKey), reader.Take<int32_t>()};
    jukebox.record.size = sizeof(JukeboxRecord);
    jukebox.record.identity.scsiAddress[1] = reader.Take<int32_t>();
    FillField(reader, jukebox.record.identity.vendor);
    FillField(reader, jukebox.record.identity.product);
    FillField(reader, jukebox.record.identity.revision);
    FillField(reader, jukebox.record.name);
    jukebox.record.enabled = reader.Take<uint8_t>();
    jukebox.record.magazineCount = reader.Take<int32_t>();
    jukebox.record.driveCount = reader.Take<uint8_t>() - 1;
    jukebox.record.slotCount = reader.Take<int32_t>();
    return jukebox;
}

VolumeInfo TakeVolume(BytesReader& reader) {
    VolumeInfo volume;
    volume.volumeId = reader.Take<int32_t>();
    volume.record.type = reader.Take<uint8_t>();
    volume.record.state = reader.Take<uint8_t>();
    volume.record.totalCapacity = reader.Take<uint64_t>();
    volume.record.freeCapacity = reader.Take<uint64_t>();
    FillField(reader, volume.record.fileSystem);
    FillField(reader, volume.record.label);
    if (reader.Take<uint8_t>() % 2 == 1) volume.aspects.emplace_back(reader.TakeText(255));
    return volume;
}

void AddRow(BytesReader& reader, CKrvQueryTable& table) {
    const auto kind = reader.Take<uint8_t>();
    if (kind % 6 == 5) {
        table.AddVolumeRow(TakeVolume(reader));
        return;
    }
    const JukeboxInfo jukebox = TakeJukebox(reader);
    const auto number = reader.Take<int32_t>();
    const auto state = reader.Take<uint32_t>();
    const auto medium = reader.Take<uint32_t>();
    switch (kind % 6) {
        case 0:
            table.AddJukeboxRow(jukebox);
            break;
        case 1:
            table.AddMagazineRow(jukebox, {sizeof(MagazineKey), 1, number},
                                 {sizeof(MagazineRecord), static_cast<int32_t>(medium), state});
            break;
        case 2: {
            DriveRecord drive{};
            drive.identity = jukebox.record.identity;
            drive.enabled = state;
            table.AddDriveRow(jukebox, {sizeof(DriveKey), 1, number}, drive);
            break;
        }
        case 3:
            table.AddSlotRow(jukebox, {sizeof(SlotKey), 1, number, number},
                             {sizeof(SlotRecord), state, medium});
            break;
        default:
            table.AddSideRow(jukebox, {sizeof(SideKey), 1, number, number, static_cast<int32_t>(state)},
                             {sizeof(SideRecord), state, medium, state, number}, TakeVolume(reader));
    }
}

// Column letters, and now and then another character.
std::string TakeLetters(BytesReader& reader) {
    constexpr std::string_view kLetters = "SDMIJNLmdsaCRPFnlvftxXzyYo+-Q";
    std::string letters;
    for (const char byte : reader.TakeText(20))
        letters += kLetters[static_cast<unsigned char>(byte) % kLetters.size()];
    return letters;
}

}  // namespace

}  // namespace krvcmd::fuzz

// Prints the query table with random records, columns, order, separator and width.
int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace krvcmd::fuzz;
    static krvcmd::reliability::CapturedStream output(stdout);
    // Wider tables only cost time.
    constexpr uint32_t kWidest = 2000;
    BytesReader reader(data, size);
    CKrvQueryTable table;
    const uint32_t width = reader.Take<uint16_t>() % kWidest;
    const bool isFormatted = reader.Take<uint8_t>() % 4 != 0;
    table.SetMaxWidth(width);
    table.SetFormatted(isFormatted);
    table.SetSeparator(reader.TakeText(8));
    (void)table.SetColumnLetters(TakeLetters(reader));
    (void)table.SetSortLetters(TakeLetters(reader));
    constexpr int kMostRows = 200;
    int rows = 0;
    for (; !reader.AtEnd() && rows < kMostRows; ++rows)
        AddRow(reader, table);

    output.Begin();
    table.Print();
    const bool isWritten = table.Finish().IsOk();
    const std::string text = output.End();
    Require(isWritten, "everything is written");

    const bool isEmpty = rows == 0 || table.GetColumnCount() == 0;
    Require(isEmpty == text.empty(), "a table without rows or columns prints nothing");
    if (isEmpty) return 0;
    // Header, underline and the empty line after the table.
    const int lines = isFormatted ? rows + 3 : rows;
    const auto breaks = static_cast<int>(std::count(text.begin(), text.end(), '\n'));
    const bool bringsBreaks = TextOf(data, size).find('\n') != std::string_view::npos;
    Require(breaks >= lines, "each row has its line");
    Require(breaks == lines || bringsBreaks, "a row is one line");
    return 0;
}
