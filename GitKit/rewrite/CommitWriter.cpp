// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/rewrite/CommitWriter.h"

#include "GitKit/Text.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <system_error>

namespace gitkit {

namespace {

namespace fs = std::filesystem;
constexpr const char* helperIdentity = "Plovik <undo@plovik.invalid> 0 +0000";

bool signsCommits(const GitRepository& repo)
{
    const GitOutput value = repo.runner().output({"config", "--type=bool", "--get", "commit.gpgSign"});
    return value.status == 0 && withoutLineEnd(value.stdoutBytes) == "true";
}

/// A name, an address and a date, as a commit has them in one line.
struct Signature {
    std::string name;
    std::string address;
    std::string date;
};

Signature signatureOf(const std::string& line)
{
    const std::size_t open = line.find('<');
    const std::size_t close = line.rfind('>');
    if (open == std::string::npos || close == std::string::npos || close < open)
        return {line, {}, {}};
    return {std::string(trimmed(line.substr(0, open))), line.substr(open + 1, close - open - 1),
            std::string(trimmed(line.substr(close + 1)))};
}

} // namespace

CommitWriter::CommitWriter(const GitRepository& repo, const RunOptions& objects, Signing signing)
    : repo_(repo), objects_(objects), signs_(signing == Signing::asConfigured && signsCommits(repo))
{
    // What is only tried needs no name.
    const RunOptions any{.accepting = {0, 128}};
    committer_ = withoutLineEnd(
        repo.runner().bytes({"var", "GIT_COMMITTER_IDENT"}, signing == Signing::none ? any : RunOptions()));
    if (committer_.empty())
        committer_ = helperIdentity;
    std::string name = (fs::temp_directory_path() / "plovik-commits-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr)
        throw std::system_error(errno, std::generic_category(), "mkdtemp");
    folder_ = name;
}

CommitWriter::~CommitWriter()
{
    git_.reset();
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
}

std::string CommitWriter::write(CommitText commit)
{
    if (signs_)
        return signedCommit(commit);
    commit.committer = committer_;
    return store(bytesOf(commit));
}

std::string CommitWriter::writeHelper(const std::string& tree, const std::vector<std::string>& parents)
{
    return store(bytesOf({.tree = tree,
                          .parents = parents,
                          .author = helperIdentity,
                          .committer = helperIdentity,
                          .encoding = {},
                          .others = {},
                          .message = "x\n"}));
}

std::string CommitWriter::store(const std::string& bytes)
{
    // Bytes that git finds fault with today may be an old commit's own.
    if (!git_)
        git_.emplace(repo_.runner().dialogue(
            {"hash-object", "-t", "commit", "-w", "--literally", "--no-filters", "--stdin-paths"}, objects_));
    const fs::path file = folder_ / "commit";
    if (!(std::ofstream(file, std::ios::binary | std::ios::trunc) << bytes << std::flush))
        throw GitError("hash-object", 1, "A temporary file could not be written.");
    git_->write(file.string() + '\n');
    while (heard_.find('\n') == std::string::npos) {
        if (!git_->read(heard_))
            throw GitError("hash-object", 1, "Git ended before it had written a commit.");
    }
    std::string hash = heard_.substr(0, heard_.find('\n'));
    heard_.erase(0, hash.size() + 1);
    return hash;
}

std::string CommitWriter::signedCommit(const CommitText& commit) const
{
    const Signature author = signatureOf(commit.author);
    RunOptions options = objects_;
    options.input = commit.message;
    options.environment.insert(options.environment.end(), {{"GIT_AUTHOR_NAME", author.name},
                                                           {"GIT_AUTHOR_EMAIL", author.address},
                                                           {"GIT_AUTHOR_DATE", '@' + author.date}});
    if (!commit.encoding.empty())
        options.settings.push_back("i18n.commitEncoding=" + commit.encoding);
    std::vector<std::string> command{"commit-tree", "-S"};
    for (const std::string& parent : commit.parents)
        command.insert(command.end(), {"-p", parent});
    command.insert(command.end(), {"-F", "-", commit.tree});
    return std::string(withoutLineEnd(repo_.runner().bytes(command, options)));
}

} // namespace gitkit
