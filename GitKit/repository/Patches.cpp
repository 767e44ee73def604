// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Patches.h"

#include "GitKit/FileReplacement.h"
#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/records/QuotedName.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/RefArguments.h"
#include "GitKit/repository/TellingCommand.h"
#include "GitKit/runner/GitError.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace gitkit {

namespace {

namespace fs = std::filesystem;

/// Removes a file that is not whole.
class UnfinishedFile {
public:
    explicit UnfinishedFile(fs::path path) : path_(std::move(path)) {}
    ~UnfinishedFile()
    {
        std::error_code gone;
        fs::remove(path_, gone);
    }
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;

    const fs::path& path() const { return path_; }

private:
    fs::path path_;
};

void requireNoMerge(const GitRepository& repo, const std::string& commit)
{
    const std::string line = repo.runner().bytes({"rev-list", "--parents", "--no-walk", commit, "--"});
    if (std::ranges::count(line, ' ') > 1)
        throw GitError("format-patch", 1,
                       std::string(shortHash(commit)) +
                           " is a merge, which no patch can say. Take its parents' commits.");
}

/// Returns the arguments that take the place of each setting for mails. To set them would add to what the user has set.
std::vector<std::string> mailArguments(const std::string& commit)
{
    return {"format-patch",
            "--stdout",
            "--no-attach",
            "--no-add-header",
            "--no-signature",
            "--no-cover-letter",
            "--subject-prefix=PATCH",
            "--no-thread",
            "--no-numbered",
            "--no-signoff",
            "--no-base",
            "--no-to",
            "--no-cc",
            "--no-from",
            "--no-notes",
            "--no-encode-email-headers",
            "--no-ext-diff",
            "--no-textconv",
            "--binary",
            "--full-index",
            "-1",
            commit};
}

RunOptions reading(const std::string& patch)
{
    RunOptions options;
    options.input = patch;
    return options;
}

/// Returns a subject as the name of a file.
std::string fileNameOf(std::size_t number, std::string_view subject)
{
    constexpr std::size_t longest = 52;
    std::string digits = std::to_string(number);
    digits.insert(0, digits.size() < 4 ? 4 - digits.size() : 0, '0');
    std::string name;
    for (const char byte : subject) {
        const auto code = static_cast<unsigned char>(byte);
        const bool isPlain = code < 0x80 && (std::isalnum(code) != 0 || byte == '.' || byte == '_');
        if (isPlain && !(byte == '.' && name.ends_with('.')))
            name += byte;
        else if (!name.empty() && name.back() != '-')
            name += '-';
        if (name.size() == longest)
            break;
    }
    return digits + '-' + std::string(trimmed(name, "-.")) + ".patch";
}

/// Returns the old names of renames, which no list of git's has.
std::vector<std::string> renamedFrom(std::string_view patch)
{
    std::vector<std::string> names;
    Pieces lines(patch, '\n');
    while (const auto line = lines.next()) {
        constexpr std::string_view start = "rename from ";
        if (line->starts_with(start))
            names.push_back(unquotedName(line->substr(start.size())));
    }
    return names;
}

int mailsIn(std::string_view patch)
{
    int mails = 0;
    bool hasSubject = false;
    Pieces lines(patch, '\n');
    while (const auto line = lines.next()) {
        mails += line->starts_with("From ") && line->size() > 6 ? 1 : 0;
        hasSubject = hasSubject || line->starts_with("Subject:");
        // What begins with a diff is none, whatever its lines say.
        if (mails == 0 && !hasSubject && line->starts_with("diff "))
            return 0;
    }
    return hasSubject ? std::max(mails, 1) : 0;
}

} // namespace

bool endsPatchEarly(std::string_view message)
{
    Pieces lines(message, '\n');
    while (const auto line = lines.next()) {
        if (line->starts_with("diff -") || line->starts_with("Index: ") || line->starts_with("--- ") ||
            trimmed(*line, " \t\r") == "---")
            return true;
    }
    return false;
}

std::string mailedPatch(const GitRepository& repo, const std::string& commit)
{
    requireNoMerge(repo, exactArgument("format-patch", commit));
    RunOptions options;
    options.settings = {"format.noprefix=false"};
    return repo.runner().bytes(mailArguments(commit), options);
}

std::string barePatch(const GitRepository& repo, const std::string& commit)
{
    requireNoMerge(repo, exactArgument("diff-tree", commit));
    return repo.runner().bytes({"diff-tree", "-p", "--root", "--no-commit-id", "--binary", "--full-index",
                                "--no-ext-diff", "--no-textconv", commit, "--"});
}

