// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/inspector/BlameReading.h"

#include "app/store/RepositoryStore.h"

#include <string_view>

namespace plovik {

namespace {

using State = BlameReading::State;
using namespace std::string_view_literals;

/// As much as git looks at when it decides whether a file is text.
constexpr std::size_t sampleSize = 8000;

std::optional<State> unreadable(std::string_view beginning)
{
    // The longer mark begins with the shorter one.
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

std::optional<BlameStamp> stampOf(const std::filesystem::path& file, const std::string& head)
{
    std::error_code failure;
    const auto changed = std::filesystem::last_write_time(file, failure);
    const auto size = failure ? 0 : std::filesystem::file_size(file, failure);
    return failure ? std::nullopt : std::optional(BlameStamp{head, changed, size});
}

} // namespace

BlameReading readBlame(const gitkit::GitRepository& repository, const BlameRequest& request)
{
    BlameReading reading;
    // Taken before the file is read: what changes meanwhile is seen by the next reading.
    if (!request.revision)
        reading.stamp = stampOf(repository.root() / request.path, request.head);
    if (reading.stamp && reading.stamp == request.known) {
        reading.state = State::unchanged;
        return reading;
    }
    if (const auto state = withoutLines(gitkit::fileSample(repository, request.path, request.revision, sampleSize))) {
        reading.state = *state;
        return reading;
    }
    try {
        const auto lines = repository.blame(request.path, request.revision);
        reading.document = std::make_shared<const BlameDocument>(lines);
    } catch (const std::exception& failure) {
        // The file is in the working tree, so it is git that does not know it.
        if (request.revision || gitkit::errorKindOf(failure) != gitkit::ErrorKind::noSuchPath)
            throw;
        reading.state = State::untracked;
        return reading;
    }
    if (request.shown)
        reading.rows = reading.document->rowsLike(*request.shown, request.rows);
    return reading;
}

} // namespace plovik
