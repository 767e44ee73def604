// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/RefListing.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/DisplayOrder.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/parsers/RefParser.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitMessages.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace gitkit {

namespace {

/// Returns the line of HEAD as `git show-ref --head` prints it, or nothing when HEAD has no commit.
std::string headLine(const GitRunner& runner)
{
    const GitOutput output = runner.output({"rev-parse", "--verify", "--quiet", "HEAD"});
    const std::string hash(withoutLineEnd(output.stdoutBytes));
    return output.status == 0 && !hash.empty() ? hash + " HEAD\n" : std::string();
}

/// Returns for each line of refs the hash of the object that its tag leads to, in the same order.
std::vector<std::string> peeledHashes(const GitRunner& runner, const std::vector<std::string_view>& lines)
{
    std::string wanted;
    for (const std::string_view line : lines)
        wanted.append(line.substr(0, line.find(' '))).append("^{}\n");
    const std::string answers = runner.bytes({"cat-file", "--batch-check=%(objectname)"}, {.input = std::move(wanted)});
    std::vector<std::string> hashes;
    Pieces pieces(answers, '\n');
    while (const auto answer = pieces.next())
        hashes.emplace_back(*answer);
    return hashes;
}

/// Does what `git show-ref --head --dereference` does, which ends at the first ref that it cannot read.
std::string readableTips(const GitRunner& runner)
{
    const std::string listed = runner.bytes({"for-each-ref", "--format=%(objectname) %(refname)"});
    std::vector<std::string_view> lines;
    Pieces pieces(listed, '\n');
    while (const auto line = pieces.next())
        lines.push_back(*line);
    const std::vector<std::string> peeled = peeledHashes(runner, lines);
    std::string result = headLine(runner);
    for (std::size_t index = 0; index < lines.size(); ++index) {
        const std::string_view hash = lines[index].substr(0, lines[index].find(' '));
        result.append(lines[index]).push_back('\n');
        // A missing object is answered with its name and a word.
        const bool isTag = index < peeled.size() && peeled[index] != hash && peeled[index].size() == hash.size();
        if (isTag)
            result.append(peeled[index]).append(lines[index].substr(hash.size())).append("^{}\n");
    }
    return result;
}

std::string linesOf(std::string_view text, std::string_view beginning)
{
    std::string found;
    Pieces lines(text, '\n');
    while (const auto line = lines.next()) {
        if (line->starts_with(beginning))
            found.append(*line).push_back('\n');
    }
    return found;
}

} // namespace

RefListing listRefs(const GitRepository& repo)
{
    const GitOutput output = repo.runner().accepted(
        {"for-each-ref", RefParser::listingFormat, "refs/heads", "refs/remotes", "refs/tags", "refs/replace"});
    RefListing listing{.refs = RefParser::parseListing(output.stdoutBytes),
                       .replacements = linesOf(output.stdoutBytes, "refs/replace/")};
    for (const std::string& name : brokenRefs(output)) {
        if (std::optional<GitRef> ref = RefParser::unreadable(name))
            listing.refs.push_back(std::move(*ref));
    }
    sortForDisplay(listing.refs);
    return listing;
}

RefTips readRefTips(const GitRepository& repo)
{
    const GitRunner& runner = repo.runner();
    RefTips tips;
    tips.headRef = withoutLineEnd(runner.output({"symbolic-ref", "--quiet", "HEAD"}).stdoutBytes);
    try {
        // The exit status is 1 when there is no ref.
        tips.lines = runner.bytes({"show-ref", "--head", "--dereference"}, {.accepting = {0, 1}});
    } catch (const GitError&) {
        tips.lines = readableTips(runner);
    }
    return tips;
}

} // namespace gitkit
