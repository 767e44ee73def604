// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/RowPainting.h"

#include "app/ui/widgets/Theme.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionViewItem>
#include <QTextDocument>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

/// More than fits between the edges of a window, whatever the font.
constexpr qsizetype longestPainted = 1000;
constexpr qsizetype longestToolTip = 2000;
constexpr qsizetype longestToolTipLine = 100;

/// The innermost of those that live; main thread.
const RowMirror* mirrorInUse = nullptr;

QPointF mirrored(const QPointF& place) { return mirrorInUse ? (*mirrorInUse)(place) : place; }

QFont pillFont() { return Theme::font(-1.5); }

/// Returns what can be seen of a text that is elided. A text is measured as a whole before it is elided, which takes
/// seconds for a million characters.
QString withinReach(const QString& text, Qt::TextElideMode elide)
{
    if (text.size() <= longestPainted)
        return text;
    if (elide == Qt::ElideLeft)
        return text.right(longestPainted);
    if (elide == Qt::ElideMiddle)
        return text.left(longestPainted / 2) + u'…' + text.right(longestPainted / 2);
    return text.left(longestPainted);
}

} // namespace

RowMirror::RowMirror(const QRect& row, Qt::LayoutDirection direction)
    : outer_(std::exchange(mirrorInUse, this)), row_(row), isMirrored_(direction == Qt::RightToLeft)
{}

RowMirror::RowMirror(const QStyleOptionViewItem& option) : RowMirror(option.rect, option.direction) {}

RowMirror::~RowMirror() { mirrorInUse = outer_; }

QRectF RowMirror::operator()(const QRectF& place) const
{
    if (!isMirrored_)
        return place;
    const double left = row_.left() + row_.right() + 1 - place.right();
    return {left, place.top(), place.width(), place.height()};
}

QPointF RowMirror::operator()(const QPointF& place) const
{
    return isMirrored_ ? QPointF(row_.left() + row_.right() + 1 - place.x(), place.y()) : place;
}

QRectF placeInRow(const QRectF& place) { return mirrorInUse ? (*mirrorInUse)(place) : place; }

void paintRowBackground(QPainter& painter, const QRect& row, const QStyleOptionViewItem& option, int inset)
{
    const Theme& theme = Theme::current();
    const bool isSelected = option.state & QStyle::State_Selected;
    const bool isCurrent = option.state & QStyle::State_HasFocus;
    if (!isSelected && !isCurrent)
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(isCurrent && !isSelected ? QPen(theme.accent) : QPen(Qt::NoPen));
    painter.setBrush(isSelected ? QBrush(theme.selection) : QBrush(Qt::NoBrush));
    painter.drawRoundedRect(QRectF(row).adjusted(inset + 0.5, 0.5, -inset - 0.5, -0.5), 5, 5);
    painter.restore();
}

void paintText(QPainter& painter, const QRect& area, const QString& text, const QFont& font, const QColor& color,
               Qt::Alignment alignment, Qt::TextElideMode elide)
{
    if (area.width() <= 0 || text.isEmpty())
        return;
    painter.setFont(font);
    painter.setPen(color);
    const QString shown = QFontMetrics(font).elidedText(withinReach(text, elide), elide, area.width());
    painter.drawText(placeInRow(QRectF(area)).toRect(),
                     static_cast<int>(alignment | Qt::AlignVCenter) | Qt::TextSingleLine, shown);
}

int textWidth(const QString& text, const QFont& font)
{
    return QFontMetrics(font).horizontalAdvance(text.left(longestPainted));
}

int pillWidth(const QString& text) { return std::max(textWidth(text, pillFont()) + 12, 20); }

int paintPill(QPainter& painter, const QRect& area, const QString& text)
{
    const Theme& theme = Theme::current();
    const int width = pillWidth(text);
    const int height = QFontMetrics(pillFont()).height() + 2;
    const QRect pill(area.right() + 1 - width, area.top() + (area.height() - height) / 2, width, height);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme.badge);
    painter.drawRoundedRect(placeInRow(QRectF(pill)), height / 2.0, height / 2.0);
    painter.restore();
    paintText(painter, pill, text, pillFont(), theme.badgeText, Qt::AlignHCenter, Qt::ElideNone);
    return width;
}

void paintDisclosure(QPainter& painter, QPointF center, bool isOpen, const QColor& color)
{
    QPolygonF triangle = isOpen ? QPolygonF{QPointF(-3.5, -2), QPointF(3.5, -2), QPointF(0, 2.5)}
                                : QPolygonF{QPointF(-2, -3.5), QPointF(2.5, 0), QPointF(-2, 3.5)};
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    const QPointF place = mirrored(center);
    if (!isOpen && place != center)
        triangle = QTransform::fromScale(-1, 1).map(triangle);
    painter.drawPolygon(triangle.translated(place));
    painter.restore();
}

QString plainToolTip(const QString& text)
{
    QString shown = text.left(longestToolTip);
    if (shown.size() < text.size())
        shown += u'…';
    // Only rich text wraps. A short plain text stays as it is, because screen readers read tooltips, too.
    if (!Qt::mightBeRichText(shown) && shown.size() <= longestToolTipLine)
        return shown;
    return u"<p style='white-space:pre-wrap'>%1</p>"_s.arg(shown.toHtmlEscaped());
}

QString plainTitle(QString text) { return text.replace(u"[*]"_s, u"[*][*]"_s); }

QString plainMenuText(QString text) { return text.replace(u'&', u"&&"_s); }

} // namespace plovik
