// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/inspector/FileHistoryPane.h"

#include "app/settings/Settings.h"
#include "app/store/ShownText.h"
#include "app/ui/diff/DiffPane.h"
#include "app/ui/diff/DiffView.h"
#include "app/ui/inspector/ReadingRow.h"
#include "app/ui/widgets/EmptyState.h"
#include "app/ui/widgets/SplitPane.h"

#include <QKeyEvent>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace plovik {

using gitkit::FileRevision;

namespace {

constexpr Setting<double> diffHeight{"inspectorDiffHeight", 340};
constexpr double leastListHeight = 100;
constexpr double leastDiffHeight = 100;
/// A read that takes no longer than this shows no sign of loading.
constexpr std::chrono::milliseconds quietListing{150};

} // namespace

FileHistoryPane::FileHistoryPane(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), store_(store), row_(new ReadingRow(this)), list_(new FileHistoryList),
      diff_(new DiffPane(store)), sentence_(new EmptyState), loading_(new EmptyState), pages_(new QStackedWidget(this)),
      histories_(store.git(), &openFileHistory,
                 {.found = [this](auto revisions, auto arrival) { take(std::move(revisions), arrival); },
                  .changed = [this] { readingEnded(); }}),
      diffs_(store.git(), &readCommitDiff, [this] { diffRead(); })
{
    diff_->view()->setActionsAvailable(false);
    content_ = new SplitPane(diffHeight, Qt::Vertical, SplitPane::Sized::second, leastDiffHeight, leastListHeight,
                             list_, diff_, this);
    loading_->setText({}, tr("Reading the file’s history…"));
    for (QWidget* each : std::initializer_list<QWidget*>{content_, sentence_, loading_})
        pages_->addWidget(each);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(row_);
    column->addWidget(pages_, 1);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("File History Pane"));
    loadingSoon_.setSingleShot(true);
    connect(&loadingSoon_, &QTimer::timeout, this, [this] { showPage(loading_); });
    connect(row_, &ReadingRow::stopRequested, this, &FileHistoryPane::stop);
    connect(row_, &ReadingRow::goOnRequested, this, &FileHistoryPane::goOn);
    connect(row_, &ReadingRow::againRequested, this, [this] { open(*file_); });
    connect(list_, &FileHistoryList::currentRevisionChanged, this, &FileHistoryPane::showDiffOfCurrent);
    connect(list_, &FileHistoryList::commitRequested, this,
            [this](const std::string& hash) { store_.history().showCommit(hash); });
    connect(list_, &FileHistoryList::blameRequested, this, &FileHistoryPane::blameRequested);
    connect(list_, &FileHistoryList::backRequested, this, &FileHistoryPane::backRequested);
    connect(list_, &FileHistoryList::endReached, this, [this] {
        // What the user has stopped goes on at the button alone.
        if (!histories_.isStopped() && !list_->isOutdated()) {
            histories_.wantMore();
            showReading();
        }
    });
    connect(diff_, &DiffPane::readingChanged, this, &FileHistoryPane::showDiffOfCurrent);
    notifiers_.push_back(store_.snapshot().generation.addNotifier([this] {
        if (isVisible() && file_)
            open(*file_);
    }));
    row_->hide();
}

/// A file that is renamed in the working tree is looked up by its old name, since no commit knows the new one yet.
FileHistoryRequest FileHistoryPane::requestFor(const InspectedFile& file) const
{
    if (file.revision)
        return {file.path, *file.revision, file.lines};
    const gitkit::RepoStatus& status = store_.snapshot().status.value();
    const gitkit::FileChange* const change = status.files.find(file.path);
    const bool isRenamed = change && change->originalPath;
    return {isRenamed ? *change->originalPath : file.path, status.oid.value_or(std::string()), file.lines};
}

bool FileHistoryPane::isOnDisplay(const InspectedFile& file) const
{
    return shown_ && shown_->path == file.path && shown_->revision == file.revision && shown_->lines == file.lines;
}

void FileHistoryPane::open(const InspectedFile& file)
{
    file_ = file;
    const FileHistoryRequest request = requestFor(file);
    if (request.revision.empty()) {
        histories_.forget();
        showSentence(tr("No Commits Yet"), tr("Nothing has been committed in this repository."));
        return;
    }
    if (histories_.asked() == request && !histories_.failure()) {
        if (isListed())
            shown_ = file;
        if (diffs_.failure())
            showDiffOfCurrent();
        return;
    }
    isInterrupted_ = false;
    // When HEAD moves on, as many rows are read again as are on display.
    if (isOnDisplay(file))
        histories_.askAnew(request);
    else
        histories_.ask(request);
    awaitRows();
}

