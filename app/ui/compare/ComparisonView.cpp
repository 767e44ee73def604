// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/compare/ComparisonView.h"

#include "app/settings/Settings.h"
#include "app/store/ShownText.h"
#include "app/store/actions/DesktopFiles.h"
#include "app/ui/commit/CommitFileMenu.h"
#include "app/ui/commit/CommitFilesList.h"
#include "app/ui/commit/CommitSummary.h"
#include "app/ui/compare/CommitsApartList.h"
#include "app/ui/diff/DiffPane.h"
#include "app/ui/diff/DiffView.h"
#include "app/ui/widgets/BarButton.h"
#include "app/ui/widgets/ElidedLabel.h"
#include "app/ui/widgets/EmptyState.h"
#include "app/ui/widgets/FileListTools.h"
#include "app/ui/widgets/IconButton.h"
#include "app/ui/widgets/SplitPane.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QCheckBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QStackedWidget>
#include <QTabBar>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

using gitkit::Comparison;

namespace {

constexpr double leastComparedFiles = 200;
constexpr double leastComparedDiff = 260;

// The width of the files, until the user chooses one.
constexpr double partOfSide = 0.3;
constexpr double leastSide = 260;
constexpr double mostSide = 520;

QString nameOf(const gitkit::ComparedState& state)
{
    if (state.isWorkingTree())
        return ComparisonView::tr("Working Copy");
    return shownText(state.name.empty() ? gitkit::shortHash(state.hash) : std::string_view(state.name));
}

} // namespace

ComparisonView::ComparisonView(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), store_(store), title_(new ElidedLabel(this)), tabs_(new QTabBar(this)),
      sinceParted_(new QCheckBox(tr("Since They Parted"), this)), swap_(new BarButton(tr("Swap"), this)),
      close_(new IconButton(Icon::close, tr("Close Comparison"), this)), pages_(new QStackedWidget(this)),
      summary_(new ElidedLabel(this)), totals_(new QLabel(this)), files_(new CommitFilesList),
      diffPlace_(new QStackedWidget), diff_(new DiffPane(store)), commitPages_(new QStackedWidget),
      commits_(new CommitsApartList), noCommits_(new EmptyState),
      reading_(store.git(), &readComparedFiles, [this] { filesRead(); }),
      counts_(store.git(), &readComparedCounts, [this] { countsRead(); }),
      diffs_(store.git(), &readComparedDiff, [this] { diffRead(); }),
      apart_(store.git(), &readCommitsApart, [this] { commitsRead(); }, Worker::Lane::longRead)
{
    setAccessibleName(tr("Comparison"));
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    diff_->view()->setActionsAvailable(false);
    diff_->showSentence({}, {});
    diffPlace_->addWidget(diff_);
    pages_->addWidget(makeFiles());
    for (QWidget* const page : {static_cast<QWidget*>(commits_), static_cast<QWidget*>(noCommits_)})
        commitPages_->addWidget(page);
    pages_->addWidget(commitPages_);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(makeHeader());
    column->addWidget(pages_, 1);
    setFocusProxy(files_);
    connectAll();
    notifiers_.push_back(store_.window().compared.addNotifier([this] { follow(); }));
    notifiers_.push_back(store_.snapshot().generation.addNotifier([this] {
        if (store_.window().compared.value() && isVisible())
            read();
    }));
    follow();
}

QWidget* ComparisonView::makeHeader()
{
    followFont(*title_, 1, QFont::DemiBold);
    sinceParted_->setToolTip(
        tr("Shows what the second one has changed since their newest common ancestor, and leaves out "
           "what the first one has changed since then."));
    swap_->setToolTip(tr("Compares the other way round"));
    close_->setToolTip(tr("Close (Esc)"));
    tabs_->setAccessibleName(tr("Comparison Tabs"));
    tabs_->addTab(tr("Files"));
    tabs_->addTab(tr("Commits"));
    tabs_->setDrawBase(false);
    tabs_->setExpanding(false);
    auto* const header = new QWidget(this);
    auto* const names = new QHBoxLayout;
    names->setSpacing(8);
    names->addWidget(title_, 1);
    names->addWidget(close_);
    auto* const choices = new QHBoxLayout;
    choices->setSpacing(10);
    choices->addWidget(tabs_);
    choices->addStretch(1);
    choices->addWidget(sinceParted_);
    choices->addWidget(swap_);
    auto* const rows = new QVBoxLayout(header);
    rows->setContentsMargins(14, 8, 10, 6);
    rows->setSpacing(4);
    rows->addLayout(names);
    rows->addLayout(choices);
    return header;
}

