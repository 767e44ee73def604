// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/GitAccess.h"

#include <QCoroTask>
#include <QProperty>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <stop_token>
#include <vector>

namespace gitkit {
class CommitGraphCache;
} // namespace gitkit

namespace plovik {

class CommandLog;
class Snapshot;

/// Keeps an index of a large repository's history, a commit-graph, in the cache folder. It is written once git has walked
/// for so long that it pays, read by git in every later window, and gets what is new after the refs have changed. All of
/// that happens at the lowest priority, and nothing waits for it.
///
/// Owned by the store; main thread.
class CommitIndex {
public:
    /// `graph` is the one that the reads of `git` see. `isWanted` tells the user's setting; when it is empty, no index is
    /// kept. `log` tells how long git walked.
    CommitIndex(const GitAccess& git, Snapshot& snapshot, const CommandLog& log, std::function<bool()> isWanted);
    ~CommitIndex();
    CommitIndex(const CommitIndex&) = delete;
    CommitIndex& operator=(const CommitIndex&) = delete;

    /// Tells that git has walked the history for so long, not counting the time in which nobody took what it found.
    /// Called for every walk that the command log lists.
    void walkTook(std::chrono::milliseconds time);

private:
    bool isWanted() const { return wanted_ && wanted_(); }
    void lookAtLog();
    void refsRead();
    QCoro::Task<> opening();
    QCoro::Task<> writing();
    std::size_t tips() const;

    const GitAccess& git_;
    Snapshot& snapshot_;
    const CommandLog& log_;
    const std::function<bool()> wanted_;
    QPropertyNotifier logged_;
    std::uint64_t logRevision_ = 0;
    bool isOpening_ = false;
    bool hasLooked_ = false; ///< for what an earlier window has kept
    bool isWriting_ = false;
    bool hasTried_ = false;   ///< to write the index because of a long walk
    std::size_t written_ = 0; ///< the tips that the index in use was written for; 0 when that is not known
    std::unique_ptr<Worker::Delay> pause_;
    std::stop_source stop_;
};

} // namespace plovik
