// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/CommitIndex.h"

#include "GitKit/repository/CommitGraphCache.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "app/store/CommandLog.h"
#include "app/store/Snapshot.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace plovik {

using gitkit::CommitGraphCache;

namespace {

/// A walk that takes longer than this would be faster with an index.
constexpr std::chrono::milliseconds longWalk{500};
/// New commits are added after this pause, so that what the user waits for comes first.
constexpr std::chrono::seconds addingPause{3};

CommitGraphCache::Repository placeOf(const gitkit::GitRepository& repo, const std::string& replacements)
{
    return {gitkit::gitDirectories(repo).common, replacements};
}

// Both run on a worker's thread.

bool openIndex(const gitkit::GitRepository& repo, const std::shared_ptr<CommitGraphCache>& graph)
{
    graph->open(placeOf(repo, {}));
    return graph->isOpen();
}

bool writeIndex(const gitkit::GitRepository& repo, const std::shared_ptr<CommitGraphCache>& graph,
                const std::string& replacements)
{
    return graph->write(repo, placeOf(repo, replacements));
}

/// Returns git's subcommand, behind the settings that every run gets.
std::string_view subcommandOf(const std::vector<std::string>& arguments)
{
    std::size_t place = 0;
    while (place + 1 < arguments.size() && arguments[place] == "-c")
        place += 2;
    return place < arguments.size() ? std::string_view(arguments[place]) : std::string_view();
}

} // namespace

CommitIndex::CommitIndex(const GitAccess& git, Snapshot& snapshot, const CommandLog& log,
                         std::function<bool()> isWanted)
    : git_(git), snapshot_(snapshot), log_(log), wanted_(std::move(isWanted)),
      logged_(log.generation.addNotifier([this] { lookAtLog(); }))
{
    snapshot_.follow({.refsRead = [this] { refsRead(); }});
}

CommitIndex::~CommitIndex() { stop_.request_stop(); }

/// A walk that was ended early may have waited for somebody to take what it found, so its time says nothing.
void CommitIndex::lookAtLog()
{
    const CommandLog::Changes changes = log_.changesSince(logRevision_);
    logRevision_ = changes.revision;
    for (const CommandLog::Command& command : changes.commands) {
        if (command.end && gitkit::walksHistory(subcommandOf(command.arguments)))
            walkTook(command.end->duration);
    }
}

void CommitIndex::walkTook(std::chrono::milliseconds time)
{
    // The first list of refs comes before: an earlier window may have kept an index that was not in use yet.
    if (time <= longWalk || hasTried_ || isWriting_ || !hasLooked_ || !isWanted() || git_.graph()->isOpen())
        return;
    hasTried_ = true;
    launch(writing());
}

void CommitIndex::refsRead()
{
    if (!isWanted()) {
        git_.graph()->close();
        hasLooked_ = false;
        return;
    }
    if (!hasLooked_) {
        if (!isOpening_)
            launch(opening());
        return;
    }
    if (git_.graph()->isOpen() && tips() != written_ && !isWriting_)
        pause_ = git_.worker().after(addingPause, [this] {
            if (!isWriting_)
                launch(writing());
        });
}

QCoro::Task<> CommitIndex::opening()
{
    isOpening_ = true;
    bool isOpen = false;
    try {
        isOpen = co_await git_.readAside(stop_.get_token(), openIndex, git_.graph());
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): there is none then
    }
    isOpening_ = false;
    hasLooked_ = true;
    // What came since it was written is added.
    if (isOpen)
        refsRead();
}

QCoro::Task<> CommitIndex::writing()
{
    isWriting_ = true;
    const std::size_t wanted = tips();
    bool isWritten = false;
    try {
        isWritten = co_await git_.readAside(stop_.get_token(), writeIndex, git_.graph(), snapshot_.replacements());
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): the repository is read without it
    }
    isWriting_ = false;
    written_ = isWritten ? wanted : written_;
    if (!isWanted())
        git_.graph()->close();
}

/// Returns a number that differs when a ref has moved.
std::size_t CommitIndex::tips() const
{
    std::size_t sum = 1;
    for (const auto* refs : {&snapshot_.branches.value(), &snapshot_.remoteBranches.value(), &snapshot_.tags.value()}) {
        for (const gitkit::GitRef& ref : *refs)
            sum = sum * 31 + std::hash<std::string>{}(ref.hash);
    }
    return sum;
}

} // namespace plovik
