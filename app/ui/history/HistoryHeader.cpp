// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/history/HistoryHeader.h"

#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QContextMenuEvent>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QToolButton>

#include <algorithm>
#include <cmath>

namespace plovik {

namespace {

constexpr double reach = 5; ///< how near to an edge the pointer takes hold of it
constexpr double leastWidth = 36;
constexpr int titlePadding = 5; ///< above and below the titles

QLabel* makeTitle(const QString& text, QWidget* parent)
{
    auto* const label = new QLabel(text, parent);
    label->setForegroundRole(QPalette::PlaceholderText);
    label->setTextFormat(Qt::PlainText);
    label->setAttribute(Qt::WA_TransparentForMouseEvents);
    followFont(*label, -1.5);
    return label;
}

void place(QWidget& title, double left, double right, int height)
{
    const QWidget& header = *title.parentWidget();
    const QRect rect(static_cast<int>(std::round(left)), 0, static_cast<int>(std::round(right - left)), height);
    title.setVisible(right > left);
    title.setGeometry(QStyle::visualRect(header.layoutDirection(), header.rect(), rect));
}

} // namespace

HistoryHeader::HistoryHeader(QWidget* parent)
    : QWidget(parent), graph_(makeTitle(titleOf(HistoryColumn::graph), this)), subject_(makeTitle(tr("Subject"), this)),
      author_(makeTitle(titleOf(HistoryColumn::author), this)), hash_(makeTitle(titleOf(HistoryColumn::hash), this)),
      date_(new QToolButton(this))
{
    setAccessibleName(tr("History Columns"));
    setMouseTracking(true);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    date_->setText(titleOf(HistoryColumn::date));
    date_->setAutoRaise(true);
    date_->setFocusPolicy(Qt::NoFocus);
    date_->setCursor(Qt::PointingHandCursor);
    followFont(*date_, -1.5);
    followColor(*date_, QPalette::ButtonText, &Theme::secondaryText);
    connect(date_, &QToolButton::clicked, this, [] {
        Settings& settings = Settings::shared();
        settings.set(settings::historyAbsoluteDates, !settings.value(settings::historyAbsoluteDates));
    });
    connect(&Settings::shared(), &Settings::changed, this, &HistoryHeader::showDateChoice);
    showDateChoice();
}

void HistoryHeader::showDateChoice()
{
    const bool isAbsolute = Settings::shared().value(settings::historyAbsoluteDates);
    date_->setToolTip(plainToolTip(isAbsolute ? tr("Show how long ago") : tr("Show date and time")));
}

QSize HistoryHeader::sizeHint() const { return {200, subject_->sizeHint().height() + 2 * titlePadding}; }

void HistoryHeader::setColumns(const HistoryColumns& columns)
{
    columns_ = columns;
    place(*graph_, 12, std::max(12.0, columns.graphWidth), height());
    // A title that does not fit is left out; the column below it speaks for itself.
    graph_->setVisible(columns.graphWidth - 12 >= graph_->sizeHint().width());
    place(*subject_, columns.subjectLeft, columns.subjectRight, height());
    place(*author_, columns.authorLeft, columns.authorRight, height());
    place(*hash_, columns.hashLeft, columns.hashRight, height());
    const double dateWidth = date_->sizeHint().width();
    const bool hasDate = columns.dateRight > columns.dateLeft;
    place(*date_, hasDate ? columns.dateRight - dateWidth : 0, hasDate ? columns.dateRight : 0, height() - 1);
    update();
}

std::optional<HistoryColumns::Edge> HistoryHeader::edgeAt(double x) const
{
    const auto edges = columns_.edges();
    const auto found =
        std::ranges::find_if(edges, [x](const HistoryColumns::Edge& edge) { return std::abs(edge.x - x) <= reach; });
    return found == edges.end() ? std::nullopt : std::optional(*found);
}

/// Turns places round where rows are read from right to left; the same again turns them back.
double HistoryHeader::logicalX(double x) const { return isRightToLeft() ? width() - x : x; }

bool HistoryHeader::event(QEvent* event)
{
    if (event->type() == QEvent::Leave && !dragged_)
        unsetCursor();
    return QWidget::event(event);
}

void HistoryHeader::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QColor& line = Theme::current().separator;
    painter.fillRect(QRect(0, height() - 1, width(), 1), line);
    for (const HistoryColumns::Edge& edge : columns_.edges())
        painter.fillRect(QRectF(std::round(logicalX(edge.x)), titlePadding, 1, height() - 2 * titlePadding), line);
}

void HistoryHeader::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const double x = logicalX(event->position().x());
    dragged_ = edgeAt(x);
    if (dragged_)
        grip_ = dragged_->x - x;
}

void HistoryHeader::mouseMoveEvent(QMouseEvent* event)
{
    const double x = logicalX(event->position().x());
    if (!dragged_) {
        setCursor(edgeAt(x) ? Qt::SplitHCursor : Qt::ArrowCursor);
        return;
    }
    const double width = std::clamp(columns_.widthAt(dragged_->column, x + grip_), leastWidth, this->width() * 0.6);
    Settings::shared().set(widthSetting(dragged_->column), std::round(width));
}

void HistoryHeader::mouseReleaseEvent(QMouseEvent*) { dragged_.reset(); }

void HistoryHeader::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (const auto edge = edgeAt(logicalX(event->position().x())))
        Settings::shared().set(widthSetting(edge->column), 0);
}

void HistoryHeader::contextMenuEvent(QContextMenuEvent* event)
{
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    addColumnChoices(*menu);
    menu->popup(event->globalPos());
}

} // namespace plovik

#include "moc_HistoryHeader.cpp"
