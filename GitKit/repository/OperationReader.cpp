// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/OperationReader.h"

#include "GitKit/RegularFile.h"
#include "GitKit/Text.h"
#include "GitKit/repository/PreparedMessage.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace gitkit {

namespace {

namespace fs = std::filesystem;
using Kind = OperationInProgress::Kind;
using Stop = OperationInProgress::Stop;

constexpr std::uintmax_t largestFile = std::uintmax_t{1} << 20;
constexpr std::size_t tailSize = 4096;
constexpr int mostSteps = 10'000'000;

bool isFolder(const fs::path& path)
{
    std::error_code error;
    return fs::is_directory(path, error);
}

/// Returns a file's size; nullopt unless it is an ordinary file, because others could block a reader.
std::optional<std::uintmax_t> sizeOf(const fs::path& path)
{
    std::error_code error;
    if (!fs::is_regular_file(path, error))
        return std::nullopt;
    const std::uintmax_t size = fs::file_size(path, error);
    return error ? std::nullopt : std::optional(size);
}

/// Returns a text file's content; nullopt when it is missing, too large or not text.
std::optional<std::string> content(const fs::path& path, std::uintmax_t limit = largestFile)
{
    const std::optional<std::uintmax_t> size = sizeOf(path);
    if (!size || *size > limit)
        return std::nullopt;
    std::optional<std::string> bytes = regularFileBytes(path, limit);
    if (!bytes || bytes->find('\0') != std::string::npos)
        return std::nullopt;
    return bytes;
}

/// Takes the next line from `rest` and returns it without its end.
std::string_view takeLine(std::string_view& rest)
{
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    const std::string_view line = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return line;
}

/// Returns a file's first line, trimmed; nullopt when it is empty.
std::optional<std::string> firstLine(const fs::path& path)
{
    const std::optional<std::string> bytes = content(path);
    std::string_view rest = bytes ? std::string_view(*bytes) : std::string_view();
    const std::string_view line = trimmed(takeLine(rest));
    return line.empty() ? std::nullopt : std::optional<std::string>(line);
}

bool isHexadecimal(std::string_view text)
{
    return !text.empty() && text.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

bool isWholeHash(std::string_view text) { return (text.size() == 40 || text.size() == 64) && isHexadecimal(text); }

bool isPartOfHash(std::string_view text) { return text.size() >= 4 && text.size() <= 64 && isHexadecimal(text); }

std::optional<std::string> hashIn(const fs::path& path)
{
    std::optional<std::string> line = firstLine(path);
    return line && isWholeHash(*line) ? line : std::nullopt;
}

std::optional<int> numberIn(const fs::path& path)
{
    const std::optional<std::string> line = firstLine(path);
    int number = 0;
    if (!line)
        return std::nullopt;
    const auto [stop, error] = std::from_chars(line->data(), line->data() + line->size(), number);
    const bool isWhole = error == std::errc() && stop == line->data() + line->size();
    return isWhole && number >= 0 && number <= mostSteps ? std::optional(number) : std::nullopt;
}

std::optional<OperationInProgress::Progress> progressOf(const fs::path& stepFile, const fs::path& totalFile)
{
    const std::optional<int> step = numberIn(stepFile);
    const std::optional<int> total = numberIn(totalFile);
    if (!step || !total || *step < 1 || *step > *total)
        return std::nullopt;
    return OperationInProgress::Progress{*step, *total};
}

std::string_view takeWord(std::string_view& rest)
{
    rest = trimmed(rest);
    const std::size_t end = std::min(rest.find_first_of(" \t"), rest.size());
    const std::string_view word = rest.substr(0, end);
    rest = trimmed(rest.substr(end));
    return word;
}

bool isComment(std::string_view line) { return line.empty() || line.starts_with('#'); }

/// Reads a line of a list of steps: "pick HASH subject", "fixup -C HASH # subject", "exec command".
Stop stopOf(std::string_view line)
{
    const std::string_view whole = trimmed(line);
    std::string_view rest = whole;
    const std::string_view command = takeWord(rest);
    if (command == "break" || command == "b")
        return {};
    while (rest.starts_with('-'))
        takeWord(rest);
    std::string_view subject = rest;
    const std::string_view hash = takeWord(subject);
    if (!isPartOfHash(hash) || command == "exec" || command == "x")
        return {{}, std::string(whole)};
    if (subject.starts_with("# "))
        subject.remove_prefix(2);
    return {std::string(hash), std::string(subject)};
}

/// Returns the last line of a file that may be long.
std::string lastLine(const fs::path& path)
{
    const std::optional<std::uintmax_t> size = sizeOf(path);
    const UniqueFd opened = openRegularFile(path);
    if (!size || !opened)
        return {};
    std::string tail(tailSize, '\0');
    const off_t start = static_cast<off_t>(*size - std::min<std::uintmax_t>(*size, tailSize));
    const ssize_t count = ::pread(opened.get(), tail.data(), tail.size(), start);
    tail.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    const std::string_view lines = trimmed(tail, "\n");
    const std::string_view line = lines.substr(lines.find_last_of('\n') + 1);
    return line.find('\0') == std::string_view::npos ? std::string(line) : std::string();
}

std::optional<std::string> branchIn(const fs::path& path)
{
    constexpr std::string_view prefix = "refs/heads/";
    const std::optional<std::string> name = firstLine(path);
    if (!name || !name->starts_with(prefix) || name->size() == prefix.size())
        return std::nullopt;
    return name->substr(prefix.size());
}

void readBase(OperationInProgress& operation, const fs::path& folder)
{
    operation.branch = branchIn(folder / "head-name");
    if (std::optional<std::string> onto = hashIn(folder / "onto"))
        operation.others.push_back(std::move(*onto));
    operation.isIncomplete =
        operation.others.empty() || !firstLine(folder / "head-name") || !hashIn(folder / "orig-head");
}

OperationInProgress readRebase(const fs::path& folder)
{
    OperationInProgress operation{.kind = Kind::rebase};
    readBase(operation, folder);
    operation.progress = progressOf(folder / "msgnum", folder / "end");
    const std::optional<std::string> stoppedAt = firstLine(folder / "stopped-sha");
    Stop last = stopOf(lastLine(folder / "done"));
    if (stoppedAt && isPartOfHash(*stoppedAt)) {
        const bool isSame =
            !last.hash.empty() && (stoppedAt->starts_with(last.hash) || last.hash.starts_with(*stoppedAt));
        operation.stop = Stop{*stoppedAt, isSame ? last.subject : std::string()};
    } else if (!last.hash.empty() || !last.subject.empty()) {
        operation.stop = std::move(last);
    }
    if (isThere(folder / "current-fixups"))
        operation.meldsInto = hashIn(folder / "amend");
    else
        operation.edits = hashIn(folder / "amend");
    return operation;
}

OperationInProgress readApply(const fs::path& folder)
{
    const bool isRebase =
        !isThere(folder / "applying") && (isThere(folder / "rebasing") || isThere(folder / "head-name"));
    OperationInProgress operation{.kind = isRebase ? Kind::rebase : Kind::applyPatches};
    operation.appliesPatches = true;
    if (isRebase)
        readBase(operation, folder);
    operation.progress = progressOf(folder / "next", folder / "last");
    operation.isIncomplete = operation.isIncomplete || !numberIn(folder / "next") || !numberIn(folder / "last");
    Stop stop{hashIn(folder / "original-commit").value_or(std::string()),
              firstLine(folder / "final-commit").value_or(std::string())};
    if (!stop.hash.empty() || !stop.subject.empty())
        operation.stop = std::move(stop);
    return operation;
}

/// Returns the name in "Merge branch 'topic' into main".
std::optional<std::string> mergedName(std::string_view message)
{
    for (const std::string_view what : {"branch", "remote-tracking branch", "tag", "commit"}) {
        const std::string start = "Merge " + std::string(what) + " '";
        const std::size_t end = message.starts_with(start) ? message.find('\'', start.size()) : std::string_view::npos;
        if (end != std::string_view::npos && end > start.size())
            return std::string(message.substr(start.size(), end - start.size()));
    }
    return std::nullopt;
}

OperationInProgress readMerge(const fs::path& gitDirectory)
{
    OperationInProgress operation{.kind = Kind::merge};
    const std::string heads = content(gitDirectory / "MERGE_HEAD").value_or(std::string());
    for (std::string_view rest = heads; !rest.empty();) {
        const std::string_view line = trimmed(takeLine(rest));
        if (isWholeHash(line))
            operation.others.emplace_back(line);
        else
            operation.isIncomplete = true;
    }
    operation.isIncomplete = operation.isIncomplete || operation.others.empty();
    if (operation.others.size() == 1)
        operation.mergeOf = mergedName(firstLine(gitDirectory / "MERGE_MSG").value_or(std::string()));
    return operation;
}

/// Returns the subject of a single picked or reverted commit from the message that git prepared.
std::string subjectInMessage(const fs::path& gitDirectory, Kind kind)
{
    constexpr std::string_view start = "Revert \"";
    std::string line = firstLine(gitDirectory / "MERGE_MSG").value_or(std::string());
    if (line.starts_with('#'))
        return {};
    if (kind == Kind::revert && line.starts_with(start) && line.ends_with('"') && line.size() > start.size())
        return line.substr(start.size(), line.size() - start.size() - 1);
    return line;
}

struct StepList {
    int count = 0;
    std::string first;
};

StepList stepsIn(const fs::path& path)
{
    StepList steps;
    const std::string lines = content(path).value_or(std::string());
    for (std::string_view rest = lines; !rest.empty();) {
        const std::string_view line = trimmed(takeLine(rest));
        if (isComment(line))
            continue;
        if (steps.count++ == 0)
            steps.first = line;
    }
    return steps;
}

OperationInProgress readSequence(const fs::path& gitDirectory)
{
    const fs::path folder = gitDirectory / "sequencer";
    const StepList steps = stepsIn(folder / "todo");
    const bool picks = isThere(gitDirectory / "CHERRY_PICK_HEAD");
    const bool reverts = !picks && (isThere(gitDirectory / "REVERT_HEAD") || steps.first.starts_with("revert "));
    OperationInProgress operation{.kind = reverts ? Kind::revert : Kind::cherryPick};
    const std::optional<std::string> head = hashIn(gitDirectory / (picks ? "CHERRY_PICK_HEAD" : "REVERT_HEAD"));
    const Stop listed = stopOf(steps.first);
    if (head) {
        const bool isListed = !listed.hash.empty() && head->starts_with(listed.hash);
        operation.stop = Stop{*head, isListed ? listed.subject : subjectInMessage(gitDirectory, operation.kind)};
    }
    if (isFolder(folder)) {
        // When no commit is being picked, the first one of the list is committed already.
        if (steps.count > 0)
            operation.progress = head ? OperationInProgress::Progress{1, steps.count}
                                      : OperationInProgress::Progress{0, steps.count - 1};
        operation.isIncomplete = steps.count == 0 || !hashIn(folder / "head");
    } else {
        operation.isIncomplete = !head;
    }
    return operation;
}

/// Reads "[HASH] subject", as the log of a bisect names commits.
Stop bracketed(std::string_view text)
{
    const std::size_t end = text.find(']');
    if (!text.starts_with('[') || end == std::string_view::npos || !isWholeHash(text.substr(1, end - 1)))
        return {};
    return {std::string(text.substr(1, end - 1)), std::string(trimmed(text.substr(end + 1)))};
}

void readMark(OperationInProgress::Bisect& bisect, std::string_view line)
{
    const std::string found = "# first " + bisect.bad + " commit: ";
    if (line.starts_with(found)) {
        if (Stop stop = bracketed(line.substr(found.size())); !stop.hash.empty())
            bisect.found = std::move(stop);
        return;
    }
    constexpr std::string_view command = "git bisect ";
    if (!line.starts_with(command))
        return;
    line.remove_prefix(command.size());
    bisect.found.reset();
    const std::string_view verb = takeWord(line);
    bisect.isGoodKnown = bisect.isGoodKnown || verb == bisect.good;
    bisect.isBadKnown = bisect.isBadKnown || verb == bisect.bad;
}

bool isTerm(std::string_view term)
{
    return !term.empty() && term.size() <= 100 && !term.starts_with('-') &&
           term.find_first_of(" \t\r\x7f") == std::string_view::npos;
}

OperationInProgress readBisect(const fs::path& gitDirectory)
{
    OperationInProgress operation{.kind = Kind::bisect};
    OperationInProgress::Bisect& bisect = operation.bisect.emplace();
    const std::string terms = content(gitDirectory / "BISECT_TERMS").value_or(std::string());
    std::string_view rest = terms;
    const std::string_view bad = trimmed(takeLine(rest));
    const std::string_view good = trimmed(takeLine(rest));
    if (isTerm(bad) && isTerm(good)) {
        bisect.bad = bad;
        bisect.good = good;
    }
    bisect.logSize = sizeOf(gitDirectory / "BISECT_LOG").value_or(0);
    const std::string log = content(gitDirectory / "BISECT_LOG").value_or(std::string());
    for (rest = log; !rest.empty();) {
        const std::string_view line = takeLine(rest);
        readMark(bisect, line);
        // The commits of "git bisect start BAD GOOD..." are in comments only.
        bisect.isGoodKnown = bisect.isGoodKnown || line.starts_with("# " + bisect.good + ": [");
        bisect.isBadKnown = bisect.isBadKnown || line.starts_with("# " + bisect.bad + ": [");
    }
    operation.isIncomplete = !firstLine(gitDirectory / "BISECT_START");
    return operation;
}

} // namespace

bool isThere(const fs::path& path)
{
    std::error_code error;
    return fs::exists(fs::symlink_status(path, error));
}

std::optional<OperationInProgress> readOperation(const fs::path& gitDirectory)
{
    // A rebase stops within a pick or merge of its own, but only the rebase can continue.
    if (isFolder(gitDirectory / "rebase-merge"))
        return readRebase(gitDirectory / "rebase-merge");
    if (isFolder(gitDirectory / "rebase-apply"))
        return readApply(gitDirectory / "rebase-apply");
    if (isThere(gitDirectory / "MERGE_HEAD"))
        return readMerge(gitDirectory);
    for (const char* mark : {"CHERRY_PICK_HEAD", "REVERT_HEAD", "sequencer"}) {
        if (isThere(gitDirectory / mark))
            return readSequence(gitDirectory);
    }
    if (isThere(gitDirectory / "BISECT_LOG") || isThere(gitDirectory / "BISECT_START"))
        return readBisect(gitDirectory);
    return std::nullopt;
}

std::optional<std::string> sequenceStart(const fs::path& gitDirectory)
{
    return hashIn(gitDirectory / "sequencer" / "head");
}

std::string readPreparedMessage(const fs::path& gitDirectory, const std::optional<OperationInProgress>& operation)
{
    const bool isAboutToCommit = operation && operation->kind != Kind::bisect;
    return beforeScissors(content(gitDirectory / (isAboutToCommit ? "MERGE_MSG" : "SQUASH_MSG"), longestPreparedMessage)
                              .value_or(std::string()));
}

} // namespace gitkit
