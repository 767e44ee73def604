// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Divergence.h"
#include "app/store/GitAccess.h"
#include "app/store/Observed.h"

#include <QCoroTask>

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <stop_token>
#include <string>
#include <unordered_map>
#include <vector>

namespace gitkit {
class DivergenceMemory;
} // namespace gitkit

namespace plovik {

class Snapshot;

/// How far branches are ahead of and behind their upstreams. What was not counted before is counted after the refs were
/// listed, one branch after another: the checked out one, then those in sight, then the rest. Nothing waits for that,
/// and it ends when the branches move or the window closes.
///
/// Owned by the store; main thread.
class UpstreamCounts {
public:
    /// Counts are remembered in files in `cacheFolder`; an empty path keeps them in memory only.
    UpstreamCounts(const GitAccess& git, Snapshot& snapshot, std::filesystem::path cacheFolder);
    ~UpstreamCounts();
    UpstreamCounts(const UpstreamCounts&) = delete;
    UpstreamCounts& operator=(const UpstreamCounts&) = delete;

    /// Grows when counts have changed.
    Observed<qint64, UpstreamCounts> changes{0};

    /// Returns the counts of the branch with that full name. Both are 0 while they are not known, and where there is no
    /// upstream.
    gitkit::Divergence of(const std::string& branch) const;
    /// Returns those of the checked out branch.
    gitkit::Divergence ofHead() const { return of(headName()); }

    /// Sets the full names of the branches that the user sees, which are counted before others.
    void setInSight(std::vector<std::string> branches) { inSight_ = std::move(branches); }

private:
    struct Branch {
        std::string upstream; ///< full name
        gitkit::CommitPair tips = {};
        std::optional<gitkit::Divergence> counted = {}; ///< of `tips`, or of earlier ones for a moment
        bool isCurrent = false;                         ///< whether `counted` is that of `tips`
    };
    struct Memory {
        std::filesystem::path commonDirectory;
        std::string replacements;
        std::string cuts; ///< what historyCuts() returned
        std::shared_ptr<gitkit::DivergenceMemory> counts;
    };
    static Memory prepare(const gitkit::GitRepository& repo, const std::filesystem::path& cacheFolder,
                          const std::filesystem::path& commonDirectory, const std::string& replacements);
    static std::optional<gitkit::Divergence> count(const gitkit::GitRepository& repo, const gitkit::CommitPair& tips,
                                                   const Memory& memory);

    void relist();
    QCoro::Task<> recalling(qint64 listing);
    void recall();
    QCoro::Task<> counting();
    QCoro::Task<> countNext(gitkit::CommitPair tips);
    void show(const gitkit::CommitPair& tips, gitkit::Divergence counted);
    QCoro::Task<> saving();
    const gitkit::CommitPair* next();
    const gitkit::CommitPair* uncounted(const std::string& name) const;
    void dropOldCounts();
    std::string headName() const;

    const GitAccess& git_;
    Snapshot& snapshot_;
    const std::filesystem::path cacheFolder_;
    std::unordered_map<std::string, Branch> branches_; ///< those with an upstream that exists, by full name
    std::vector<std::string> order_;                   ///< their names, as the sidebar shows them
    std::size_t place_ = 0;                            ///< the first of `order_` that may not be counted yet
    std::vector<std::string> inSight_;
    qint64 listings_ = 0; ///< number of the newest list of refs
    Memory memory_;
    std::set<gitkit::CommitPair> failed_; ///< not tried again before the next list of refs
    gitkit::CommitPair running_;
    std::stop_source stop_;
    bool isCounting_ = false;
    int unsaved_ = 0;
    std::unique_ptr<Worker::Delay> patience_;
};

} // namespace plovik
