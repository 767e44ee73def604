// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/inspector/FileHistoryPane.h"

#include "app/settings/Settings.h"
#include "app/store/ShownText.h"
#include "app/ui/diff/DiffPane.h"
#include "app/ui/diff/DiffView.h"
#include "app/ui/widgets/EmptyState.h"
#include "app/ui/widgets/SplitPane.h"

#include <QKeyEvent>

#include <algorithm>
#include <utility>

namespace plovik {

using gitkit::FileRevision;

namespace {

constexpr Setting<double> diffHeight{"inspectorDiffHeight", 340};
constexpr double leastListHeight = 100;
constexpr double leastDiffHeight = 100;
constexpr int page = 500;
/// A read that takes no longer than this shows no sign of loading.
constexpr std::chrono::milliseconds quietListing{150};

} // namespace

FileHistoryPane::FileHistoryPane(RepositoryStore& store, QWidget* parent)
    : QStackedWidget(parent), store_(store), list_(new FileHistoryList), diff_(new DiffPane(store)),
      sentence_(new EmptyState(this)), loading_(new EmptyState(this)),
      histories_(
          store.git(), &readFileHistory, [this] { historyRead(); }, Worker::Lane::longRead),
      diffs_(store.git(), &readCommitDiff, [this] { diffRead(); })
{
    diff_->view()->setActionsAvailable(false);
    content_ = new SplitPane(diffHeight, Qt::Vertical, SplitPane::Sized::second, leastDiffHeight, leastListHeight,
                             list_, diff_, this);
    loading_->setText({}, tr("Reading the file’s history…"));
    for (QWidget* each : std::initializer_list<QWidget*>{content_, sentence_, loading_})
        addWidget(each);
    setFocusPolicy(Qt::StrongFocus);
    loadingSoon_.setSingleShot(true);
    connect(&loadingSoon_, &QTimer::timeout, this, [this] { showPage(loading_); });
    connect(list_, &FileHistoryList::currentRevisionChanged, this, &FileHistoryPane::showDiffOfCurrent);
    connect(list_, &FileHistoryList::commitRequested, this,
            [this](const std::string& hash) { store_.history().showCommit(hash); });
    connect(list_, &FileHistoryList::blameRequested, this, &FileHistoryPane::blameRequested);
    connect(list_, &FileHistoryList::backRequested, this, &FileHistoryPane::backRequested);
    connect(list_, &FileHistoryList::endReached, this, &FileHistoryPane::readMore);
    connect(diff_, &DiffPane::readingChanged, this, &FileHistoryPane::showDiffOfCurrent);
    notifiers_.push_back(store_.snapshot().generation.addNotifier([this] {
        if (isVisible() && file_)
            open(*file_);
    }));
}

/// A file that is renamed in the working tree is looked up by its old name, since no commit knows the new one yet.
FileHistoryPane::Source FileHistoryPane::sourceOf(const InspectedFile& file) const
{
    if (file.revision)
        return {file.path, *file.revision};
    const gitkit::RepoStatus& status = store_.snapshot().status.value();
    const gitkit::FileChange* const change = status.files.find(file.path);
    const bool isRenamed = change && change->originalPath;
    return {isRenamed ? *change->originalPath : file.path, status.oid.value_or(std::string())};
}

void FileHistoryPane::open(const InspectedFile& file)
{
    file_ = file;
    const Source source = sourceOf(file);
    if (wanted_ == source && !histories_.failure()) {
        if (diffs_.failure())
            showDiffOfCurrent();
        return;
    }
    wanted_ = source;
    if (source.revision.empty()) {
        histories_.forget();
        loadingSoon_.stop();
        showSentence(tr("No Commits Yet"), tr("Nothing has been committed in this repository."));
        return;
    }
    // When HEAD moves on, as many rows are read again as were on display.
    read(shown_ && shown_->path == source.path ? std::max(limit_, page) : page);
}

void FileHistoryPane::read(int limit)
{
    limit_ = limit;
    hasMore_ = false; // the end of the list asks once
    if (!shown_ || shown_->path != wanted_->path)
        loadingSoon_.start(quietListing);
    histories_.askAgain({wanted_->path, wanted_->revision, limit});
}

void FileHistoryPane::readMore()
{
    if (hasMore_)
        read(limit_ + page);
}

void FileHistoryPane::historyRead()
{
    loadingSoon_.stop();
    if (histories_.failure())
        showSentence(tr("The History Could Not Be Read"), histories_.failure()->message);
    else
        take(*histories_.result());
}

void FileHistoryPane::take(std::vector<FileRevision> revisions)
{
    const FileHistoryRequest& answered = *histories_.answered();
    if (revisions.empty()) {
        showSentence(tr("Not Committed Yet"), tr("No commit has touched “%1” so far.").arg(shownText(answered.path)));
        return;
    }
    shown_ = Source{answered.path, answered.revision};
    hasMore_ = static_cast<int>(revisions.size()) >= answered.limit;
    list_->setRevisions(std::move(revisions), file_->path);
    showPage(content_);
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
    diff_->showDiff(tr("File History Diff"), diffs_.answered()->file.path, *diffs_.result());
}

void FileHistoryPane::showSentence(const QString& title, const QString& description)
{
    shown_.reset();
    sentence_->setText(title, description);
    showPage(sentence_);
}

void FileHistoryPane::showPage(QWidget* next)
{
    if (next == currentWidget())
        return;
    // Hiding the list would move the focus out of the pane.
    const bool hadFocus = hasFocus() || list_->hasFocus();
    if (hadFocus && next != content_)
        setFocus(Qt::OtherFocusReason);
    setCurrentWidget(next);
    if (hadFocus && next == content_)
        list_->setFocus(Qt::OtherFocusReason);
}

void FileHistoryPane::focusInEvent(QFocusEvent* event)
{
    QStackedWidget::focusInEvent(event);
    if (currentWidget() == content_)
        list_->setFocus(event->reason());
}

void FileHistoryPane::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Backspace && !event->isAutoRepeat())
        Q_EMIT backRequested();
    else
        QStackedWidget::keyPressEvent(event);
}

} // namespace plovik

#include "moc_FileHistoryPane.cpp"
