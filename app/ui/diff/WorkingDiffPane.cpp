// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/WorkingDiffPane.h"

#include "GitKit/PartialPatch.h"
#include "app/store/ShownText.h"
#include "app/ui/diff/DiffNotes.h"
#include "app/ui/diff/DiffView.h"
#include "app/ui/window/OperationText.h"

#include <QPointer>
#include <QTimer>

#include <algorithm>

namespace plovik {

namespace {

using SectionKind = gitkit::DiffSection::Kind;

QString titleOf(SectionKind kind)
{
    switch (kind) {
    case SectionKind::untracked:
        return WorkingDiffPane::tr("Untracked");
    case SectionKind::conflict:
        return WorkingDiffPane::tr("Conflict");
    case SectionKind::unstaged:
        return WorkingDiffPane::tr("Unstaged");
    case SectionKind::staged:
        return WorkingDiffPane::tr("Staged");
    }
    return {};
}

QString nameOf(SectionKind kind)
{
    switch (kind) {
    case SectionKind::untracked:
        return WorkingDiffPane::tr("Untracked Diff");
    case SectionKind::conflict:
        return WorkingDiffPane::tr("Conflict Diff");
    case SectionKind::unstaged:
        return WorkingDiffPane::tr("Unstaged Diff");
    case SectionKind::staged:
        return WorkingDiffPane::tr("Staged Diff");
    }
    return {};
}

DiffContent::Use useOf(SectionKind kind)
{
    switch (kind) {
    case SectionKind::untracked:
        return DiffContent::Use::stage;
    case SectionKind::conflict:
        return DiffContent::Use::read;
    case SectionKind::unstaged:
        return DiffContent::Use::stageAndDiscard;
    case SectionKind::staged:
        return DiffContent::Use::unstage;
    }
    return DiffContent::Use::read;
}

DiffState conflictOf(const gitkit::FileChange& file)
{
    if (file.index == file.worktree)
        return file.index == 'D' ? DiffState::onNoSide : DiffState::conflicted;
    return file.index == 'A' || file.worktree == 'A' ? DiffState::addedOnOneSide : DiffState::onOneSide;
}

/// Returns how lines of a diff are found in the last commit; nullopt where it does not have the file, and where the changes in
/// between are not all known.
std::optional<LinesInHead> inHead(const gitkit::RepoStatus& now, const gitkit::FileChange& file,
                                  const gitkit::DiffSection& section, const gitkit::DiffSection* staged)
{
    const bool isThere = now.oid && !file.isUntracked() && !file.isConflicted && file.index != 'A';
    const bool isStaged = section.kind == SectionKind::staged;
    if (!isThere || (!isStaged && section.kind != SectionKind::unstaged))
        return std::nullopt;
    LinesInHead lines{.revision = *now.oid, .path = file.originalPath.value_or(file.path)};
    if (isStaged || !file.hasStaged())
        return lines;
    if (!staged || staged->diff.isTruncated || staged->diff.isBinary)
        return std::nullopt;
    lines.staged = staged->diff.lines;
    return lines;
}

DiffContent contentOf(gitkit::DiffSection section, const gitkit::FileChange& file, bool isFirst)
{
    DiffContent content;
    content.kind = section.kind;
    content.title = titleOf(section.kind);
    content.name = nameOf(section.kind);
    content.detail = isFirst ? shownText(file.path) : QString();
    content.path = file.path;
    if (section.kind != SectionKind::staged)
        content.workingPath = file.path;
    content.diff = std::move(section.diff);
    content.use = useOf(section.kind);
    if (section.kind == SectionKind::conflict)
        content.state = conflictOf(file);
    return content;
}

} // namespace

WorkingDiffPane::WorkingDiffPane(RepositoryStore& store, QWidget* parent)
    : DiffPane(store, parent), store_(store), reading_(store.git(), &readWorkingDiff, [this] { diffRead(); })
{
    connect(view(), &DiffView::actionRequested, this, &WorkingDiffPane::apply);
    connect(this, &DiffPane::readingChanged, this, &WorkingDiffPane::follow);
    notifiers_.push_back(store_.window().selectedPaths.addNotifier([this] { follow(); }));
    notifiers_.push_back(store_.snapshot().generation.addNotifier([this] { follow(); }));
    // Both of these tell of changes before they begin.
    const auto fileStaged = [this] {
        if (isShownFileStaged())
            awaitChanges();
    };
    const auto questionClosed = [this] {
        if (!store_.window().confirmation.value())
            awaitChanges();
    };
    notifiers_.push_back(store_.staging().stagingGeneration.addNotifier(
        [this, fileStaged] { QTimer::singleShot(0, this, fileStaged); }));
    notifiers_.push_back(store_.window().confirmation.addNotifier(
        [this, questionClosed] { QTimer::singleShot(0, this, questionClosed); }));
    follow();
}

void WorkingDiffPane::follow()
{
    const std::set<std::string>& paths = store_.window().selectedPaths.value();
    const auto& files = store_.snapshot().status.value().files;
    const gitkit::FileChange* const file = paths.size() == 1 ? files.find(*paths.begin()) : nullptr;
    if (!file) {
        reading_.forget();
        shown_.clear();
        showCount(paths.size());
        return;
    }
    ask({*file, readingOf(file->path)});
    offerActions();
}

void WorkingDiffPane::ask(WorkingDiffRequest request)
{
    // The same request is not begun anew while it is read.
    if (!reading_.isReading() || reading_.asked() != request)
        isReadCurrent_ = !store_.changes().hasUntitled();
    reading_.askAgain(std::move(request));
}

/// Returns whether the file on display is being staged or unstaged as a whole.
bool WorkingDiffPane::isShownFileStaged() const
{
    const gitkit::FileChange* const file = store_.snapshot().status.value().files.find(shown_);
    return file && store_.staging().shownStageState(*file) != file->stageState();
}

/// Has nothing done with the diff on display until it was read after the changes that are under way, if any are.
void WorkingDiffPane::awaitChanges()
{
    if (!store_.changes().hasUntitled())
        return;
    awaited_ = shown_;
    isReadCurrent_ = false;
    offerActions();
}

void WorkingDiffPane::offerActions()
{
    const std::set<std::string>& paths = store_.window().selectedPaths.value();
    view()->setActionsAvailable(!shown_.empty() && paths == std::set{shown_} && shown_ != awaited_);
}

void WorkingDiffPane::showCount(std::size_t selected)
{
    if (selected > 1)
        showSentence(tr("%Ln File(s) Selected", nullptr, static_cast<int>(selected)),
                     tr("Select one file to see what changed in it."));
    else
        showSentence(tr("No File Selected"), tr("Select a file to see what changed in it."));
}

void WorkingDiffPane::diffRead()
{
    if (isReadCurrent_)
        awaited_.clear();
    // A request that was made again meanwhile is read again after this.
    isReadCurrent_ = !store_.changes().hasUntitled();
    if (reading_.failure())
        takeProblem(diffProblem(*reading_.failure()));
    else
        take(reading_.answered()->file, *reading_.result());
}

void WorkingDiffPane::take(const gitkit::FileChange& file, std::vector<gitkit::DiffSection> sections)
{
    if (sections.empty()) {
        shown_.clear();
        if (file.isUntracked() && file.path.ends_with('/'))
            showSentence(shownText(file.path),
                         tr("This folder is a repository of its own. Its files are not part of this one."));
        else
            showSentence(tr("No Changes"), tr("The file is as it was committed."));
        return;
    }
    // Git exits for a missing file as it does for a difference, but prints no diff.
    const gitkit::ParsedDiff& first = sections.front().diff;
    if (file.isUntracked() && first.isEmpty() && !first.patchHeader) {
        takeProblem(fileIsGone());
        return;
    }
    std::vector<DiffContent> contents;
    std::vector<std::optional<LinesInHead>> places;
    const auto staged = std::ranges::find(sections, SectionKind::staged, &gitkit::DiffSection::kind);
    for (const gitkit::DiffSection& section : sections)
        places.push_back(
            inHead(store_.snapshot().status.value(), file, section, staged == sections.end() ? nullptr : &*staged));
    for (gitkit::DiffSection& section : sections) {
        const std::size_t place = contents.size();
        contents.push_back(contentOf(std::move(section), file, contents.empty()));
        contents.back().inHead = std::move(places[place]);
    }
    if (file.isConflicted && !contents.empty())
        contents.front().sides = {operationText::side(store_, gitkit::ConflictSide::ours),
                                  operationText::side(store_, gitkit::ConflictSide::theirs)};
    showDiffs(std::move(contents), file.path == shown_ ? DiffPlace::kept : DiffPlace::start);
    shown_ = file.path;
    offerActions();
}

void WorkingDiffPane::takeProblem(const DiffProblem& problem)
{
    shown_.clear();
    showSentence(problem.title, problem.description);
}

void WorkingDiffPane::apply(const DiffContent& content, const DiffAction& action)
{
    // The shown diff belongs to the file that it was read for, which may no longer be the selected one.
    const std::set<std::string>& paths = store_.window().selectedPaths.value();
    if (shown_.empty() || paths != std::set{shown_} || shown_ == awaited_)
        return;
    if (const auto side = sideOf(action.verb)) {
        takeSide(*side);
        return;
    }
    using Part = Staging::DiscardedPart;
    switch (action.verb) {
    case DiffAction::Verb::stage:
        store_.staging().applyToIndex(shown_, content.diff, action.lines, gitkit::PatchDirection::forward);
        awaitChanges();
        return;
    case DiffAction::Verb::unstage:
        store_.staging().applyToIndex(shown_, content.diff, action.lines, gitkit::PatchDirection::reverse);
        awaitChanges();
        return;
    case DiffAction::Verb::discard:
        store_.staging().confirmDiscardPart(shown_, content.diff, action.lines,
                                            action.part == DiffAction::Part::lines ? Part::lines : Part::hunk);
        return;
    case DiffAction::Verb::stash:
        store_.staging().stashPart(shown_, content.diff, action.lines);
        return;
    case DiffAction::Verb::toFirst:
    case DiffAction::Verb::toSecond:
    case DiffAction::Verb::useOurs:
    case DiffAction::Verb::useTheirs:
        return;
    }
}

void WorkingDiffPane::takeSide(gitkit::ConflictSide side)
{
    const gitkit::FileChange* const file = store_.snapshot().status.value().files.find(shown_);
    if (!file || !file->isConflicted)
        return;
    if (const gitkit::Conflict* const conflict = store_.conflicts().find(shown_))
        store_.conflicts().answer({*conflict}, side == gitkit::ConflictSide::ours ? gitkit::ConflictAnswer::left
                                                                                  : gitkit::ConflictAnswer::right);
    else
        store_.staging().takeSide({*file}, side);
    awaitChanges();
}

} // namespace plovik

#include "moc_WorkingDiffPane.cpp"
