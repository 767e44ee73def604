// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffSectionBar.h"

#include "app/ui/diff/DiffMetrics.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QEvent>
#include <QPainter>
#include <QPushButton>

#include <array>

namespace plovik {

namespace {

using Verb = DiffAction::Verb;

/// From the left to the right.
constexpr std::array<Verb, 3> verbs{Verb::stage, Verb::unstage, Verb::discard};
constexpr int gap = 6;

} // namespace

QPushButton* makeDiffButton(QWidget* parent)
{
    auto* button = new QPushButton(parent);
    button->setProperty("compact", true);
    button->setFont(Theme::font(-1));
    button->setFocusPolicy(Qt::TabFocus);
    button->setCursor(Qt::ArrowCursor);
    button->hide();
    return button;
}

DiffSectionBar::DiffSectionBar(QWidget* parent) : QWidget(parent)
{
    setCursor(Qt::ArrowCursor);
    setFixedHeight(barHeight);
}

void DiffSectionBar::setText(const QString& title, const QString& detail)
{
    title_ = title;
    detail_ = detail;
    update();
}

QPushButton* DiffSectionBar::button(Verb verb)
{
    QPushButton*& button = buttons_[verb];
    if (!button) {
        button = makeDiffButton(this);
        connect(button, &QPushButton::clicked, this, [this, verb] { Q_EMIT triggered(verb, part_); });
    }
    return button;
}

void DiffSectionBar::setOffer(const DiffContent& content, const Offer& offer)
{
    part_ = offer.part;
    for (const Verb verb : verbs) {
        // All of a diff is discarded in the list of files, where it is plain what goes.
        const bool isOffered =
            offer.count > 0 && content.allows(verb) && !(verb == Verb::discard && part_ == DiffAction::Part::all);
        if (!isOffered) {
            if (const auto known = buttons_.find(verb); known != buttons_.end())
                known->second->hide();
            continue;
        }
        QPushButton* const each = button(verb);
        each->setText(actionTitle(verb, part_, offer.count));
        each->setAccessibleName(actionName(verb, part_));
        each->setEnabled(offer.refusal.isEmpty());
        each->setToolTip(offer.refusal);
        each->setProperty("primary", part_ == DiffAction::Part::lines && verb != Verb::discard);
        each->show();
    }
    placeButtons();
}

void DiffSectionBar::setFollows(bool follows)
{
    follows_ = follows;
    update();
}

void DiffSectionBar::setReserve(int width)
{
    reserve_ = width;
    placeButtons();
}

void DiffSectionBar::placeButtons()
{
    int right = width() - DiffMetrics::margin - reserve_;
    for (auto verb = verbs.rbegin(); verb != verbs.rend(); ++verb) {
        const auto known = buttons_.find(*verb);
        if (known == buttons_.end() || known->second->isHidden())
            continue;
        const QSize size = known->second->sizeHint();
        known->second->setGeometry(right - size.width(), (height() - size.height()) / 2, size.width(), size.height());
        right -= size.width() + gap;
    }
    buttonsLeft_ = right;
    update();
}

void DiffSectionBar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const Theme& theme = Theme::current();
    painter.fillRect(rect(), theme.content);
    painter.fillRect(0, height() - 1, width(), 1, theme.separator);
    if (follows_)
        painter.fillRect(0, 0, width(), 1, theme.separator);
    const QFont strong = Theme::font(0, QFont::DemiBold);
    QRect area = rect();
    area.setLeft(DiffMetrics::margin);
    area.setRight(buttonsLeft_ - gap);
    paintText(painter, area, title_, strong, theme.text, Qt::AlignLeft, Qt::ElideMiddle);
    area.setLeft(area.left() + textWidth(title_, strong) + 10);
    paintText(painter, area, detail_, Theme::font(), theme.secondaryText, Qt::AlignLeft, Qt::ElideMiddle);
}

void DiffSectionBar::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    placeButtons();
}

void DiffSectionBar::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() != QEvent::ApplicationFontChange)
        return;
    for (const auto& [verb, button] : buttons_)
        button->setFont(Theme::font(-1));
    placeButtons();
}

} // namespace plovik
