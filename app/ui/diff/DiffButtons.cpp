// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffButtons.h"

#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QEvent>
#include <QPainter>
#include <QPushButton>
#include <QStyleOptionButton>

#include <algorithm>
#include <ranges>

namespace plovik {

namespace {

using ActionVerb = DiffAction::Verb;
using Part = DiffAction::Part;

constexpr int buttonGap = 6;
/// Names of branches may be of any length. In pixels.
constexpr int longestTitle = 220;

} // namespace

DiffButtons::DiffButtons(QWidget& widget) : widget_(widget) {}

QPushButton* DiffButtons::button(ActionVerb verb)
{
    QPushButton*& button = buttons_[verb];
    if (button)
        return button;
    button = new QPushButton(&widget_);
    button->setProperty("compact", true);
    button->setFont(Theme::font(-1));
    button->setFocusPolicy(Qt::TabFocus);
    button->setCursor(Qt::ArrowCursor);
    button->hide();
    button->installEventFilter(this);
    connect(button, &QPushButton::clicked, this, [this, verb] { Q_EMIT triggered(verb, parts_[verb]); });
    return button;
}

void DiffButtons::show(const std::vector<DiffOffer>& offers)
{
    for (const auto& [verb, each] : buttons_) {
        if (std::ranges::find(offers, verb, &DiffOffer::verb) == offers.end())
            each->hide();
    }
    const QFontMetrics fontMetrics(Theme::font(-1));
    for (const DiffOffer& offer : offers) {
        QPushButton* const each = button(offer.verb);
        parts_[offer.verb] = offer.part;
        each->setText(plainMenuText(fontMetrics.elidedText(offer.title, Qt::ElideMiddle, longestTitle)));
        if (offer.name != each->accessibleName())
            each->setAccessibleName(offer.name);
        each->setEnabled(offer.refusal.isEmpty());
        each->setToolTip(plainToolTip(!offer.refusal.isEmpty() || !sideOf(offer.verb) ? offer.refusal : offer.title));
        each->setProperty("primary", offer.part == Part::lines && offer.verb != ActionVerb::discard &&
                                         offer.verb != ActionVerb::toSecond);
        each->show();
    }
}

int DiffButtons::place(const QRect& area)
{
    int right = area.right() + 1;
    for (QPushButton* const each : buttons_ | std::views::values | std::views::reverse) {
        if (each->isHidden())
            continue;
        const QSize size = each->sizeHint();
        each->setGeometry(right - size.width(), area.top() + (area.height() - size.height()) / 2, size.width(),
                          size.height());
        right -= size.width() + buttonGap;
    }
    return right;
}

int DiffButtons::width() const
{
    int width = 0;
    for (const QPushButton* const each : buttons_ | std::views::values)
        width += each->isHidden() ? 0 : each->sizeHint().width() + buttonGap;
    return width;
}

void DiffButtons::paint(QPainter& painter, int shift) const
{
    for (const QPushButton* const each : buttons_ | std::views::values) {
        if (each->isHidden())
            continue;
        QStyleOptionButton option;
        option.initFrom(each);
        option.state &= ~(QStyle::State_HasFocus | QStyle::State_MouseOver);
        option.state |= QStyle::State_Raised;
        option.rect = each->geometry().translated(0, shift);
        option.text = each->text();
        painter.setFont(each->font());
        widget_.style()->drawControl(QStyle::CE_PushButton, &option, &painter, each);
    }
}

void DiffButtons::applyFont()
{
    for (QPushButton* const each : buttons_ | std::views::values)
        each->setFont(Theme::font(-1));
}

bool DiffButtons::haveFocus() const
{
    return std::ranges::any_of(buttons_ | std::views::values, &QPushButton::hasFocus);
}

bool DiffButtons::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FocusIn)
        Q_EMIT focused();
    return QObject::eventFilter(watched, event);
}

} // namespace plovik

#include "moc_DiffButtons.cpp"
