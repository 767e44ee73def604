// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/FileLogStream.h"

#include "GitKit/parsers/LogParser.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/PathCommand.h"
#include "GitKit/repository/RefArguments.h"

#include <exception>
#include <string_view>

namespace gitkit {

bool FollowedPath::complete(FileRevision& revision)
{
    CommitFile& file = revision.file;
    if (file.path.starts_with(path_ + '/'))
        return false;
    if (file.path == asked_ && file.status == 'M')
        file.path = path_;
    path_ = file.originalPath.value_or(file.path);
    return true;
}

FileLogStream::FileLogStream(const GitRepository& repo, const std::string& path,
                             const std::optional<std::string>& revision, const std::optional<LineRange>& lines)
    : asked_(path), isOfLines_(lines.has_value()), path_(path)
{
    std::vector<std::string> arguments{"log", "--no-decorate", "-z"};
    if (lines)
        arguments.insert(arguments.end(),
                         {"-M", "--no-textconv", "--no-ext-diff", LogParser::linesFormat,
                          "-L" + std::to_string(lines->first) + ',' + std::to_string(lines->last) + ':' + path});
    else
        arguments.insert(arguments.end(), {"--follow", "-M", "--name-status", LogParser::streamFormat});
    if (revision)
        arguments.push_back(revisionArgument("log", *revision));
    arguments.emplace_back("--");
    if (!lines)
        arguments.push_back(literalPathspec(path));
    git_.emplace(repo.runner().stream(arguments));
}

std::optional<FileRevision> FileLogStream::takeRevision(std::string_view& rest)
{
    return isOfLines_ ? LogParser::takeLinesRevision(rest, asked_, hasEnded_)
                      : LogParser::takeRevision(rest, asked_, hasEnded_);
}

/// Gives a revision the name that its file had. Returns false for one that is to be left out.
bool FileLogStream::complete(FileRevision& revision)
{
    if (!isOfLines_)
        return path_.complete(revision);
    asked_ = revision.file.originalPath.value_or(revision.file.path);
    return true;
}

std::optional<FileRevision> FileLogStream::take(Clock::time_point until)
{
    while (true) {
        std::string_view rest = std::string_view(bytes_).substr(taken_);
        std::optional<FileRevision> read = takeRevision(rest);
        taken_ = bytes_.size() - rest.size();
        if (read && !read->commit.hash.empty() && complete(*read))
            return read;
        if (read)
            continue;
        if (hasEnded_ || Clock::now() >= until)
            return std::nullopt;
        bytes_.erase(0, std::exchange(taken_, 0));
        hasEnded_ = !git_->read(bytes_, until);
        if (hasEnded_)
            git_.reset();
    }
}

void FileLogStream::collect(std::vector<FileRevision>& found, std::size_t most, std::chrono::milliseconds pause)
{
    if (ahead_)
        found.push_back(*std::exchange(ahead_, std::nullopt));
    auto until = found.empty() ? Clock::time_point::max() : Clock::now() + pause;
    while (found.size() < most) {
        std::optional<FileRevision> revision = take(until);
        if (!revision)
            return;
        if (found.empty())
            until = Clock::now() + pause;
        found.push_back(*std::move(revision));
    }
    ahead_ = take(until);
}

std::vector<FileRevision> FileLogStream::next(std::size_t most, std::chrono::milliseconds pause)
{
    std::vector<FileRevision> found;
    try {
        collect(found, most, pause);
    } catch (const std::exception&) {
        // The next call throws it again.
        if (found.empty())
            throw;
    }
    return found;
}

} // namespace gitkit
