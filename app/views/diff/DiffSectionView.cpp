#include "app/views/diff/DiffSectionView.h"

#include "app/settings/Settings.h"
#include "app/views/Theme.h"
#include "app/views/diff/DiffAccessible.h"
#include "app/views/diff/DiffRowPainter.h"
#include "app/views/diff/DiffSectionBar.h"

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
    notes_ = diffNotes(content_.diff, content_.state);
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
    document_ = DiffDocument(notes_.hidesLines ? gitkit::ParsedDiff() : content_.diff);
    selection_.clear();
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

void DiffSectionView::remeasure()
{
    metrics_ = DiffMetrics::of(document_);
    Q_EMIT contentHeightChanged();
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

int DiffSectionView::rowsTop() const { return barHeight() + notesHeight(notes_.above, width()); }

int DiffSectionView::heightFor(int width) const
{
    return barHeight() + notesHeight(notes_.above, width) + metrics_.total() + notesHeight(notes_.below, width) +
           endGap;
}

int DiffSectionView::contentWidth() const
{
    if (document_.rowCount() == 0)
        return 0;
    return metrics_.codeLeft + static_cast<int>(document_.longestLine() * metrics_.cell) + 2 * DiffMetrics::margin;
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

void DiffSectionView::setFollows(bool follows) { bar_->setFollows(follows); }

QRect DiffSectionView::visibleRowsArea() const { return {0, rowsTop(), width(), metrics_.total()}; }

QRect DiffSectionView::rowRect(int row) const
{
    return {0, rowsTop() + metrics_.top(row), width(), metrics_.height(row)};
}

int DiffSectionView::rowAt(int y) const { return metrics_.rowAt(y - rowsTop()); }

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
    const DiffRowPainter rows(document_, metrics_, {width(), offset_});
    const int room = hunkButtonsWidth();
    for (int row = rowAt(area.top()); row <= rowAt(area.bottom()); ++row) {
        const QRect own = rowRect(row);
        rows.paint(painter, row, own, selection_, room);
        if (document_.row(row).kind == DiffDocument::Kind::hunk)
            paintHunkButtons(painter, row);
        if (row == current_ && hasFocus())
            painter.fillRect(own.left(), own.top(), 3, own.height(), Theme::current().accent);
    }
}

void DiffSectionView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    bar_->resize(width(), DiffSectionBar::barHeight);
    setVisibleTop(visibleTop_);
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
