// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Pushing.h"

#include "GitKit/Text.h"
#include "GitKit/WebAddress.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/Divergence.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/RefArguments.h"
#include "GitKit/repository/RewrittenBranches.h"
#include "GitKit/repository/TellingCommand.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitMessages.h"

#include <algorithm>
#include <functional>
#include <map>
#include <set>

namespace gitkit {

namespace {

using Arguments = std::vector<std::string>;

constexpr int mostForeign = 20;
/// git compares each commit with each: above this it takes seconds.
constexpr int mostCompared = 150;
constexpr const char* mostTagged = "--max-count=20000";

std::string branchRef(const std::string& name) { return "refs/heads/" + name; }
std::string tagRef(const std::string& name) { return "refs/tags/" + name; }

/// Returns the arguments that leave out what the remote has already.
Arguments without(const PushPreview& preview, const RemoteBranch& to)
{
    return preview.there.empty() ? Arguments{"--not", "--remotes=" + to.remote} : Arguments{"--not", preview.there};
}

int countOf(const GitRepository& repo, const Arguments& range)
{
    Arguments command{"rev-list", "--count"};
    command.insert(command.end(), range.begin(), range.end());
    command.emplace_back("--");
    return readNumber(withoutLineEnd(repo.runner().bytes(command)));
}

std::vector<ForeignCommit> foreignCommits(const GitRepository& repo, const PushPreview& preview)
{
    std::vector<ForeignCommit> commits;
    const std::vector<std::string> fields =
        splitNul(repo.runner().bytes({"log", "-z", "--no-decorate", "--format=%H%x00%an%x00%s", "-n",
                                      std::to_string(mostForeign), preview.there, "--not", preview.ours, "--"}));
    for (std::size_t index = 0; index + 2 < fields.size(); index += 3)
        commits.push_back({fields[index], fields[index + 1], fields[index + 2]});
    return commits;
}

using Sent = std::set<std::string, std::less<>>;

Sent sentCommits(const GitRepository& repo, const PushPreview& preview, const RemoteBranch& to)
{
    Arguments command{"rev-list", mostTagged, preview.ours};
    const Arguments rest = without(preview, to);
    command.insert(command.end(), rest.begin(), rest.end());
    command.emplace_back("--");
    Sent sent;
    const std::string hashes = repo.runner().bytes(command);
    Pieces lines(hashes, '\n');
    while (const auto line = lines.next())
        sent.emplace(*line);
    return sent;
}

std::vector<std::string> tagsOnSent(const GitRepository& repo, const Sent& sent)
{
    std::vector<std::string> tags;
    if (sent.empty())
        return tags;
    const std::string listed = repo.runner().bytes(
        {"for-each-ref", "--format=%(refname:lstrip=2)%00%(objectname)%00%(*objectname)", "refs/tags"});
    Pieces records(listed, '\n');
    while (const auto record = records.next()) {
        const auto fields = splitFields<3>(*record, '\0');
        if (fields && (sent.contains((*fields)[1]) || sent.contains((*fields)[2])))
            tags.emplace_back((*fields)[0]);
    }
    return tags;
}

/// Returns the other branches on the commits that are sent, where the remote has what they were before.
std::vector<RewrittenBranch> rewrittenAlong(const GitRepository& repo, const Sent& sent, const PushQuestion& question)
{
    std::vector<std::string> names;
    const std::string listed =
        repo.runner().bytes({"for-each-ref", "--format=%(objectname)%00%(refname)", "refs/heads"});
    Pieces records(listed, '\n');
    while (const auto record = records.next()) {
        const auto fields = splitFields<2>(*record, '\0');
        if (fields && sent.contains((*fields)[0]) && (*fields)[1] != branchRef(question.branch))
            names.emplace_back((*fields)[1]);
    }
    std::vector<RewrittenBranch> along = rewrittenBranches(repo, names);
    std::erase_if(along, [&](const RewrittenBranch& branch) {
        return branch.to.remote != question.to.remote || branch.to == question.to;
    });
    return along;
}

/// Returns nothing where git cannot compare them.
std::vector<RangeDiffRow> compared(const GitRepository& repo, const PushPreview& preview)
{
    const GitOutput output = repo.runner().output(
        {"range-diff", "--no-color", "-s", preview.there + "..." + preview.ours}, {.settings = {"core.abbrev=no"}});
    return output.status == 0 ? parseRangeDiff(output.stdoutBytes) : std::vector<RangeDiffRow>();
}

RangeDiffRow::Kind kindOfMark(std::string_view mark)
{
    if (mark == "=")
        return RangeDiffRow::Kind::same;
    if (mark == "<")
        return RangeDiffRow::Kind::gone;
    return mark == ">" ? RangeDiffRow::Kind::come : RangeDiffRow::Kind::changed;
}

/// Returns the next word of a line and takes it away.
std::string_view nextWord(std::string_view& line)
{
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    const std::string_view word = line.substr(0, line.find(' '));
    line.remove_prefix(std::min(word.size() + 1, line.size()));
    return word;
}

std::string wholeHash(std::string_view word)
{
    return word.find_first_not_of("0123456789abcdef") == std::string_view::npos ? std::string(word) : std::string();
}

} // namespace

std::vector<RangeDiffRow> parseRangeDiff(std::string_view output)
{
    std::vector<RangeDiffRow> rows;
    Pieces lines(output, '\n');
    // A line is "NUMBER: HASH MARK NUMBER: HASH SUBJECT", with dashes for what one side does not have.
    while (const auto line = lines.next()) {
        std::string_view rest = *line;
        nextWord(rest);
        RangeDiffRow row;
        row.before = wholeHash(nextWord(rest));
        row.kind = kindOfMark(nextWord(rest));
        nextWord(rest);
        row.after = wholeHash(nextWord(rest));
        row.subject = rest;
        if (!row.before.empty() || !row.after.empty())
            rows.push_back(std::move(row));
    }
    return rows;
}

PushPreview pushPreview(const GitRepository& repo, const PushQuestion& question)
{
    PushPreview preview;
    preview.ours = hashOf(repo, branchRef(question.branch) + "^{commit}");
    if (preview.ours.empty())
        throw GitError("push", 1, "There is no branch " + inQuotes(question.branch) + ".", ErrorKind::noSuchRef);
    const std::string tracking = trackingRef(repo, question.to);
    preview.there = question.seen ? *question.seen : tracking.empty() ? std::string() : hashOf(repo, tracking);
    if (preview.there.empty()) {
        Arguments range{preview.ours};
        const Arguments rest = without(preview, question.to);
        range.insert(range.end(), rest.begin(), rest.end());
        preview.sent = countOf(repo, range);
    } else {
        const Divergence counts = countDivergence(repo, {preview.ours, preview.there});
        preview.sent = counts.ahead;
        preview.missed = counts.behind;
    }
    const Sent sent = sentCommits(repo, preview, question.to);
    if (preview.missed > 0) {
        preview.foreign = foreignCommits(repo, preview);
        preview.strangers = strangersIn(repo, branchRef(question.branch), preview.there);
        preview.along = rewrittenAlong(repo, sent, question);
    }
    if (preview.missed > 0 && preview.missed <= mostCompared && preview.sent <= mostCompared)
        preview.comparison = compared(repo, preview);
    preview.tags = tagsOnSent(repo, sent);
    const std::string upstream = std::string(
        withoutLineEnd(repo.runner().bytes({"for-each-ref", "--format=%(upstream)", branchRef(question.branch)})));
    preview.isUpstream = !upstream.empty() && upstream == tracking;
    return preview;
}

RemoteBranch pushedTo(const GitRepository& repo, const std::string& branch)
{
    const std::vector<std::string> remotes = splitNul(withoutLineEnd(repo.runner().bytes(
        {"for-each-ref", "--format=%(push:remotename)%00%(upstream:remotename)%00", branchRef(branch)})));
    if (remotes.size() != 2)
        return {};
    return {remotes[0].empty() ? remotes[1] : remotes[0], branch};
}

std::string pushBranch(const GitRepository& repo, const Push& push)
{
    const std::string remote = newNameArgument("push", push.to.remote);
    requireNoMirror(repo, remote);
    const std::string there = branchRef(push.to.branch);
    Arguments arguments{"push", "--progress", "--no-follow-tags", "--recurse-submodules=check"};
    if (push.replaces || push.there.empty())
        arguments.push_back("--force-with-lease=" + there + ':' + push.there);
    for (const RewrittenBranch& other : push.along)
        arguments.push_back("--force-with-lease=" + branchRef(other.to.branch) + ':' + other.there);
    if (!push.tags.empty() || !push.along.empty())
        arguments.emplace_back("--atomic");
    if (push.setsUpstream)
        arguments.emplace_back("-u");
    arguments.insert(arguments.end(), {remote, branchRef(push.branch) + ':' + there});
    for (const RewrittenBranch& other : push.along)
        arguments.push_back(branchRef(other.branch) + ':' + branchRef(other.to.branch));
    for (const std::string& tag : push.tags)
        arguments.push_back(tagRef(tag) + ':' + tagRef(tag));
    return addressIn(serverLines(runTelling(repo.runner(), arguments)));
}

std::string lookAtRemote(const GitRepository& repo, const RemoteBranch& branch)
{
    const std::string remote = newNameArgument("fetch", branch.remote);
    const std::string ref = branchRef(branch.branch);
    const std::string listed = repo.runner().bytes({"ls-remote", remote, ref});
    // A line is "HASH<tab>NAME"; the name may be the end of another one.
    std::string found;
    Pieces lines(listed, '\n');
    while (const auto line = lines.next()) {
        if (const std::size_t end = line->find('\t'); end != std::string_view::npos && line->substr(end + 1) == ref)
            found = line->substr(0, end);
    }
    // What is known here already may have to be noted as what the remote has.
    if (!found.empty())
        runTelling(repo.runner(), {"fetch", "--progress", "--no-write-fetch-head", "--no-tags", remote, ref});
    return found;
}

void pushTag(const GitRepository& repo, const std::string& remote, const std::string& tag)
{
    requireNoMirror(repo, remote);
    runTelling(repo.runner(), {"push", "--progress", "--no-follow-tags", "--recurse-submodules=no",
                               newNameArgument("push", remote), tagRef(tag) + ':' + tagRef(tag)});
}

TagsBeside tagsBeside(const GitRepository& repo, const std::string& remote)
{
    // A line is "HASH<tab>NAME", for an annotated tag with the hash of the tag.
    std::map<std::string, std::string, std::less<>> there;
    const std::string listed = repo.runner().bytes({"ls-remote", "--tags", "--refs", newNameArgument("fetch", remote)});
    Pieces lines(listed, '\n');
    while (const auto line = lines.next()) {
        if (const std::size_t end = line->find('\t'); end != std::string_view::npos)
            there.emplace(line->substr(end + 1), line->substr(0, end));
    }
    TagsBeside found;
    const std::string here = repo.runner().bytes({"for-each-ref", "--format=%(refname)%00%(objectname)", "refs/tags"});
    Pieces records(here, '\n');
    while (const auto record = records.next()) {
        const std::string name(record->substr(0, record->find('\0')));
        const auto other = there.find(name);
        const std::string shortName = name.substr(tagRef({}).size());
        if (other == there.end())
            found.missing.push_back(shortName);
        else if (other->second != record->substr(name.size() + 1))
            found.different.push_back(shortName);
    }
    return found;
}

void pushTags(const GitRepository& repo, const std::string& remote, const std::vector<std::string>& tags)
{
    // A command line has an end.
    constexpr std::size_t most = 500;
    requireNoMirror(repo, remote);
    for (std::size_t first = 0; first < tags.size(); first += most) {
        Arguments arguments{"push", "--progress", "--no-follow-tags", "--recurse-submodules=no",
                            newNameArgument("push", remote)};
        for (std::size_t place = first; place < std::min(first + most, tags.size()); ++place)
            arguments.push_back(tagRef(tags[place]) + ':' + tagRef(tags[place]));
        runTelling(repo.runner(), arguments);
    }
}

void pushBack(const GitRepository& repo, const std::vector<LostThere>& lost)
{
    const std::string& remote = lost.front().branch.remote;
    requireNoMirror(repo, remote);
    Arguments arguments{"push", "--progress", "--no-follow-tags", "--recurse-submodules=no"};
    if (lost.size() > 1)
        arguments.emplace_back("--atomic");
    for (const LostThere& each : lost)
        arguments.push_back("--force-with-lease=" + branchRef(each.branch.branch) + ':' + each.left);
    arguments.push_back(newNameArgument("push", remote));
    for (const LostThere& each : lost)
        arguments.push_back(exactArgument("push", each.had) + ':' + branchRef(each.branch.branch));
    try {
        runTelling(repo.runner(), arguments);
    } catch (const GitError& error) {
        if (error.kind() != ErrorKind::notFastForward)
            throw;
        throw GitError("push", error.status(),
                       (lost.size() > 1 ? "One of the branches" : inQuotes(lost.front().branch.branch)) + " on " +
                           inQuotes(remote) +
                           " is not as it was left any more. Nothing was pushed. Fetch, and look again.",
                       ErrorKind::changedMeanwhile);
    }
}

void deleteOnRemote(const GitRepository& repo, const std::string& remote, const std::string& ref,
                    const std::string& seen)
{
    requireNoMirror(repo, remote);
    try {
        runTelling(repo.runner(), {"push", "--progress", "--force-with-lease=" + ref + ':' + seen,
                                   newNameArgument("push", remote), ':' + ref});
    } catch (const GitError& error) {
        if (error.kind() != ErrorKind::notFastForward)
            throw;
        throw GitError("push", error.status(),
                       inQuotes(ref.substr(ref.find('/', ref.find('/') + 1) + 1)) + " is not on " + inQuotes(remote) +
                           " any more as it was seen here. Nothing was deleted there. Fetch, and look again.",
                       ErrorKind::changedMeanwhile);
    }
}

void requireNoMirror(const GitRepository& repo, const std::string& remote)
{
    if (trimmed(repo.runner().output({"config", "--type=bool", "--get", "remote." + remote + ".mirror"}).stdoutBytes) ==
        "true")
        throw GitError("push", 1,
                       inQuotes(remote) + " is set up as a mirror: a push would replace and delete other branches "
                                          "there. Nothing was pushed.");
}

} // namespace gitkit
