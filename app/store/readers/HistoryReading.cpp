// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/readers/HistoryReading.h"

#include "GitKit/RegularFile.h"
#include "GitKit/repository/Commits.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/RefListing.h"
#include "GitKit/runner/GitError.h"

#include <algorithm>
#include <cctype>
#include <string_view>
#include <utility>

namespace plovik {

namespace {

constexpr std::size_t shortestHash = 4; ///< the least that git takes for a part of a hash
/// What was found is handed on after this time at the latest.
constexpr std::chrono::milliseconds longestSilence{150};
/// The files of a repository's borders are read as far as this.
constexpr std::size_t mostBorders = 16UL * 1024 * 1024;

/// Goes through the lines of RefTips.
class TipLines {
public:
    explicit TipLines(std::string_view lines) : rest_(lines) {}

    bool atEnd() const { return rest_.empty(); }
    std::string_view line() const { return rest_.substr(0, rest_.find('\n')); }
    std::string_view hash() const { return line().substr(0, line().find(' ')); }
    std::string_view name() const { return line().substr(std::min(hash().size() + 1, line().size())); }
    /// Returns whether a walk begins at this line's object. One of a tag object is followed by that of its commit.
    bool isTip() const
    {
        const std::string_view ref = name();
        const bool isWalked = ref == "HEAD" || ref.starts_with("refs/heads/") || ref.starts_with("refs/remotes/") ||
                              ref.starts_with("refs/tags/");
        TipLines next = *this;
        next.step();
        return isWalked &&
               !(next.name().size() == ref.size() + 3 && next.name().starts_with(ref) && next.name().ends_with("^{}"));
    }
    void step() { rest_.remove_prefix(std::min(line().size() + 1, rest_.size())); }

private:
    std::string_view rest_;
};

/// Returns a layout that keeps HEAD's line at the left. Git computes the first rows meanwhile.
gitkit::GraphLayout layoutFor(const gitkit::GitRepository& repo, const gitkit::HistoryWalk& walk)
{
    if (walk.scope.ref || walk.filter)
        return {};
    try {
        return gitkit::GraphLayout(gitkit::resolveCommit(repo, "HEAD"));
    } catch (const gitkit::GitError&) {
        return {}; // HEAD has no commit yet
    }
}

/// Marks the branch that the remote names as its default, and the local one of that name. Without a remote it is the
/// one that git would have called so.
void markDefault(gitkit::RefLabels& labels, const std::filesystem::path& commonDirectory)
{
    using Kind = gitkit::RefLabel::Kind;
    constexpr std::string_view prefix = "ref: refs/remotes/origin/";
    constexpr std::size_t mostBytes = 4096;
    const std::string link =
        gitkit::regularFileBytes(commonDirectory / "refs/remotes/origin/HEAD", mostBytes).value_or(std::string());
    std::vector<std::string> names{"main", "master"};
    if (link.starts_with(prefix))
        names = {link.substr(prefix.size(), link.find('\n') - prefix.size())};
    for (const std::string& name : names) {
        bool isFound = false;
        for (auto& [hash, onCommit] : labels) {
            for (gitkit::RefLabel& label : onCommit) {
                label.isDefault = (label.kind == Kind::localBranch && label.name == name) ||
                                  (label.kind == Kind::remoteBranch && label.name == "origin/" + name);
                isFound = isFound || label.isDefault;
            }
        }
        if (isFound)
            return;
    }
}

} // namespace

bool looksLikeHash(const std::string& text)
{
    return text.size() >= shortestHash && text.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
}

HistoryReading::HistoryReading(Repository repo, gitkit::HistoryWalk walk, const HistoryRows& known)
    : repo_(std::move(repo)), walk_(std::move(walk))
{
    for (std::size_t block = 0; block < known.blocks().size(); ++block) {
        const HistoryBlock& rows = *known.blocks()[block];
        joints_.emplace(rows.hash(rows.size() - 1), Joint{known.endOf(block), rows.lanesBelow()});
    }
}

/// Reads the rows again that were read before the stream was closed. Returns whether they are still the same.
bool HistoryReading::skipKnown()
{
    std::string last;
    for (std::size_t row = 0; row < read_ && !stream_->hasEnded();) {
        const std::vector<gitkit::Commit> skipped = stream_->next(std::min<std::size_t>(read_ - row, 1024));
        row += skipped.size();
        if (!skipped.empty())
            last = skipped.back().hash;
    }
    return last == last_;
}

HistoryPiece HistoryReading::read(std::size_t most)
{
    HistoryPiece piece;
    std::vector<HistoryRow> rows;
    if (!stream_) {
        stream_.emplace(*repo_, walk_);
        if (read_ == 0)
            layout_ = layoutFor(*repo_, walk_);
        piece.hasChanged = !skipKnown();
    }
    const auto until = gitkit::HistoryStream::Clock::now() + longestSilence;
    // In small steps, because the walk may come to a joint.
    while (!piece.hasChanged && !piece.goesOnAt && rows.size() < most && !stream_->hasEnded()) {
        const std::size_t step = joints_.empty() ? most - rows.size() : 1;
        std::vector<gitkit::Commit> commits;
        try {
            commits = stream_->next(step, until);
        } catch (const gitkit::RunStopped&) {
            if (rows.empty())
                throw;
        }
        if (commits.empty())
            break;
        for (gitkit::Commit& commit : commits) {
            gitkit::GraphRow graph = walk_.filter ? gitkit::GraphRow() : layout_.add(commit);
            last_ = commit.hash;
            rows.push_back({std::move(commit), std::move(graph)});
        }
        const auto joint = joints_.find(last_);
        if (joint != joints_.end() && joint->second.lanes == layout_.lanes())
            piece.goesOnAt = joint->second.rows;
    }
    read_ += rows.size();
    piece.isWrong = stream_->isWrong();
    piece.isWithoutTags = stream_->isWithoutTags();
    piece.hasMore = !stream_->hasEnded();
    piece.block = std::make_shared<const HistoryBlock>(rows, layout_.lanes(), layout_.laneCount());
    return piece;
}

TipChanges changedTips(const gitkit::RefTips& before, const gitkit::RefTips& after)
{
    TipChanges changes;
    TipLines left(before.lines);
    TipLines right(after.lines);
    while (!left.atEnd() || !right.atEnd()) {
        if (left.line() == right.line()) {
            left.step();
            right.step();
            continue;
        }
        const bool isLeft = right.atEnd() || (!left.atEnd() && left.name() <= right.name());
        TipLines& next = isLeft ? left : right;
        changes.canBeKnown = changes.canBeKnown && !next.name().starts_with("refs/replace/");
        if (next.isTip())
            (isLeft ? changes.before : changes.after).emplace_back(next.hash());
        next.step();
    }
    return changes;
}

HistorySource readHistorySource(const gitkit::GitRepository& repo, const std::filesystem::path& commonDirectory)
{
    HistorySource source;
    source.tips = gitkit::readRefTips(repo);
    source.commonDirectory = commonDirectory.empty() ? gitkit::gitDirectories(repo).common : commonDirectory;
    gitkit::RefLabels labels = gitkit::refLabels(source.tips);
    markDefault(labels, source.commonDirectory);
    source.labels = std::make_shared<const gitkit::RefLabels>(std::move(labels));
    for (const char* name : {"shallow", "info/grafts"})
        source.borders +=
            gitkit::regularFileBytes(source.commonDirectory / name, mostBorders).value_or(std::string()) + '\0';
    return source;
}

std::optional<gitkit::Commit> readCommitOfHash(const gitkit::GitRepository& repo, const gitkit::HistoryScope& scope,
                                               const std::string& text)
{
    try {
        const std::string hash = gitkit::resolveCommit(repo, text);
        const bool isPart = std::ranges::equal(text, hash.substr(0, text.size()), {},
                                               [](unsigned char digit) { return std::tolower(digit); });
        if (!isPart || !gitkit::position(repo, scope, hash))
            return std::nullopt;
        std::vector<gitkit::Commit> found = repo.log(gitkit::HistoryScope::of(hash), 1, {});
        return found.empty() ? std::nullopt : std::optional(std::move(found.front()));
    } catch (const gitkit::GitError&) {
        return std::nullopt; // a word of messages
    }
}

} // namespace plovik
