// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/timeline/TimelineDelegate.h"

#include "app/ui/history/RelativeDate.h"
#include "app/ui/timeline/StepText.h"
#include "app/ui/timeline/TimelineModel.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace plovik {

namespace {

constexpr int rowInset = 6;
constexpr int textInset = 16;
constexpr int gap = 14;
constexpr double partOfTitle = 0.4; ///< of the row, which nothing at the right may take

/// Draws texts at the right end of a row, each as long as it leaves the title its part.
class RightEnd {
public:
    RightEnd(QPainter& painter, const QRect& row)
        : painter_(painter), rest_(row), least_(static_cast<int>(row.width() * partOfTitle))
    {}

    /// `usual` is a text of usual width, so that what stands beside is in one column.
    void add(const QString& text, const QString& usual)
    {
        const QFont small = Theme::font(-1.5);
        const int width = std::max(textWidth(text, small), textWidth(usual, small));
        if (width == 0 || rest_.width() - width - gap < least_)
            return;
        paintText(painter_, rest_, text, small, Theme::current().secondaryText, Qt::AlignRight, Qt::ElideNone);
        rest_.adjust(0, 0, -width - gap, 0);
    }
    const QRect& rest() const { return rest_; }

private:
    QPainter& painter_;
    QRect rest_;
    int least_;
};

} // namespace

void TimelineDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const TimelineRow& row = static_cast<const TimelineModel&>(*index.model()).row(index);
    const Theme& theme = Theme::current();
    const RowMirror mirror(option);
    paintRowBackground(*painter, option.rect, option, rowInset);
    RightEnd right(*painter, option.rect.adjusted(textInset, 0, -textInset, 0));
    right.add(RelativeDate::toNow(row.date).text(option.locale),
              RelativeDate{RelativeDate::Unit::minutes, 10}.text(option.locale));
    right.add(stepText::fileCount(row.files), stepText::fileCount(10));
    right.add(stepText::move(row), {});
    const bool isUndone = row.kind == TimelineRow::Kind::undone;
    const bool isGrey = isUndone || row.kind == TimelineRow::Kind::terminal;
    QFont font = option.font;
    font.setStrikeOut(isUndone);
    paintText(*painter, right.rest(), row.title, font, isGrey ? theme.secondaryText : theme.text);
}

QSize TimelineDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    Q_UNUSED(index)
    return {textInset * 2, std::max(listRowHeight, QFontMetrics(option.font).height() + 8)};
}

} // namespace plovik

#include "moc_TimelineDelegate.cpp"
