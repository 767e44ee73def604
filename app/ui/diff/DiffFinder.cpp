// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffFinder.h"

#include "app/ui/diff/DiffSectionBar.h"
#include "app/ui/diff/DiffSectionView.h"
#include "app/ui/diff/DiffView.h"

#include <QElapsedTimer>
#include <QTimerEvent>

#include <algorithm>
#include <ranges>
#include <utility>

namespace plovik {

namespace {

/// How long a slice of a search may take, in milliseconds.
constexpr qint64 sliceTime = 6;
/// How many units of a long row are searched between two looks at the clock.
constexpr qsizetype stride = qsizetype{1} << 16;

const DiffDocument& documentOf(const DiffSectionView& view) { return view.controller().diff().document(); }

} // namespace

DiffFinder::DiffFinder(DiffView& view, QObject* parent) : Finder(parent), view_(view)
{
    connect(&view_, &DiffView::laidOut, this, [this] {
        if (!query_.text.isEmpty() && isOld())
            restart();
    });
}

DiffFinder::~DiffFinder() { forget(); }

void DiffFinder::search(const Query& query)
{
    if (query == query_)
        return;
    query_ = query;
    matcher_ = QStringMatcher(query.text, query.cases);
    if (!place_)
        place_ = placeInSight();
    revealsFirst_ = true;
    restart();
}

void DiffFinder::forgetPlace()
{
    place_.reset();
    current_ = -1;
    revealsFirst_ = false;
}

/// Returns whether something else is shown now than what was searched.
bool DiffFinder::isOld() const
{
    return !std::ranges::equal(sections_, view_.sections(), [](const Section& known, const DiffSectionView* view) {
        return known.view == view && known.revision == view->controller().diff().revision();
    });
}

/// Drops what was found, and takes it from the views first, which hold pointers to it.
void DiffFinder::forget()
{
    for (const Section& section : sections_) {
        if (section.view)
            section.view->setFound(nullptr);
    }
    sections_.clear();
    count_ = 0;
    timer_.stop();
}

void DiffFinder::restart()
{
    // A search that had no current match does not choose one by itself when another file comes.
    const bool hadCurrent = std::exchange(current_, -1) >= 0;
    forget();
    section_ = 0;
    row_ = 0;
    column_ = 0;
    text_.clear();
    if (query_.text.isEmpty()) {
        revealsFirst_ = false;
        Q_EMIT changed();
        return;
    }
    for (DiffSectionView* const view : view_.sections())
        sections_.push_back({view, {}, view->controller().diff().revision()});
    if (!hadCurrent && !revealsFirst_)
        place_.reset();
    resolvePlace();
    timer_.start(0, this);
    // Most diffs are searched whole in the first slice, before they are painted again.
    runSlice();
}

void DiffFinder::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == timer_.timerId())
        runSlice();
}

void DiffFinder::runSlice()
{
    QElapsedTimer clock;
    clock.start();
    while (section_ < sections_.size() && !isCut() && clock.elapsed() < sliceTime) {
        Section& section = sections_[section_];
        if (!section.view || row_ >= documentOf(*section.view).rowCount()) {
            ++section_;
            row_ = 0;
        } else if (searchRow(section)) {
            ++row_;
        }
    }
    for (const Section& section : sections_) {
        if (section.view && !section.found.runs.empty())
            section.view->setFound(&section.found);
    }
    if (section_ >= sections_.size() || isCut())
        settle();
    Q_EMIT changed();
}

/// Returns whether the row is done.
bool DiffFinder::searchRow(Section& section)
{
    const DiffDocument& document = documentOf(*section.view);
    if (!document.row(row_).isCode())
        return true;
    if (column_ == 0)
        text_ = document.text(row_);
    const qsizetype length = query_.text.size();
    const qsizetype end = std::min(text_.size(), column_ + stride);
    // A match may begin before the stride's end and go past it.
    const QStringView part = QStringView(text_).first(std::min(text_.size(), end + length - 1));
    while (column_ < end && !isCut()) {
        const qsizetype at = matcher_.indexIn(part, column_);
        if (at < 0) {
            column_ = end;
            break;
        }
        take({row_, at, at + length});
        column_ = at + length;
    }
    if (column_ < text_.size() && !isCut())
        return false;
    column_ = 0;
    text_.clear();
    return true;
}

