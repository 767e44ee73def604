// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/readers/AmendReaders.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/GitRepository.h"

#include <algorithm>
#include <utility>

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

std::vector<std::string> readRecentMessages(const gitkit::GitRepository& repo)
{
    constexpr const char* most = "--max-count=30";
    constexpr std::size_t mostMessages = 12;
    std::vector<std::string> messages;
    const gitkit::GitOutput log = repo.runner().output({"log", "-z", most, "--no-merges", "--no-show-signature",
                                                        "--encoding=UTF-8", "--format=tformat:%B", "HEAD", "--"});
    if (log.status != 0) // nothing has been committed yet
        return messages;
    for (std::string& message : gitkit::splitNul(log.stdoutBytes)) {
        while (message.ends_with('\n'))
            message.pop_back();
        if (!message.empty() && messages.size() < mostMessages &&
            std::ranges::find(messages, message) == messages.end())
            messages.push_back(std::move(message));
    }
    return messages;
}

std::string readIdentity(const gitkit::GitRepository& repo)
{
    const std::string identity = repo.runner().bytes({"var", "GIT_COMMITTER_IDENT"});
    return identity.substr(0, identity.find('>') + 1);
}

} // namespace plovik
