// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/CommitDetailView.h"

#include "app/settings/Settings.h"
#include "app/store/ShownText.h"
#include "app/ui/commit/CommitFileMenu.h"
#include "app/ui/commit/CommitFilesList.h"
#include "app/ui/commit/CommitHeader.h"
#include "app/ui/commit/CommitSummary.h"
#include "app/ui/commit/HeaderOverFiles.h"
#include "app/ui/diff/DiffPane.h"
#include "app/ui/diff/DiffView.h"
#include "app/ui/widgets/EmptyState.h"
#include "app/ui/widgets/SplitPane.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPointer>
#include <QStackedLayout>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace plovik {

using namespace Qt::StringLiterals;
using gitkit::GitRepository;

namespace {

constexpr double leastFilesWidth = 200;
constexpr double leastDiffWidth = 260;

/// One for the commit that is selected, and one that a slow commit, left meanwhile, may hold.
constexpr int mostReadsAtOnce = 2;

constexpr int mostRecent = 50; ///< commits of ordinary size
constexpr std::size_t ordinaryFiles = 200;

EmptyState* makeNone(CommitDetailView::CommitKind kind)
{
    auto* const none = new EmptyState;
    if (kind == CommitDetailView::CommitKind::stash)
        none->setText(u"No Stash Selected"_s, {});
    else
        none->setText(u"No Commit Selected"_s, u"Select a commit to read its message and its changes."_s);
    return none;
}

} // namespace

CommitDetailView::CommitDetailView(RepositoryStore& store, CommitKind kind, QWidget* parent)
    : QWidget(parent), store_(store), kind_(kind), pages_(new QStackedLayout(this)), recent_(mostRecent)
{
    pages_->addWidget(makeNone(kind));
    QProperty<std::optional<std::string>>& selection =
        kind == CommitKind::stash ? store.selectedStash : store.selectedCommit;
    notifiers_.push_back(selection.addNotifier([this] { follow(); }));
    follow();
}

/// A window is on the screen sooner without what only a selected commit needs.
void CommitDetailView::makePage()
{
    header_ = new CommitHeader(store_, kind_);
    files_ = new CommitFilesList;
    diff_ = new DiffPane(store_);
    diff_->view()->setActionsAvailable(false);
    diff_->showSentence({}, {});
    pages_->addWidget(new SplitPane(settings::commitFilesWidth, Qt::Horizontal, SplitPane::Sized::first,
                                    leastFilesWidth, leastDiffWidth, makeLeftSide(), diff_));
    setTabOrder(files_, diff_);
    connect(files_, &CommitFilesList::currentFileChanged, this, &CommitDetailView::fileChanged);
    connect(files_, &CommitFilesList::openRequested, this, &CommitDetailView::openCurrentFile);
    connect(files_, &CommitFilesList::menuRequested, this, &CommitDetailView::showMenu);
    connect(files_, &CommitFilesList::diffFocusRequested, this, [this] {
        if (!diff_->isSentenceShown())
            diff_->setFocus(Qt::TabFocusReason);
    });
    connect(diff_, &DiffPane::whiteSpaceChanged, this, &CommitDetailView::fileChanged);
}

QWidget* CommitDetailView::makeLeftSide()
{
    auto* const summary = new QHBoxLayout;
    summary->setContentsMargins(14, 8, 14, 0);
    summary_ = new QLabel;
    summary_->setForegroundRole(QPalette::PlaceholderText);
    summary_->setTextFormat(Qt::PlainText);
    summary_->setWordWrap(true);
    totals_ = new QLabel;
    totals_->setTextFormat(Qt::RichText);
    totals_->setAccessibleName(u"Total Lines"_s);
    for (QLabel* label : {summary_, totals_})
        followFont(*label, -1);
    summary->addWidget(summary_, 1);
    summary->addWidget(totals_, 0, Qt::AlignRight | Qt::AlignTop);
    side_ = new HeaderOverFiles(header_, summary, files_);
    return side_;
}

std::optional<std::string> CommitDetailView::selected() const
{
    return kind_ == CommitKind::stash ? store_.selectedStash.value() : store_.selectedCommit.value();
}

template <typename Request>
void CommitDetailView::want(Reads<Request>& reads, Request request, QCoro::Task<> (*read)(QPointer<CommitDetailView>))
{
    reads.wanted = std::move(request);
    if (reads.underWay < mostReadsAtOnce) {
        ++reads.underWay;
        launch(read(this));
    }
}

void CommitDetailView::follow()
{
    const std::optional<std::string> hash = selected();
    details_.wanted.reset();
    if (hash && !header_)
        makePage();
    pages_->setCurrentIndex(hash ? 1 : 0);
    if (!hash) {
        shown_.reset();
        if (files_) {
            files_->setReading(nullptr);
            diff_->showSentence({}, {});
        }
        return;
    }
    if (shown_ && shown_->detail.hash == *hash) {
        header_->showDetail(shown_->detail);
    } else if (const std::shared_ptr<CommitReading>* known = recent_.object(*hash)) {
        showReading(*known);
    } else {
        header_->expect(*hash);
        want(details_, *hash, &CommitDetailView::readDetails);
    }
}

