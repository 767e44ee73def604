// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/undo/UndoJournal.h"

#include "GitKit/Text.h"
#include "GitKit/repository/FileCopies.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/undo/TreeMove.h"
#include "GitKit/undo/UndoLog.h"
#include "GitKit/undo/UndoRecord.h"
#include "GitKit/undo/UndoRefused.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <random>

namespace gitkit {

namespace {

namespace fs = std::filesystem;

std::string newId()
{
    std::random_device random;
    constexpr const char* digits = "0123456789abcdef";
    std::string id;
    for (int index = 0; index < 16; ++index)
        id += digits[random() % 16];
    return id;
}

/// Returns the refs with the branch of HEAD, which is always one of them.
RefValues withHead(RefValues refs, const HeadPlace& head)
{
    if (!head.branch.empty() && !head.hash.empty())
        refs.emplace_back(head.branch, head.hash);
    return refs;
}

/// A branch of HEAD at one moment only says nothing about the other one, where it was not looked at.
std::vector<RefUpdate> movedRefs(const RefValues& before, const RefValues& after)
{
    std::map<std::string, RefUpdate> moved;
    for (const auto& [name, hash] : before)
        moved[name] = {name, hash, std::nullopt};
    for (const auto& [name, hash] : after) {
        RefUpdate& update = moved.try_emplace(name, RefUpdate{name, std::nullopt, std::nullopt}).first->second;
        update.to = hash;
    }
    std::vector<RefUpdate> updates;
    for (auto& [name, update] : moved) {
        if (update.from != update.to)
            updates.push_back(std::move(update));
    }
    return updates;
}

/// Whether a step has ended without having changed anything. What is kept elsewhere leaves the same state, and what takes
/// a step back counts whatever it has changed: that step would come next for ever.
bool isNothing(const UndoStep& step)
{
    return step.isSame() && step.kept.empty() && step.undoes.empty() && !isPublished(step);
}

} // namespace

fs::path asideFolder(const fs::path& gitDirectory, const std::string& id)
{
    return gitDirectory / "plovik" / "saved" / id;
}

UndoRecording::UndoRecording(const GitRepository& repo, const fs::path& gitDirectory, UndoScope scope)
    : gitDirectory_(gitDirectory), scope_(std::move(scope))
{
    step_.id = newId();
    step_.kind = scope_.kind;
    step_.title = scope_.title;
    step_.message = scope_.message;
    step_.undoes = scope_.undoes;
    step_.aside = scope_.aside;
    step_.target = scope_.target;
    if (scope_.changesMore)
        changed_ = changedFiles(repo);
    step_.before = pointNow(repo, gitDirectory_, scope_);
    // The branch stays among the refs when HEAD leaves it.
    if (!step_.before.head.branch.empty())
        scope_.refs.push_back(step_.before.head.branch);
    refs_ = scope_.movesAnyRef || !scope_.refFolders.empty() ||
                    scope_.refs.size() > (step_.before.head.branch.empty() ? 0U : 1U)
                ? refsNow(repo, scope_)
                : withHead({}, step_.before.head);
    step_.refs = untilItEnds();
    step_.began = step_.date = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    append(repo, "b ");
}

/// Returns what the refs were that may move, for the case that the end is never recorded. Too many are left out.
std::vector<RefUpdate> UndoRecording::untilItEnds() const
{
    constexpr std::size_t most = 100;
    std::vector<RefUpdate> updates;
    if (refs_.size() > most)
        return updates;
    for (const auto& [name, hash] : refs_)
        updates.push_back({name, hash, std::nullopt});
    for (const std::string& name : scope_.refs) {
        if (std::ranges::find(updates, name, &RefUpdate::name) == updates.end())
            updates.push_back({name, std::nullopt, std::nullopt});
    }
    return updates;
}

void UndoRecording::append(const GitRepository& repo, const char* moment)
{
    step_.record = writeUndoRecord(repo, step_);
    appendUndoEntry(repo, step_.record, moment + step_.id + ' ' + shownLine(step_.title));
}

/// Adds the files that were changed besides those that were meant, and those that git does not know any more.
void UndoRecording::findMoreChanges(const GitRepository& repo)
{
    const auto add = [this](const std::string& path) {
        if (std::ranges::find(scope_.overwrites, path) == scope_.overwrites.end())
            scope_.overwrites.push_back(path);
    };
    for (const std::string& path : changedFiles(repo)) {
        if (std::ranges::find(changed_, path) == changed_.end())
            add(path);
    }
    const IndexContents now = indexContents(repo, gitDirectory_);
    for (const std::string& path : lostPaths(repo, {step_.before.indexTree, now.tree})) {
        if (kindAt(repo.root() / path) != FileKind::none)
            add(path);
    }
}

std::optional<UndoStep> UndoRecording::finish(const GitRepository& repo)
{
    const std::size_t meant = scope_.overwrites.size();
    if (scope_.changesMore)
        findMoreChanges(repo);
    try {
        step_.after = pointNow(repo, gitDirectory_, scope_);
    } catch (const UndoTooLarge&) { // what was found last has to do without
        scope_.overwrites.resize(meant);
        step_.after = pointNow(repo, gitDirectory_, scope_);
    }
    const HeadPlace& head = step_.after->head;
    const bool isOnlyHead = !scope_.movesAnyRef && scope_.refFolders.empty() &&
                            scope_.refs == std::vector{step_.before.head.branch} &&
                            head.branch == step_.before.head.branch;
    step_.refs = movedRefs(refs_, isOnlyHead ? withHead({}, head) : refsNow(repo, scope_));
    step_.date = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    // What was refused has told nobody anything.
    if (isRefused_ && isPublished(step_) && step_.refs.empty())
        step_.kind = "refused-push";
    append(repo, "a ");
    return isNothing(step_) ? std::nullopt : std::optional(step_);
}

std::vector<UndoStep> undoSteps(const GitRepository& repo, std::size_t most)
{
    std::vector<UndoStep> steps;
    for (UndoEntry& entry : undoEntries(repo, 2 * most)) {
        std::optional<UndoStep> step = readUndoRecord(entry.record);
        if (!step)
            continue;
        step->record = std::move(entry.commit);
        step->date = entry.date;
        step->began = entry.date;
        const auto known = std::ranges::find(steps, step->id, &UndoStep::id);
        if (known == steps.end())
            steps.push_back(*std::move(step));
        else // its end stands above its beginning
            known->began = step->date;
    }
    std::erase_if(steps, isNothing);
    return steps;
}

} // namespace gitkit
