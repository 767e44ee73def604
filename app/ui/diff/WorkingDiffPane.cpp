// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/WorkingDiffPane.h"

#include "GitKit/PartialPatch.h"
#include "app/store/ShownText.h"
#include "app/ui/diff/DiffNotes.h"
#include "app/ui/diff/DiffView.h"

#include <QPointer>

#include <algorithm>

namespace plovik {

using namespace Qt::StringLiterals;

namespace {

DiffContent contentOf(gitkit::DiffSection section, const gitkit::FileChange& file, bool isFirst)
{
    using Kind = gitkit::DiffSection::Kind;
    DiffContent content;
    content.title = shownText(section.title);
    content.name = content.title + u" Diff"_s;
    content.detail = isFirst ? shownText(file.path) : QString();
    content.path = file.path;
    if (section.title != "Staged")
        content.workingPath = file.path;
    content.diff = std::move(section.diff);
    if (section.title == "Conflict")
        content.state = DiffState::conflicted;
    else if (section.kind == Kind::unstaged)
        content.use = DiffContent::Use::stageAndDiscard;
    else if (section.kind == Kind::staged)
        content.use = DiffContent::Use::unstage;
    else
        content.use = DiffContent::Use::stage;
    return content;
}

} // namespace

WorkingDiffPane::WorkingDiffPane(RepositoryStore& store, QWidget* parent) : DiffPane(store, parent), store_(store)
{
    connect(view(), &DiffView::actionRequested, this, &WorkingDiffPane::apply);
    connect(this, &DiffPane::whiteSpaceChanged, this, &WorkingDiffPane::follow);
    notifiers_.push_back(store_.selectedPaths.addNotifier([this] { follow(); }));
    notifiers_.push_back(store_.generation.addNotifier([this] { follow(); }));
    follow();
}

void WorkingDiffPane::follow()
{
    const std::set<std::string>& paths = store_.selectedPaths.value();
    const auto& files = store_.status.value().files;
    const auto file =
        paths.size() == 1 ? std::ranges::find(files, *paths.begin(), &gitkit::FileChange::path) : files.end();
    if (file == files.end()) {
        wanted_.reset();
        shown_.clear();
        showCount(paths.size());
        return;
    }
    view()->setActionsAvailable(file->path == shown_);
    wanted_ = *file;
    if (!isReading_) {
        isReading_ = true;
        launch(readDiffs(this));
    }
}

void WorkingDiffPane::showCount(std::size_t selected)
{
    if (selected > 1)
        showSentence(u"%1 Files Selected"_s.arg(selected), u"Select one file to see what changed in it."_s);
    else
        showSentence(u"No File Selected"_s, u"Select a file to see what changed in it."_s);
}

bool WorkingDiffPane::isWanted(const std::string& path) const
{
    const std::set<std::string>& paths = store_.selectedPaths.value();
    return paths.size() == 1 && *paths.begin() == path;
}

QCoro::Task<> WorkingDiffPane::readDiffs(QPointer<WorkingDiffPane> pane)
{
    while (pane->wanted_) {
        const gitkit::FileChange file = *std::exchange(pane->wanted_, std::nullopt);
        std::vector<gitkit::DiffSection> sections;
        QString problem;
        const gitkit::WhiteSpace whiteSpace = pane->whiteSpace();
        try {
            sections = co_await pane->store_.run(&gitkit::GitRepository::workingDiff, file, whiteSpace);
        } catch (const std::exception& failure) {
            problem = QString::fromUtf8(failure.what());
        }
        if (!pane)
            co_return; // the view closed meanwhile
        if (!pane->isWanted(file.path))
            continue;
        if (problem.isEmpty())
            pane->take(file, std::move(sections));
        else
            pane->takeProblem(diffProblem(problem));
    }
    pane->isReading_ = false;
}

void WorkingDiffPane::take(const gitkit::FileChange& file, std::vector<gitkit::DiffSection> sections)
{
    if (sections.empty()) {
        shown_.clear();
        if (file.isUntracked() && file.path.ends_with('/'))
            showSentence(shownText(file.path),
                         u"This folder is a repository of its own. Its files are not part of this one."_s);
        else
            showSentence(u"No Changes"_s, u"The file is as it was committed."_s);
        return;
    }
    // Git tells of a missing file in the same way as of a difference, but without a diff.
    const gitkit::ParsedDiff& first = sections.front().diff;
    if (file.isUntracked() && first.isEmpty() && !first.patchHeader) {
        takeProblem(fileIsGone());
        return;
    }
    std::vector<DiffContent> contents;
    for (gitkit::DiffSection& section : sections)
        contents.push_back(contentOf(std::move(section), file, contents.empty()));
    showDiffs(std::move(contents), file.path == shown_ ? DiffPlace::kept : DiffPlace::start);
    shown_ = file.path;
    view()->setActionsAvailable(true);
}

void WorkingDiffPane::takeProblem(const DiffProblem& problem)
{
    shown_.clear();
    showSentence(problem.title, problem.description);
}

void WorkingDiffPane::apply(const DiffContent& content, const DiffAction& action)
{
    // What is drawn belongs to the file it was read for; another selection may have come meanwhile.
    if (shown_.empty() || !isWanted(shown_))
        return;
    using Part = RepositoryStore::DiscardedPart;
    switch (action.verb) {
    case DiffAction::Verb::stage:
        store_.applyToIndex(shown_, content.diff, action.lines, gitkit::PatchDirection::forward);
        return;
    case DiffAction::Verb::unstage:
        store_.applyToIndex(shown_, content.diff, action.lines, gitkit::PatchDirection::reverse);
        return;
    case DiffAction::Verb::discard:
        store_.confirmDiscardPart(shown_, content.diff, action.lines,
                                  action.part == DiffAction::Part::lines ? Part::lines : Part::hunk);
        return;
    }
}

} // namespace plovik
