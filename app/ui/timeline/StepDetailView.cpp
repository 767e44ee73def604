// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/timeline/StepDetailView.h"

#include "app/settings/Settings.h"
#include "app/store/ShownText.h"
#include "app/store/actions/DesktopFiles.h"
#include "app/ui/commit/CommitFileMenu.h"
#include "app/ui/commit/CommitFilesList.h"
#include "app/ui/commit/CommitSummary.h"
#include "app/ui/diff/DiffPane.h"
#include "app/ui/diff/DiffView.h"
#include "app/ui/history/RelativeDate.h"
#include "app/ui/timeline/StepText.h"
#include "app/ui/widgets/ElidedLabel.h"
#include "app/ui/widgets/FileListTools.h"
#include "app/ui/widgets/IconButton.h"
#include "app/ui/widgets/SplitPane.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace plovik {

namespace {

constexpr double leastFilesWidth = 200;
constexpr double leastDiffWidth = 260;

// The width of the left side, until the user chooses one.
constexpr double partOfSide = 0.34;
constexpr double leastSide = 440;
constexpr double mostSide = 620;

/// The header scrolls where it would leave less than a half to the files.
constexpr double mostOfHeader = 0.5;

QLabel* plainLabel()
{
    auto* const label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

} // namespace

StepDetailView::StepDetailView(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), store_(store), title_(plainLabel()), date_(plainLabel()), undoingTitle_(plainLabel()),
      undoing_(plainLabel()), header_(new QScrollArea), summaryRow_(new QWidget),
      summary_(new ElidedLabel(summaryRow_)), totals_(new QLabel), files_(new CommitFilesList),
      diff_(new DiffPane(store)), reading_(store.git(), &readStepFiles, [this] { filesRead(); }),
      counts_(store.git(), &readStepCounts, [this] { countsRead(); }),
      diffs_(store.git(), &readStepDiff, [this] { diffRead(); })
{
    diff_->view()->setActionsAvailable(false);
    diff_->showSentence({}, {});
    auto* const page = new SplitPane(settings::commitFilesWidth, Qt::Horizontal, SplitPane::Sized::first,
                                     leastFilesWidth, leastDiffWidth, makeLeftSide(), diff_);
    page->setAutomatic([](double available) { return std::clamp(available * partOfSide, leastSide, mostSide); });
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(page);
    setTabOrder(files_, diff_);
    connectFiles();
    showHeader();
}

QWidget* StepDetailView::makeHeader()
{
    followFont(*title_, 1, QFont::DemiBold);
    followFont(*date_, -1);
    for (QLabel* label : {date_, undoingTitle_})
        label->setForegroundRole(QPalette::PlaceholderText);
    undoing_->setAccessibleName(tr("What Undoing Changes"));
    undoing_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    auto* const texts = new QWidget;
    auto* const column = new QVBoxLayout(texts);
    column->setContentsMargins(14, 12, 14, 8);
    column->setSpacing(4);
    column->addWidget(title_);
    column->addWidget(date_);
    column->addSpacing(6);
    column->addWidget(undoingTitle_);
    column->addWidget(undoing_);
    header_->setFrameShape(QFrame::NoFrame);
    header_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    header_->setFocusPolicy(Qt::NoFocus);
    header_->setWidgetResizable(true);
    header_->setWidget(texts);
    return header_;
}

QWidget* StepDetailView::makeLeftSide()
{
    auto* const summary = new QHBoxLayout(summaryRow_);
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
    side->installEventFilter(this);
    auto* const column = new QVBoxLayout(side);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(makeHeader());
    column->addWidget(summaryRow_);
    column->addLayout(filter);
    column->addWidget(files_, 1);
    return side;
}

void StepDetailView::connectFiles()
{
    connect(files_, &CommitFilesList::currentFileChanged, this, &StepDetailView::fileChanged);
    connect(files_, &CommitFilesList::openRequested, this, &StepDetailView::openCurrentFile);
    connect(files_, &CommitFilesList::menuRequested, this, &StepDetailView::showMenu);
    connect(files_, &CommitFilesList::diffFocusRequested, this, [this] {
        if (!diff_->isSentenceShown())
            diff_->setFocus(Qt::TabFocusReason);
    });
    connect(diff_, &DiffPane::readingChanged, this, &StepDetailView::fileChanged);
}

bool StepDetailView::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize)
        fitHeader();
    return QWidget::eventFilter(watched, event);
}

void StepDetailView::fitHeader()
{
    const QWidget* const side = header_->parentWidget();
    const int wanted = std::max(0, header_->widget()->heightForWidth(side->width()));
    header_->setFixedHeight(std::min(wanted, static_cast<int>(side->height() * mostOfHeader)));
}

void StepDetailView::showRow(std::optional<TimelineRow> row)
{
    if (row == row_)
        return;
    row_ = std::move(row);
    reading_.forget();
    showHeader();
    counts_.forget();
    if (row_ && changesFiles())
        reading_.ask(request());
    else
        showFiles();
}

