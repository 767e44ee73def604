// SPDX-License-Identifier: GPL-3.0-or-later
// Which commits are merged, and how they are called. Git's own words, ours and theirs, mean the other side in a rebase, and
// in a revert the coming side is the parent of the commit that it names.

#include "GitKit/RegularFile.h"
#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/Conflicts.h"
#include "GitKit/repository/GitRepository.h"

#include <string_view>

namespace gitkit {

namespace {

namespace fs = std::filesystem;
using OperationKind = OperationInProgress::Kind;
using NameKind = ConflictName::Kind;

constexpr std::uintmax_t longestMarkedFile = std::uintmax_t{1} << 20;

/// Returns the full hash of a commit; empty when there is none.
std::string commitAt(const GitRepository& repo, const std::string& revision)
{
    if (revision.empty())
        return {};
    return std::string(
        withoutLineEnd(repo.runner()
                           .output({"rev-parse", "--verify", "--quiet", "--end-of-options", revision + "^{commit}"})
                           .stdoutBytes));
}

std::string subjectAt(const GitRepository& repo, const std::string& hash)
{
    return std::string(withoutLineEnd(
        repo.runner().output({"log", "-1", "--no-show-signature", "--format=%s", hash, "--"}).stdoutBytes));
}

/// Returns the name of a branch, remote branch or tag at a commit; empty when there is none.
std::string refAt(const GitRepository& repo, const std::string& hash)
{
    for (const char* const prefix : {"refs/heads/", "refs/remotes/", "refs/tags/"}) {
        const std::string listed =
            repo.runner().output({"for-each-ref", "--points-at=" + hash, "--format=%(refname)", prefix}).stdoutBytes;
        std::string_view rest = listed;
        while (!rest.empty()) {
            const std::string_view name = rest.substr(0, rest.find('\n'));
            rest.remove_prefix(std::min(name.size() + 1, rest.size()));
            if (!name.ends_with("/HEAD") && name.starts_with(prefix))
                return std::string(name.substr(std::string_view(prefix).size()));
        }
    }
    return {};
}

ConflictName named(const GitRepository& repo, const std::string& hash)
{
    if (std::string name = refAt(repo, hash); !name.empty())
        return {.kind = NameKind::branch, .name = std::move(name), .hash = hash};
    return {.kind = NameKind::commit, .hash = hash, .subject = subjectAt(repo, hash)};
}

ConflictName checkedOut(const GitRepository& repo, const std::string& head)
{
    constexpr std::string_view prefix = "refs/heads/";
    const std::string ref(withoutLineEnd(repo.runner().output({"symbolic-ref", "-q", "HEAD"}).stdoutBytes));
    if (ref.starts_with(prefix))
        return {.kind = NameKind::branch, .name = ref.substr(prefix.size()), .hash = head};
    return {.kind = NameKind::commit, .hash = head, .subject = head.empty() ? std::string() : subjectAt(repo, head)};
}

/// Returns the commit whose change is made or taken back.
std::string stoppedAt(const GitRepository& repo, const OperationInProgress& operation)
{
    return operation.stop ? commitAt(repo, operation.stop->hash) : std::string();
}

ConflictNames namesOfMerge(const GitRepository& repo, const OperationInProgress& operation, const MergedCommits& merged)
{
    ConflictNames names{.left = checkedOut(repo, merged.left)};
    const bool isOne = operation.others.size() == 1;
    if (isOne && operation.mergeOf)
        names.right = {.kind = NameKind::branch, .name = *operation.mergeOf, .hash = merged.right};
    else if (isOne)
        names.right = named(repo, merged.right);
    const std::string bases =
        isOne ? repo.runner().output({"merge-base", "--all", merged.left, merged.right}).stdoutBytes : std::string();
    names.base = {.kind = NameKind::commonAncestor,
                  .hash = merged.base,
                  .count = static_cast<int>(std::ranges::count(bases, '\n'))};
    return names;
}

ConflictNames namesOfRebase(const GitRepository& repo, const OperationInProgress& operation,
                            const MergedCommits& merged)
{
    ConflictNames names;
    const std::string branch = operation.branch.value_or(std::string());
    if (!operation.others.empty()) {
        const std::string& onto = operation.others.front();
        const ConflictName base = named(repo, onto);
        names.left = {
            .kind = NameKind::ontoAndMoved, .name = base.name, .branch = branch, .hash = onto, .subject = base.subject};
        names.left.count = readNumber(
            withoutLineEnd(repo.runner()
                               .output({"rev-list", "--count", "--first-parent", onto + ".." + merged.left, "--"})
                               .stdoutBytes));
    }
    std::string subject = operation.stop ? operation.stop->subject : std::string();
    if (!merged.right.empty())
        subject = subjectAt(repo, merged.right);
    names.right = {.kind = NameKind::replayed, .branch = branch, .hash = merged.right, .subject = subject};
    names.base = {.kind = NameKind::parentOf, .hash = merged.base, .subject = subject};
    return names;
}

ConflictNames namesOfPick(const GitRepository& repo, const OperationInProgress& operation, const MergedCommits& merged)
{
    const std::string picked = stoppedAt(repo, operation);
    const std::string subject = !picked.empty()  ? subjectAt(repo, picked)
                                : operation.stop ? operation.stop->subject
                                                 : std::string();
    ConflictNames names{.left = checkedOut(repo, merged.left)};
    if (operation.kind == OperationKind::cherryPick) {
        names.right = {.kind = NameKind::picked, .hash = picked, .subject = subject};
        names.base = {.kind = NameKind::parentOf, .hash = merged.base, .subject = subject};
    } else if (operation.kind == OperationKind::revert) {
        names.right = {.kind = NameKind::without, .hash = picked, .subject = subject};
        names.base = {.kind = NameKind::commit, .hash = picked, .subject = subject};
    } else {
        names.right = {.kind = NameKind::patch, .subject = subject};
    }
    return names;
}

/// What git wrote behind the markers of a file; both empty when it holds none.
struct Labels {
    std::string left, base, right;
};

/// Reads the name in a marker's line: "<<<<<<< NAME".
std::optional<std::string> labelIn(std::string_view line, char mark)
{
    const std::size_t size = std::min(line.find_first_not_of(mark), line.size());
    if (size < 7 || (size < line.size() && line[size] != ' '))
        return std::nullopt;
    return std::string(trimmed(line.substr(size)));
}

Labels labelsIn(std::string_view text)
{
    Labels labels;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (line.empty())
            continue;
        if (line.front() == '<')
            labels.left = labelIn(line, '<').value_or(labels.left);
        else if (line.front() == '|')
            labels.base = labelIn(line, '|').value_or(labels.base);
        else if (line.front() == '>')
            labels.right = labelIn(line, '>').value_or(labels.right);
        if (!labels.left.empty() && !labels.right.empty())
            break;
    }
    return labels;
}

/// Returns the labels in the first conflicted file that has any.
Labels labelsInFiles(const GitRepository& repo)
{
    constexpr std::size_t most = 50;
    std::size_t seen = 0;
    for (const std::string& path : splitNul(repo.runner().bytes({"diff", "--name-only", "--diff-filter=U", "-z"}))) {
        if (++seen > most)
            break;
        Labels labels = labelsIn(regularFileBytes(repo.root() / path, longestMarkedFile).value_or(std::string()));
        if (!labels.left.empty() && !labels.right.empty())
            return labels;
    }
    return {};
}

ConflictName label(std::string text)
{
    return text.empty() ? ConflictName() : ConflictName{.kind = NameKind::label, .name = std::move(text)};
}

ConflictNames namesOfStash(const GitRepository& repo, const std::string& stash)
{
    ConflictNames names{.left = checkedOut(repo, commitAt(repo, "HEAD"))};
    names.right = {.kind = NameKind::stash, .hash = stash};
    if (!stash.empty())
        names.right.subject = subjectAt(repo, stash);
    names.base = {.kind = NameKind::stashedFrom, .hash = stash.empty() ? std::string() : commitAt(repo, stash + "^1")};
    return names;
}

ConflictNames namesFromMarkers(const GitRepository& repo, const std::string& stash)
{
    const Labels labels = labelsInFiles(repo);
    // What git writes when it applies a stash.
    if (labels.right == "Stashed changes" || (labels.right.empty() && !stash.empty()))
        return namesOfStash(repo, stash);
    ConflictNames names{.left = label(labels.left), .right = label(labels.right), .base = label(labels.base)};
    if (labels.left == "HEAD" || labels.left == "Updated upstream" || labels.left.empty())
        names.left = checkedOut(repo, commitAt(repo, "HEAD"));
    return names;
}

} // namespace

