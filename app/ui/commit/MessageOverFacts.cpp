// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/MessageOverFacts.h"

#include "app/ui/commit/MessageText.h"

#include <QEvent>
#include <QVBoxLayout>

#include <algorithm>

namespace plovik {

namespace {

constexpr int belowSubject = 8;
constexpr int belowFacts = 2; ///< besides what a paragraph keeps above it

} // namespace

MessageOverFacts::MessageOverFacts(MessageText* message, QWidget* facts, QMargins margins, QWidget* parent)
    : QWidget(parent), message_(message), facts_(facts)
{
    auto* const column = new QVBoxLayout(this);
    const int ring = message->frameWidth();
    column->setContentsMargins(margins - QMargins(ring, ring, ring, ring));
    column->addWidget(message);
    column->addStretch(1);
    facts->setParent(this);
    facts->raise();
    message->installEventFilter(this);
    facts->installEventFilter(this);
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
}

void MessageOverFacts::place()
{
    const int ring = message_->frameWidth();
    const QRect area = message_->geometry().adjusted(ring, ring, -ring, -ring);
    const int height = facts_->hasHeightForWidth() ? facts_->heightForWidth(area.width()) : facts_->sizeHint().height();
    facts_->setGeometry(area.left(), area.top() + message_->gapTop() + belowSubject, area.width(), height);
    message_->setGap(belowSubject + height + belowFacts);
    Q_EMIT placed();
}

int MessageOverFacts::heightOfWholeLines(int height) const
{
    if (height >= this->height())
        return height;
    const int textTop = message_->y() + message_->frameWidth();
    if (height > facts_->geometry().bottom() || height < facts_->y())
        return textTop + message_->heightOfWholeLines(height - textTop);
    int whole = facts_->y();
    for (const QWidget* const fact : facts_->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
        const int bottom = facts_->y() + fact->geometry().bottom() + 1;
        if (!fact->isHidden() && bottom <= height)
            whole = std::max(whole, bottom);
    }
    return whole;
}

bool MessageOverFacts::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::LayoutRequest || (watched == message_ && event->type() == QEvent::Resize))
        place();
    return QWidget::eventFilter(watched, event);
}

void MessageOverFacts::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    layout()->activate();
    place();
}

} // namespace plovik

#include "moc_MessageOverFacts.cpp"
