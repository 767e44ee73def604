// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/FileBar.h"

#include "app/ui/commit/CommitFileDelegate.h"
#include "app/ui/commit/CommitFilesModel.h"
#include "app/ui/commit/StatusChip.h"
#include "app/ui/diff/ShownLine.h"
#include "app/ui/widgets/FocusRing.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLocale>
#include <QPainter>

namespace plovik {

using namespace Qt::StringLiterals;

namespace {

constexpr int barMargin = 12;
constexpr int barGap = 8;

} // namespace

FileBar::FileBar(QWidget* parent) : QAbstractButton(parent)
{
    setFixedHeight(barHeight());
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    connect(this, &QAbstractButton::clicked, this,
            [this] { Q_EMIT foldRequested(!isFolded_, QApplication::keyboardModifiers().testFlag(Qt::AltModifier)); });
}

void FileBar::setFile(const gitkit::CommitFile& file, const gitkit::ChangeCounts* counts)
{
    file_ = file;
    counts_ = counts ? std::optional(*counts) : std::nullopt;
    setAccessibleName(ShownLine::of(file.path).shown);
    setToolTip(plainToolTip(shownPath(file)));
    update();
}

void FileBar::setFolded(bool isFolded)
{
    isFolded_ = isFolded;
    const QString status = statusDescription(shownStatus(file_));
    setAccessibleDescription(isFolded ? tr("%1, folded").arg(status) : status);
    update();
}

void FileBar::setReserve(int width)
{
    reserve_ = width;
    update();
}

void FileBar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setLayoutDirection(Qt::LeftToRight); // as the code below it
    const Theme& theme = Theme::current();
    painter.fillRect(rect(), theme.content);
    painter.fillRect(0, 0, width(), 1, theme.separator);
    painter.fillRect(0, height() - 1, width(), 1, theme.separator);
    paintDisclosure(painter, QPointF(barMargin + 4, height() / 2.0), !isFolded_, theme.secondaryText);
    const int chipLeft = barMargin + 16;
    const int chip = statusChipSize();
    paintStatusChip(painter, QRect(chipLeft, (height() - chip) / 2, chip, chip), shownStatus(file_));
    QRect area = rect().adjusted(chipLeft + chip + barGap, 0, -barMargin - reserve_, 0);
    if (counts_ && counts_->added && counts_->removed) {
        const QFont font = Theme::font(-1);
        const auto take = [&](QChar sign, int count, const QColor& color) {
            if (count == 0)
                return;
            const QString text = sign + QLocale().toString(count);
            paintText(painter, area, text, font, color, Qt::AlignRight, Qt::ElideNone);
            area.setRight(area.right() - textWidth(text, font) - barGap);
        };
        take(u'−', *counts_->removed, theme.statusDeleted);
        take(u'+', *counts_->added, theme.statusAdded);
    }
    paintPath(painter, area, pathPartsOf(file_), Theme::font(0, QFont::DemiBold));
    if (hasFocus())
        paintFocusRing(painter, rect(), 0);
}

void FileBar::keyPressEvent(QKeyEvent* event)
{
    const bool folds = event->key() == Qt::Key_Left;
    if (!folds && event->key() != Qt::Key_Right) {
        QAbstractButton::keyPressEvent(event);
        return;
    }
    if (folds != isFolded_)
        Q_EMIT foldRequested(folds, event->modifiers().testFlag(Qt::AltModifier));
}

} // namespace plovik

#include "moc_FileBar.cpp"