QWidget* ComparisonView::makeFiles()
{
    auto* const summary = new QHBoxLayout;
    summary->setContentsMargins(14, 4, 8, 0);
    summary->setSpacing(6);
    summary_->setForegroundRole(QPalette::PlaceholderText);
    totals_->setTextFormat(Qt::RichText);
    totals_->setAccessibleName(tr("Total Lines"));
    for (QLabel* label : {static_cast<QLabel*>(summary_), totals_})
        followFont(*label, -1);
    summary->addWidget(summary_, 1);
    summary->addWidget(totals_);
    summary->addWidget(files_->tools().treeButton());
    summary->addWidget(files_->tools().filterButton());
    auto* const filter = new QHBoxLayout;
    filter->setContentsMargins(14, 4, 8, 0);
    filter->addWidget(files_->tools().field());
    auto* const side = new QWidget;
    side->setBackgroundRole(QPalette::Base);
    side->setAutoFillBackground(true);
    auto* const column = new QVBoxLayout(side);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addLayout(summary);
    column->addLayout(filter);
    column->addWidget(files_, 1);
    auto* const page = new SplitPane(settings::commitFilesWidth, Qt::Horizontal, SplitPane::Sized::first,
                                     leastComparedFiles, leastComparedDiff, side, diffPlace_);
    page->setAutomatic([](double available) { return std::clamp(available * partOfSide, leastSide, mostSide); });
    return page;
}

void ComparisonView::connectAll()
{
    connect(tabs_, &QTabBar::currentChanged, this, &ComparisonView::showTab);
    connect(swap_, &QAbstractButton::clicked, this, &ComparisonView::swap);
    connect(close_, &QAbstractButton::clicked, this, [this] { store_.window().closeComparison(); });
    connect(sinceParted_, &QCheckBox::clicked, this, &ComparisonView::chooseSinceParted);
    connect(commits_, &CommitsApartList::commitRequested, this,
            [this](const std::string& hash) { store_.history().showCommit(hash); });
    connect(files_, &CommitFilesList::currentFileChanged, this, &ComparisonView::fileChanged);
    connect(files_, &CommitFilesList::openRequested, this, &ComparisonView::openCurrentFile);
    connect(files_, &CommitFilesList::menuRequested, this, [this](const QPoint& position) {
        if (QMenu* const menu = makeContextMenu()) {
            menu->setAttribute(Qt::WA_DeleteOnClose);
            menu->popup(position);
        }
    });
    connect(files_, &CommitFilesList::diffFocusRequested, this, [this] {
        if (!diff_->isSentenceShown())
            diff_->setFocus(Qt::TabFocusReason);
    });
    connect(diff_, &DiffPane::readingChanged, this, &ComparisonView::fileChanged);
}

/// Shows another comparison, or goes on with the same one the other way round or from another point on.
void ComparisonView::follow()
{
    const std::optional<Comparison>& compared = store_.window().compared.value();
    if (!compared) {
        diffs_.forget();
        apart_.forget();
        return;
    }
    if (compared->kind != comparison_.kind || compared->kind != Comparison::Kind::states)
        tabs_->setCurrentIndex(filesTab);
    comparison_ = *compared;
    tabs_->setTabText(commitsTab, tr("Commits"));
    showHeader();
    read();
}

void ComparisonView::showHeader()
{
    const bool areStates = comparison_.kind == Comparison::Kind::states;
    const QString to = nameOf(comparison_.to);
    if (comparison_.kind == Comparison::Kind::files)
        title_->setText(tr("All files of %1").arg(to));
    else if (comparison_.kind == Comparison::Kind::merge)
        title_->setText(tr("The merge %1 compared with all its parents").arg(to));
    else
        title_->setText(tr("From %1 to %2").arg(nameOf(comparison_.from), to));
    tabs_->setVisible(areStates);
    swap_->setVisible(areStates);
    sinceParted_->setVisible(areStates);
    sinceParted_->setChecked(comparison_.sinceParted);
}

ComparisonRequest ComparisonView::request() const
{
    const bool hasWorkingTree = comparison_.from.isWorkingTree() || comparison_.to.isWorkingTree();
    const bool isStates = comparison_.kind == Comparison::Kind::states;
    return {comparison_, isStates && hasWorkingTree ? store_.snapshot().generation.value() : 0};
}

void ComparisonView::read()
{
    reading_.ask(request());
    if (tabs_->currentIndex() == commitsTab)
        apart_.ask(request());
}

void ComparisonView::swap()
{
    Comparison swapped = comparison_;
    std::swap(swapped.from, swapped.to);
    store_.window().compare(std::move(swapped));
}

void ComparisonView::chooseSinceParted(bool isSince)
{
    Comparison chosen = comparison_;
    chosen.sinceParted = isSince;
    store_.window().compare(std::move(chosen));
}

void ComparisonView::showTab(int tab)
{
    pages_->setCurrentIndex(tab);
    setFocusProxy(tab == filesTab ? static_cast<QWidget*>(files_) : commits_);
    if (tab == commitsTab)
        apart_.ask(request());
}

