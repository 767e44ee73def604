// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffSectionView.h"

#include "app/settings/Settings.h"
#include "app/ui/diff/DiffAccessible.h"
#include "app/ui/diff/DiffRowPainter.h"
#include "app/ui/diff/DiffSectionBar.h"
#include "app/ui/widgets/Theme.h"

#include <QEvent>
#include <QPainter>
#include <QPushButton>

namespace plovik {

namespace {

constexpr int endGap = 10;
constexpr int noteGap = 8;

} // namespace

DiffSectionView::DiffSectionView(QWidget* parent) : QWidget(parent), bar_(new DiffSectionBar(this))
{
    installDiffAccessibility();
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    bar_->hide();
    connect(bar_, &DiffSectionBar::triggered, this, &DiffSectionView::request);
    connect(&Settings::shared(), &Settings::changed, this, [this](const QString& key) {
        if (key == QLatin1String(settings::codeFontName.key) || key == QLatin1String(settings::codeFontSize.key))
            applyFonts();
    });
    remeasure();
}

void DiffSectionView::setContent(DiffContent content, DiffPlace place)
{
    if (content == content_)
        return;
    const bool hasSameDiff = content.diff == content_.diff && content.name == content_.name;
    content_ = std::move(content);
    ++contentRevision_;
    notes_ = diffNotes(content_.diff, content_.state, content_.facts, content_.path);
    setAccessibleName(content_.name);
    bar_->setText(content_.title, content_.detail);
    bar_->setVisible(!content_.title.isEmpty());
    if (!hasSameDiff || document_.rowCount() == 0) {
        showDocument(place);
    }
    remeasure();
    updateOffers();
    announceDiffChange(this);
}

void DiffSectionView::showDocument(DiffPlace place)
{
    const int hunk = keyboardHunk();
    const std::size_t hunks = document_.hunks().size();
    holdWholeFile(place);
    document_ = DiffDocument(notes_.hidesLines ? gitkit::ParsedDiff() : content_.diff);
    lines_ = DiffLines(document_, layout_);
    texts_ = {};
    selection_.clear();
    wasWalked_ = false;
    hoveredMore_ = {};
    drag_ = Drag::none;
    dragTimer_.stop();
    hovered_ = -1;
    if (document_.rowCount() == 0)
        current_ = -1;
    else if (place == DiffPlace::start || hunk < 0)
        current_ = 0;
    else if (document_.hunks().size() == hunks)
        current_ = std::min(current_, document_.rowCount() - 1);
    else // A hunk has gone or come: the one in its place is the next to look at.
        current_ = document_.hunks()[std::min(static_cast<std::size_t>(hunk), document_.hunks().size() - 1)].first;
}

void DiffSectionView::setSyntax(const SyntaxOf& syntax)
{
    if (syntax == document_.syntax())
        return;
    document_.setSyntax(syntax);
    update(visibleRowsArea());
}

void DiffSectionView::remeasure(int shift)
{
    metrics_ = DiffMetrics::of(document_, lines_);
    Q_EMIT contentHeightChanged(shift);
    placeInset();
    placeHunkButtons();
    update();
}

void DiffSectionView::applyFonts()
{
    for (const auto& [verb, button] : hunkButtons_)
        button->setFont(Theme::font(-1));
    remeasure();
}

int DiffSectionView::barHeight() const { return content_.title.isEmpty() ? 0 : DiffSectionBar::barHeight; }

int DiffSectionView::notesHeight(const QStringList& notes, int width) const
{
    if (notes.isEmpty())
        return 0;
    const QFontMetrics metrics(Theme::font());
    int height = noteGap;
    for (const QString& note : notes) {
        const QRect room(0, 0, std::max(80, width - 2 * DiffMetrics::margin), 10000);
        height += metrics.boundingRect(room, Qt::TextWordWrap, note).height() + noteGap;
    }
    return height;
}

int DiffSectionView::insetHeight(int width) const { return inset_ ? inset_->heightForWidth(width) : 0; }

void DiffSectionView::setInset(QWidget* inset)
{
    if (inset_ && inset_ != inset) {
        inset_->hide();
        inset_->deleteLater();
    }
    const bool isNew = inset_ != inset;
    inset_ = inset;
    if (inset_ && isNew) {
        inset_->setParent(this);
        bar_->raise();
        placeInset();
        inset_->show();
    }
    remeasure();
}

void DiffSectionView::placeInset()
{
    if (inset_)
        inset_->setGeometry(0, barHeight() + notesHeight(notes_.above, width()), width(), insetHeight(width()));
}

int DiffSectionView::rowsTop() const { return barHeight() + notesHeight(notes_.above, width()) + insetHeight(width()); }

int DiffSectionView::heightFor(int width) const
{
    return barHeight() + notesHeight(notes_.above, width) + insetHeight(width) + metrics_.total() +
           notesHeight(notes_.below, width) + endGap;
}

int DiffSectionView::hiddenWidth(int width) const
{
    if (document_.rowCount() == 0)
        return 0;
    const int wanted =
        metrics_.codeLeft + static_cast<int>(document_.longestLine() * metrics_.cell) + 2 * DiffMetrics::margin;
    return std::max(0, wanted - (lines_.areSideBySide() ? width / 2 : width));
}

void DiffSectionView::setOffset(int offset)
{
    if (offset == offset_)
        return;
    offset_ = offset;
    update(visibleRowsArea());
}

void DiffSectionView::setVisibleTop(int y)
{
    visibleTop_ = y;
    bar_->move(0, std::clamp(y, 0, std::max(0, height() - DiffSectionBar::barHeight)));
}

void DiffSectionView::setBarReserve(int width) { bar_->setReserve(width); }

void DiffSectionView::setFound(const DiffFound* found)
{
    found_ = found;
    update();
}

void DiffSectionView::revealText(int row, qsizetype begin, qsizetype end)
{
    constexpr int aside = 60;
    const int lines = 2 * metrics_.lineHeight;
    const auto x = [&](qsizetype source) { return rowPainter().xOf(row, source); };
    const QRect area = rowRect(row);
    Q_EMIT revealRequested(area.adjusted(0, -lines, 0, lines));
    if (const int beyond = x(end) - cellWidth(); beyond > 0)
        Q_EMIT revealRequested(QRect(width() + beyond + aside, area.top(), 1, area.height()));
    if (const int hidden = x(begin) - metrics_.codeLeft; hidden < 0)
        Q_EMIT revealRequested(QRect(hidden - aside, area.top(), 1, area.height()));
}

void DiffSectionView::setFollows(bool follows) { bar_->setFollows(follows); }

QRect DiffSectionView::visibleRowsArea() const { return {0, rowsTop(), width(), metrics_.total()}; }

QRect DiffSectionView::rowRect(int row) const
{
    const DiffSide side = document_.row(row).side;
    const int line = lines_.lineOf(row);
    if (side != DiffSide::both)
        return cellAt(line, side).area;
    return {0, rowsTop() + metrics_.top(line), width(), metrics_.height(line)};
}

int DiffSectionView::lineAt(int y) const { return metrics_.lineAt(y - rowsTop()); }

int DiffSectionView::rowNear(QPoint point) const
{
    const int line = lineAt(point.y());
    return line < 0 ? -1 : lines_.nearestRow(line, sideAt(point.x()));
}

DiffSide DiffSectionView::sideAt(int x) const
{
    if (!lines_.areSideBySide())
        return DiffSide::both;
    return x < width() / 2 ? DiffSide::before : DiffSide::after;
}

DiffCell DiffSectionView::cellAt(int line, DiffSide side) const
{
    const QRect whole(0, rowsTop() + metrics_.top(line), width(), metrics_.height(line));
    const int row = lines_.rowAt(line, DiffSide::both);
    if (!lines_.areSideBySide() || document_.row(row).kind == DiffDocument::Kind::hunk)
        return {line, row, DiffSide::both, whole};
    const int half = width() / 2;
    if (side == DiffSide::after)
        return {line, lines_.rowAt(line, side), side, whole.adjusted(half, 0, 0, 0)};
    return {line, lines_.rowAt(line, DiffSide::before), DiffSide::before, whole.adjusted(0, 0, half - width(), 0)};
}

QString DiffSectionView::plainText() const
{
    QStringList lines = notes_.above;
    for (int row = 0; row < document_.rowCount(); ++row)
        lines << document_.row(row).sign + document_.text(row);
    lines << notes_.below;
    return lines.join(u'\n');
}

void DiffSectionView::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    painter.fillRect(event->rect(), Theme::current().content);
    paintNotes(painter, notes_.above, barHeight());
    paintRows(painter, event->rect());
    paintNotes(painter, notes_.below, rowsTop() + metrics_.total());
}

