// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/rewrite/CommitText.h"

#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"

#include <array>
#include <charconv>
#include <iconv.h>
#include <optional>

namespace gitkit {

namespace {

/// Takes the next line of a header, with the lines that continue it.
std::string_view takeField(std::string_view& header)
{
    std::size_t end = header.find('\n');
    while (end != std::string_view::npos && header.substr(end + 1).starts_with(' '))
        end = header.find('\n', end + 1);
    const std::string_view field = header.substr(0, end);
    header.remove_prefix(end == std::string_view::npos ? header.size() : end + 1);
    return field;
}

bool isDropped(std::string_view name) { return name == "gpgsig" || name == "gpgsig-sha256" || name == "mergetag"; }

void addField(CommitText& commit, std::string_view field)
{
    const std::size_t blank = std::min(field.find(' '), field.size());
    const std::string_view name = field.substr(0, blank);
    const std::string value(field.substr(std::min(blank + 1, field.size())));
    if (name == "tree")
        commit.tree = value;
    else if (name == "parent")
        commit.parents.push_back(value);
    else if (name == "author")
        commit.author = value;
    else if (name == "committer")
        commit.committer = value;
    else if (name == "encoding")
        commit.encoding = value;
    else if (!isDropped(name))
        commit.others.append(field).append("\n");
}

/// Returns bytes of an encoding in UTF-8; nullopt where they are not of it, or where it is not known.
std::optional<std::string> converted(const std::string& bytes, const std::string& encoding)
{
    const iconv_t way = ::iconv_open("UTF-8", encoding.c_str());
    if (way == reinterpret_cast<iconv_t>(-1)) // NOLINT(performance-no-int-to-ptr): so it is told
        return std::nullopt;
    std::string result;
    std::string input = bytes;
    char* from = input.data();
    std::size_t left = input.size();
    bool isGood = true;
    while (left > 0 && isGood) {
        std::array<char, 4096> piece{};
        char* to = piece.data();
        std::size_t room = piece.size();
        const bool failed = ::iconv(way, &from, &left, &to, &room) == static_cast<std::size_t>(-1);
        isGood = !failed || errno == E2BIG;
        result.append(piece.data(), piece.size() - room);
    }
    ::iconv_close(way);
    return isGood ? std::optional(result) : std::nullopt;
}

} // namespace

CommitText commitText(std::string_view bytes)
{
    CommitText commit;
    const std::size_t end = bytes.find("\n\n");
    std::string_view header = bytes.substr(0, end == std::string_view::npos ? bytes.size() : end + 1);
    commit.message = end == std::string_view::npos ? std::string() : std::string(bytes.substr(end + 2));
    while (!header.empty())
        addField(commit, takeField(header));
    return commit;
}

std::string bytesOf(const CommitText& commit)
{
    std::string bytes = "tree " + commit.tree + '\n';
    for (const std::string& parent : commit.parents)
        bytes += "parent " + parent + '\n';
    bytes += "author " + commit.author + "\ncommitter " + commit.committer + '\n';
    if (!commit.encoding.empty())
        bytes += "encoding " + commit.encoding + '\n';
    return bytes + commit.others + '\n' + commit.message;
}

CommitText inUtf8(CommitText commit)
{
    if (commit.encoding.empty())
        return commit;
    std::optional<std::string> author = converted(commit.author, commit.encoding);
    std::optional<std::string> message = converted(commit.message, commit.encoding);
    if (!author || !message)
        return commit;
    commit.author = std::move(*author);
    commit.message = std::move(*message);
    commit.encoding.clear();
    return commit;
}

std::map<std::string, CommitText> readCommits(const GitRepository& repo, const std::vector<std::string>& hashes,
                                              const RunOptions& options)
{
    std::map<std::string, CommitText> commits;
    if (hashes.empty())
        return commits;
    RunOptions batch = options;
    std::string input;
    for (const std::string& hash : hashes)
        input += hash + '\n';
    batch.input = std::move(input);
    const std::string answers = repo.runner().bytes({"cat-file", "--batch"}, batch);
    std::string_view rest = answers;
    for (const std::string& hash : hashes) {
        // An answer is "HASH commit SIZE", the bytes and a line end.
        const std::string_view head = rest.substr(0, rest.find('\n'));
        const std::size_t last = head.rfind(' ');
        std::size_t size = 0;
        if (head.find(" commit ") == std::string_view::npos)
            throw GitError("cat-file", 1, "There is no commit " + hash + ".", ErrorKind::missingObject);
        std::from_chars(head.data() + last + 1, head.data() + head.size(), size);
        commits[hash] = commitText(rest.substr(head.size() + 1, size));
        rest.remove_prefix(std::min(head.size() + size + 2, rest.size()));
    }
    return commits;
}

} // namespace gitkit
