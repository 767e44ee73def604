// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/HashField.h"

#include "app/ui/widgets/Theme.h"

#include <QAbstractButton>
#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QTimer>

#include <chrono>

namespace plovik {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::milliseconds copiedShown{1500};
constexpr int buttonSize = 20;

/// Two sheets, one over the other.
class CopyButton : public QAbstractButton {
public:
    explicit CopyButton(QWidget* parent) : QAbstractButton(parent)
    {
        setToolTip(u"Copy Hash"_s);
        setAccessibleName(u"Copy Hash"_s);
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
            painter.setPen(hasFocus() ? QPen(theme.accent) : QPen(Qt::NoPen));
            painter.setBrush(isDown() ? theme.controlPressed : theme.controlHover);
            painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
        }
        painter.setPen(QPen(theme.secondaryText, 1.2));
        painter.setBrush(Qt::NoBrush);
        painter.drawPolyline(QPolygonF({{5.5, 12.5}, {5.5, 5.5}, {11.5, 5.5}}));
        painter.drawRoundedRect(QRectF(8, 8, 7, 7.5), 1.2, 1.2);
    }
};

} // namespace

HashField::HashField(QWidget* parent)
    : QWidget(parent), text_(new QLineEdit(this)), button_(new CopyButton(this)),
      copied_(new QLabel(u"Copied"_s, this)), fading_(new QTimer(this))
{
    text_->setAccessibleName(u"Commit Hash"_s);
    text_->setReadOnly(true);
    text_->setFrame(false);
    text_->setTextMargins(-2, 0, -2, 0);
    text_->setFocusPolicy(Qt::ClickFocus);
    text_->setContextMenuPolicy(Qt::NoContextMenu);
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
    applyTheme();
}

void HashField::setHash(const QString& hash)
{
    if (hash == text_->text())
        return;
    text_->setText(hash);
    text_->setCursorPosition(0);
    copied_->hide();
}

void HashField::copy()
{
    QGuiApplication::clipboard()->setText(text_->text());
    copied_->show();
    fading_->start();
}

void HashField::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        applyTheme();
}

void HashField::applyTheme()
{
    const Theme& theme = Theme::current();
    QPalette colours = text_->palette();
    colours.setColor(QPalette::Base, theme.content);
    colours.setColor(QPalette::Text, theme.secondaryText);
    text_->setPalette(colours);
    text_->setFont(Theme::fixedFont(-0.75));
    QPalette quiet;
    for (const auto role : {QPalette::WindowText, QPalette::Text})
        quiet.setColor(role, theme.secondaryText);
    copied_->setPalette(quiet);
    copied_->setFont(Theme::font(-1.5));
}

} // namespace plovik
