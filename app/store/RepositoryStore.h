// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/await/Worker.h"
#include "app/store/Changes.h"
#include "app/store/CommandLog.h"
#include "app/store/CommitDraft.h"
#include "app/store/CommitIndex.h"
#include "app/store/CommitInto.h"
#include "app/store/Conflicts.h"
#include "app/store/Discards.h"
#include "app/store/GitAccess.h"
#include "app/store/History.h"
#include "app/store/HistoryMatches.h"
#include "app/store/Neighbours.h"
#include "app/store/Rewriting.h"
#include "app/store/SlowStatus.h"
#include "app/store/Snapshot.h"
#include "app/store/Staging.h"
#include "app/store/StoreServices.h"
#include "app/store/Trail.h"
#include "app/store/Trust.h"
#include "app/store/Undo.h"
#include "app/store/UpstreamCounts.h"
#include "app/store/WindowState.h"
#include "app/store/actions/Actors.h"

#include <filesystem>

namespace plovik {

/// Makes the parts of one repository window, each after the parts that it refers to, and owns them. Everything that the
/// window shows and does is in a part.
///
/// Owned by its window; main thread. git runs on the worker's threads while coroutines are suspended, and the store may
/// be destroyed at any moment.
class RepositoryStore {
public:
    /// `root` is a working tree's top level. Starts no git work: the window asks for the first refresh.
    explicit RepositoryStore(std::filesystem::path root, Worker& worker = Worker::pool(), StoreServices services = {});
    ~RepositoryStore();
    RepositoryStore(const RepositoryStore&) = delete;
    RepositoryStore& operator=(const RepositoryStore&) = delete;

    const std::filesystem::path& root() const { return git_.root(); }

    WindowState& window() { return window_; }
    const WindowState& window() const { return window_; }
    Snapshot& snapshot() { return snapshot_; }
    const Snapshot& snapshot() const { return snapshot_; }
    Neighbours& neighbours() { return neighbours_; }
    const Neighbours& neighbours() const { return neighbours_; }
    UpstreamCounts& counts() { return counts_; }
    const UpstreamCounts& counts() const { return counts_; }
    CommitIndex& index() { return index_; }
    Trust& trust() { return trust_; }
    const Trust& trust() const { return trust_; }
    Changes& changes() { return changes_; }
    const Changes& changes() const { return changes_; }
    Undo& undo() { return undo_; }
    const Undo& undo() const { return undo_; }
    Discards& discards() { return discards_; }
    const Discards& discards() const { return discards_; }
    Conflicts& conflicts() { return conflicts_; }
    const Conflicts& conflicts() const { return conflicts_; }
    Staging& staging() { return staging_; }
    const Staging& staging() const { return staging_; }
    CommitDraft& draft() { return draft_; }
    const CommitDraft& draft() const { return draft_; }
    History& history() { return history_; }
    const History& history() const { return history_; }
    HistoryMatches& matches() { return matches_; }
    const HistoryMatches& matches() const { return matches_; }
    Rewriting& rewriting() { return rewriting_; }
    const Rewriting& rewriting() const { return rewriting_; }
    CommitInto& into() { return into_; }
    const CommitInto& into() const { return into_; }
    Trail& trail() { return trail_; }
    const Trail& trail() const { return trail_; }

    /// Returns the parts that actions use.
    Actors actors()
    {
        return {git_, services_, window_, snapshot_, changes_, discards_, draft_, conflicts_, rewriting_};
    }
    /// Returns the access that readers use.
    const GitAccess& git() const { return git_; }

private:
    StoreServices services_;
    CommandLog log_;
    GitAccess git_;
    WindowState window_{services_.questions, services_.openWindow};
    Snapshot snapshot_{git_, window_};
    Neighbours neighbours_{git_, window_, snapshot_};
    UpstreamCounts counts_{git_, snapshot_, services_.cacheFolder};
    CommitIndex index_{git_, snapshot_, log_, services_.keepsIndexes};
    SlowStatus slowStatus_{git_, window_, snapshot_};
    Trust trust_{git_, snapshot_, services_.trust};
    Changes changes_{git_, log_, snapshot_, trust_, window_, services_.signIn};
    Undo undo_{git_, window_, snapshot_, changes_, services_.trash};
    Discards discards_{window_, snapshot_, changes_, undo_};
    Conflicts conflicts_{git_, window_, snapshot_, changes_};
    Staging staging_{git_, window_, snapshot_, changes_, discards_, services_.trash};
    CommitDraft draft_{git_, window_, snapshot_, changes_, undo_, services_.messages};
    History history_{git_, window_, snapshot_};
    HistoryMatches matches_{git_, window_, history_};
    Rewriting rewriting_{git_, window_, snapshot_, changes_, history_};
    CommitInto into_{actors()};
    Trail trail_{git_, window_, snapshot_, history_};
};

} // namespace plovik
