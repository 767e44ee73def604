// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/parsers/DiffParser.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using Kind = gitkit::DiffLine::Kind;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const gitkit::ParsedDiff diff = gitkit::DiffParser::parse(bytes, 200);
    if (diff.lines.size() > 200)
        std::abort();
    int additions = 0;
    int deletions = 0;
    for (std::size_t i = 0; i < diff.lines.size(); ++i) {
        const gitkit::DiffLine& line = diff.lines[i];
        additions += line.kind == Kind::addition ? 1 : 0;
        deletions += line.kind == Kind::deletion ? 1 : 0;
        if (line.id != static_cast<int>(i) || bytes.find(line.bytes()) == std::string_view::npos)
            std::abort();
    }
    if (additions != diff.additions || deletions != diff.deletions)
        std::abort();
    return 0;
}
