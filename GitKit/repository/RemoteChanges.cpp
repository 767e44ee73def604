// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/RemoteChanges.h"

#include "GitKit/Text.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/RefArguments.h"
#include "GitKit/runner/GitError.h"

#include <algorithm>
#include <string_view>

namespace gitkit {

namespace {

std::string keyOf(const std::string& remote, const char* setting) { return "remote." + remote + '.' + setting; }

/// Returns the first value that a remote's setting has; empty for none.
std::string firstValue(const GitRepository& repo, const std::string& key)
{
    const GitOutput found = repo.runner().output({"config", "-z", "--get-all", key});
    return found.status == 0 ? found.stdoutBytes.substr(0, found.stdoutBytes.find('\0')) : std::string();
}

bool isOn(const GitRepository& repo, const std::string& key)
{
    return withoutLineEnd(repo.runner().output({"config", "--type=bool", "--get", key}).stdoutBytes) == "true";
}

void requireUrl(const char* command, const std::string& url)
{
    if (trimmed(url).empty())
        throw GitError(command, 1, "A remote needs an address.", ErrorKind::invalidName);
}

void writeUrls(const GitRepository& repo, const RemoteSettings& before, const RemoteSettings& after)
{
    const std::string pushKey = keyOf(after.name, "pushurl");
    if (after.url != before.url)
        repo.runner().accepted({"remote", "set-url", "--", after.name, after.url});
    if (after.pushUrl == before.pushUrl)
        return;
    if (after.pushUrl.empty())
        repo.runner().accepted({"config", "--local", "--unset-all", pushKey});
    else
        repo.runner().accepted({"remote", "set-url", "--push", "--", after.name, after.pushUrl});
}

void writeFetching(const GitRepository& repo, const RemoteSettings& before, const RemoteSettings& after)
{
    const std::string key = keyOf(after.name, "skipFetchAll");
    if (after.skipsFetchAll && !before.skipsFetchAll)
        repo.runner().accepted({"config", "--local", "--replace-all", key, "true"});
    else if (!after.skipsFetchAll && before.skipsFetchAll)
        repo.runner().accepted({"config", "--local", "--unset-all", key});
}

} // namespace

std::optional<RemoteSettings> remoteSettings(const GitRepository& repo, const std::string& name)
{
    const std::vector<std::string> all = repo.remotes();
    if (std::ranges::find(all, name) == all.end())
        return std::nullopt;
    return RemoteSettings{.name = name,
                          .url = firstValue(repo, keyOf(name, "url")),
                          .pushUrl = firstValue(repo, keyOf(name, "pushurl")),
                          .skipsFetchAll = isOn(repo, keyOf(name, "skipFetchAll"))};
}

std::vector<RemoteSettings> allRemoteSettings(const GitRepository& repo)
{
    std::vector<RemoteSettings> all;
    for (const std::string& name : repo.remotes()) {
        if (std::optional<RemoteSettings> found = remoteSettings(repo, name))
            all.push_back(*std::move(found));
    }
    return all;
}

void addRemote(const GitRepository& repo, const RemoteSettings& added, FetchAfterAdding fetches)
{
    const std::string name = newNameArgument("remote", added.name);
    requireUrl("remote", added.url);
    repo.runner().accepted({"remote", "add", "--", name, added.url});
    const RemoteSettings now{.name = name, .url = added.url};
    writeUrls(repo, now, added);
    writeFetching(repo, now, added);
    if (fetches == FetchAfterAdding::yes)
        repo.runner().accepted({"fetch", "--progress", "--", name});
}

void changeRemote(const GitRepository& repo, const RemoteSettings& before, const RemoteSettings& after)
{
    requireUrl("remote", after.url);
    if (remoteSettings(repo, before.name) != before)
        throw GitError("remote", 1, "The remote " + inQuotes(before.name) + " was changed meanwhile.",
                       ErrorKind::changedMeanwhile);
    if (after.name != before.name)
        repo.runner().accepted({"remote", "rename", "--", before.name, newNameArgument("remote", after.name)});
    writeUrls(repo, before, after);
    writeFetching(repo, before, after);
}

void removeRemote(const GitRepository& repo, const std::string& name)
{
    repo.runner().accepted({"remote", "remove", "--", name});
}

} // namespace gitkit
