// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/StatusChip.h"

#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QCoreApplication>
#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace plovik {

namespace {

QFont chipFont() { return Theme::font(-1, QFont::Bold); }

QColor statusColor(char code)
{
    const Theme& theme = Theme::current();
    switch (code) {
    case 'A':
        return theme.statusAdded;
    case 'D':
        return theme.statusDeleted;
    case 'R':
    case 'C':
        return theme.statusRenamed;
    case 'U':
        return theme.statusConflicted;
    case '?':
        return theme.statusUntracked;
    default:
        return theme.statusModified;
    }
}

} // namespace

QString statusDescription(char code)
{
    switch (code) {
    case 'A':
        return QCoreApplication::translate("StatusChip", "Added");
    case 'D':
        return QCoreApplication::translate("StatusChip", "Deleted");
    case 'R':
        return QCoreApplication::translate("StatusChip", "Renamed");
    case 'C':
        return QCoreApplication::translate("StatusChip", "Copied");
    case 'T':
        return QCoreApplication::translate("StatusChip", "Type changed");
    case 'U':
        return QCoreApplication::translate("StatusChip", "Conflicted");
    case '?':
        return QCoreApplication::translate("StatusChip", "Untracked");
    default:
        return QCoreApplication::translate("StatusChip", "Modified");
    }
}

int statusChipSize() { return std::max(18, QFontMetrics(chipFont()).height() + 2); }

void paintStatusChip(QPainter& painter, const QRect& chip, char code)
{
    const QColor color = statusColor(code);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Theme::current().chip(color));
    painter.drawRoundedRect(placeInRow(QRectF(chip)), 4, 4);
    painter.restore();
    paintText(painter, chip, QString(QLatin1Char(code)), chipFont(), color, Qt::AlignHCenter, Qt::ElideNone);
}

} // namespace plovik
