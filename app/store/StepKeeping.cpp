// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/StepKeeping.h"

#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/InTheWay.h"
#include "GitKit/undo/UndoRefused.h"

#include <algorithm>
#include <utility>

namespace plovik {

using gitkit::GitRepository;

StepKeeping::StepKeeping(Undoable what, std::optional<std::filesystem::path> gitDirectory, Consent consent)
    : what_(std::move(what)), gitDirectory_(std::move(gitDirectory)), consent_(consent)
{}

StepKeeping::~StepKeeping() { end(false); }

void StepKeeping::begin(const GitRepository& heard)
{
    repo_ = std::make_unique<const GitRepository>(heard.unheard());
    const GitRepository& repo = *repo_;
    if (!gitDirectory_)
        gitDirectory_ = gitkit::gitDirectories(repo).own;
    gitkit::InTheWay found;
    if (what_.inTheWay)
        found = what_.inTheWay(repo);
    if (!found.untracked.empty() && consent_ != Consent::movesUntracked)
        throw UntrackedInTheWay(found.untracked);
    gitkit::UndoScope scope = what_.scope;
    scope.title = what_.title.toStdString();
    if (what_.complete)
        what_.complete(repo, scope);
    keepBefore(std::move(scope));
    movedIgnored_ = found.ignored;
    moved_ = std::move(found.untracked);
    moved_.insert(moved_.end(), movedIgnored_.begin(), movedIgnored_.end());
    moveOutOfTheWay();
}

void StepKeeping::keepBefore(gitkit::UndoScope scope)
{
    std::optional<std::uintmax_t> bytes;
    try {
        recording_.emplace(*repo_, *gitDirectory_, scope);
        return;
    } catch (const gitkit::UndoTooLarge& tooLarge) {
        problem_ = tooLarge.what();
        bytes = tooLarge.bytes();
    } catch (const std::exception& failure) {
        problem_ = failure.what();
    }
    // What keeping() keeps has no limit: then only its files come back.
    if (bytes && what_.kept) {
        scope.overwrites.clear();
        recording_.emplace(*repo_, *gitDirectory_, scope);
        problem_.clear();
    } else if (what_.takesWork && consent_ != Consent::noUndo) {
        throw NotKept(problem_, bytes);
    }
}

void StepKeeping::moveOutOfTheWay()
{
    // Without a step there is no place for them: git refuses, or its callers do.
    if (!recording_)
        moved_.clear();
    if (moved_.empty())
        return;
    gitkit::moveAside(*repo_, moved_, gitkit::asideFolder(*gitDirectory_, recording_->id()));
    recording_->movedAside(moved_);
}

void StepKeeping::end(bool hasFailed) noexcept
{
    if (!recording_ || std::exchange(hasEnded_, true))
        return;
    try {
        if (hasFailed) { // git has not written there, or their places are taken
            recording_->wasRefused();
            std::vector<std::string> left =
                gitkit::moveBack(*repo_, moved_, gitkit::asideFolder(*gitDirectory_, recording_->id()));
            std::erase_if(movedIgnored_,
                          [&left](const std::string& path) { return std::ranges::find(left, path) == left.end(); });
            recording_->movedAside(std::move(left));
        }
        if (what_.kept)
            recording_->keptAs(what_.kept->name);
        step_ = recording_->finish(*repo_);
    } catch (const std::exception& failure) {
        problem_ = failure.what();
    }
}

} // namespace plovik
