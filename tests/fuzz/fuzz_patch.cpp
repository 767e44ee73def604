// SPDX-License-Identifier: GPL-3.0-or-later
// A patch of parts is itself a diff: it has the selected changes, all of them and no others, with counts that agree
// with its headers.

#include "GitKit/PartialPatch.h"
#include "GitKit/parsers/DiffParser.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

/// Whether every hunk holds as many lines of either side as its header says.
bool countsAgree(const gitkit::ParsedDiff& patch)
{
    using Kind = gitkit::DiffLine::Kind;
    int old = 0;
    int now = 0;
    for (const gitkit::DiffLine& line : patch.lines) {
        if (line.kind == Kind::hunk) {
            int oldStart = 0;
            int newStart = 0;
            if (old != 0 || now != 0 ||
                std::sscanf(line.text.c_str(), "@@ -%d,%d +%d,%d @@", &oldStart, &old, &newStart, &now) != 4)
                return false;
        }
        old -= line.kind == Kind::deletion || line.kind == Kind::context ? 1 : 0;
        now -= line.kind == Kind::addition || line.kind == Kind::context ? 1 : 0;
    }
    return old == 0 && now == 0;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2)
        return 0;
    // The first byte chooses the direction and, bit by bit, the lines; the rest is the diff.
    const unsigned choice = data[0];
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    const gitkit::ParsedDiff diff = gitkit::DiffParser::parse(bytes);
    std::set<int> selected;
    for (const gitkit::DiffLine& line : diff.lines) {
        if (((choice >> (static_cast<unsigned>(line.id) % 7U)) & 1U) != 0)
            selected.insert(line.id);
    }
    const bool forward = (choice & 0x80U) != 0;
    const auto patch = gitkit::partialPatch(
        diff, selected, forward ? gitkit::PatchDirection::forward : gitkit::PatchDirection::reverse);
    if (!patch)
        return 0;
    const gitkit::ParsedDiff made = gitkit::DiffParser::parse(*patch, 100'000);
    if (!made.patchHeader || made.lines.empty() || !countsAgree(made))
        std::abort();
    return 0;
}