void DiffSectionView::paintNotes(QPainter& painter, const QStringList& notes, int top) const
{
    if (notes.isEmpty())
        return;
    painter.setFont(Theme::font());
    painter.setPen(Theme::current().secondaryText);
    int y = top + noteGap;
    for (const QString& note : notes) {
        const QRect room(DiffMetrics::margin, y, std::max(80, width() - 2 * DiffMetrics::margin), 10000);
        QRect taken;
        painter.drawText(room, Qt::TextWordWrap, note, &taken);
        y += taken.height() + noteGap;
    }
}

void DiffSectionView::paintRows(QPainter& painter, const QRect& exposed) const
{
    const QRect area = visibleRowsArea() & exposed;
    if (area.isEmpty() || document_.rowCount() == 0)
        return;
    const DiffRowPainter rows = rowPainter();
    for (int line = lineAt(area.top()); line <= lineAt(area.bottom()); ++line)
        paintLine(painter, rows, line);
    paintCurrent(painter);
}

DiffRowPainter DiffSectionView::rowPainter() const { return {document_, metrics_, {cellWidth(), offset_, found_}}; }

void DiffSectionView::paintLine(QPainter& painter, const DiffRowPainter& rows, int line) const
{
    const DiffCell first = cellAt(line, DiffSide::before);
    rows.paint(painter, first, selection_, hunkButtonsWidth());
    if (first.side != DiffSide::both) {
        const DiffCell second = cellAt(line, DiffSide::after);
        rows.paint(painter, second, selection_, 0);
        painter.fillRect(second.area.left(), second.area.top(), 1, second.area.height(), Theme::current().separator);
    } else if (document_.row(first.row).kind == DiffDocument::Kind::hunk) {
        paintMoreButtons(painter, first.row);
        if (!document_.row(first.row).isRest())
            paintHunkButtons(painter, first.row);
    }
}

void DiffSectionView::paintCurrent(QPainter& painter) const
{
    if (current_ < 0 || !(hasFocus() || wasWalked_))
        return;
    const QRect own = cellAt(lines_.lineOf(current_), currentSide()).area;
    const QColor& color = hasFocus() ? Theme::current().accent : Theme::current().gutterText;
    painter.fillRect(own.left(), own.top(), 3, own.height(), color);
}

void DiffSectionView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    bar_->resize(width(), DiffSectionBar::barHeight);
    setVisibleTop(visibleTop_);
    placeInset();
    placeHunkButtons();
}

void DiffSectionView::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        update();
    else if (event->type() == QEvent::ApplicationFontChange)
        applyFonts();
}

} // namespace plovik
