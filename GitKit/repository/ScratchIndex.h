// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/runner/GitRunner.h"

#include <filesystem>
#include <string>
#include <vector>

namespace gitkit {

/// An index in a temporary folder, which is removed with it. For finding out what git would make of a file, and for
/// commands that write the index although they only read. No hook hears of what is written there. One thread.
class ScratchIndex {
public:
    /// Empty, or a copy of the index at `source`. Throws GitError when there is no room for it.
    explicit ScratchIndex(const GitRunner& runner, const std::filesystem::path& source = {});
    ~ScratchIndex();
    ScratchIndex(const ScratchIndex&) = delete;
    ScratchIndex& operator=(const ScratchIndex&) = delete;

    const GitRunner& runner() const { return runner_; }
    /// `options` with what makes git use this index.
    RunOptions options(RunOptions options = {}) const;

private:
    const GitRunner& runner_;
    std::filesystem::path folder_;
};

} // namespace gitkit
