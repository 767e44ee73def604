// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/AllFilesView.h"

#include "app/settings/Settings.h"
#include "app/ui/commit/FileBar.h"
#include "app/ui/commit/FileBars.h"
#include "app/ui/commit/FileDiff.h"
#include "app/ui/diff/DiffSectionView.h"
#include "app/ui/diff/DiffView.h"
#include "app/ui/widgets/FocusRing.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QContextMenuEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>

namespace plovik {

namespace {

constexpr int lineEstimate = 20;
constexpr int leastEstimate = 180;  ///< of a diff whose counts are unknown, too
constexpr int contextEstimate = 12; ///< lines around the changes
constexpr int mostEstimate = gitkit::ParsedDiff::shownLines;

int estimatedHeight(const gitkit::ChangeCounts* counts)
{
    if (!counts || !counts->added || !counts->removed)
        return leastEstimate;
    const int lines = std::min(*counts->added + *counts->removed + contextEstimate, mostEstimate);
    return std::max(leastEstimate, lines * lineEstimate);
}

} // namespace

AllFilesView::AllFilesView(RepositoryStore& store, QWidget* parent)
    : QAbstractScrollArea(parent), store_(store), bars_(new FileBars(viewport())),
      diffs_(store.git(), &readCommitDiff, [this] { diffRead(); })
{
    connect(bars_, &FileBars::foldRequested, this, [this](std::size_t file, bool isFolded, bool isForAll) {
        if (isForAll)
            foldAll(isFolded);
        else
            fold(file, isFolded);
    });
    giveFocusRing(*this);
    setFocusPolicy(Qt::NoFocus);
    setAccessibleName(tr("All Files"));
    viewport()->setBackgroundRole(QPalette::Base);
    viewport()->setAutoFillBackground(true);
    auto* const corner = new QWidget;
    corner->setBackgroundRole(QPalette::Base);
    corner->setAutoFillBackground(true);
    setCornerWidget(corner);
    verticalScrollBar()->setSingleStep(20);
    horizontalScrollBar()->setSingleStep(20);
    connect(&Settings::shared(), &Settings::changed, this, &AllFilesView::settingChanged);
}

void AllFilesView::setReading(std::shared_ptr<const CommitReading> reading)
{
    if (reading == reading_)
        return;
    const QScopedValueRollback moving(isMoving_, true);
    diffs_.forget();
    arriving_.reset();
    for (Item& item : items_)
        drop(item);
    bars_->hideAll();
    reading_ = std::move(reading);
    items_.assign(reading_ ? reading_->detail.files.size() : 0, {});
    current_ = 0;
    setShowsWholeFile(false);
    estimate();
    tops_.assign(1, 0);
    verticalScrollBar()->setValue(0);
    horizontalScrollBar()->setValue(0);
    layOut();
}

void AllFilesView::countsChanged()
{
    estimate();
    for (const auto& [file, bar] : bars_->shown())
        bar->setFile(reading_->detail.files[file], reading_->countsOf(file));
    layOut();
}

void AllFilesView::estimate()
{
    for (std::size_t file = 0; file < items_.size(); ++file) {
        if (!items_[file].isMeasured)
            items_[file].height = estimatedHeight(reading_->countsOf(file));
    }
}

int AllFilesView::scrolled() const { return verticalScrollBar()->value(); }

/// Returns the file whose bar or diff is at a height; the first or last one for a height outside of them.
std::size_t AllFilesView::fileAt(int y) const
{
    const auto behind = std::upper_bound(tops_.begin(), tops_.end() - 1, y);
    return behind == tops_.begin() ? 0 : static_cast<std::size_t>(behind - tops_.begin() - 1);
}

std::pair<std::size_t, std::size_t> AllFilesView::filesBetween(int begin, int end) const
{
    if (items_.empty())
        return {0, 0};
    return {fileAt(begin), std::min(fileAt(end) + 1, items_.size())};
}

/// Lays the files out again; what is at the top of the view stays there.
void AllFilesView::layOut()
{
    const QScopedValueRollback moving(isMoving_, true);
    const bool isFirst = tops_.size() != items_.size() + 1;
    const std::size_t held = isFirst || items_.empty() ? 0 : fileAt(scrolled());
    const int below = isFirst || items_.empty() ? 0 : scrolled() - top(held);
    tops_.resize(items_.size() + 1);
    const int bar = FileBar::barHeight();
    for (std::size_t file = 0; file < items_.size(); ++file)
        tops_[file + 1] = tops_[file] + bar + openHeight(items_[file]);
    const QSize size = viewport()->size();
    verticalScrollBar()->setRange(0, std::max(0, tops_.back() - size.height()));
    verticalScrollBar()->setPageStep(size.height());
    if (!items_.empty())
        verticalScrollBar()->setValue(top(held) + std::min(below, tops_[held + 1] - top(held) - 1));
    place();
}

void AllFilesView::place()
{
    if (isArriving_)
        return;
    const int height = viewport()->height();
    const auto [first, end] = filesBetween(scrolled(), scrolled() + height);
    placeBars(first, end);
    const auto [nearFirst, nearEnd] = filesBetween(scrolled() - height, scrolled() + 2 * height);
    keepNear(nearFirst, nearEnd);
    int hidden = 0;
    for (std::size_t file = nearFirst; file < nearEnd; ++file) {
        placeDiff(file);
        if (items_[file].diff)
            hidden = std::max(hidden, items_[file].diff->view().horizontalScrollBar()->maximum());
    }
    horizontalScrollBar()->setRange(0, hidden);
    horizontalScrollBar()->setPageStep(viewport()->width());
    readNext();
    viewport()->update();
}

void AllFilesView::placeBars(std::size_t first, std::size_t end)
{
    bars_->show(first, end, [this](std::size_t file, FileBar& bar) {
        bar.setFile(reading_->detail.files[file], reading_->countsOf(file));
        bar.setFolded(items_[file].isFolded);
    });
    for (const auto& [file, bar] : bars_->shown()) {
        // A bar is pushed out by the next one.
        const int lowest = tops_[file + 1] - scrolled() - FileBar::barHeight();
        const bool isCurrent = file == first && !items_.empty();
        const int y = top(file) - scrolled();
        bar->setGeometry(0, isCurrent ? std::min(std::max(y, 0), lowest) : y, viewport()->width(),
                         FileBar::barHeight());
    }
}

void AllFilesView::placeDiff(std::size_t file)
{
    FileDiff* const diff = items_[file].diff;
    if (!diff)
        return;
    diff->fit(viewport()->width(), viewport()->height());
    diff->move(0, top(file) + FileBar::barHeight() - scrolled());
    diff->setVisible(!items_[file].isFolded);
    diff->section().setVisibleTop(std::max(0, scrolled() - top(file)));
    diff->view().horizontalScrollBar()->setValue(horizontalScrollBar()->value());
}

/// Drops the diffs that are far, but for those that the user is at work in.
void AllFilesView::keepNear(std::size_t first, std::size_t end)
{
    for (std::size_t file = 0; file < items_.size(); ++file) {
        Item& item = items_[file];
        if (!item.diff || (file >= first && file < end))
            continue;
        if (item.diff->isInUse())
            placeDiff(file);
        else
            drop(item);
    }
}

void AllFilesView::drop(Item& item)
{
    if (!item.diff)
        return;
    // It may be dropped by one of its own event handlers.
    item.diff->disconnect(this);
    item.diff->hide();
    item.diff->deleteLater();
    item.diff = nullptr;
    item.isReadOn = false;
}

gitkit::DiffReading AllFilesView::diffReading() const
{
    const bool ignoresWhiteSpace = Settings::shared().value(settings::diffIgnoresWhiteSpace);
    return {ignoresWhiteSpace ? gitkit::WhiteSpace::ignored : gitkit::WhiteSpace::compared,
            gitkit::DiffReach::beginning};
}

/// Reads what was asked for first, then what is in sight, below and above it.
void AllFilesView::readNext()
{
    if (items_.empty() || !isVisible())
        return;
    if (const auto readOn = std::ranges::find(items_, true, &Item::isReadOn); readOn != items_.end()) {
        ask(static_cast<std::size_t>(readOn - items_.begin()));
        return;
    }
    const int height = viewport()->height();
    const auto isWanted = [this](std::size_t file) {
        const Item& item = items_[file];
        return !item.diff && !item.isFolded && item.problem.isEmpty();
    };
    for (const auto& [begin, end] : {std::pair{0, height}, std::pair{height, 2 * height}, std::pair{-height, 0}}) {
        const auto [first, behind] = filesBetween(scrolled() + begin, scrolled() + end);
        for (std::size_t file = first; file < behind; ++file) {
            if (!isWanted(file))
                continue;
            ask(file);
            return;
        }
    }
}

void AllFilesView::ask(std::size_t file)
{
    asked_ = file;
    gitkit::DiffReading reading = diffReading();
    reading.reach = items_[file].reach;
    diffs_.ask({reading_->detail.hash, reading_->detail.files[file], reading});
}

void AllFilesView::diffRead()
{
    const std::size_t file = asked_;
    Item& item = items_[file];
    item.isReadOn = false;
    if (diffs_.failure()) {
        if (item.diff)
            store_.window().tell(diffs_.failure()->message);
        else
            item.problem = diffs_.failure()->message;
    } else {
        const bool isNew = !item.diff;
        if (isNew)
            item.diff = makeDiff(file);
        {
            // Its height changes, and nothing may be dropped or read because of that before it is in place.
            const QScopedValueRollback arriving(isArriving_, true);
            item.diff->setDiff(reading_->detail.files[file].path, std::move(*diffs_.result()), diffs_.answered()->hash);
        }
        item.height = item.diff->height();
        item.isMeasured = true;
        if (isNew) {
            if (FileBar* const bar = bars_->of(file))
                QWidget::setTabOrder(bar, &item.diff->section());
        }
    }
    diffs_.forget();
    layOut();
    if (!item.diff)
        return;
    if (arriving_ && arriving_->first == file)
        walk(file, std::exchange(arriving_, std::nullopt)->second);
    Q_EMIT diffShown(file);
}

FileDiff* AllFilesView::makeDiff(std::size_t file)
{
    auto* const diff = new FileDiff(store_, viewport()->height(), viewport());
    diff->lower();
    diff->fit(viewport()->width(), viewport()->height());
    applyOptions(*diff);
    diff->view().setShowsWholeFile(showsWholeFile_);
    connect(diff, &FileDiff::heightChanged, this, [this, file, diff] {
        if (items_[file].diff != diff || items_[file].height == diff->height())
            return;
        items_[file].height = diff->height();
        layOut();
    });
    connect(diff, &FileDiff::shifted, this, [this](int shift) { verticalScrollBar()->setValue(scrolled() + shift); });
    connect(diff, &FileDiff::revealRequested, this, [this, file](const QRect& area) { reveal(file, area); });
    connect(diff, &FileDiff::leaveRequested, this, [this, file](int direction) { leave(file, direction); });
    connect(diff, &FileDiff::walkEnded, this, [this, file](int direction) {
        arriving_.reset();
        leave(file, direction);
    });
    connect(diff, &FileDiff::allLinesRequested, this, [this, file] {
        items_[file].reach = gitkit::DiffReach::whole;
        items_[file].isReadOn = true;
        readNext();
    });
    connect(diff->view().horizontalScrollBar(), &QScrollBar::valueChanged, this, [this, diff](int value) {
        if (!isMoving_ &&
            value != std::min(horizontalScrollBar()->value(), diff->view().horizontalScrollBar()->maximum()))
            horizontalScrollBar()->setValue(value);
    });
    connect(&diff->view(), &DiffView::showsWholeFileChanged, this, &AllFilesView::setShowsWholeFile);
    diff->show();
    return diff;
}

void AllFilesView::goTo(std::size_t file)
{
    if (file >= items_.size())
        return;
    current_ = file;
    const QScopedValueRollback moving(isMoving_, true);
    verticalScrollBar()->setValue(top(file));
}

void AllFilesView::fold(std::size_t file, bool isFolded)
{
    Item& item = items_[file];
    if (item.isFolded == isFolded)
        return;
    // What is folded while its bar is held at the top begins below the bar when it is opened again.
    if (isFolded && scrolled() > top(file))
        goTo(file);
    item.isFolded = isFolded;
    if (isFolded)
        drop(item);
    if (FileBar* const bar = bars_->of(file))
        bar->setFolded(isFolded);
    layOut();
}

void AllFilesView::foldAll(bool areFolded)
{
    const std::size_t at = items_.empty() ? 0 : fileAt(scrolled());
    for (Item& item : items_) {
        item.isFolded = areFolded;
        if (areFolded)
            drop(item);
    }
    for (const auto& [file, bar] : bars_->shown())
        bar->setFolded(areFolded);
    layOut();
    goTo(at);
}

int AllFilesView::diffsHeld() const
{
    return static_cast<int>(std::ranges::count_if(items_, [](const Item& item) { return item.diff != nullptr; }));
}

void AllFilesView::focusCurrent()
{
    if (items_.empty())
        return;
    if (FileDiff* const diff = items_[current_].diff; diff && !items_[current_].isFolded)
        diff->setFocus(Qt::TabFocusReason);
    else if (FileBar* const bar = bars_->of(current_))
        bar->setFocus(Qt::TabFocusReason);
}

void AllFilesView::reveal(std::size_t file, const QRect& area)
{
    const int y = top(file) + FileBar::barHeight() + area.top();
    int value = scrolled();
    value = std::max(value, y + area.height() - viewport()->height());
    value = std::min(value, y - FileBar::barHeight() - items_[file].diff->section().coveredHeight());
    verticalScrollBar()->setValue(value);
}

/// Goes on with the hunks or changes of the next or previous file that has any.
void AllFilesView::leave(std::size_t file, int direction)
{
    for (std::size_t next = file + static_cast<std::size_t>(direction); next < items_.size();
         next += static_cast<std::size_t>(direction))
    {
        if (items_[next].isFolded)
            continue;
        goTo(next);
        Q_EMIT currentFileChanged();
        if (items_[next].diff)
            walk(next, direction);
        else
            arriving_ = {next, direction};
        return;
    }
}

void AllFilesView::walk(std::size_t file, int direction)
{
    if (items_.empty())
        return;
    FileDiff* const diff = items_[file].diff;
    if (!diff) {
        arriving_ = {file, direction};
        return;
    }
    DiffController& controller = diff->controller();
    const bool hasFocus = viewport()->isAncestorOf(focusWidget());
    const bool isHere = diff->section().hasFocus() || controller.wasWalked();
    const int rows = controller.diff().document().rowCount();
    if (!controller.moveToChange(direction, isHere          ? diff->section().walkStart(direction)
                                            : direction > 0 ? -1
                                                            : rows)) {
        if (isHere)
            controller.stopWalk();
        leave(file, direction);
        return;
    }
    for (Item& item : items_) {
        if (item.diff && item.diff != diff && item.diff->controller().wasWalked())
            item.diff->controller().stopWalk();
    }
    if (hasFocus)
        diff->setFocus(Qt::OtherFocusReason);
}

std::size_t AllFilesView::currentInUse() const
{
    for (std::size_t file = 0; file < items_.size(); ++file) {
        const FileDiff* const diff = items_[file].diff;
        if (diff && (diff->section().hasFocus() || diff->controller().wasWalked()))
            return file;
    }
    return current_;
}

QString AllFilesView::selectedText() const
{
    for (const Item& item : items_) {
        if (QString text = item.diff ? item.diff->view().selectedText() : QString(); !text.isEmpty())
            return text;
    }
    return {};
}

void AllFilesView::copy()
{
    for (const Item& item : items_) {
        if (item.diff && !item.diff->controller().selection().isEmpty())
            return item.diff->view().copy();
    }
}

void AllFilesView::selectAll()
{
    if (!items_.empty() && items_[currentInUse()].diff)
        items_[currentInUse()].diff->view().selectAll();
}

void AllFilesView::setBarReserve(int width) { bars_->setReserve(width); }

void AllFilesView::setShowsWholeFile(bool whole)
{
    if (whole == std::exchange(showsWholeFile_, whole))
        return;
    for (const Item& item : items_) {
        if (item.diff)
            item.diff->view().setShowsWholeFile(whole);
    }
    Q_EMIT showsWholeFileChanged(whole);
}

void AllFilesView::applyOptions(FileDiff& diff) const
{
    const bool isSideBySide = Settings::shared().value(settings::diffSideBySide);
    diff.view().setLayout(isSideBySide ? DiffLayout::sideBySide : DiffLayout::unified);
    diff.view().setWraps(Settings::shared().value(settings::diffWraps));
}

void AllFilesView::settingChanged(const QString& key)
{
    if (key == QLatin1String(settings::diffIgnoresWhiteSpace.key)) {
        diffs_.forget();
        for (Item& item : items_)
            drop(item);
        place();
        return;
    }
    for (const Item& item : items_) {
        if (item.diff)
            applyOptions(*item.diff);
    }
}

void AllFilesView::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    layOut();
}

void AllFilesView::scrollContentsBy(int, int)
{
    place();
    if (isMoving_ || items_.empty())
        return;
    const std::size_t now = fileAt(scrolled());
    if (now != std::exchange(current_, now))
        Q_EMIT currentFileChanged();
}

/// Says why a diff is missing.
void AllFilesView::paintEvent(QPaintEvent*)
{
    QPainter painter(viewport());
    for (const auto& [file, bar] : bars_->shown()) {
        if (const QString& problem = items_[file].problem; !problem.isEmpty() && !items_[file].isFolded)
            paintText(painter, QRect(12, top(file) - scrolled() + FileBar::barHeight(), viewport()->width() - 24, 40),
                      problem, Theme::font(), Theme::current().secondaryText);
    }
}

void AllFilesView::contextMenuEvent(QContextMenuEvent* event)
{
    // The diffs have menus of their own; this comes from a bar.
    const auto [file, bar] = bars_->at(event->pos());
    if (!bar)
        return;
    current_ = file;
    Q_EMIT currentFileChanged();
    Q_EMIT menuRequested(event->globalPos());
}

} // namespace plovik

#include "moc_AllFilesView.cpp"
