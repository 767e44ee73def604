// SPDX-License-Identifier: GPL-3.0-or-later
// What diffs, patches of their parts and blame cost beside git's own time to print them.

#include "GitKit/PartialPatch.h"
#include "GitKit/parsers/BlameParser.h"
#include "GitKit/parsers/DiffParser.h"
#include "bench/GitComparison.h"

#include <fstream>
#include <set>

namespace {

using namespace gitkit;
using namespace gitkit::comparison;

std::string lines(int count, int every, const std::string& changed)
{
    std::string text;
    for (int number = 0; number < count; ++number)
        text += "    const auto value" + std::to_string(number) + " = compute(" +
                (number % every == 0 ? changed : "old") + ");\n";
    return text;
}

/// A file with many small changes, one with one long change, and one whose lines come from 200 commits.
const fs::path& diffRepository()
{
    static const fs::path path = [] {
        const auto inlineFile = [](const std::string& name, const std::string& text) {
            return "M 100644 inline " + name + "\ndata " + std::to_string(text.size()) + "\n" + text + "\n";
        };
        std::string stream = commitText("main", 1, "one", {});
        stream.pop_back();
        stream += inlineFile("hunks", lines(2'000, 20, "old")) + inlineFile("long", lines(2'500, 1, "old")) +
                  inlineFile("blamed", lines(20'000, 1, "old")) + "\n";
        for (int mark = 2; mark <= 200; ++mark) {
            stream += commitText("main", mark, "change " + std::to_string(mark), {":" + std::to_string(mark - 1)});
            stream.pop_back();
            stream += inlineFile("blamed", lines(20'000, mark, "new" + std::to_string(mark))) + "\n";
        }
        const fs::path made = workshop().makeRepository("diffs", stream);
        GitRunner(made).run({"reset", "-q", "--hard"});
        std::ofstream(made / "hunks") << lines(2'000, 20, "new");
        std::ofstream(made / "long") << lines(2'500, 1, "new");
        return made;
    }();
    return path;
}

Printed printedDiff(const std::string& file) { return print(diffRepository(), {"diff", "-M", "--", file}); }

void parseDiff(benchmark::State& state)
{
    static const Printed printed = printedDiff("long");
    compareWithGit(state, printed.seconds, [&] { return DiffParser::parse(printed.bytes, 6'000).lines; });
}

void buildPatch(benchmark::State& state)
{
    static const Printed printed = printedDiff("hunks");
    const ParsedDiff diff = DiffParser::parse(printed.bytes);
    std::set<int> selected;
    for (const DiffLine& line : diff.lines) {
        if (line.kind == DiffLine::Kind::addition)
            selected.insert(line.id);
    }
    compareWithGit(state, printed.seconds,
                   [&] { return partialPatch(diff, selected, PatchDirection::forward).value(); });
}

void parseBlame(benchmark::State& state)
{
    static const Printed printed = print(diffRepository(), {"blame", "--porcelain", "--", "blamed"});
    compareWithGit(state, printed.seconds, [&] { return BlameParser::parse(printed.bytes); });
}

BENCHMARK(parseDiff)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(buildPatch)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(parseBlame)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