MergedCommits mergedCommits(const GitRepository& repo, const ConflictOrigin& origin)
{
    MergedCommits merged{.base = {}, .left = commitAt(repo, "HEAD"), .right = {}};
    const std::optional<OperationInProgress>& operation = origin.operation;
    if (!operation || operation->kind == OperationKind::bisect) {
        merged.right = commitAt(repo, origin.stash);
        merged.base = merged.right.empty() ? std::string() : commitAt(repo, merged.right + "^1");
        return merged;
    }
    if (operation->kind == OperationKind::merge) {
        if (operation->others.size() == 1)
            merged.right = operation->others.front();
        if (!merged.right.empty())
            merged.base = std::string(
                withoutLineEnd(repo.runner().output({"merge-base", merged.left, merged.right}).stdoutBytes));
        return merged;
    }
    const std::string stopped = stoppedAt(repo, *operation);
    if (stopped.empty())
        return merged;
    const std::string parent = commitAt(repo, stopped + "^1");
    merged.base = operation->kind == OperationKind::revert ? stopped : parent;
    merged.right = operation->kind == OperationKind::revert ? parent : stopped;
    return merged;
}

ConflictNames conflictNames(const GitRepository& repo, const ConflictOrigin& origin)
{
    if (!origin.operation || origin.operation->kind == OperationKind::bisect)
        return namesFromMarkers(repo, origin.stash);
    const MergedCommits merged = mergedCommits(repo, origin);
    if (origin.operation->kind == OperationKind::merge)
        return namesOfMerge(repo, *origin.operation, merged);
    if (origin.operation->kind == OperationKind::rebase)
        return namesOfRebase(repo, *origin.operation, merged);
    return namesOfPick(repo, *origin.operation, merged);
}

} // namespace gitkit