void DiffFinder::take(DiffFound::Run run)
{
    sections_[section_].found.runs.push_back(run);
    ++count_;
    if (current_ >= 0 || !place_ || !isAtOrBehindPlace(run))
        return;
    current_ = count_ - 1;
    showCurrent(revealsFirst_);
    revealsFirst_ = false;
}

bool DiffFinder::isAtOrBehindPlace(const DiffFound::Run& run) const
{
    if (section_ != placeSection_)
        return section_ > placeSection_;
    return run.row != placeRow_ ? run.row > placeRow_ : run.begin >= place_->column;
}

/// Ends the search when everything was searched.
void DiffFinder::settle()
{
    timer_.stop();
    if (current_ < 0 && place_ && count_ > 0) {
        // There is no match behind the place, so the search goes on at the first one.
        current_ = 0;
        showCurrent(revealsFirst_);
    }
    revealsFirst_ = false;
}

DiffFinder::Match DiffFinder::matchAt(int index) const
{
    auto rest = static_cast<std::size_t>(index);
    std::size_t section = 0;
    while (rest >= sections_[section].found.runs.size()) {
        rest -= sections_[section].found.runs.size();
        ++section;
    }
    return {section, rest};
}

void DiffFinder::step(int direction)
{
    if (count_ == 0)
        return;
    int next = current_ + direction;
    if (current_ < 0)
        next = direction > 0 ? 0 : count_ - 1;
    const bool wraps = next < 0 || next >= count_;
    goTo((next + count_) % count_);
    if (wraps)
        Q_EMIT wrapped(direction);
}

void DiffFinder::goTo(int index)
{
    if (current_ >= 0) {
        const Match before = matchAt(current_);
        sections_[before.section].found.current = -1;
        if (sections_[before.section].view)
            sections_[before.section].view->setFound(&sections_[before.section].found);
    }
    current_ = index;
    if (current_ >= 0)
        showCurrent(true);
    Q_EMIT changed();
}

void DiffFinder::showCurrent(bool isShown)
{
    const Match match = matchAt(current_);
    Section& section = sections_[match.section];
    section.found.current = static_cast<int>(match.run);
    if (!section.view)
        return;
    const DiffFound::Run run = section.found.runs[match.run];
    place_ = Place{section.view->kind(), documentOf(*section.view).placeOf(run.row), run.begin};
    section.view->setFound(&section.found);
    if (!isShown)
        return;
    section.view->controller().setCurrentRow(run.row);
    section.view->revealText(run.row, run.begin, run.end);
}

/// Returns the topmost row that is in sight.
std::optional<DiffFinder::Place> DiffFinder::placeInSight() const
{
    for (DiffSectionView* const section : view_.sections()) {
        const int top = DiffSectionBar::barHeight() - section->y();
        const auto rows = std::views::iota(0, documentOf(*section).rowCount());
        const auto seen =
            std::ranges::partition_point(rows, [&](int row) { return section->rowRect(row).bottom() < top; });
        if (seen != rows.end())
            return Place{section->kind(), documentOf(*section).placeOf(*seen), 0};
    }
    return std::nullopt;
}

void DiffFinder::resolvePlace()
{
    placeSection_ = 0;
    placeRow_ = 0;
    if (!place_)
        return;
    const auto known = std::ranges::find_if(
        sections_, [this](const Section& section) { return section.view->kind() == place_->kind; });
    if (known == sections_.end())
        return;
    placeSection_ = static_cast<std::size_t>(known - sections_.begin());
    const DiffDocument& document = documentOf(*known->view);
    if (document.rowCount() > 0)
        placeRow_ = document.rowOf(place_->row);
}

} // namespace plovik

#include "moc_DiffFinder.cpp"
