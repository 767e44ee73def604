// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/readers/AmendReaders.h"

#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/GitRepository.h"

namespace plovik {

AmendedCommit readAmendedCommit(const gitkit::GitRepository& repo, const std::string& hash)
{
    constexpr const char* mostBranches = "--count=4";
    AmendedCommit amended{.files = repo.commitDetail(hash, gitkit::CommitKind::ordinary).files, .remoteBranches = {}};
    const std::string names = repo.runner().bytes(
        {"for-each-ref", mostBranches, "--contains", hash, "--format=%(refname:lstrip=2)", "refs/remotes"});
    gitkit::Pieces lines(names, '\n');
    while (const auto line = lines.next()) {
        if (!line->empty() && !line->ends_with("/HEAD"))
            amended.remoteBranches.emplace_back(*line);
    }
    return amended;
}

std::string readIdentity(const gitkit::GitRepository& repo)
{
    const std::string identity = repo.runner().bytes({"var", "GIT_COMMITTER_IDENT"});
    return identity.substr(0, identity.find('>') + 1);
}

} // namespace plovik