QCoro::Task<> CommitDetailView::readDetails(QPointer<CommitDetailView> view)
{
    while (view->details_.wanted) {
        const std::string hash = *std::exchange(view->details_.wanted, std::nullopt);
        const CommitKind kind = view->kind_;
        auto reading = std::make_shared<CommitReading>();
        QString problem;
        try {
            reading->detail = co_await view->store_.run(&GitRepository::commitDetail, hash, kind);
        } catch (const std::exception& failure) {
            problem = QString::fromUtf8(failure.what());
            reading.reset();
        }
        if (!view)
            co_return; // the view closed meanwhile
        if (reading) {
            const std::size_t size = 1 + reading->detail.files.size() / ordinaryFiles;
            const int cost = static_cast<int>(std::min<std::size_t>(size, mostRecent / 2));
            view->recent_.insert(hash, new std::shared_ptr<CommitReading>(reading), cost);
        }
        if (view->selected() != hash)
            continue;
        if (reading)
            view->showReading(std::move(reading));
        else
            view->showProblem(problem);
    }
    --view->details_.underWay;
}

void CommitDetailView::showReading(std::shared_ptr<CommitReading> reading)
{
    shown_ = std::move(reading);
    header_->showDetail(shown_->detail);
    showSummary();
    files_->setReading(shown_);
    side_->share();
    if (shown_->detail.files.empty())
        diff_->showSentence(u"No Changes"_s, commitSummary::nothingChanged(shown_->detail, kind_));
    else if (!shown_->counts)
        want(counts_, shown_->detail.hash, &CommitDetailView::readCounts);
}

void CommitDetailView::showProblem(const QString& problem)
{
    shown_.reset();
    files_->setReading(nullptr);
    summary_->clear();
    totals_->clear();
    diff_->showSentence(
        kind_ == CommitKind::stash ? u"The stash could not be read"_s : u"The commit could not be read"_s, problem);
}

void CommitDetailView::showSummary()
{
    summary_->setText(commitSummary::files(shown_->detail, kind_));
    totals_->setText(commitSummary::totals(*shown_));
}

QCoro::Task<> CommitDetailView::readCounts(QPointer<CommitDetailView> view)
{
    while (view->counts_.wanted) {
        const std::string hash = *std::exchange(view->counts_.wanted, std::nullopt);
        const CommitKind kind = view->kind_;
        std::vector<gitkit::ChangeCounts> counts;
        try {
            counts = co_await view->store_.run(&gitkit::changeCounts, hash, kind);
        } catch (const std::exception&) {
            counts.clear(); // what could be read of the commit stands there; it goes without the numbers
        }
        if (!view)
            co_return; // the view closed meanwhile
        view->takeCounts(hash, std::move(counts));
    }
    --view->counts_.underWay;
}

void CommitDetailView::takeCounts(const std::string& hash, std::vector<gitkit::ChangeCounts> counts)
{
    if (const std::shared_ptr<CommitReading>* known = recent_.object(hash))
        (*known)->counts = counts;
    if (!shown_ || shown_->detail.hash != hash)
        return;
    shown_->counts = std::move(counts);
    files_->countsChanged();
    showSummary();
}

void CommitDetailView::fileChanged()
{
    const gitkit::CommitFile* const file = files_->currentFile();
    if (!file || !shown_) {
        diffs_.wanted.reset();
        expectedDiff_.reset();
        return;
    }
    expectedDiff_ = WantedDiff{shown_->detail.hash, *file, diff_->whiteSpace()};
    want(diffs_, *expectedDiff_, &CommitDetailView::readDiffs);
}

QCoro::Task<> CommitDetailView::readDiffs(QPointer<CommitDetailView> view)
{
    while (view->diffs_.wanted) {
        const WantedDiff wanted = *std::exchange(view->diffs_.wanted, std::nullopt);
        std::optional<gitkit::ParsedDiff> diff;
        QString problem;
        try {
            diff = co_await view->store_.run(&GitRepository::commitDiff, wanted.hash, wanted.file, wanted.whiteSpace);
        } catch (const std::exception& failure) {
            problem = QString::fromUtf8(failure.what());
        }
        if (!view)
            co_return; // the view closed meanwhile
        if (view->expectedDiff_ != wanted)
            continue;
        if (diff)
            view->takeDiff(wanted.file, std::move(*diff));
        else
            view->diff_->showSentence(u"The diff could not be read"_s, problem);
    }
    --view->diffs_.underWay;
}

void CommitDetailView::takeDiff(const gitkit::CommitFile& file, gitkit::ParsedDiff diff)
{
    DiffContent content;
    content.name = u"Diff"_s;
    content.title = shownText(file.path);
    content.path = file.path;
    content.diff = std::move(diff);
    std::vector<DiffContent> contents;
    contents.push_back(std::move(content));
    diff_->showDiffs(std::move(contents), DiffPlace::start);
}

void CommitDetailView::openCurrentFile()
{
    const gitkit::CommitFile* const file = files_->currentFile();
    if (!file)
        return;
    if (isInWorkingTree(store_, *file))
        store_.openInEditor({gitkit::FileChange{.path = file->path, .originalPath = {}}});
    else
        header_->say(u"%1 is not in the working tree now."_s.arg(shownText(file->path)));
}

void CommitDetailView::showMenu(const QPoint& position)
{
    const gitkit::CommitFile* const file = files_->currentFile();
    if (!file || !shown_)
        return;
    const QString openTitle = editorTitle_ ? editorTitle_() : u"Open in Default Editor"_s;
    QMenu* const menu = makeCommitFileMenu(store_, shown_->detail, *file, openTitle, this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(position);
}

void CommitDetailView::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    // The totals hold colours of the theme as text.
    if (event->type() == QEvent::PaletteChange && shown_)
        showSummary();
}

} // namespace plovik