void StepDetailView::showHeader()
{
    title_->setText(row_ ? withStandIns(row_->title) : QString());
    date_->setText(row_ ? absoluteDate(row_->date, locale()) : QString());
    undoingTitle_->setText(row_ ? stepText::undoingTitle(*row_) : QString());
    showUndoing();
}

void StepDetailView::showUndoing()
{
    QStringList lines = row_ ? stepText::undoing(*row_) : QStringList();
    if (const auto& found = reading_.result()) {
        lines += stepText::comingBack(found->back);
        lines += stepText::going(found->gone);
        lines += stepText::staying(found->submodules);
    }
    undoing_->setText(lines.join(u'\n'));
    undoing_->setVisible(!lines.isEmpty());
    fitHeader();
}

/// Returns the states that undoing goes from and to. What another program did is known by its commits alone.
StepFilesRequest StepDetailView::request() const
{
    StepFilesRequest request{*row_->step.after, row_->step.before};
    if (row_->kind == TimelineRow::Kind::terminal) {
        request.from.filesTree = request.from.head.hash;
        request.to.filesTree = request.to.head.hash;
    }
    return request;
}

bool StepDetailView::changesFiles() const
{
    if (!row_->step.after || gitkit::isPublished(row_->step))
        return false;
    const StepFilesRequest asked = request();
    const auto keepsNone = [](const gitkit::UndoPoint& point) {
        return point.filesTree.empty() && point.indexTree.empty() && point.overlay.empty() && point.absent.empty();
    };
    return !keepsNone(asked.from) || !keepsNone(asked.to);
}

void StepDetailView::filesRead()
{
    shown_.reset();
    if (!reading_.failure()) {
        shown_ = std::make_shared<CommitReading>();
        shown_->detail.files = reading_.result()->files;
        // The files are looked for in the commit before the step; what the step has added, in the one after it.
        shown_->detail.hash = row_->step.before.head.hash;
        shown_->detail.parents = {row_->step.after->head.hash};
        if (!shown_->detail.files.empty())
            counts_.ask(*reading_.answered());
    }
    showUndoing();
    showFiles();
    if (reading_.failure())
        diff_->showSentence(tr("The step could not be read"), reading_.failure()->message);
}

void StepDetailView::showFiles()
{
    if (!row_ || !reading_.result())
        shown_.reset();
    showSummary();
    files_->setReading(shown_);
    const bool changesFiles = shown_ && !shown_->detail.files.empty();
    diff_->setVisible(changesFiles || reading_.failure());
    if (!changesFiles)
        diff_->showSentence({}, {});
}

void StepDetailView::countsRead()
{
    // When the counts could not be read, the files are shown without numbers.
    if (!shown_ || counts_.failure())
        return;
    shown_->counts = *counts_.result();
    files_->countsChanged();
    showSummary();
}

void StepDetailView::showSummary()
{
    const int count = shown_ ? static_cast<int>(shown_->detail.files.size()) : 0;
    summary_->setText(count > 0 ? tr("%Ln file(s)", nullptr, count) : tr("No files would change."));
    summaryRow_->setVisible(row_ && row_->step.after && !reading_.isReading() && !reading_.failure());
    files_->tools().treeButton()->setVisible(count > 0);
    files_->tools().filterButton()->setVisible(count > 0);
    totals_->setText(shown_ ? commitSummary::totals(*shown_) : QString());
}

void StepDetailView::fileChanged()
{
    const gitkit::CommitFile* const file = files_->currentFile();
    if (!file || !shown_ || !reading_.result()) {
        diffs_.forget();
        return;
    }
    const gitkit::TreePair& trees = reading_.result()->treesOf(*file);
    diffs_.ask({trees, *file, diff_->readingOf(trees.from + ' ' + trees.to + ':' + file->path)});
    if (diffs_.isReading())
        diff_->awaitDiff();
}

void StepDetailView::diffRead()
{
    if (diffs_.failure())
        diff_->showSentence(tr("The diff could not be read"), diffs_.failure()->message);
    else
        diff_->showDiff(tr("Diff"), diffs_.answered()->file.path, *diffs_.result());
}

void StepDetailView::openCurrentFile()
{
    const gitkit::CommitFile* const file = files_->currentFile();
    if (file && isInWorkingTree(store_, *file))
        actions::openInEditor(store_.actors(), {gitkit::FileChange{.path = file->path, .originalPath = {}}});
}

void StepDetailView::showMenu(const QPoint& position)
{
    if (QMenu* const menu = makeContextMenu()) {
        menu->setAttribute(Qt::WA_DeleteOnClose);
        menu->popup(position);
    }
}

QMenu* StepDetailView::makeContextMenu()
{
    const gitkit::CommitFile* const file = files_->currentFile();
    if (!file || !shown_ || shown_->detail.hash.empty())
        return nullptr;
    const QString openTitle = editorTitle_ ? editorTitle_() : tr("Open in Default Editor");
    return makeCommitFileMenu(store_, shown_->detail, *file, openTitle, this);
}

void StepDetailView::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    // The text of the totals contains colours of the theme.
    if (event->type() == QEvent::PaletteChange && shown_)
        showSummary();
    if (event->type() == QEvent::FontChange)
        fitHeader();
}

} // namespace plovik

#include "moc_StepDetailView.cpp"
