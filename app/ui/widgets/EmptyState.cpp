// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/EmptyState.h"

#include "app/ui/widgets/ThemeFollowing.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace plovik {

EmptyState::EmptyState(QWidget* parent) : QWidget(parent), title_(new QLabel(this)), description_(new QLabel(this))
{
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(24, 24, 24, 24);
    column->setSpacing(6);
    column->addStretch(2);
    for (QLabel* label : {title_, description_}) {
        label->setAlignment(Qt::AlignHCenter);
        label->setWordWrap(true);
        label->setTextFormat(Qt::PlainText);
        column->addWidget(label);
    }
    column->addStretch(3);
    followFont(*title_, 3, QFont::DemiBold);
    description_->setForegroundRole(QPalette::PlaceholderText);
}

void EmptyState::setText(const QString& title, const QString& description)
{
    title_->setText(title);
    description_->setText(description);
    description_->setVisible(!description.isEmpty());
}

void EmptyState::setSign(QWidget* sign)
{
    static_cast<QVBoxLayout*>(layout())->insertWidget(1, sign, 0, Qt::AlignHCenter);
}

QPushButton* EmptyState::action(const QString& title)
{
    if (!action_) {
        action_ = new QPushButton(this);
        auto* column = static_cast<QVBoxLayout*>(layout());
        column->insertSpacing(column->count() - 1, 8);
        column->insertWidget(column->count() - 1, action_, 0, Qt::AlignHCenter);
    }
    action_->setText(title);
    return action_;
}

} // namespace plovik

#include "moc_EmptyState.cpp"
