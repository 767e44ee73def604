// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/UpstreamCounts.h"

#include "GitKit/repository/Divergence.h"
#include "GitKit/repository/DivergenceMemory.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "app/store/Snapshot.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <system_error>
#include <utility>

namespace plovik {

using gitkit::CommitPair;
using gitkit::Divergence;
using gitkit::GitRef;

namespace {

/// How long the counts of earlier tips stay in sight, so that numbers which are known soon do not go and come.
constexpr std::chrono::milliseconds countingPatience{150};
/// A window that is closed meanwhile loses no more counts than these.
constexpr int mostUnsaved = 32;

using Hashes = std::unordered_map<std::string_view, std::string_view>;

/// Returns the tips of the refs that branches follow, which are few also where there are very many refs.
Hashes upstreamHashes(const Snapshot& snapshot)
{
    Hashes hashes;
    for (const GitRef& ref : snapshot.branches.value()) {
        if (!ref.upstreamRef.empty())
            hashes.try_emplace(ref.upstreamRef);
    }
    for (const auto* refs : {&snapshot.branches.value(), &snapshot.remoteBranches.value()}) {
        for (const GitRef& ref : *refs) {
            if (hashes.empty())
                break;
            if (const auto wanted = hashes.find(ref.fullName); wanted != hashes.end())
                wanted->second = ref.hash;
        }
    }
    return hashes;
}

} // namespace

UpstreamCounts::UpstreamCounts(const GitAccess& git, Snapshot& snapshot, std::filesystem::path cacheFolder)
    : git_(git), snapshot_(snapshot), cacheFolder_(std::move(cacheFolder))
{
    snapshot_.follow({.refsRead = [this] { relist(); }});
}

UpstreamCounts::~UpstreamCounts()
{
    stop_.request_stop();
    if (unsaved_ == 0)
        return;
    try {
        git_.worker().post(Worker::Lane::shortRead, [counts = memory_.counts] { counts->save(); }, [] {});
    } catch (const std::system_error&) { // NOLINT(bugprone-empty-catch): they are counted again
    }
}

std::string UpstreamCounts::headName() const
{
    const std::optional<std::string>& branch = snapshot_.status.value().branch;
    return branch ? "refs/heads/" + *branch : std::string();
}

Divergence UpstreamCounts::of(const std::string& branch) const
{
    const auto found = branches_.find(branch);
    return found == branches_.end() ? Divergence() : found->second.counted.value_or(Divergence());
}

void UpstreamCounts::relist()
{
    const Hashes hashes = upstreamHashes(snapshot_);
    std::unordered_map<std::string, Branch> old = std::exchange(branches_, {});
    order_.clear();
    for (const GitRef& ref : snapshot_.branches.value()) {
        const auto upstream = hashes.find(ref.upstreamRef);
        if (upstream == hashes.end() || ref.hash.empty() || upstream->second.empty())
            continue;
        Branch branch{.upstream = ref.upstreamRef, .tips = {ref.hash, std::string(upstream->second)}};
        if (const auto known = old.find(ref.fullName); known != old.end() && known->second.upstream == branch.upstream)
            branch.counted = known->second.counted;
        order_.push_back(ref.fullName);
        branches_.emplace(ref.fullName, std::move(branch));
    }
    failed_.clear();
    launch(recalling(++listings_));
}

/// Runs on a worker's thread, because it reads files.
UpstreamCounts::Memory UpstreamCounts::prepare(const gitkit::GitRepository& repo,
                                               const std::filesystem::path& cacheFolder,
                                               const std::filesystem::path& commonDirectory,
                                               const std::string& replacements)
{
    Memory memory{.commonDirectory = commonDirectory, .replacements = replacements, .cuts = {}, .counts = {}};
    if (memory.commonDirectory.empty())
        memory.commonDirectory = gitkit::gitDirectories(repo).common;
    memory.cuts = gitkit::historyCuts(memory.commonDirectory, replacements);
    const std::filesystem::path folder = cacheFolder.empty() ? cacheFolder : cacheFolder / "upstream-counts";
    memory.counts = gitkit::DivergenceMemory::of(folder, memory.commonDirectory);
    return memory;
}

/// Returns nullopt when other parts of the history were hidden meanwhile: the answer may be that of before or after.
std::optional<Divergence> UpstreamCounts::count(const gitkit::GitRepository& repo, const CommitPair& tips,
                                                const Memory& memory)
{
    const Divergence counted = gitkit::countDivergence(repo, tips);
    const bool isSame = gitkit::historyCuts(memory.commonDirectory, memory.replacements) == memory.cuts;
    return isSame ? std::optional(counted) : std::nullopt;
}

QCoro::Task<> UpstreamCounts::recalling(qint64 listing)
{
    const bool isNeeded = std::ranges::any_of(
        branches_, [](const auto& entry) { return entry.second.tips.ours != entry.second.tips.theirs; });
    if (isNeeded) {
        Memory memory;
        try {
            memory = co_await git_.read(prepare, cacheFolder_, memory_.commonDirectory, snapshot_.replacements());
        } catch (const std::exception&) {
            dropOldCounts(); // what cannot be read here cannot be counted either
            co_return;
        }
        if (listing != listings_)
            co_return;
        memory_ = std::move(memory);
    }
    recall();
    if (!isCounting_)
        co_await counting();
}

/// Takes over what is known about the listed tips, and ends a count that nobody needs any more.
void UpstreamCounts::recall()
{
    bool isRunningNeeded = false;
    for (auto& [name, branch] : branches_) {
        if (branch.tips.ours == branch.tips.theirs) {
            branch.counted = Divergence();
            branch.isCurrent = true;
        } else if (const auto known = memory_.counts->find(branch.tips, memory_.cuts)) {
            branch.counted = known;
            branch.isCurrent = true;
        }
        isRunningNeeded = isRunningNeeded || (!branch.isCurrent && branch.tips == running_);
    }
    place_ = 0;
    if (!isRunningNeeded)
        stop_.request_stop();
    changes = changes.value() + 1;
    patience_ = git_.worker().after(countingPatience, [this] { dropOldCounts(); });
}

void UpstreamCounts::dropOldCounts()
{
    bool isChanged = false;
    for (auto& [name, branch] : branches_) {
        if (!branch.isCurrent)
            isChanged = std::exchange(branch.counted, std::nullopt).has_value() || isChanged;
    }
    if (isChanged)
        changes = changes.value() + 1;
}

QCoro::Task<> UpstreamCounts::counting()
{
    isCounting_ = true;
    while (const CommitPair* const tips = next()) {
        co_await countNext(*tips);
        if (unsaved_ >= mostUnsaved)
            co_await saving();
    }
    if (unsaved_ > 0)
        co_await saving();
    isCounting_ = false;
}

QCoro::Task<> UpstreamCounts::countNext(CommitPair tips)
{
    running_ = tips;
    stop_ = std::stop_source();
    const Memory memory = memory_;
    std::optional<Divergence> counted;
    try {
        counted = co_await git_.readLong(stop_.get_token(), count, tips, memory);
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): the same as for an answer that is not sure
    }
    running_ = {};
    if (counted) {
        memory.counts->remember(tips, memory.cuts, *counted);
        ++unsaved_;
    }
    if (memory.cuts != memory_.cuts)
        co_return;
    if (counted)
        show(tips, *counted);
    else
        failed_.insert(tips);
}

