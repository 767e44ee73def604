// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/CommitGraph.h"
#include "GitKit/records/HistoryScope.h"
#include "GitKit/repository/HistoryStream.h"
#include "app/store/HistoryRows.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace gitkit {
class GitRepository;
} // namespace gitkit

namespace plovik {

/// What one read of a history has found.
struct HistoryPiece {
    HistoryRows::Block block; ///< the next rows; never null
    bool hasMore = false;
    bool isWithoutTags = false; ///< commits that only tags lead to are missing
    /// Wrong dates have spoilt the order: the history must be read again as git sorts it.
    bool isWrong = false;
    /// The history is not the one any more whose rows were read before.
    bool hasChanged = false;
    /// From here on the rows are those of the known list after so many rows.
    std::optional<std::size_t> goesOnAt = {};
};

/// A history that is read piece by piece and laid out as a graph. Searches have no graph: it would join commits that do
/// not belong together.
///
/// Used by one thread at a time; the calls block. Its git waits between them and is ended by close().
class HistoryReading {
public:
    using Repository = std::shared_ptr<const gitkit::GitRepository>;

    /// `known` are rows of the same history as it was read before; where the walk comes to the same place as at the end
    /// of one of their blocks, the piece ends and says so.
    HistoryReading(Repository repo, gitkit::HistoryWalk walk, const HistoryRows& known = {});

    /// Reads the next rows: at most `most`, fewer when the history ends or nothing more has come for a moment. Throws
    /// as gitkit::HistoryStream does.
    HistoryPiece read(std::size_t most);

    /// Ends git. The next read needs reopen() before, and then reads what is known once more without keeping it.
    void close() { stream_.reset(); }
    void reopen(Repository repo)
    {
        close();
        repo_ = std::move(repo);
    }
    /// Takes note that the rows read so far are the first `rows` of the history now.
    void moveTo(std::size_t rows) { read_ = rows; }

private:
    struct Joint {
        std::size_t rows;
        std::vector<std::string> lanes;
    };
    bool skipKnown();

    Repository repo_;
    gitkit::HistoryWalk walk_;
    std::optional<gitkit::HistoryStream> stream_;
    gitkit::GraphLayout layout_;
    std::size_t read_ = 0;                          ///< rows
    std::string last_;                              ///< hash of the last row
    std::unordered_map<std::string, Joint> joints_; ///< by the hash of a block's last row
};

/// The refs and settings that decide which commits a history has. Two readings of a history with equal sources have the
/// same rows.
struct HistorySource {
    gitkit::RefTips tips;
    std::string borders;                             ///< the contents of the files that cut histories off or graft them
    std::shared_ptr<const gitkit::RefLabels> labels; ///< made from the tips; never null

    std::filesystem::path commonDirectory; ///< of the git data that working trees share

    bool operator==(const HistorySource& other) const { return tips == other.tips && borders == other.borders; }
};

/// The commits at which walks began and begin, where they differ. Tags that are objects stand for their commits.
struct TipChanges {
    std::vector<std::string> before;
    std::vector<std::string> after;
    bool canBeKnown = true; ///< false when objects were replaced, which changes histories anywhere
};
TipChanges changedTips(const gitkit::RefTips& before, const gitkit::RefTips& after);

/// `commonDirectory` may be known from an earlier read, or empty. Blocks; throws as gitkit::readRefTips() does. Any thread.
HistorySource readHistorySource(const gitkit::GitRepository& repo, const std::filesystem::path& commonDirectory);

/// Returns whether readCommitOfHash() could find something.
bool looksLikeHash(const std::string& text);
/// Returns the commit of the scope whose hash begins with the text, if there is exactly one. Costs a walk of the history
/// where the text could be one. Blocks; any thread.
std::optional<gitkit::Commit> readCommitOfHash(const gitkit::GitRepository& repo, const gitkit::HistoryScope& scope,
                                               const std::string& text);

} // namespace plovik
