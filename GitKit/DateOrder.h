// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Commit.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace gitkit {

/// Remembers which hashes were put in, by 64 bits of each: eight bytes a hash, and one wrong answer in some billions.
class HashSet {
public:
    void insert(const std::string& hash);
    bool contains(const std::string& hash) const;

private:
    std::size_t place(std::uint64_t key) const;

    std::vector<std::uint64_t> keys_; ///< a power of two of places; 0 is free
    std::size_t count_ = 0;
};

/// Puts commits into the order of `git log --date-order` while they arrive in git's default order, which needs no walk
/// of the whole history before the first of them. A commit is handed on once a window of later ones has arrived: among
/// those whose known children are all handed on, the one with the newest committer date.
///
/// A value for one thread at a time. Costs the logarithm of the window for each commit.
class DateOrder {
public:
    /// What comes first among the commits that could come next.
    enum class First {
        newest,  ///< the newest committer date; among equals the tips, and then what lost its last child first
        earliest ///< the earliest arrived: where parents are missing, dates alone would put them above their children
    };
    static constexpr std::size_t usualWindow = 256;

    explicit DateOrder(First first = First::newest, std::size_t window = usualWindow) : first_(first), window_(window)
    {}

    void add(Commit commit, Date committed);
    /// Says that no more commits arrive.
    void finish() { isFinished_ = true; }

    /// Returns the next commit, or nullopt when more must arrive first, or all are handed on.
    std::optional<Commit> take();

    /// Returns whether a commit has arrived after one of its parents was handed on: the dates are wrong by more than
    /// the window. The order is then not git's.
    bool isWrong() const { return isWrong_; }

private:
    struct Waiting {
        Commit commit;
        std::int64_t date = 0;
        std::uint64_t arrival = 0;
        int children = 0; ///< that have arrived and are not handed on
        bool isReady = false;
    };
    struct Ready {
        std::int64_t date;
        std::uint64_t rank; ///< the lowest comes first among equal dates
        std::size_t slot;
        bool operator<(const Ready& other) const { return date != other.date ? date < other.date : rank > other.rank; }
    };

    std::size_t freeSlot();
    void makeReady(std::size_t slot, std::uint64_t rank);
    void release(const std::string& parent);

    First first_;
    std::size_t window_;
    bool isFinished_ = false;
    bool isWrong_ = false;
    std::uint64_t arrivals_ = 0;
    std::uint64_t releases_ = 0;
    std::vector<Waiting> slots_;
    std::vector<std::size_t> freeSlots_;
    std::unordered_map<std::string, std::size_t> waiting_; ///< the slots of those that are not handed on
    std::unordered_map<std::string, int> children_;        ///< of commits that have not arrived: children not handed on
    std::vector<Ready> ready_; ///< a heap; an entry is void once its commit got another child
    HashSet handedOn_;
};

} // namespace gitkit
