// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/readers/WebLinkReaders.h"

#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/WebLinks.h"

namespace plovik {

gitkit::WebLink readWebLink(const gitkit::GitRepository& repo, const gitkit::WebLinkRequest& request)
{
    return gitkit::webLink(repo, request);
}

gitkit::ReferenceAddresses readReferenceAddresses(const gitkit::GitRepository& repo,
                                                  const gitkit::WebLinkRequest& request)
{
    const auto place = gitkit::webPlace(repo, request);
    if (!place)
        return {};
    return {.issue = gitkit::issueAddress(*place, {}), .request = gitkit::requestAddress(*place, {})};
}

} // namespace plovik
