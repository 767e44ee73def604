// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/CommitDetailView.h"

#include "app/settings/Settings.h"
#include "app/store/ShownText.h"
#include "app/store/actions/DesktopFiles.h"
#include "app/store/actions/Remotes.h"
#include "app/ui/commit/AllFilesPane.h"
#include "app/ui/commit/AllFilesView.h"
#include "app/ui/commit/CommitFileMenu.h"
#include "app/ui/commit/CommitFilesList.h"
#include "app/ui/commit/CommitHeader.h"
#include "app/ui/commit/CommitSummary.h"
#include "app/ui/commit/HeaderOverFiles.h"
#include "app/ui/diff/DiffPane.h"
#include "app/ui/diff/DiffView.h"
#include "app/ui/drag/DragData.h"
#include "app/ui/widgets/EmptyState.h"
#include "app/ui/widgets/FileListTools.h"
#include "app/ui/widgets/IconButton.h"
#include "app/ui/widgets/SplitPane.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QScopedValueRollback>
#include <QStackedLayout>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>
#include <utility>

namespace plovik {

namespace {

constexpr double leastFilesWidth = 200;
constexpr int leastSummaryWidth = 140; ///< with the totals and two buttons
constexpr double leastDiffWidth = 260;

// The width of the header and the files, until the user chooses one.
constexpr double partOfSide = 0.34;
constexpr double leastSide = 440;
constexpr double mostSide = 620;

/// A read that takes no longer than this shows no sign of it.
constexpr std::chrono::milliseconds quietRead{150};

constexpr int mostRecent = 50; ///< commits of ordinary size
constexpr std::size_t ordinaryFiles = 200;

EmptyState* makeNone(CommitDetailView::CommitKind kind)
{
    auto* const none = new EmptyState;
    if (kind == CommitDetailView::CommitKind::stash)
        none->setText(CommitDetailView::tr("No Stash Selected"), {});
    else
        none->setText(CommitDetailView::tr("No Commit Selected"),
                      CommitDetailView::tr("Select a commit to read its message and its changes."));
    return none;
}

IconButton* makeAllFilesButton()
{
    auto* const button = new IconButton(Icon::allFiles, CommitDetailView::tr("All Files"), nullptr);
    const auto follow = [button] { button->setChecked(Settings::shared().value(settings::commitShowsAllFiles)); };
    button->setCheckable(true);
    QObject::connect(button, &IconButton::toggled, button,
                     [](bool isOn) { Settings::shared().set(settings::commitShowsAllFiles, isOn); });
    QObject::connect(&Settings::shared(), &Settings::changed, button, follow);
    follow();
    return button;
}

} // namespace

CommitDetailView::CommitDetailView(RepositoryStore& store, CommitKind kind, QWidget* parent)
    : QWidget(parent), store_(store), kind_(kind), pages_(new QStackedLayout(this)), recent_(mostRecent),
      details_(store.git(), &readCommit, [this] { detailRead(); }),
      counts_(store.git(), &readCounts, [this] { countsRead(); }),
      diffs_(store.git(), &readCommitDiff, [this] { diffRead(); })
{
    pages_->addWidget(makeNone(kind));
    const auto& selection = kind == CommitKind::stash ? store.window().selectedStash : store.window().selectedCommit;
    notifiers_.push_back(selection.addNotifier([this] { follow(); }));
    notifiers_.push_back(store.snapshot().generation.addNotifier([this] { retry(); }));
    clearSoon_.setSingleShot(true);
    clearSoon_.setInterval(quietRead);
    connect(&clearSoon_, &QTimer::timeout, this, &CommitDetailView::clearFiles);
    follow();
}

/// Called with the first selected commit: a window opens sooner without these widgets.
void CommitDetailView::makePage()
{
    header_ = new CommitHeader(store_, kind_);
    files_ = new CommitFilesList;
    diff_ = new DiffPane(store_);
    diff_->view()->setActionsAvailable(false);
    diff_->showSentence({}, {});
    diff_->addOption(makeAllFilesButton());
    right_ = new QStackedWidget;
    right_->addWidget(diff_);
    auto* const page = new SplitPane(settings::commitFilesWidth, Qt::Horizontal, SplitPane::Sized::first,
                                     std::max<double>(leastFilesWidth, Theme::scaled(leastSummaryWidth)),
                                     leastDiffWidth, makeLeftSide(), right_);
    page->setAutomatic([](double available) { return std::clamp(available * partOfSide, leastSide, mostSide); });
    pages_->addWidget(page);
    setTabOrder(files_, diff_);
    files_->setDragged([this](QPoint) { dragCurrentFile(); });
    connect(files_, &CommitFilesList::currentFileChanged, this, &CommitDetailView::fileChanged);
    connect(files_, &CommitFilesList::openRequested, this, &CommitDetailView::openCurrentFile);
    connect(files_, &CommitFilesList::menuRequested, this, &CommitDetailView::showMenu);
    connect(files_, &CommitFilesList::diffFocusRequested, this, &CommitDetailView::focusDiff);
    connect(diff_, &DiffPane::readingChanged, this, &CommitDetailView::fileChanged);
    connect(&Settings::shared(), &Settings::changed, this, [this](const QString& key) {
        if (key == QLatin1String(settings::commitShowsAllFiles.key))
            showRightSide();
    });
}

void CommitDetailView::makeAllFiles()
{
    all_ = new AllFilesPane(store_);
    all_->addOption(makeAllFilesButton());
    right_->addWidget(all_);
    connect(&all_->view(), &AllFilesView::currentFileChanged, this, &CommitDetailView::followAllFiles);
    connect(&all_->view(), &AllFilesView::menuRequested, this, &CommitDetailView::showMenu);
}

/// Shows the diff of the current file, or those of all files.
void CommitDetailView::showRightSide()
{
    const bool showsAll =
        Settings::shared().value(settings::commitShowsAllFiles) && shown_ && !shown_->detail.files.empty();
    if (showsAll && !all_)
        makeAllFiles();
    const bool hadFocus = right_->isAncestorOf(focusWidget());
    if (all_)
        all_->setReading(showsAll ? shown_ : nullptr);
    right_->setCurrentWidget(showsAll ? static_cast<QWidget*>(all_) : diff_);
    fileChanged();
    if (hadFocus)
        focusDiff();
}

void CommitDetailView::focusDiff()
{
    if (right_->currentWidget() == all_)
        all_->view().focusCurrent();
    else if (!diff_->isSentenceShown())
        diff_->setFocus(Qt::TabFocusReason);
}

void CommitDetailView::followAllFiles()
{
    const QScopedValueRollback following(isFollowing_, true);
    files_->setCurrentFile(all_->view().currentFile());
}

QWidget* CommitDetailView::makeLeftSide()
{
    auto* const rows = new QVBoxLayout;
    rows->setContentsMargins(14, 4, 8, 0);
    rows->setSpacing(4);
    auto* const summary = new QHBoxLayout;
    summary->setSpacing(6);
    rows->addLayout(summary);
    rows->addWidget(files_->tools().field());
    summary_ = new QLabel;
    summary_->setForegroundRole(QPalette::PlaceholderText);
    summary_->setTextFormat(Qt::PlainText);
    summary_->setWordWrap(true);
    summary_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    totals_ = new QLabel;
    totals_->setTextFormat(Qt::RichText);
    totals_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    totals_->setAccessibleName(tr("Total Lines"));
    for (QLabel* label : {summary_, totals_})
        followFont(*label, -1);
    summary->addWidget(summary_, 1);
    summary->addWidget(totals_, 0, Qt::AlignRight | Qt::AlignVCenter);
    summary->addWidget(files_->tools().treeButton());
    summary->addWidget(files_->tools().filterButton());
    side_ = new HeaderOverFiles(kind_, header_, rows, files_);
    return side_;
}

std::optional<std::string> CommitDetailView::selected() const
{
    return kind_ == CommitKind::stash ? store_.window().selectedStash.value() : store_.window().selectedCommit.value();
}

void CommitDetailView::follow()
{
    const std::optional<std::string> hash = selected();
    if (hash && !header_)
        makePage();
    pages_->setCurrentIndex(hash ? 1 : 0);
    if (!hash) {
        shown_.reset();
        if (files_) {
            files_->setReading(nullptr);
            showRightSide();
            diff_->showSentence({}, {});
        }
        return;
    }
    details_.forget();
    clearSoon_.stop();
    if (isCurrent()) {
        header_->showDetail(shown_->detail);
    } else if (const std::shared_ptr<CommitReading>* known = recent_.object(*hash)) {
        showReading(*known);
    } else {
        header_->expect(*hash);
        details_.ask({*hash, kind_});
        clearSoon_.start();
    }
}

/// Returns whether the files on display are those of the selected commit.
bool CommitDetailView::isCurrent() const { return shown_ && shown_->detail.hash == selected(); }

/// Reads again what could not be read.
void CommitDetailView::retry()
{
    if (!selected() || !header_)
        return;
    if (details_.failure())
        details_.ask({*selected(), kind_});
    else if (diffs_.failure())
        fileChanged();
}

void CommitDetailView::detailRead()
{
    clearSoon_.stop();
    if (details_.failure()) {
        showProblem(details_.failure()->message);
        return;
    }
    const auto reading = std::make_shared<CommitReading>();
    reading->detail = *details_.result();
    const std::size_t size = 1 + reading->detail.files.size() / ordinaryFiles;
    const int cost = static_cast<int>(std::min<std::size_t>(size, mostRecent / 2));
    recent_.insert(reading->detail.hash, new std::shared_ptr<CommitReading>(reading), cost);
    showReading(reading);
}

void CommitDetailView::showReading(std::shared_ptr<CommitReading> reading)
{
    shown_ = std::move(reading);
    header_->showDetail(shown_->detail);
    showSummary();
    files_->setReading(shown_);
    showRightSide();
    side_->arrange();
    if (shown_->detail.files.empty())
        diff_->showSentence(tr("No Changes"), commitSummary::nothingChanged(shown_->detail, kind_));
    else if (!shown_->counts)
        counts_.ask({shown_->detail.hash, kind_});
}

void CommitDetailView::clearFiles()
{
    shown_.reset();
    files_->setReading(nullptr);
    showRightSide();
    summary_->clear();
    totals_->clear();
    diff_->showSentence({}, {});
}

void CommitDetailView::showProblem(const QString& problem)
{
    clearFiles();
    diff_->showSentence(
        kind_ == CommitKind::stash ? tr("The stash could not be read") : tr("The commit could not be read"), problem);
}

void CommitDetailView::showSummary()
{
    summary_->setText(commitSummary::files(shown_->detail, kind_));
    totals_->setText(commitSummary::totals(*shown_));
}

void CommitDetailView::countsRead()
{
    // When the counts could not be read, the commit is shown without numbers.
    const std::string& hash = counts_.asked()->hash;
    std::vector<gitkit::ChangeCounts> counts;
    if (!counts_.failure())
        counts = *counts_.result();
    if (const std::shared_ptr<CommitReading>* known = recent_.object(hash))
        (*known)->counts = counts;
    if (!shown_ || shown_->detail.hash != hash)
        return;
    shown_->counts = std::move(counts);
    files_->countsChanged();
    if (all_ && all_->view().reading() == shown_)
        all_->view().countsChanged();
    showSummary();
    side_->arrange();
}

void CommitDetailView::fileChanged()
{
    if (all_ && right_->currentWidget() == all_) {
        diffs_.forget();
        if (const std::optional<std::size_t> file = files_->currentPlace(); file && isCurrent() && !isFollowing_)
            all_->view().goTo(*file);
        return;
    }
    const gitkit::CommitFile* const file = files_->currentFile();
    if (file && isCurrent())
        diffs_.ask({shown_->detail.hash, *file, diff_->readingOf(shown_->detail.hash + ':' + file->path)});
    else
        diffs_.forget();
    if (diffs_.isReading())
        diff_->awaitDiff();
}

void CommitDetailView::diffRead()
{
    if (diffs_.failure() && diffs_.failure()->kind == gitkit::ErrorKind::contentsNotHere) {
        offerDownload();
        return;
    }
    if (diffs_.failure()) {
        diff_->showSentence(tr("The diff could not be read"), diffs_.failure()->message);
        return;
    }
    diff_->showDiff(tr("Diff"), diffs_.answered()->file.path, *diffs_.result(), diffs_.answered()->hash);
}

void CommitDetailView::offerDownload()
{
    const auto readAgain = [view = QPointer(this)] {
        if (!view || !view->diffs_.asked())
            return;
        view->diffs_.askAgain(*view->diffs_.asked());
        if (view->counts_.asked())
            view->counts_.askAgain(*view->counts_.asked());
    };
    diff_->showOffer(tr("The Contents Are Not Here"), diffs_.failure()->message, tr("Download"),
                     [this, hash = diffs_.asked()->hash, readAgain] {
                         actions::downloadContents(store_.actors(), hash, readAgain);
                     });
}

void CommitDetailView::dragCurrentFile()
{
    const gitkit::CommitFile* const file = files_->currentFile();
    if (!file || !isCurrent())
        return;
    const InspectedFile version = inspectedFile(shown_->detail, *file, InspectedFile::Tab::blame);
    drag(*files_, store_,
         {.kind = Dragged::Kind::commitFile,
          .names = {version.path},
          .revision = version.revision.value_or(std::string())},
         namesOfFiles({version.path}));
}

void CommitDetailView::openCurrentFile()
{
    const gitkit::CommitFile* const file = files_->currentFile();
    if (!file || !isCurrent())
        return;
    if (isInWorkingTree(store_, *file))
        actions::openInEditor(store_.actors(), {gitkit::FileChange{.path = file->path, .originalPath = {}}});
    else
        header_->say(tr("%1 is not in the working tree now.").arg(shownText(file->path)));
}

void CommitDetailView::showMenu(const QPoint& position)
{
    if (QMenu* const menu = makeContextMenu()) {
        menu->setAttribute(Qt::WA_DeleteOnClose);
        menu->popup(position);
    }
}

QMenu* CommitDetailView::makeContextMenu()
{
    const gitkit::CommitFile* const file = files_ ? files_->currentFile() : nullptr;
    if (!file || !isCurrent())
        return nullptr;
    const QString openTitle = editorTitle_ ? editorTitle_() : tr("Open in Default Editor");
    return makeCommitFileMenu(store_, shown_->detail, *file, openTitle, this);
}

void CommitDetailView::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    // The text of the totals contains colours of the theme.
    if (event->type() == QEvent::PaletteChange && shown_)
        showSummary();
}

} // namespace plovik

#include "moc_CommitDetailView.cpp"
