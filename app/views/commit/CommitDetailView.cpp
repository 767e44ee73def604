#include "app/views/commit/CommitDetailView.h"

#include "app/settings/Settings.h"
#include "app/store/ShownText.h"
#include "app/views/SplitPane.h"
#include "app/views/Theme.h"
#include "app/views/commit/CommitFilesList.h"
#include "app/views/commit/CommitHeader.h"
#include "app/views/diff/DiffPane.h"
#include "app/views/diff/DiffView.h"

#include <QLabel>
#include <QPointer>
#include <QVBoxLayout>

#include <utility>

namespace plovik {

using namespace Qt::StringLiterals;
using gitkit::GitRepository;

namespace {

constexpr double leastFilesWidth = 200;
constexpr double leastDiffWidth = 260;

QString summaryOf(const gitkit::CommitDetail& detail, GitRepository::CommitKind kind)
{
    const std::size_t count = detail.files.size();
    const QString files = count == 1 ? u"1 file changed"_s : u"%1 files changed"_s.arg(count);
    const bool isMerge = kind == GitRepository::CommitKind::ordinary && detail.parents.size() > 1;
    return isMerge ? files + u" against the first parent"_s : files;
}

} // namespace

CommitDetailView::CommitDetailView(RepositoryStore& store, GitRepository::CommitKind kind, QWidget* parent)
    : QWidget(parent), store_(store), kind_(kind), summary_(new QLabel), files_(new CommitFilesList),
      diff_(new DiffPane(store))
{
    diff_->view()->setActionsAvailable(false);
    auto* const split = new SplitPane(settings::commitFilesWidth, Qt::Horizontal, SplitPane::Sized::first,
                                      leastFilesWidth, leastDiffWidth, makeLeftSide(), diff_, this);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(split);

    connect(files_, &CommitFilesList::currentFileChanged, this, &CommitDetailView::fileChanged);
    QProperty<std::optional<std::string>>& selection =
        kind == GitRepository::CommitKind::stash ? store.selectedStash : store.selectedCommit;
    notifiers_.push_back(selection.addNotifier([this] { follow(); }));
    diff_->showSentence({}, {});
    follow();
}

QWidget* CommitDetailView::makeLeftSide()
{
    auto* const side = new QWidget;
    side->setBackgroundRole(QPalette::Base);
    side->setAutoFillBackground(true);
    auto* const column = new QVBoxLayout(side);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    if (kind_ == GitRepository::CommitKind::ordinary)
        column->addWidget(new CommitHeader(store_), 3);
    summary_->setContentsMargins(14, 8, 14, 0);
    summary_->setTextFormat(Qt::PlainText);
    summary_->setForegroundRole(QPalette::PlaceholderText);
    column->addWidget(summary_);
    column->addWidget(files_, 2);
    return side;
}

std::optional<std::string> CommitDetailView::selected() const
{
    return kind_ == GitRepository::CommitKind::stash ? store_.selectedStash.value() : store_.selectedCommit.value();
}

void CommitDetailView::follow()
{
    const std::optional<std::string> hash = selected();
    summary_->setVisible(hash.has_value());
    files_->setVisible(hash.has_value());
    if (!hash) {
        wanted_.reset();
        shown_.clear();
        files_->setFiles({});
        if (kind_ == GitRepository::CommitKind::stash)
            diff_->showSentence(u"No Stash Selected"_s, {});
        else
            diff_->showSentence({}, {});
        return;
    }
    if (*hash == shown_ && !wanted_)
        return;
    wanted_ = hash;
    if (!isReadingDetail_) {
        isReadingDetail_ = true;
        launch(readDetails(this));
    }
}

QCoro::Task<> CommitDetailView::readDetails(QPointer<CommitDetailView> view)
{
    while (view->wanted_) {
        const std::string hash = *std::exchange(view->wanted_, std::nullopt);
        const GitRepository::CommitKind kind = view->kind_;
        std::optional<gitkit::CommitDetail> detail;
        QString problem;
        try {
            detail = co_await view->store_.run(&GitRepository::commitDetail, hash, kind);
        } catch (const std::exception& failure) {
            problem = QString::fromUtf8(failure.what());
        }
        if (!view)
            co_return; // the view closed meanwhile
        if (view->selected() != hash)
            continue;
        view->shown_ = hash;
        if (detail)
            view->takeDetail(*detail);
        else
            view->takeProblem(u"The commit could not be read"_s, problem);
    }
    view->isReadingDetail_ = false;
}

void CommitDetailView::takeDetail(const gitkit::CommitDetail& detail)
{
    summary_->setText(summaryOf(detail, kind_));
    files_->setFiles(detail.files);
    if (detail.files.empty())
        diff_->showSentence(u"No Changes"_s, u"This commit changes no files."_s);
}

void CommitDetailView::takeProblem(const QString& title, const QString& problem)
{
    summary_->clear();
    files_->setFiles({});
    diff_->showSentence(title, problem);
}

void CommitDetailView::fileChanged()
{
    const gitkit::CommitFile* const file = files_->currentFile();
    if (!file || shown_.empty()) {
        wantedDiff_.reset();
        expectedDiff_.reset();
        return;
    }
    expectedDiff_ = WantedDiff{shown_, *file};
    wantedDiff_ = expectedDiff_;
    if (!isReadingDiff_) {
        isReadingDiff_ = true;
        launch(readDiffs(this));
    }
}

QCoro::Task<> CommitDetailView::readDiffs(QPointer<CommitDetailView> view)
{
    while (view->wantedDiff_) {
        const WantedDiff wanted = *std::exchange(view->wantedDiff_, std::nullopt);
        std::optional<gitkit::ParsedDiff> diff;
        QString problem;
        try {
            diff = co_await view->store_.run(&GitRepository::commitDiff, wanted.hash, wanted.file,
                                             gitkit::WhiteSpace::compared);
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
    view->isReadingDiff_ = false;
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

} // namespace plovik