std::vector<std::string> saveMailedPatches(const GitRepository& repo, const std::vector<std::string>& commits,
                                           const fs::path& folder)
{
    std::vector<std::pair<std::string, std::string>> files;
    for (const std::string& commit : commits) {
        std::string patch = mailedPatch(repo, commit);
        const std::string subject = repo.runner().bytes({"log", "-1", "--format=%f", commit, "--"});
        files.emplace_back(fileNameOf(files.size() + 1, withoutLineEnd(subject)), std::move(patch));
    }
    for (const auto& [name, patch] : files) {
        if (fs::exists(fs::symlink_status(folder / name)))
            throw GitError("format-patch", 1, inQuotes(name) + " is there already. Nothing was written.");
    }
    std::vector<std::string> names;
    for (const auto& [name, patch] : files) {
        if (!replaceFile(folder / name, patch))
            throw GitError("format-patch", 1, inQuotes(name) + " could not be written: " + std::strerror(errno));
        names.push_back(name);
    }
    return names;
}

PatchContents patchContents(const GitRepository& repo, const std::string& patch)
{
    PatchContents contents{.paths = renamedFrom(patch), .mails = mailsIn(patch)};
    // An entry is "ADDED<tab>DELETED<tab>PATH".
    for (const std::string& entry : splitNul(repo.runner().bytes({"apply", "--numstat", "-z", "-"}, reading(patch)))) {
        const std::size_t path = entry.find('\t', entry.find('\t') + 1);
        if (path != std::string::npos)
            contents.paths.push_back(entry.substr(path + 1));
    }
    std::ranges::sort(contents.paths);
    contents.paths.erase(std::ranges::unique(contents.paths).begin(), contents.paths.end());
    return contents;
}

void applyPatch(const GitRepository& repo, const std::string& patch, PatchWay way)
{
    if (way == PatchWay::threeWay) {
        const GitOutput output = repo.runner().output({"apply", "--3way", "--whitespace=nowarn", "-"}, reading(patch));
        if (output.status == 1 && !repo.status().files.conflicted().empty())
            throw GitError("apply", 1, output.errorText(), ErrorKind::conflicts, Speaker::git);
        if (output.status != 0)
            throw GitError("apply", output.status, output.errorText(), ErrorKind::other, Speaker::git);
        return;
    }
    repo.runner().accepted({"apply", "--check", "--whitespace=nowarn", "-"}, reading(patch));
    repo.runner().accepted({"apply", "--whitespace=nowarn", "-"}, reading(patch));
}

void applyMails(const GitRepository& repo, const std::string& mails)
{
    // Git would make a commit without an author of it.
    if (mailsIn(mails) == 0)
        throw GitError("am", 1, "It holds changes alone and no commits.");
    runTelling(repo.runner(), {"am", "-3", "--keep-cr", "--no-scissors", "--whitespace=nowarn"}, reading(mails));
}

void writeArchive(const GitRepository& repo, const std::string& commit, ArchiveFormat format, const std::string& name,
                  const fs::path& file)
{
    const UnfinishedFile unfinished(file.string() + ".plovik-" + std::to_string(::getpid()));
    RunOptions options;
    // The repository's own configuration must not choose the program.
    options.settings = {"tar.tar.gz.command=gzip -cn"};
    repo.runner().accepted({"archive", format == ArchiveFormat::zip ? "--format=zip" : "--format=tar.gz", "-o",
                            unfinished.path().string(), "--prefix=" + name + '/', exactArgument("archive", commit)},
                           options);
    std::error_code failure;
    fs::rename(unfinished.path(), file, failure);
    if (failure)
        throw GitError("archive", 1,
                       inQuotes(file.filename().string()) + " could not be written: " + failure.message());
}

LeftOut leftOutOfArchive(const GitRepository& repo, const std::string& commit)
{
    LeftOut left;
    for (const std::string& entry : splitNul(repo.runner().bytes({"ls-tree", "-r", "-z", commit})))
        left.submodules = left.submodules || entry.starts_with("160000 ");
    const GitOutput marked = repo.runner().output(
        {"grep", "-q", "-e", "export-ignore", commit, "--", ":(glob)**/.gitattributes", ":(glob).gitattributes"});
    left.marked = marked.status == 0;
    return left;
}

} // namespace gitkit
