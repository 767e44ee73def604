// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/ScratchIndex.h"

#include "GitKit/runner/GitError.h"

#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace gitkit {

namespace {

/// Copies an index with its time: git takes an entry that is as young as the index for one that may have changed since,
/// and in a younger copy it would miss changes.
void copyIndex(const std::filesystem::path& source, const std::filesystem::path& copy, std::error_code& failure)
{
    const auto time = std::filesystem::last_write_time(source, failure);
    if (!failure)
        std::filesystem::copy_file(source, copy, failure);
    if (!failure)
        std::filesystem::last_write_time(copy, time, failure);
}

} // namespace

ScratchIndex::ScratchIndex(const GitRunner& runner, const std::filesystem::path& source) : runner_(runner)
{
    std::error_code failure;
    std::string pattern = (std::filesystem::temp_directory_path(failure) / "plovik-index-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr)
        throw GitError("update-index", 1,
                       "No temporary folder could be made: " + std::generic_category().message(errno) + ".");
    folder_ = pattern;
    if (source.empty())
        return;
    copyIndex(source, folder_ / "index", failure);
    if (failure && failure != std::errc::no_such_file_or_directory) {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
        throw GitError("update-index", 1, "The index could not be copied: " + failure.message() + ".");
    }
}

ScratchIndex::~ScratchIndex()
{
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

RunOptions ScratchIndex::options(RunOptions options) const
{
    options.environment.emplace_back("GIT_INDEX_FILE", (folder_ / "index").string());
    // Git writes the greater part of a split index into the repository.
    options.settings.insert(options.settings.end(),
                            {"core.splitIndex=false", "core.hooksPath=/dev/null", "core.safecrlf=false"});
    return options;
}

} // namespace gitkit
