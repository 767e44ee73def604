// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Identity.h"

#include "GitKit/Text.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/RefArguments.h"

namespace gitkit {

namespace {

std::string settingOf(const GitRepository& repo, const char* key)
{
    const GitOutput value = repo.runner().output({"config", "--get", key});
    return value.status == 0 ? std::string(trimmed(value.stdoutBytes, "\n")) : std::string();
}

} // namespace

Identity identityNow(const GitRepository& repo)
{
    return {settingOf(repo, "user.name"), settingOf(repo, "user.email")};
}

void setIdentity(const GitRepository& repo, const Identity& identity, IdentityPlace place)
{
    const char* const file = place == IdentityPlace::everywhere ? "--global" : "--local";
    repo.runner().accepted({"config", file, "user.name", identity.name});
    repo.runner().accepted({"config", file, "user.email", identity.email});
}

void requireReplayer(const GitRepository& repo, const std::optional<std::string>& onto)
{
    const auto lacks = [&repo](const std::string& one, const std::string& other) {
        return withoutLineEnd(
                   repo.runner().bytes({"rev-list", "--count", "--max-count=1", other, "--not", one, "--"})) != "0";
    };
    const std::string other = onto ? revisionArgument("rev-list", *onto) : std::string();
    if (!onto || (lacks(other, "HEAD") && lacks("HEAD", other)))
        repo.runner().accepted({"var", "GIT_COMMITTER_IDENT"});
}

} // namespace gitkit
