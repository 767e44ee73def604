// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Signature.h"

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace gitkit {

class GitRepository;

// Signatures of commits. Hashes are full. Any thread; these block and throw as the methods of GitRepository do.

/// Returns whether the bytes of a commit have a signature in their header.
bool hasSignature(std::string_view commit);

/// Returns the commits among these that have a signature. No program checks any of them.
std::vector<std::string> signedAmong(const GitRepository& repo, const std::vector<std::string>& commits);

/// Has a commit's signature checked, by the programs that the user's own configuration names and never by those of the
/// repository's. They are ended after `limit`.
Signature checkedSignature(const GitRepository& repo, const std::string& commit,
                           std::chrono::milliseconds limit = std::chrono::seconds(3));

} // namespace gitkit
