// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/UndoStep.h"
#include "GitKit/runner/GitStream.h"

#include <optional>
#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

/// Moves refs all together or not at all, with time for other work in between. While it lives the refs are locked, and no
/// other git can move them. One thread at a time; the functions block.
class RefTransaction {
public:
    /// Locks the refs and makes sure that all of them can be moved. Symbolic refs are written themselves, not what they
    /// point to. `reason` is the line for their reflogs. Throws GitError when a ref is not as expected or is locked, and
    /// when a hook says no; nothing has changed then.
    RefTransaction(const GitRepository& repo, const std::string& reason, const std::vector<RefUpdate>& updates);
    /// Moves nothing unless commit() was called. Waits until git has given the locks back.
    ~RefTransaction();
    RefTransaction(const RefTransaction&) = delete;
    RefTransaction& operator=(const RefTransaction&) = delete;

    /// Moves the refs. Throws GitError when git fails all the same, as on a full disk.
    void commit();

private:
    void await(const std::string& answer);

    std::optional<GitStream> git_; ///< nullopt when there is nothing to move
    std::string heard_;
};

} // namespace gitkit
