// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/HashField.h"

#include "app/ui/widgets/FocusRing.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QAbstractButton>
#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QTimer>

#include <chrono>
#include <utility>

namespace plovik {

namespace {

constexpr std::chrono::milliseconds copiedShown{1500};
constexpr int buttonSize = 20;
constexpr int briefDigits = 10;

/// A button that shows two sheets of paper, one over the other.
class CopyButton : public QAbstractButton {
public:
    explicit CopyButton(QWidget* parent) : QAbstractButton(parent)
    {
        setToolTip(HashField::tr("Copy Hash"));
        setAccessibleName(HashField::tr("Copy Hash"));
        setFixedSize(buttonSize, buttonSize);
        setFocusPolicy(Qt::TabFocus);
        setAttribute(Qt::WA_Hover);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        const Theme& theme = Theme::current();
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        if (underMouse() || hasFocus()) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(isDown() ? theme.controlPressed : theme.controlHover);
            painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
        }
        if (hasFocus())
            paintFocusRing(painter, rect(), 4);
        painter.setPen(QPen(theme.secondaryText, 1.2));
        painter.setBrush(Qt::NoBrush);
        painter.drawPolyline(QPolygonF({{5.5, 12.5}, {5.5, 5.5}, {11.5, 5.5}}));
        painter.drawRoundedRect(QRectF(8, 8, 7, 7.5), 1.2, 1.2);
    }
};

} // namespace

HashField::HashField(QWidget* parent)
    : QWidget(parent), text_(new QLineEdit(this)), button_(new CopyButton(this)),
      copied_(new QLabel(tr("Copied"), this)), fading_(new QTimer(this))
{
    text_->setAccessibleName(tr("Commit Hash"));
    text_->setReadOnly(true);
    followColor(*text_, QPalette::Text, &Theme::secondaryText);
    followFont(*text_, [] { return Theme::fixedFont(-0.75); });
    text_->setFrame(false);
    text_->setTextMargins(-2, 0, -2, 0);
    text_->setFocusPolicy(Qt::ClickFocus);
    text_->setContextMenuPolicy(Qt::NoContextMenu);
    copied_->setTextFormat(Qt::PlainText);
    copied_->setForegroundRole(QPalette::PlaceholderText);
    followFont(*copied_, -1.5);
    copied_->hide();
    fading_->setSingleShot(true);
    fading_->setInterval(copiedShown);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    row->addWidget(text_, 1);
    row->addWidget(copied_);
    row->addWidget(button_);
    connect(button_, &QAbstractButton::clicked, this, &HashField::copy);
    connect(fading_, &QTimer::timeout, copied_, &QWidget::hide);
}

void HashField::setHash(const QString& hash)
{
    if (hash == hash_)
        return;
    hash_ = hash;
    show();
    copied_->hide();
}

void HashField::setBrief(bool brief)
{
    if (std::exchange(isBrief_, brief) != brief)
        show();
}

void HashField::show()
{
    text_->setText(isBrief_ ? hash_.left(briefDigits) : hash_);
    text_->setToolTip(plainToolTip(isBrief_ ? hash_ : QString()));
    text_->setAccessibleDescription(isBrief_ ? hash_ : QString());
    text_->setCursorPosition(0);
    text_->setMinimumWidth(isBrief_ ? briefTextWidth() : 0);
    text_->setMaximumWidth(isBrief_ ? briefTextWidth() : QWIDGETSIZE_MAX);
    setSizePolicy(isBrief_ ? QSizePolicy::Fixed : QSizePolicy::Preferred, QSizePolicy::Preferred);
}

int HashField::briefTextWidth() const
{
    constexpr int aroundText = 4;
    return text_->fontMetrics().horizontalAdvance(QString(briefDigits, u'0')) + aroundText;
}

int HashField::briefWidth() const { return briefTextWidth() + layout()->spacing() + buttonSize; }

void HashField::copy()
{
    QGuiApplication::clipboard()->setText(hash_);
    copied_->show();
    fading_->start();
}

} // namespace plovik

#include "moc_HashField.cpp"
