// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/GitRef.h"
#include "GitKit/records/OperationInProgress.h"
#include "GitKit/records/RepoStatus.h"
#include "GitKit/records/Stash.h"
#include "app/store/GitAccess.h"
#include "app/store/Observed.h"

#include <QCoreApplication>
#include <QString>

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace plovik {

class WindowState;
struct RepositoryState;

/// How much of the repository a refresh reads again.
enum class RefreshScope { status, full };

/// The state of the repository as it was last read, and the cycle that reads it again. A failed read leaves the values
/// unchanged. Owned by the store; main thread.
class Snapshot {
    Q_DECLARE_TR_FUNCTIONS(plovik::Snapshot)

public:
    Snapshot(const GitAccess& git, WindowState& window);
    Snapshot(const Snapshot&) = delete;
    Snapshot& operator=(const Snapshot&) = delete;

    Observed<gitkit::RepoStatus, Snapshot> status;
    Observed<std::vector<gitkit::GitRef>, Snapshot> branches;
    Observed<std::vector<gitkit::GitRef>, Snapshot> remoteBranches;
    Observed<std::vector<gitkit::GitRef>, Snapshot> tags;
    Observed<std::vector<std::string>, Snapshot> remotes;
    Observed<std::vector<gitkit::Stash>, Snapshot> stashes;
    /// The operation in which git has stopped, such as a merge; read together with the status.
    Observed<std::optional<gitkit::OperationInProgress>, Snapshot> inProgress;

    /// The refs that replace objects, as RefListing has them.
    const std::string& replacements() const { return replacements_; }

    /// Counts the successful status reads. Readers of file contents read again when it grows.
    Observed<qint64, Snapshot> generation{0};
    /// Why a part of the last refresh failed; empty when all of it succeeded. Distinguishes an unreadable repository
    /// from an empty one.
    Observed<QString, Snapshot> readProblem;
    /// Whether the first full refresh has ended. Until then empty values only mean that git has not answered yet.
    Observed<bool, Snapshot> hasLoaded{false};

    const std::filesystem::path& root() const { return git_.root(); }
    /// Returns this working tree's own git directory, or nullopt before the first status has been read.
    const std::optional<std::filesystem::path>& gitDirectory() const { return gitDirectory_; }

    /// Returns the branch, or "HEAD detached at …", or an empty text when there is neither.
    QString headDescription() const;
    bool hasRef(const std::string& fullName) const;
    /// Returns whether there may be a history: HEAD or another ref has commits, or the status could not be read, which says
    /// nothing about the history. The current branch may have none while others do.
    bool mayHaveCommits() const;
    bool hasStash(const std::string& hash) const;
    std::size_t conflictCount() const { return status.value().files.conflicted().size(); }

    /// Asks for a new read and returns at once. All requests made while a read runs are answered by one read after it.
    void refresh(RefreshScope scope);

    /// Functions that other parts run around a read, called in the order in which they were added.
    struct Follower {
        std::function<void()> beforeListings = {}; ///< at the beginning of a full refresh
        std::function<void()> beforeStatus = {};
        std::function<void(const RepositoryState& read)> operationRead = {};
        std::function<void()> afterStatus = {}; ///< also after a failure
        std::function<void()> refsRead = {};    ///< not after a failure
        /// Called in a full refresh, which ends when this has ended.
        std::function<QCoro::Task<>()> afterListings = {};
    };
    void follow(Follower follower) { followers_.push_back(std::move(follower)); }

private:
    QCoro::Task<> refreshing(RefreshScope scope);
    QCoro::Task<> reading(RefreshScope scope);
    QCoro::Task<> readAll();
    QCoro::Task<> readStatus();
    QCoro::Task<> readRefs();
    QCoro::Task<> readRemotes();
    QCoro::Task<> readStashes();
    void applyStatus(gitkit::RepoStatus read);
    void dropGonePaths();
    void applyOperation(const RepositoryState& read);
    void dropStaleSelection();
    void noteListingProblem(const std::exception& thrown);

    const GitAccess& git_;
    WindowState& window_;
    std::vector<Follower> followers_;
    std::optional<std::filesystem::path> gitDirectory_;
    std::string replacements_;
    std::string preparedMessage_; ///< git's message for the next commit, with its comments
    bool isRefreshing_ = false;
    std::optional<RefreshScope> pending_;
    QString statusProblem_;  ///< why the last status read failed
    QString listingProblem_; ///< the first failure of the last full refresh's other reads
};

} // namespace plovik
