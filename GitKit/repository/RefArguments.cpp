// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/RefArguments.h"

#include "GitKit/Text.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitRunner.h"

#include <string_view>

namespace gitkit {

namespace {

bool isHash(std::string_view text)
{
    return text.size() >= 4 && text.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
}

} // namespace

std::string revisionArgument(const char* command, const std::string& revision)
{
    if (revision.starts_with('-'))
        throw GitError(command, 128, inQuotes(revision) + " is not a revision.", ErrorKind::noSuchRef);
    return revision;
}

std::string commitArgument(const char* command, const std::string& revision)
{
    return revisionArgument(command, revision) + "^{commit}";
}

std::string exactArgument(const char* command, const std::string& revision)
{
    if (!revision.starts_with("refs/") && !isHash(revision) && revision != "HEAD")
        throw GitError(command, 128, inQuotes(revision) + " is neither the full name of a branch or tag nor a hash.",
                       ErrorKind::noSuchRef);
    return revision;
}

std::string newNameArgument(const char* command, const std::string& name)
{
    if (name.empty())
        throw GitError(command, 128, "The name is empty.", ErrorKind::invalidName);
    if (name.starts_with('-'))
        throw GitError(command, 128, inQuotes(name) + " cannot be a name: it begins with “-”.", ErrorKind::invalidName);
    if (name == "@" || name == "HEAD" || name.find("@{") != std::string::npos)
        throw GitError(command, 128, inQuotes(name) + " cannot be a name: git reads it as something else.",
                       ErrorKind::invalidName);
    return name;
}

std::string shortestName(const GitRunner& runner, const std::string& ref)
{
    const std::string name(trimmed(runner.bytes({"for-each-ref", "--format=%(refname:short)", ref}), "\n"));
    if (name.empty() || name.starts_with('-'))
        return ref;
    const GitOutput read = runner.output({"rev-parse", "--verify", "--quiet", "--symbolic-full-name", name});
    return trimmed(read.stdoutBytes, "\n") == ref ? name : ref;
}

} // namespace gitkit
