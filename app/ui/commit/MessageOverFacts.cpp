// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/MessageOverFacts.h"

#include "app/ui/commit/CommitFactsBox.h"
#include "app/ui/commit/MessageText.h"

#include <QEvent>
#include <QScopedValueRollback>
#include <QVBoxLayout>

#include <algorithm>

namespace plovik {

namespace {

constexpr int belowSubject = 8;
constexpr int belowFacts = 2; ///< besides what a paragraph keeps above it

int gapFor(int facts) { return belowSubject + facts + belowFacts; }

} // namespace

MessageOverFacts::MessageOverFacts(MessageText* message, CommitFactsBox* facts, QMargins margins, QWidget* parent)
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
    // The message gets another size while it is placed.
    if (isPlacing_)
        return;
    {
        const QScopedValueRollback placing(isPlacing_, true);
        const int width = message_->width() - 2 * message_->frameWidth();
        facts_->resize(width, facts_->height()); // which may arrange them otherwise
        const int height = facts_->hasHeightForWidth() ? facts_->heightForWidth(width) : facts_->sizeHint().height();
        facts_->setGeometry(message_->x() + message_->frameWidth(), factsTop(), width, height);
        message_->setGap(gapFor(height));
    }
    Q_EMIT placed();
}

int MessageOverFacts::factsTop() const
{
    return message_->y() + message_->frameWidth() + message_->gapTop() + belowSubject;
}

int MessageOverFacts::factsWidth(int width) const
{
    const QMargins margins = layout()->contentsMargins();
    return std::max(width, minimumSizeHint().width()) - margins.left() - margins.right() - 2 * message_->frameWidth();
}

int MessageOverFacts::heightWith(int facts) const
{
    const QMargins margins = layout()->contentsMargins();
    return margins.top() + message_->sizeHint().height() - message_->gap() + gapFor(facts) + margins.bottom();
}

QRect MessageOverFacts::lineAt(int y) const
{
    for (const QRect& line : facts_->lines()) {
        const QRect here = line.translated(facts_->pos());
        if (here.top() < y && y <= here.bottom())
            return here;
    }
    const QPoint text(0, message_->y() + message_->frameWidth());
    const QRect line = message_->lineAt(y - text.y());
    return line.isNull() ? line : line.translated(text);
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
