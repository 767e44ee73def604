// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/stashes/StashDelegate.h"

#include "app/ui/stashes/StashesModel.h"
#include "app/ui/stashes/Tray.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace plovik {

namespace {

constexpr int rowInset = 6;
constexpr int textInset = 16;
constexpr int gap = 12;
constexpr int traySize = 14;
constexpr int trayGap = 8;

} // namespace

void StashDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const auto& model = static_cast<const StashesModel&>(*index.model());
    const Theme& theme = Theme::current();
    const RowMirror mirror(option);
    paintRowBackground(*painter, option.rect, option, rowInset);
    const QRect row = option.rect.adjusted(textInset, 0, -textInset, 0);
    const QRectF tray(row.left(), row.top() + (row.height() - traySize) / 2.0, traySize, traySize);
    paintTray(*painter, mirror(tray), theme.secondaryText);
    const QRect inner = row.adjusted(traySize + trayGap, 0, 0, 0);
    const QFont small = Theme::font(-1.5);
    const QString date = shownDate(model.stash(index));
    paintText(*painter, inner, date, small, theme.secondaryText, Qt::AlignRight, Qt::ElideNone);
    paintText(*painter, inner.adjusted(0, 0, -textWidth(date, small) - gap, 0), index.data().toString(), option.font,
              theme.text);
}

QSize StashDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    Q_UNUSED(index)
    return {textInset * 2, std::max(listRowHeight, QFontMetrics(option.font).height() + 8)};
}

} // namespace plovik

#include "moc_StashDelegate.cpp"
