// How many instructions single operations take. Runs under callgrind, which writes one dump for each
// operation, named after it; scripts/bench --instructions reads them:
//
//     valgrind --tool=callgrind --collect-atstart=no --dump-instr=no count_instructions

#include <valgrind/callgrind.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "krvcmd/console/query/query_table.h"
#include "krvcmd/console/table/table_item.h"
#include "krvcmd/frontend/grammar/command_grammar.h"
#include "krvcmd/frontend/grammar/keyword.h"
#include "krvcmd/frontend/parsing/token.h"
#include "krvcmd/service/sdk/call.h"

namespace {

using namespace Ostrel::UI::Console;

constexpr int kTimes = 1000;

// Keeps the compiler from leaving out what nobody looks at.
template <typename Value>
void Use(const Value& value) {
    asm volatile("" : : "r"(&value) : "memory");
}

// Counts `operation`, which is called with 0, 1, ..., after one call that is not counted.
template <typename Operation>
void Count(const char* name, Operation operation) {
    operation(0);
    CALLGRIND_TOGGLE_COLLECT;
    for (int i = 1; i <= kTimes; ++i)
        operation(i);
    CALLGRIND_TOGGLE_COLLECT;
    CALLGRIND_DUMP_STATS_AT(name);
}

struct Volume {
    krvcmd::JukeboxInfo jukebox;
    SideKey key{sizeof(SideKey), 1, 0, 0, 0};
    SideRecord side{sizeof(SideRecord), 6, 5, 1, 1};
    krvcmd::VolumeInfo info;
};

Volume MakeVolume() {
    Volume volume;
    volume.jukebox.record.magazineCount = 4;
    std::string_view("Tower").copy(volume.jukebox.record.name, 51);
    std::string_view("Label-000000").copy(volume.info.record.label, 255);
    std::string_view("UDF").copy(volume.info.record.fileSystem, 29);
    volume.info.record.totalCapacity = 4'700'372'992;
    volume.info.aspects = {"archive\\volume000000"};
    return volume;
}

// The same volume under another number, label and place.
void Renumber(Volume& volume, int number) {
    volume.info.volumeId = 100'000 + number;
    volume.key.slot = number % 50;
    volume.info.record.freeCapacity =
        volume.info.record.totalCapacity / 101 * static_cast<unsigned>(number % 101);
    const std::string digits = std::to_string(100'000 + number * 7919 % 100'000);
    digits.copy(volume.info.record.label + std::string_view("Label-").size(), 6);
}

void CountRows() {
    Volume volume = MakeVolume();
    CKrvQueryTable table;
    if (!table.SetColumnLetters("ILotnfzylv") || !table.SetSortLetters("l")) return;
    Count("AddRow", [&](int number) {
        Renumber(volume, number);
        table.AddSideRow(volume.jukebox, volume.key, volume.side, volume.info);
    });
    // The whole table of 1001 rows once: ordered, laid out, rendered and written.
    CALLGRIND_TOGGLE_COLLECT;
    table.Print();
    CALLGRIND_TOGGLE_COLLECT;
    CALLGRIND_DUMP_STATS_AT("Print");
}

void CountCells() {
    const CTableStringItem text(1, "Disc-12");
    const CTableStringItem otherText(1, "Disc-9");
    const CTableIntItem number(2, 4'700'372'992, /*withUnit=*/false);
    const CTableIntItem otherNumber(2, 4'700'372'993, /*withUnit=*/false);
    const CTableDirItem directory(3, R"(archive\2005\volume12)");
    TextLine out;
    const auto render = [&out](const CTableItem& cell, uint32_t width) {
        out.Truncate(0);
        cell.Render(out, width);
        Use(out);
    };
    Count("Render a text", [&](int) { render(text, 20); });
    Count("Render a text that does not fit", [&](int) { render(text, 5); });
    Count("Render a number", [&](int) { render(number, 20); });
    Count("Render a directory", [&](int) { render(directory, 30); });
    Count("Compare texts", [&](int) { Use(text.Compare(otherText)); });
    Count("Compare numbers", [&](int) { Use(number.Compare(otherNumber)); });
}

void CountWords() {
    Count("FindKeyword", [](int) { Use(krvcmd::FindKeyword(krvcmd::CommandGrammar::TopLevel(), "query")); });
    Count("FindKeyword of a beginning",
          [](int) { Use(krvcmd::FindKeyword(krvcmd::CommandGrammar::TopLevel(), "qu")); });
    Count("SplitValue", [](int) { Use(krvcmd::SplitValue("@17,19-25,33")); });
}

}  // namespace

int main() {
    if (std::freopen("/dev/null", "w", stdout) == nullptr) return 1;
    CountRows();
    CountCells();
    CountWords();
    Count("Prepare a call context", [](int) {
        krvcmd::CallContext context;
        Use(context);
    });
}
