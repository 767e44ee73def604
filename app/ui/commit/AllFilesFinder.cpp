// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/AllFilesFinder.h"

#include "app/store/ShownText.h"
#include "app/ui/commit/AllFilesView.h"
#include "app/ui/commit/FileDiff.h"
#include "app/ui/diff/DiffFinder.h"

#include <numeric>

namespace plovik {

namespace {

using LineKind = gitkit::DiffLine::Kind;

/// Runs on the worker's thread.
int countMatches(gitkit::ParsedDiff diff, // NOLINT(performance-unnecessary-value-param): it is handed over
                 const DiffSearchRequest& request)
{
    int count = 0;
    for (const gitkit::DiffLine& line : diff.lines) {
        if (line.kind == LineKind::context || line.kind == LineKind::addition || line.kind == LineKind::deletion)
            count += static_cast<int>(exactText(line.text).count(request.query.text, request.query.cases));
    }
    return count;
}

} // namespace

AllFilesFinder::AllFilesFinder(RepositoryStore& store, AllFilesView& view, QObject* parent)
    : Finder(parent), view_(view), searches_(store.git(), &readCommitDiff, &countMatches, [this] { counted(); })
{
    connect(&view_, &AllFilesView::diffShown, this, &AllFilesFinder::diffShown);
}

void AllFilesFinder::search(const Query& query)
{
    if (query == query_)
        return;
    query_ = query;
    revealsFirst_ = true;
    restart();
}

void AllFilesFinder::restart()
{
    searches_.forget();
    goal_.reset();
    at_.reset();
    next_ = 0;
    const std::size_t files = view_.reading() ? view_.reading()->detail.files.size() : 0;
    counts_.assign(query_.text.isEmpty() ? 0 : files, 0);
    for (std::size_t file = 0; file < files; ++file)
        diffShown(file);
    if (!query_.text.isEmpty())
        readNext();
    Q_EMIT changed();
}

DiffFinder* AllFilesFinder::finderOf(std::size_t file) const
{
    FileDiff* const diff = view_.diffOf(file);
    return diff ? &diff->finder() : nullptr;
}

/// Searches a diff that has come into memory.
void AllFilesFinder::diffShown(std::size_t file)
{
    DiffFinder* const finder = finderOf(file);
    if (!finder)
        return;
    finder->forgetPlace();
    finder->search(query_);
    finder->goTo(-1);
    if (query_.text.isEmpty() || file >= counts_.size())
        return;
    finder->disconnect(this);
    connect(finder, &Finder::changed, this, [this, file, finder] { take(file, *finder); });
    take(file, *finder);
}

void AllFilesFinder::take(std::size_t file, const DiffFinder& finder)
{
    if (finder.isSearching() || file >= counts_.size() || finderOf(file) != &finder)
        return;
    if (file < next_)
        counts_[file] = finder.count();
    if (goal_ && goal_->file == file)
        arrive();
}

void AllFilesFinder::readNext()
{
    if (next_ >= counts_.size()) {
        revealsFirst_ = false;
        return;
    }
    const CommitReading& reading = *view_.reading();
    DiffSearchRequest request;
    request.hash = reading.detail.hash;
    request.file = reading.detail.files[next_];
    request.reading = view_.diffReading();
    request.query = query_;
    searches_.ask(std::move(request));
}

void AllFilesFinder::counted()
{
    // A diff that cannot be read has nothing to find.
    const int found = searches_.failure() ? 0 : *searches_.result();
    searches_.forget();
    const std::size_t file = next_++;
    counts_[file] = found;
    if (const DiffFinder* const finder = finderOf(file); finder && !finder->isSearching())
        counts_[file] = finder->count();
    if (revealsFirst_ && counts_[file] > 0 && file >= view_.currentFile()) {
        revealsFirst_ = false;
        goTo({file, false});
    }
    readNext();
    Q_EMIT changed();
}

int AllFilesFinder::count() const { return std::accumulate(counts_.begin(), counts_.end(), 0); }

int AllFilesFinder::current() const
{
    if (!at_)
        return -1;
    return std::accumulate(counts_.begin(), counts_.begin() + static_cast<std::ptrdiff_t>(*at_), 0) + atMatch_;
}

void AllFilesFinder::step(int direction)
{
    if (count() == 0)
        return;
    if (at_) {
        DiffFinder* const finder = finderOf(*at_);
        const int next = atMatch_ + direction;
        if (finder && next >= 0 && next < finder->count()) {
            atMatch_ = next;
            finder->goTo(next);
            Q_EMIT changed();
            return;
        }
    }
    const std::size_t files = counts_.size();
    std::size_t file = at_.value_or(direction > 0 ? view_.currentFile() + files - 1 : view_.currentFile());
    bool wraps = false;
    do {
        wraps |= direction > 0 ? file % files == files - 1 && at_ : file % files == 0;
        file = (file + files + static_cast<std::size_t>(direction)) % files;
    } while (counts_[file] == 0);
    goTo({file, direction < 0});
    if (wraps)
        Q_EMIT wrapped(direction);
}

void AllFilesFinder::goTo(Goal goal)
{
    if (at_ && *at_ != goal.file) {
        if (DiffFinder* const before = finderOf(*at_))
            before->goTo(-1);
    }
    goal_ = goal;
    view_.fold(goal.file, false);
    view_.goTo(goal.file);
    if (const DiffFinder* const finder = finderOf(goal.file); finder && !finder->isSearching())
        arrive();
}

void AllFilesFinder::arrive()
{
    const Goal goal = *goal_;
    goal_.reset();
    DiffFinder* const finder = finderOf(goal.file);
    if (finder->count() == 0)
        return;
    at_ = goal.file;
    atMatch_ = goal.isLast ? finder->count() - 1 : 0;
    finder->goTo(atMatch_);
    Q_EMIT changed();
}

} // namespace plovik

#include "moc_AllFilesFinder.cpp"