void ComparisonView::filesRead()
{
    shown_.reset();
    if (reading_.failure()) {
        files_->setReading(nullptr);
        diff_->showSentence(tr("The comparison could not be read"), reading_.failure()->message);
        showSummary();
        return;
    }
    shown_ = std::make_shared<CommitReading>();
    shown_->detail.files = reading_.result()->files;
    // The files are looked for in the second state, or in the first one where that is the working tree.
    const bool isToWorkingTree = comparison_.to.isWorkingTree();
    shown_->detail.hash = isToWorkingTree ? comparison_.from.hash : comparison_.to.hash;
    shown_->detail.parents = {comparison_.from.isWorkingTree() ? comparison_.to.hash : comparison_.from.hash};
    if (!shown_->detail.files.empty() && comparison_.kind != Comparison::Kind::merge)
        counts_.ask({reading_.result()->trees, reading_.answered()->generation});
    files_->setReading(shown_);
    showSummary();
    if (shown_->detail.files.empty())
        diff_->showSentence(tr("No Files Differ"), {});
}

void ComparisonView::countsRead()
{
    // When the counts could not be read, the files are shown without numbers.
    if (!shown_ || counts_.failure())
        return;
    shown_->counts = *counts_.result();
    files_->countsChanged();
    showSummary();
}

void ComparisonView::showSummary()
{
    summary_->setText(summary());
    totals_->setText(shown_ ? commitSummary::totals(*shown_) : QString());
}

QString ComparisonView::summary()
{
    if (!shown_)
        return {};
    const QString count = tr("%Ln file(s)", nullptr, static_cast<int>(shown_->detail.files.size()));
    if (!comparison_.sinceParted)
        return count;
    const std::size_t bases = reading_.result()->baseCount;
    if (bases == 0)
        return tr("%1, and no common ancestor").arg(count);
    if (bases > 1)
        return tr("%1, since one of %Ln common ancestor(s)", nullptr, static_cast<int>(bases)).arg(count);
    return count;
}

void ComparisonView::commitsRead()
{
    if (apart_.failure()) {
        noCommits_->setText(tr("The commits could not be read"), apart_.failure()->message);
        commitPages_->setCurrentWidget(noCommits_);
        return;
    }
    std::vector<gitkit::CommitApart> commits = *apart_.result();
    const bool areMore = commits.size() > mostCommitsApart;
    if (areMore)
        commits.resize(mostCommitsApart);
    const QString count = locale().toString(static_cast<qulonglong>(commits.size())) + (areMore ? u"+"_s : QString());
    tabs_->setTabText(commitsTab, tr("Commits (%1)", "number").arg(count));
    noCommits_->setText(tr("No Commits Apart"), tr("Both have the same commits."));
    commitPages_->setCurrentWidget(commits.empty() ? static_cast<QWidget*>(noCommits_) : commits_);
    const bool hadFocus = commits_->hasFocus();
    commits_->setCommits(std::move(commits), nameOf(comparison_.from), nameOf(comparison_.to));
    if (hadFocus)
        commits_->setFocus(Qt::OtherFocusReason);
}

void ComparisonView::fileChanged()
{
    const gitkit::CommitFile* const file = files_->currentFile();
    if (!file || !shown_ || !reading_.result()) {
        diffs_.forget();
        return;
    }
    ComparedDiffRequest wanted;
    wanted.trees = reading_.result()->trees;
    wanted.generation = reading_.answered()->generation;
    wanted.merge = comparison_.kind == Comparison::Kind::merge ? comparison_.to.hash : std::string();
    wanted.file = *file;
    wanted.reading = diff_->readingOf(wanted.trees.from + ' ' + wanted.trees.to + wanted.merge + ':' + file->path);
    diffs_.ask(std::move(wanted));
    if (diffs_.isReading())
        diff_->awaitDiff();
}

void ComparisonView::diffRead()
{
    if (diffs_.failure())
        diff_->showSentence(tr("The diff could not be read"), diffs_.failure()->message);
    else
        diff_->showDiff(tr("Diff"), diffs_.answered()->file.path, *diffs_.result(),
                        comparison_.to.isWorkingTree() ? std::string() : comparison_.to.hash);
}

void ComparisonView::openCurrentFile()
{
    const gitkit::CommitFile* const file = files_->currentFile();
    if (file && isInWorkingTree(store_, *file))
        actions::openInEditor(store_.actors(), {gitkit::FileChange{.path = file->path, .originalPath = {}}});
}

QMenu* ComparisonView::makeContextMenu()
{
    const gitkit::CommitFile* const file = files_->currentFile();
    if (!file || !shown_ || tabs_->currentIndex() != filesTab)
        return nullptr;
    const QString openTitle = editorTitle_ ? editorTitle_() : tr("Open in Default Editor");
    return makeCommitFileMenu(store_, shown_->detail, *file, openTitle, this);
}

void ComparisonView::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier)
        store_.window().closeComparison();
    else
        QWidget::keyPressEvent(event);
}

void ComparisonView::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    // The text of the totals contains colours of the theme.
    if (event->type() == QEvent::PaletteChange && shown_)
        showSummary();
}

} // namespace plovik

#include "moc_ComparisonView.cpp"
