// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/Discards.h"

#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Keeping.h"
#include "app/store/ShownText.h"
#include "app/store/Snapshot.h"
#include "app/store/Undo.h"
#include "app/store/WindowState.h"

#include <QFileInfo>
#include <QStringList>

#include <algorithm>
#include <memory>
#include <utility>

namespace plovik {

using gitkit::GitRepository;
using gitkit::Kept;

namespace {

std::filesystem::path directoryOf(const std::optional<std::filesystem::path>& known, const GitRepository& repo)
{
    return known ? *known : gitkit::gitDirectories(repo).own;
}

/// Returns the changed files that git knows.
Discards::Files trackedChanges(const GitRepository& repo)
{
    Discards::Files files = repo.status().files;
    std::erase_if(files, &gitkit::FileChange::isUntracked);
    return files;
}

} // namespace

Discards::Discards(WindowState& window, Snapshot& snapshot, Changes& changes, Undo& undo)
    : window_(window), snapshot_(snapshot), changes_(changes)
{
    undo.whenFilesBack([this](const Kept& kept, const gitkit::BroughtBack& result) { broughtBack(kept, result); });
}

bool Discards::runKeeping(Change change, const Files& files, Way way)
{
    const std::shared_ptr<KeptFiles> note = change.undo ? change.undo->kept : nullptr;
    change.operation = [note, files, way = std::move(way), directory = snapshot_.gitDirectory(),
                        take = std::move(change.operation)](const GitRepository& repo) {
        if (way.check)
            way.check(repo);
        if (note && note->isLeftOut) {
            take(repo);
            return;
        }
        const gitkit::Keeping done =
            gitkit::keeping(repo, directoryOf(directory, repo), way.isStep ? trackedChanges(repo) : files,
                            way.isStep ? gitkit::Taking::step : gitkit::Taking::discard, [&] { take(repo); });
        if (note && done.kept)
            note->name = done.kept->name;
        if (done.failure)
            std::rethrow_exception(done.failure);
    };
    // Also what a cancelled change took can be brought back.
    change.ended = [this] { keepingChanged(); };
    return changes_.run(std::move(change));
}

void Discards::bringBack(const Kept& kept)
{
    if (isBringingBack_)
        return;
    const auto result = std::make_shared<gitkit::BroughtBack>();
    changes_.run({.verb = Verb::undoDiscard,
                  .operation =
                      [kept, result, directory = snapshot_.gitDirectory()](const GitRepository& repo) {
                          *result = gitkit::bringBack(repo, directoryOf(directory, repo), kept);
                      },
                  .begins = [this] { isBringingBack_ = true; },
                  .succeeded = [this, kept, result] { broughtBack(kept, *result); },
                  .ended =
                      [this] {
                          isBringingBack_ = false;
                          keepingChanged();
                      }});
}

void Discards::broughtBack(const Kept& kept, const gitkit::BroughtBack& result)
{
    keepingChanged();
    // A colon stands behind the names, so no language has to decline them.
    if (!result.indexChanged.empty())
        window_.tell(tr("%1: back, but not staged as before, because something else was staged since.")
                         .arg(namesOfFiles(result.indexChanged)));
    else if (!result.merged.empty())
        window_.tell(tr("%1: brought back into what was written since.").arg(namesOfFiles(result.merged)));
    if (!result.left.empty())
        askAboutLeft({kept.name, result.left, kept.date});
}

void Discards::askAboutLeft(const Kept& left)
{
    const auto count = static_cast<int>(left.paths.size());
    Confirmation question;
    question.title = count == 1 ? tr("%1 has changed since the discard").arg(inQuotes(left.paths.front()))
                                : tr("%Ln file(s) have changed since the discard", nullptr, count);
    question.message = tr("What was discarded does not fit into what stands there now, which is untouched. It can be "
                          "saved elsewhere, and it stays kept until you drop it.");
    question.risk = Confirmation::Risk::none;
    question.actionTitle = count == 1 ? tr("Save As…") : tr("Save In…");
    question.place = Confirmation::Place{
        .isFolder = count > 1,
        .name = count == 1 ? QFileInfo(shownText(left.paths.front())).fileName() : QString(),
        .chosen = [this, left](const std::filesystem::path& place) { save(left, place); },
    };
    question.choices.push_back({tr("Drop the Copy"), [this, left] { drop(left); }});
    window_.ask(std::move(question));
}

void Discards::save(const Kept& kept, const std::filesystem::path& place)
{
    changes_.run({.verb = Verb::undoDiscard,
                  .operation = [kept, place, directory = snapshot_.gitDirectory()](const GitRepository& repo) {
                      gitkit::saveKept(directoryOf(directory, repo), kept, place);
                  }});
}

void Discards::confirmDrop(const Kept& kept)
{
    Confirmation question;
    const auto others = static_cast<int>(kept.paths.size()) - 1;
    question.title =
        (others == 0 ? tr("Drop the copy of %1?") : tr("Drop the copy of %1 and %Ln other file(s)?", nullptr, others))
            .arg(inQuotes(kept.paths.front()));
    question.message = tr("What was discarded can then no longer be restored.");
    question.actionTitle = tr("Drop the Copy");
    question.action = [this, kept] { drop(kept); };
    window_.ask(std::move(question));
}

void Discards::drop(const Kept& kept)
{
    changes_.run({.verb = Verb::undoDiscard,
                  .operation = [kept, directory = snapshot_.gitDirectory()](
                                   const GitRepository& repo) { gitkit::forget(directoryOf(directory, repo), kept); },
                  .ended = [this] { keepingChanged(); }});
}

} // namespace plovik
