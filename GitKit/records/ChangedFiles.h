// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/FileChange.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace gitkit {

/// A list of changed files that never changes. Copies share it, so that a list of 100,000 files is passed on at no cost.
/// What is asked of all the files together is found out when the list is made, which the thread that read them does.
/// Any thread.
class ChangedFiles {
public:
    using List = std::vector<FileChange>;

    ChangedFiles() = default;
    ChangedFiles(List files) : made_(files.empty() ? nullptr : std::make_shared<const Made>(std::move(files))) {}
    ChangedFiles(std::initializer_list<FileChange> files) : ChangedFiles(List(files)) {}

    const List& list() const
    {
        static const List none;
        return made_ ? made_->files : none;
    }
    operator const List&() const { return list(); }

    auto begin() const { return list().begin(); }
    auto end() const { return list().end(); }
    std::size_t size() const { return list().size(); }
    bool empty() const { return !made_; }
    const FileChange& operator[](std::size_t place) const { return list()[place]; }
    const FileChange& at(std::size_t place) const { return list().at(place); }
    const FileChange& front() const { return list().front(); }

    /// Returns the first file with that path, or nullptr. Valid while this list or a copy lives. Takes constant time.
    const FileChange* find(std::string_view path) const
    {
        const auto [first, last] = placesOf(path);
        return first == last ? nullptr : &list()[first];
    }
    /// Returns the places of the files with that path, from the first to behind the last: none, one, or two when a file
    /// whose removal is staged is there again.
    std::pair<std::size_t, std::size_t> placesOf(std::string_view path) const
    {
        const std::size_t first = made_ ? made_->placeOf(path) : 0;
        std::size_t last = first;
        while (last < size() && (*this)[last].path == path)
            ++last;
        return {first, last};
    }

    /// The number of files with staged changes.
    std::ptrdiff_t stagedCount() const { return made_ ? made_->staged : 0; }
    /// The number of those of which everything is staged.
    std::ptrdiff_t fullyStagedCount() const { return made_ ? made_->fullyStaged : 0; }
    std::ptrdiff_t untrackedCount() const { return made_ ? made_->untracked : 0; }
    /// The places of the conflicted files, in rising order.
    const std::vector<std::uint32_t>& conflicted() const
    {
        static const std::vector<std::uint32_t> none;
        return made_ ? made_->conflicted : none;
    }
    /// Returns a hash of the paths in their order and of which of them are conflicted.
    std::size_t arrangement() const { return made_ ? made_->arrangement : 0; }

    /// Returns whether both are copies of one list.
    bool isSameList(const ChangedFiles& other) const { return made_ == other.made_; }
    bool operator==(const ChangedFiles& other) const
    {
        return isSameList(other) ||
               (arrangement() == other.arrangement() && stagedCount() == other.stagedCount() && list() == other.list());
    }

private:
    struct Made {
        explicit Made(List taken) : files(std::move(taken)), slots(std::bit_ceil(2 * files.size()), free)
        {
            arrangement = files.size();
            for (std::uint32_t place = 0; place < files.size(); ++place)
                add(place);
        }

        void add(std::uint32_t place)
        {
            const FileChange& file = files[place];
            const std::size_t hash = std::hash<std::string_view>{}(file.path);
            std::uint32_t& slot = slots[slotOf(file.path, hash)];
            slot = slot == free ? place : slot;
            staged += file.hasStaged() ? 1 : 0;
            fullyStaged += file.stageState() == StageState::full ? 1 : 0;
            untracked += file.isUntracked() ? 1 : 0;
            if (file.isConflicted)
                conflicted.push_back(place);
            arrangement = (arrangement * 1099511628211U ^ hash) + (file.isConflicted ? 1 : 0);
        }

        /// Returns the slot in which the path's place is, or the free one where it belongs.
        std::size_t slotOf(std::string_view path, std::size_t hash) const
        {
            std::size_t slot = hash & (slots.size() - 1);
            while (slots[slot] != free && files[slots[slot]].path != path)
                slot = (slot + 1) & (slots.size() - 1);
            return slot;
        }

        /// Returns the place of the first file with that path, or the number of files.
        std::size_t placeOf(std::string_view path) const
        {
            const std::uint32_t place = slots[slotOf(path, std::hash<std::string_view>{}(path))];
            return place == free ? files.size() : place;
        }

        static constexpr std::uint32_t free = UINT32_MAX;

        List files;
        std::vector<std::uint32_t> slots; ///< places by hashes of paths; always with free ones
        std::vector<std::uint32_t> conflicted;
        std::size_t arrangement = 0;
        std::ptrdiff_t staged = 0;
        std::ptrdiff_t fullyStaged = 0;
        std::ptrdiff_t untracked = 0;
    };

    std::shared_ptr<const Made> made_; ///< nullptr when there are no files
};

} // namespace gitkit
