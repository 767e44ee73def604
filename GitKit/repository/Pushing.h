// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Push.h"

#include <string>
#include <string_view>
#include <vector>

namespace gitkit {

class GitRepository;

// Sending branches and tags to a remote, and deleting them there. Any thread; these block and throw as the methods of
// GitRepository do. Names go to git in full, so that a branch and a tag of one name are told apart.

/// Reads what a push would do, from what is here. Nothing is asked of the remote.
PushPreview pushPreview(const GitRepository& repo, const PushQuestion& question);

/// Returns where a plain push of a branch goes: to the branch of the same name on the remote that git would choose. The remote
/// is empty where nothing says which.
RemoteBranch pushedTo(const GitRepository& repo, const std::string& branch);

/// Pushes a branch. One that is not there yet is made and nothing else, and one that is replaced must be where the caller
/// saw it: otherwise nothing is changed, which is ErrorKind::notFastForward. Returns
/// the address on the web that the server has told, as for a new request; empty when it has told none.
std::string pushBranch(const GitRepository& repo, const Push& push);

/// Asks the remote where its branch is, and fetches that. Returns its full hash; empty when the remote has no such branch.
std::string lookAtRemote(const GitRepository& repo, const RemoteBranch& branch);

void pushTag(const GitRepository& repo, const std::string& remote, const std::string& tag);

/// Asks the remote which of the tags that are here it lacks.
TagsBeside tagsBeside(const GitRepository& repo, const std::string& remote);

/// Pushes tags, without refs/tags. One that is there by now under another hash is refused; the others are pushed.
void pushTags(const GitRepository& repo, const std::string& remote, const std::vector<std::string>& tags);

/// Gives branches of one remote back the commits that they had, all or none, if they are still as they were left. Throws
/// ErrorKind::changedMeanwhile when one is not.
void pushBack(const GitRepository& repo, const std::vector<LostThere>& lost);

/// Deletes a ref of a remote, given by its full name there, if it is still `seen`. Throws ErrorKind::changedMeanwhile when it
/// is not, and when it is gone already.
void deleteOnRemote(const GitRepository& repo, const std::string& remote, const std::string& ref,
                    const std::string& seen);

/// Throws where a push to the remote would replace and delete whatever is there.
void requireNoMirror(const GitRepository& repo, const std::string& remote);

/// Parses what `git range-diff -s` prints with whole hashes.
std::vector<RangeDiffRow> parseRangeDiff(std::string_view output);

} // namespace gitkit
