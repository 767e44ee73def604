// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Requests.h"

#include "GitKit/Text.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/RefArguments.h"
#include "GitKit/runner/GitError.h"

#include <vector>

namespace gitkit {

std::string fetchRequest(const GitRepository& repo, const std::string& remote, int number)
{
    const std::string name = newNameArgument("fetch", remote);
    const std::string id = std::to_string(number);
    const std::string listed =
        repo.runner().bytes({"ls-remote", "--", name, "refs/pull/" + id + "/head",
                             "refs/merge-requests/" + id + "/head", "refs/pull-requests/" + id + "/from"});
    // A line is "HASH<tab>REF".
    const std::size_t tab = listed.find('\t');
    if (tab == std::string::npos)
        throw GitError("fetch", 1, inQuotes(remote) + " offers no request " + id + ".", ErrorKind::noSuchRef);
    const std::string hash = listed.substr(0, tab);
    const std::string ref = listed.substr(tab + 1, listed.find('\n', tab) - tab - 1);
    repo.runner().accepted({"fetch", "--progress", "--no-tags", "--no-write-fetch-head", "--", name, ref});
    // It may have been pushed to meanwhile; what was listed is then among what was fetched, or is asked for again.
    return std::string(withoutLineEnd(repo.runner().bytes({"rev-parse", "--verify", hash + "^{commit}"})));
}

} // namespace gitkit
