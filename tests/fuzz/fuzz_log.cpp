// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/CommitGraph.h"
#include "GitKit/Text.h"
#include "GitKit/parsers/LogParser.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto commits = gitkit::LogParser::parse(bytes);
    for (const auto& commit : commits) {
        if (commit.hash.empty() || !gitkit::isUtf8(commit.subject) || !gitkit::isUtf8(commit.authorName))
            std::abort();
    }
    const auto graph = gitkit::CommitGraph::layout(commits);
    if (graph.rows.size() != commits.size() || graph.laneCount < 1)
        std::abort();
    if (const auto detail = gitkit::LogParser::parseDetail(bytes); detail && !gitkit::isUtf8(detail->message))
        std::abort();
    return 0;
}
