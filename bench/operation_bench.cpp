// What single operations cost: cells shown and compared, words of the command line recognised, library
// calls prepared. The same operations are counted in instructions by count_instructions.cpp.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "krvcmd/console/table/table_item.h"
#include "krvcmd/frontend/grammar/command_grammar.h"
#include "krvcmd/frontend/grammar/keyword.h"
#include "krvcmd/frontend/parsing/token.h"
#include "krvcmd/service/sdk/call.h"

namespace {

using namespace Ostrel::UI::Console;

void Render(benchmark::State& state, const CTableItem& cell) {
    const auto width = static_cast<uint32_t>(state.range(0));
    TextLine out;
    for (auto _ : state) {
        out.Truncate(0);
        cell.Render(out, width);
        benchmark::DoNotOptimize(out.View().data());
    }
}

void RenderText(benchmark::State& state) {
    Render(state, CTableStringItem(1, "Disc-12"));
}

void RenderNumber(benchmark::State& state) {
    Render(state, CTableIntItem(2, 4'700'372'992, /*withUnit=*/false));
}

void RenderDirectory(benchmark::State& state) {
    Render(state, CTableDirItem(3, R"(archive\2005\volume12)"));
}

void Compare(benchmark::State& state, const CTableItem& left, const CTableItem& right) {
    for (auto _ : state)
        benchmark::DoNotOptimize(left.Compare(right));
}

void CompareTexts(benchmark::State& state) {
    Compare(state, CTableStringItem(1, "Disc-12"), CTableStringItem(1, "Disc-9"));
}

void CompareNumbers(benchmark::State& state) {
    Compare(state, CTableIntItem(2, 4'700'372'992, /*withUnit=*/false),
            CTableIntItem(2, 4'700'372'993, /*withUnit=*/false));
}

void FindKeyword(benchmark::State& state, std::string_view word) {
    for (auto _ : state)
        benchmark::DoNotOptimize(krvcmd::FindKeyword(krvcmd::CommandGrammar::TopLevel(), word));
}

void SplitValue(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(krvcmd::SplitValue("@17,19-25,33"));
}

void PrepareCallContext(benchmark::State& state) {
    for (auto _ : state) {
        krvcmd::CallContext context;
        benchmark::DoNotOptimize(context.Get());
    }
}

// The argument is the width of the field: one that the text fits into, and one that it does not.
BENCHMARK(RenderText)->Arg(20)->Arg(5);
BENCHMARK(RenderNumber)->Arg(20)->Arg(5);
BENCHMARK(RenderDirectory)->Arg(30)->Arg(10);
BENCHMARK(CompareTexts);
BENCHMARK(CompareNumbers);
BENCHMARK_CAPTURE(FindKeyword, Whole, "query");
BENCHMARK_CAPTURE(FindKeyword, Beginning, "qu");
BENCHMARK(SplitValue);
BENCHMARK(PrepareCallContext);

}  // namespace

BENCHMARK_MAIN();
