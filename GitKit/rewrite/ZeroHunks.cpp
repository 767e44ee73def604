// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/rewrite/ZeroHunks.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/GitRepository.h"

#include <algorithm>

namespace gitkit {

namespace {

int takeNumber(std::string_view& text)
{
    std::size_t digits = 0;
    while (digits < text.size() && text[digits] >= '0' && text[digits] <= '9')
        ++digits;
    const int number = readNumber(text.substr(0, digits));
    text.remove_prefix(digits);
    return number;
}

void takeRange(std::string_view& text, int& start, int& count)
{
    text.remove_prefix(std::min<std::size_t>(text.size(), 1)); // the sign
    start = takeNumber(text);
    count = 1;
    if (text.starts_with(',')) {
        text.remove_prefix(1);
        count = takeNumber(text);
    }
    text.remove_prefix(std::min<std::size_t>(text.size(), 1));
}

std::vector<std::string> diffCommand()
{
    return {"diff", "-U0", "--full-index", "--no-renames", "--no-ext-diff", "--no-textconv", "--no-color"};
}

/// Returns the line of an older text that a line of HEAD is; nullopt where it is not there yet.
std::optional<int> mappedLine(const std::vector<ZeroHunk>& since, int line)
{
    int shift = 0;
    for (const ZeroHunk& hunk : since) {
        const int first = hunk.newCount > 0 ? hunk.newStart : hunk.newStart + 1;
        if (line < first)
            break;
        if (line < first + hunk.newCount)
            return std::nullopt;
        shift += hunk.oldCount - hunk.newCount;
    }
    return line + shift;
}

/// Returns whether lines may come behind the first `above` ones, behind which HEAD has `line`.
bool isGap(const OlderText& text, int above, int line)
{
    const auto all = static_cast<int>(text.lines.size());
    if (above > 0 && (above > all || !text.lines[static_cast<std::size_t>(above - 1)].ends_with('\n')))
        return false;
    return above == all || mappedLine(text.since, line) == above + 1;
}

/// Returns whether a last line without an end would be the last one.
bool endsWell(const OlderText& text, const AbsorbHunk& hunk, int place)
{
    return hunk.come.empty() || hunk.come.back().ends_with('\n') ||
           static_cast<std::size_t>(place) + hunk.gone.size() == text.lines.size();
}

} // namespace

std::vector<ZeroHunk> zeroHunks(std::string_view diff)
{
    std::vector<ZeroHunk> hunks;
    std::string* last = nullptr;
    while (!diff.empty()) {
        const std::size_t end = std::min(diff.find('\n'), diff.size() - 1) + 1;
        const std::string_view line = diff.substr(0, end);
        diff.remove_prefix(end);
        if (line.starts_with("@@ -")) {
            std::string_view ranges = line.substr(3);
            hunks.emplace_back();
            last = nullptr;
            takeRange(ranges, hunks.back().oldStart, hunks.back().oldCount);
            takeRange(ranges, hunks.back().newStart, hunks.back().newCount);
        } else if (last && line.starts_with('\\')) {
            last->pop_back(); // this line has no end
        } else if (!hunks.empty() && (line.starts_with('-') || line.starts_with('+'))) {
            auto& lines = line.starts_with('-') ? hunks.back().gone : hunks.back().come;
            last = &lines.emplace_back(line.substr(1));
        }
    }
    return hunks;
}

std::vector<ZeroHunk> stagedHunks(const GitRepository& repo, const std::string& path)
{
    std::vector<std::string> command = diffCommand();
    command.insert(command.end(), {"--cached", "HEAD", "--", path});
    RunOptions options;
    options.environment.emplace_back("GIT_LITERAL_PATHSPECS", "1");
    return zeroHunks(repo.runner().bytes(command, options));
}

std::vector<std::string> linesOfText(std::string_view text)
{
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
        lines.emplace_back(text.substr(0, end));
        text.remove_prefix(end);
    }
    return lines;
}

std::string textOf(const std::vector<std::string>& lines)
{
    std::string text;
    for (const std::string& line : lines)
        text += line;
    return text;
}

std::vector<std::string> blobsIn(const GitRepository& repo, const std::vector<std::string>& commits,
                                 const std::string& path)
{
    std::vector<std::string> blobs(commits.size());
    if (path.find('\n') != std::string::npos)
        return blobs; // not every git can be asked for it
    std::string asked;
    for (const std::string& commit : commits)
        asked += commit + ':' + path + '\n';
    const std::string answers = repo.runner().bytes({"cat-file", "--batch-check"}, {.input = asked});
    Pieces lines(answers, '\n');
    for (std::string& blob : blobs) {
        const std::string_view line = lines.next().value_or(std::string_view());
        const std::string_view hash = line.substr(0, line.find(' '));
        // Of one that is missing, the question comes back.
        if (hash.find(':') == std::string_view::npos && line.substr(hash.size()).starts_with(" blob "))
            blob = hash;
    }
    return blobs;
}

OlderText olderText(const GitRepository& repo, const std::string& blob, const std::string& now)
{
    OlderText text{.lines = linesOfText(repo.runner().bytes({"cat-file", "blob", blob})), .since = {}};
    if (blob == now)
        return text;
    std::vector<std::string> command = diffCommand();
    // Without hunks, lines would seem to stand where they always stood.
    command.insert(command.end(), {"--text", blob, now, "--"});
    text.since = zeroHunks(repo.runner().bytes(command));
    return text;
}

std::optional<int> placeIn(const OlderText& text, const AbsorbHunk& hunk)
{
    const auto above = hunk.line == 0 ? std::optional(0) : mappedLine(text.since, hunk.line);
    if (!above)
        return std::nullopt;
    if (hunk.gone.empty())
        return isGap(text, *above, hunk.line + 1) && endsWell(text, hunk, *above) ? above : std::nullopt;
    for (int index = 0; index < static_cast<int>(hunk.gone.size()); ++index) {
        const std::optional<int> line = mappedLine(text.since, hunk.line + index);
        if (line != *above + index || *line > static_cast<int>(text.lines.size()) ||
            text.lines[static_cast<std::size_t>(*line - 1)] != hunk.gone[static_cast<std::size_t>(index)])
            return std::nullopt;
    }
    return endsWell(text, hunk, *above - 1) ? std::optional(*above - 1) : std::nullopt;
}

} // namespace gitkit
