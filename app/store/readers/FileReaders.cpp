// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/readers/FileReaders.h"

#include "GitKit/EditorConfig.h"
#include "GitKit/repository/Blobs.h"
#include "GitKit/repository/FileLogStream.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Submodules.h"
#include "GitKit/runner/GitError.h"

#include <string_view>
#include <system_error>

namespace plovik {

namespace {

using State = BlameLines::State;
using namespace std::string_view_literals;

/// The number of bytes that git examines to decide whether a file is text.
constexpr std::size_t sampleSize = 8000;
/// What was found of a file's history is handed on when nothing more comes for this time.
constexpr std::chrono::milliseconds findingPause{150};

std::optional<State> unreadable(std::string_view beginning)
{
    // The longer mark is tested first, because it begins with the shorter one.
    if (beginning.starts_with("\xFF\xFE\0\0"sv) || beginning.starts_with("\0\0\xFE\xFF"sv))
        return State::utf32;
    if (beginning.starts_with("\xFF\xFE"sv) || beginning.starts_with("\xFE\xFF"sv))
        return State::utf16;
    if (beginning.find('\0') != std::string_view::npos)
        return State::binary;
    return std::nullopt;
}

std::optional<State> withoutLines(const gitkit::FileSample& sample)
{
    switch (sample.kind) {
    case gitkit::FileSample::Kind::missing:
        return State::missing;
    case gitkit::FileSample::Kind::folder:
        return State::folder;
    case gitkit::FileSample::Kind::submodule:
        return State::submodule;
    case gitkit::FileSample::Kind::file:
        break;
    }
    return sample.beginning.empty() ? State::empty : unreadable(sample.beginning);
}

std::optional<BlameStamp> stampOf(const std::filesystem::path& file, const BlameSource& source)
{
    std::error_code failure;
    const auto changed = std::filesystem::last_write_time(file, failure);
    const auto size = failure ? 0 : std::filesystem::file_size(file, failure);
    return failure ? std::nullopt : std::optional(BlameStamp{source.head, changed, size, source.keptOff});
}

} // namespace

std::vector<gitkit::DiffSection> readWorkingDiff(const gitkit::GitRepository& repo, const WorkingDiffRequest& request)
{
    return repo.workingDiff(request.file, request.reading);
}

StreamSource<gitkit::FileRevision> openFileHistory(const gitkit::GitRepository& repo, const FileHistoryRequest& request)
{
    const auto stream = std::make_shared<gitkit::FileLogStream>(repo, request.path, request.revision, request.lines);
    return [stream](std::size_t most) {
        StreamedPiece<gitkit::FileRevision> piece{stream->next(most, findingPause)};
        piece.hasMore = !stream->hasEnded();
        return piece;
    };
}

DiffFiles readDiffFiles(const gitkit::GitRepository& repo, const DiffFilesRequest& request)
{
    if (!request.submodule.empty())
        return {.submodule =
                    gitkit::submoduleLog(repo, request.submodule, request.source.before.value_or(std::string()),
                                         request.source.after.value_or(std::string()))};
    return {gitkit::diffSizes(repo, request.source), gitkit::diffSides(repo, request.source, request.limit)};
}

BlameLines readBlame(const gitkit::GitRepository& repo, const BlameSource& source)
{
    BlameLines blame;
    // Taken before the file is read, so that the next reading notices changes in the meantime.
    if (!source.revision)
        blame.stamp = stampOf(repo.root() / source.path, source);
    if (blame.stamp && blame.stamp == source.known) {
        blame.state = State::unchanged;
        return blame;
    }
    if (const auto state = withoutLines(gitkit::fileSample(repo, source.path, source.revision, sampleSize))) {
        blame.state = *state;
        return blame;
    }
    blame.tabWidth = gitkit::editorTabWidth(repo.root(), source.path);
    try {
        blame.lines = repo.blame(source.path, source.revision);
    } catch (const gitkit::GitError& refused) {
        // The file exists, so git does not track it.
        if (source.revision || refused.kind() != gitkit::ErrorKind::noSuchPath)
            throw;
        blame.state = State::untracked;
    }
    return blame;
}

} // namespace plovik
