// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/readers/CommitReaders.h"

#include "GitKit/parsers/DisplayOrder.h"
#include "GitKit/repository/Commits.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Signatures.h"

namespace plovik {

gitkit::CommitDetail readCommit(const gitkit::GitRepository& repo, const CommitRequest& request)
{
    gitkit::CommitDetail detail = repo.commitDetail(request.hash, request.kind);
    gitkit::sortForDisplay(detail.files);
    return detail;
}

std::vector<gitkit::ChangeCounts> readCounts(const gitkit::GitRepository& repo, const CommitRequest& request)
{
    std::vector<gitkit::ChangeCounts> counts = gitkit::changeCounts(repo, request.hash, request.kind);
    gitkit::sortForDisplay(counts);
    return counts;
}

gitkit::ParsedDiff readCommitDiff(const gitkit::GitRepository& repo, const CommitDiffRequest& request)
{
    return repo.commitDiff(request.hash, request.file, request.reading);
}

gitkit::Signature readSignature(const gitkit::GitRepository& repo, const std::string& hash)
{
    return gitkit::checkedSignature(repo, hash);
}

std::string readCommitHash(const gitkit::GitRepository& repo, const std::string& name)
{
    return gitkit::resolveCommit(repo, name);
}

} // namespace plovik