void FileHistoryPane::awaitRows()
{
    if (histories_.isReading() && !isOnDisplay(*file_) && pages_->currentWidget() != loading_)
        loadingSoon_.start(quietListing);
    showReading();
}

void FileHistoryPane::goOn()
{
    histories_.goOn();
    awaitRows();
}

void FileHistoryPane::take(std::vector<FileRevision> revisions, Histories::Arrival arrival)
{
    if (arrival == Histories::Arrival::more) {
        list_->addRevisions(std::move(revisions));
    } else if (revisions.empty()) {
        showSentence(tr("Not Committed Yet"),
                     tr("No commit has touched “%1” so far.").arg(shownText(histories_.answered()->path)));
    } else {
        shown_ = file_;
        list_->setRevisions(std::move(revisions), file_->path);
        showPage(content_);
    }
    showReading();
}

void FileHistoryPane::readingEnded()
{
    if (histories_.failure() && !isListed())
        showSentence(tr("The History Could Not Be Read"), histories_.failure()->message);
    showReading();
}

/// Whether commits of the newest request are listed.
bool FileHistoryPane::isListed() const
{
    return shown_ && histories_.count() > 0 && histories_.answered() == histories_.asked();
}

void FileHistoryPane::stop()
{
    histories_.stop();
    if (!isOnDisplay(*file_))
        showSentence(tr("Reading Was Stopped"), tr("No commit that touched the file has been found so far."));
    showReading();
}

/// Brings the line above the list in line with the reading.
void FileHistoryPane::showReading()
{
    using State = ReadingRow::State;
    const bool isReading = histories_.isReading();
    const bool isFailed = histories_.failure() && isListed();
    const State state = isReading                ? State::reading
                        : isFailed               ? State::failed
                        : histories_.isStopped() ? State::stopped
                                                 : State::ended;
    row_->showState(state, countText());
    row_->setVisible(isReading || isListed() || histories_.isStopped());
    list_->setOutdated(shown_ && !isOnDisplay(*file_));
    if (!isReading)
        loadingSoon_.stop();
}

QString FileHistoryPane::countText() const
{
    const int count = file_ && isOnDisplay(*file_) ? static_cast<int>(histories_.count()) : 0;
    if (count == 0)
        return histories_.isReading() ? tr("Reading…") : QString();
    if (histories_.failure())
        return tr("%Ln commit(s), and the rest could not be read: %1", nullptr, count)
            .arg(histories_.failure()->message);
    if (histories_.isReading())
        return tr("%Ln commit(s) so far…", nullptr, count);
    if (histories_.hasMore())
        return tr("%Ln+ commits", nullptr, count);
    return tr("%Ln commit(s)", nullptr, count);
}

void FileHistoryPane::showDiffOfCurrent()
{
    const FileRevision* const revision = list_->current();
    if (revision)
        diffs_.ask({revision->commit.hash, revision->file,
                    diff_->readingOf(revision->commit.hash + ':' + revision->file.path)});
    else
        diffs_.forget();
    if (diffs_.isReading())
        diff_->awaitDiff();
}

void FileHistoryPane::diffRead()
{
    if (diffs_.failure()) {
        diff_->showSentence(tr("The Diff Could Not Be Read"), diffs_.failure()->message);
        return;
    }
    diff_->showDiff(tr("File History Diff"), diffs_.answered()->file.path, *diffs_.result(), diffs_.answered()->hash);
}

void FileHistoryPane::showSentence(const QString& title, const QString& description)
{
    shown_.reset();
    sentence_->setText(title, description);
    showPage(sentence_);
    showReading();
}

void FileHistoryPane::showPage(QWidget* next)
{
    loadingSoon_.stop();
    if (next == pages_->currentWidget())
        return;
    // Hiding the list would move the focus out of the pane.
    const bool hadFocus = hasFocus() || list_->hasFocus();
    if (hadFocus && next != content_)
        setFocus(Qt::OtherFocusReason);
    pages_->setCurrentWidget(next);
    if (hadFocus && next == content_)
        list_->setFocus(Qt::OtherFocusReason);
}

void FileHistoryPane::focusInEvent(QFocusEvent* event)
{
    QWidget::focusInEvent(event);
    if (pages_->currentWidget() == content_)
        list_->setFocus(event->reason());
}

void FileHistoryPane::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Backspace && !event->isAutoRepeat())
        Q_EMIT backRequested();
    else if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier && histories_.isReading())
        stop();
    else
        QWidget::keyPressEvent(event);
}

void FileHistoryPane::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (std::exchange(isInterrupted_, false))
        goOn();
}

/// A window that is only minimized goes on reading.
void FileHistoryPane::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    if (event->spontaneous())
        return;
    isInterrupted_ = histories_.isReading();
    histories_.stop();
    showReading();
}

} // namespace plovik

#include "moc_FileHistoryPane.cpp"
