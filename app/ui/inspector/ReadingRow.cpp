// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/inspector/ReadingRow.h"

#include "app/ui/widgets/BarButton.h"
#include "app/ui/widgets/ElidedLabel.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QHBoxLayout>
#include <QPainter>

namespace plovik {

namespace {

/// A reading that takes no longer than this shows no button.
constexpr std::chrono::milliseconds quickReading{150};

} // namespace

ReadingRow::ReadingRow(QWidget* parent)
    : QWidget(parent), text_(new ElidedLabel(this)), button_(new BarButton(tr("Try Again"), this))
{
    text_->setForegroundRole(QPalette::PlaceholderText);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(16, 4, 8, 5);
    row->setSpacing(8);
    row->addWidget(text_, 1);
    row->addWidget(button_);
    // So that nothing moves when the button comes and goes.
    QSizePolicy policy = button_->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    button_->setSizePolicy(policy);
    button_->hide();
    moment_.setSingleShot(true);
    connect(&moment_, &QTimer::timeout, this, &ReadingRow::showButton);
    connect(button_, &QAbstractButton::clicked, this, &ReadingRow::press);
}

void ReadingRow::showState(State state, const QString& text)
{
    text_->setText(text);
    if (state == state_)
        return;
    state_ = state;
    moment_.stop();
    if (state == State::reading && button_->isHidden())
        moment_.start(quickReading);
    else
        showButton();
}

void ReadingRow::showButton()
{
    const QString title = state_ == State::reading   ? tr("Stop")
                          : state_ == State::stopped ? tr("Continue")
                                                     : tr("Try Again");
    button_->setText(title);
    button_->setAccessibleName(title);
    button_->setToolTip(plainToolTip(state_ == State::reading ? tr("Stop (Esc)") : QString()));
    button_->setVisible(state_ != State::ended);
}

void ReadingRow::press()
{
    switch (state_) {
    case State::reading:
        return Q_EMIT stopRequested();
    case State::stopped:
        return Q_EMIT goOnRequested();
    case State::failed:
        return Q_EMIT againRequested();
    case State::ended:
        return;
    }
}

void ReadingRow::paintEvent(QPaintEvent*)
{
    const Theme& theme = Theme::current();
    QPainter painter(this);
    painter.fillRect(rect(), theme.content);
    painter.fillRect(0, height() - 1, width(), 1, theme.separator);
}

} // namespace plovik
