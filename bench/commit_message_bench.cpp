// SPDX-License-Identifier: GPL-3.0-or-later
// What is sent for a commit message: taking the first characters out of a diff, however long it is.

#include "app/services/ai/CommitMessageAI.h"

#include <benchmark/benchmark.h>

#include <string>

namespace {

std::string repeated(std::string_view piece, std::size_t bytes)
{
    std::string text;
    text.reserve(bytes + piece.size());
    while (text.size() < bytes)
        text += piece;
    return text;
}

/// The argument: mebibytes of diff.
void cut(benchmark::State& state, std::string_view line)
{
    const std::string diff = repeated(line, static_cast<std::size_t>(state.range(0)) << 20);
    for ([[maybe_unused]] auto iteration : state)
        benchmark::DoNotOptimize(plovik::commitMessageAI::request("M\tfile", diff));
}

BENCHMARK_CAPTURE(cut, code, "+    const auto value = reader.parse(input, Options{.depth = 4}); // for now\n")
    ->Arg(1)
    ->Arg(200)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(cut, umlauts, "+    // Größe der Änderung über alle Zöpfe, für später und für früher\n")
    ->Arg(1)
    ->Arg(200)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(cut, chinese, "更改的大小以及原因都写在这里")->Arg(2)->Arg(200)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(cut, families, "👨‍👩‍👧‍👦")->Arg(10)->Arg(200)->Unit(benchmark::kMillisecond);

} // namespace
