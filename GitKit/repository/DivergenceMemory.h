// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Divergence.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace gitkit {

/// Remembers how far pairs of commits are apart, which never changes while no other part of the history is hidden. It
/// is kept in a file, so that a window that opens knows at once what an earlier one has counted. Everything works
/// without the file: one that is missing, damaged, from elsewhere or not readable is as good as empty, and what cannot
/// be written is forgotten when the last user of this object is gone.
///
/// Shared by the windows of one repository. Any thread.
class DivergenceMemory {
public:
    /// The most pairs that the file holds. Those that were used least recently go first.
    static constexpr std::size_t capacity = 16'384;

    /// Returns the memory of a repository, read from its file in `folder`, or the one that is in use already.
    /// `commonDirectory` is what gitDirectories() calls so. An empty `folder` means that no file is kept.
    static std::shared_ptr<DivergenceMemory> of(const std::filesystem::path& folder,
                                                const std::filesystem::path& commonDirectory);

    /// Reads `file`, which may not exist. `owner` names the repository; a file of another one is not used.
    DivergenceMemory(std::filesystem::path file, std::string owner);

    /// `cuts` is what historyCuts() returned.
    std::optional<Divergence> find(const CommitPair& pair, const std::string& cuts);
    void remember(const CommitPair& pair, const std::string& cuts, Divergence counted);

    /// Writes the file if there is anything new, together with what others have written meanwhile. Blocks.
    void save();

private:
    struct Entry {
        Divergence counted;
        std::int64_t used = 0; ///< in minutes since 1970
    };
    using Entries = std::map<std::string, Entry, std::less<>>; ///< by cuts and hashes

    static std::optional<Entries> parsed(std::string_view bytes, std::string_view owner);
    std::string written() const;
    void merge(Entries others);
    void drop();

    const std::filesystem::path file_;
    const std::string owner_;
    std::mutex saving_;
    std::mutex mutex_;
    Entries entries_;    ///< guarded by mutex_, as is the next
    bool isNew_ = false; ///< there is something that the file lacks
};

} // namespace gitkit