void UpstreamCounts::show(const CommitPair& tips, Divergence counted)
{
    for (auto& [name, branch] : branches_) {
        if (branch.tips == tips) {
            branch.counted = counted;
            branch.isCurrent = true;
        }
    }
    changes = changes.value() + 1;
}

QCoro::Task<> UpstreamCounts::saving()
{
    unsaved_ = 0;
    try {
        co_await BlockingCall<void>(git_.worker(), Worker::Lane::shortRead, git_.alive(),
                                    [counts = memory_.counts] { counts->save(); });
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): they are counted again
    }
}

const CommitPair* UpstreamCounts::next()
{
    if (const CommitPair* const tips = uncounted(headName()))
        return tips;
    for (const std::string& name : inSight_) {
        if (const CommitPair* const tips = uncounted(name))
            return tips;
    }
    for (; place_ < order_.size(); ++place_) {
        if (const CommitPair* const tips = uncounted(order_[place_]))
            return tips;
    }
    return nullptr;
}

const CommitPair* UpstreamCounts::uncounted(const std::string& name) const
{
    const auto found = branches_.find(name);
    const bool isWanted = found != branches_.end() && !found->second.isCurrent && !failed_.contains(found->second.tips);
    return isWanted ? &found->second.tips : nullptr;
}

} // namespace plovik
