// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/drag/DropHint.h"

#include "app/ui/widgets/FocusRing.h"
#include "app/ui/widgets/Theme.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>

namespace plovik {

namespace {

constexpr int mostHintWidth = 420;
/// From the pointer: to its right, and below the picture of what is dragged.
constexpr QPoint hintOffset{14, 34};

QLabel* hintLine(QWidget& hint)
{
    auto* const label = new QLabel(&hint);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

void fill(QLabel& label, const QString& text)
{
    label.setText(text);
    label.setVisible(!text.isEmpty());
}

} // namespace

DropHint::DropHint(QWidget& window)
    : QFrame(&window), action_(hintLine(*this)), preview_(hintLine(*this)), other_(hintLine(*this))
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    setAccessibleName(tr("What Dropping Does"));
    followFont(*action_, 0, QFont::DemiBold);
    followFont(*other_, -0.5);
    other_->setForegroundRole(QPalette::PlaceholderText);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(10, 7, 10, 7);
    column->setSpacing(2);
    for (QLabel* const line : {action_, preview_, other_})
        column->addWidget(line);
    hide();
}

void DropHint::say(const Words& words, QPoint pointer)
{
    if (words != words_) {
        words_ = words;
        fill(*action_, words.action);
        fill(*preview_, words.preview);
        fill(*other_, words.other);
        setAccessibleDescription(words.preview.isEmpty() ? words.action : words.action + u'\n' + words.preview);
    }
    place(pointer);
    show();
    raise();
}

void DropHint::place(QPoint pointer)
{
    const QSize room = parentWidget()->size();
    int wanted = 0;
    for (const QLabel* const line : {action_, preview_, other_}) {
        for (const QString& text : line->text().split(u'\n'))
            wanted = std::max(wanted, line->fontMetrics().horizontalAdvance(text));
    }
    const QMargins margins = layout()->contentsMargins();
    const int width = std::min({wanted + margins.left() + margins.right() + 2, mostHintWidth, room.width()});
    const int height = layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(width) : sizeHint().height();
    QPoint corner = pointer + hintOffset;
    corner.setX(std::clamp(corner.x(), 0, std::max(0, room.width() - width)));
    if (corner.y() + height > room.height())
        corner.setY(std::max(0, pointer.y() - height - hintOffset.x()));
    setGeometry(QRect(corner, QSize(width, height)));
}

void DropHint::paintEvent(QPaintEvent*)
{
    const Theme& theme = Theme::current();
    QPainter painter(this);
    painter.fillRect(rect(), theme.content);
    painter.setPen(theme.controlBorder);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

DropRing::DropRing(QWidget& surface) : QWidget(&surface)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    hide();
}

void DropRing::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintFocusRing(painter, rect(), 4);
}

} // namespace plovik

#include "moc_DropHint.cpp"
