// What the console costs: rows added to a query table, put into order and printed.
//
// Standard output goes to the null device while a benchmark prints.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "krvcmd/console/query/query_table.h"

namespace {

using namespace Ostrel::UI::Console;

constexpr std::string_view kVolumeColumns = "ILotnfzylv";
constexpr std::string_view kVolumeSort = "NJmsalfv";

// One volume in a jukebox of four magazines with fifty slots; labels do not follow the order of arrival.
struct VolumeOnASide {
    krvcmd::JukeboxInfo jukebox;
    SideKey key{};
    SideRecord side{};
    krvcmd::VolumeInfo volume;
};

VolumeOnASide MakeVolume(int32_t index) {
    VolumeOnASide result;
    const int32_t jukeboxId = index / 200 + 1;
    const uint64_t spread = static_cast<uint64_t>(index) * 7919 % 1'000'003;
    result.jukebox.key = {sizeof(JukeboxKey), jukeboxId};
    result.jukebox.record.magazineCount = 4;
    std::snprintf(result.jukebox.record.name, sizeof result.jukebox.record.name, "Tower%d", jukeboxId);
    result.key = {sizeof(SideKey), jukeboxId, index % 200 / 50, index % 50, 0};
    result.side = {sizeof(SideRecord), 6, 5, 1, index + 1};
    result.volume.volumeId = index + 1;
    VolumeRecord& record = result.volume.record;
    std::snprintf(record.label, sizeof record.label, "Label-%llu", static_cast<unsigned long long>(spread));
    std::snprintf(record.fileSystem, sizeof record.fileSystem, "UDF");
    record.totalCapacity = 4'700'372'992;
    record.freeCapacity = record.totalCapacity / 100 * (spread % 101);
    result.volume.aspects = {"archive\\volume" + std::to_string(index)};
    return result;
}

std::vector<VolumeOnASide> MakeVolumes(int64_t count) {
    std::vector<VolumeOnASide> volumes;
    volumes.reserve(static_cast<size_t>(count));
    for (int64_t index = 0; index < count; ++index) {
        volumes.push_back(MakeVolume(static_cast<int32_t>(index)));
    }
    return volumes;
}

std::unique_ptr<CKrvQueryTable> MakeTable(std::string_view sort) {
    auto table = std::make_unique<CKrvQueryTable>();
    if (!table->SetColumnLetters(kVolumeColumns) || !table->SetSortLetters(sort)) return nullptr;
    return table;
}

void AddVolumes(CKrvQueryTable& table, const std::vector<VolumeOnASide>& volumes) {
    for (const VolumeOnASide& item : volumes)
        table.AddSideRow(item.jukebox, item.key, item.side, item.volume);
}

void AddRows(benchmark::State& state) {
    const std::vector<VolumeOnASide> volumes = MakeVolumes(state.range(0));
    for (auto iteration : state) {
        const std::unique_ptr<CKrvQueryTable> table = MakeTable(kVolumeSort);
        AddVolumes(*table, volumes);
        benchmark::DoNotOptimize(table->GetColumnUsage().data());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void OrderRows(benchmark::State& state, std::string_view sort) {
    const std::vector<VolumeOnASide> volumes = MakeVolumes(state.range(0));
    const std::unique_ptr<CKrvQueryTable> table = MakeTable(sort);
    AddVolumes(*table, volumes);
    for (auto iteration : state)
        benchmark::DoNotOptimize(table->GetRowsInOrder().data());
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void PrintRows(benchmark::State& state, bool formatted) {
    const std::vector<VolumeOnASide> volumes = MakeVolumes(state.range(0));
    const std::unique_ptr<CKrvQueryTable> table = MakeTable("");
    table->SetFormatted(formatted);
    AddVolumes(*table, volumes);
    for (auto iteration : state)
        table->Print();
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// All of it: what a query of all volumes leaves to the console.
void QueryVolumes(benchmark::State& state) {
    const std::vector<VolumeOnASide> volumes = MakeVolumes(state.range(0));
    for (auto iteration : state) {
        const std::unique_ptr<CKrvQueryTable> table = MakeTable(kVolumeSort);
        AddVolumes(*table, volumes);
        table->Print();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(AddRows)->RangeMultiplier(10)->Range(1'000, 100'000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(OrderRows, ByPlace, kVolumeSort)
    ->RangeMultiplier(10)
    ->Range(1'000, 100'000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(OrderRows, ByLabel, "l")
    ->RangeMultiplier(10)
    ->Range(1'000, 100'000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(PrintRows, Formatted, true)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(PrintRows, Plain, false)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(QueryVolumes)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    // The reporter writes to standard error, the tables vanish.
    benchmark::Initialize(&argc, argv);
    if (std::freopen("/dev/null", "w", stdout) == nullptr) return 1;
    benchmark::ConsoleReporter reporter;
    reporter.SetOutputStream(&std::cerr);
    reporter.SetErrorStream(&std::cerr);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
