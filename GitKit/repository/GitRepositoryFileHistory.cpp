// SPDX-License-Identifier: GPL-3.0-or-later
// The history of one file: who wrote each line, and which commits changed it.
//
// Where the commands differ from the plain ones:
//   --no-textconv           shows the file and not the output of a converter
//   :(literal)              is before a path because it may hold wildcards

#include "GitKit/parsers/BlameParser.h"
#include "GitKit/parsers/LogParser.h"
#include "GitKit/repository/FileLogStream.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/PathCommand.h"
#include "GitKit/repository/RefArguments.h"
#include "GitKit/runner/GitError.h"

namespace gitkit {

namespace {

using Arguments = std::vector<std::string>;

} // namespace

std::vector<FileRevision> GitRepository::fileLog(const std::string& path, const std::optional<std::string>& revision,
                                                 int limit) const
{
    Arguments arguments{"log", "--follow", "-M", "--name-status"};
    arguments.insert(arguments.end(), LogParser::decorationArguments.begin(), LogParser::decorationArguments.end());
    arguments.insert(arguments.end(), {"-z", "-n", std::to_string(limit), LogParser::listFormat});
    if (revision)
        arguments.push_back(revisionArgument("log", *revision));
    arguments.insert(arguments.end(), {"--", literalPathspec(path)});
    auto revisions = LogParser::parseFileLog(runner_.bytes(arguments), path);
    FollowedPath followed(path);
    std::erase_if(revisions, [&followed](FileRevision& revision) { return !followed.complete(revision); });
    return revisions;
}

std::vector<BlameLine> GitRepository::blame(const std::string& path, const std::optional<std::string>& revision) const
{
    Arguments arguments{"blame", "--porcelain", "--no-textconv"};
    if (revision || isBare(root_)) // which has no files of its own
        arguments.push_back(revisionArgument("blame", revision.value_or("HEAD")));
    arguments.insert(arguments.end(), {"--", path});
    try {
        return BlameParser::parse(runner_.bytes(arguments));
    } catch (const GitError& error) {
        // The setting is often for all of a user's repositories, and the file is in few of them.
        if (error.kind() != ErrorKind::ignoreListMissing)
            throw;
    }
    arguments.insert(arguments.begin() + 1, "--no-ignore-revs-file");
    return BlameParser::parse(runner_.bytes(arguments));
}

} // namespace gitkit
