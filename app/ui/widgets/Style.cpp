// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/Style.h"

#include "app/ui/widgets/FocusRing.h"
#include "app/ui/widgets/Mnemonics.h"
#include "app/ui/widgets/Theme.h"

#include <QAbstractScrollArea>
#include <QCheckBox>
#include <QMenu>
#include <QPainter>
#include <QPainterPath>
#include <QRadioButton>
#include <QStyleFactory>
#include <QStyleOption>
#include <QWidget>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

constexpr int controlHeight = 28;
constexpr int compactHeight = 22;
constexpr double controlRadius = 6;
constexpr int textPadding = 10;
constexpr int scrollBarThickness = 10;
constexpr double ordinaryBox = 15;
constexpr int tipRadius = 6;
constexpr int tipSideMargin = 2; ///< besides the margin that a tip has at all sides

bool has(const QWidget* widget, const char* property) { return widget && widget->property(property).toBool(); }

bool isPrimary(const QStyleOption* option, const QWidget* widget)
{
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
    return has(widget, "primary") || (button && (button->features & QStyleOptionButton::DefaultButton));
}

bool isFilled(const QStyleOption* option, const QWidget* widget)
{
    return isPrimary(option, widget) || has(widget, "destructive");
}

/// Returns the rectangle whose border of one pixel lies exactly on pixels.
QRectF insideBorder(const QRect& rect) { return QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5); }

void paintPanel(QPainter& painter, const QRect& rect, double radius, const QColor& fill, const QColor& border)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(border);
    painter.setBrush(fill);
    painter.drawRoundedRect(insideBorder(rect), radius, radius);
    painter.restore();
}

/// Returns what a window with rounded corners covers, where no compositor could make its corners transparent.
QRegion roundedRegion(const QRect& rect, int radius)
{
    QPainterPath outline;
    outline.addRoundedRect(rect, radius, radius);
    return {outline.toFillPolygon().toPolygon()};
}

QColor pressed(const QColor& accent, const QStyleOption* option)
{
    if (option->state & QStyle::State_Sunken)
        return accent.darker(115);
    return option->state & QStyle::State_MouseOver ? accent.darker(106) : accent;
}

void paintButton(QPainter& painter, const QStyleOption* option, const QWidget* widget)
{
    const Theme& theme = Theme::current();
    const bool isEnabled = option->state & QStyle::State_Enabled;
    const bool hasFocus = (option->state & QStyle::State_HasFocus) && isEnabled;
    const double radius = has(widget, "compact") ? controlRadius - 1 : controlRadius;
    if (isFilled(option, widget) && isEnabled) {
        const QColor fill = pressed(has(widget, "destructive") ? theme.destructive : theme.accent, option);
        paintPanel(painter, option->rect, radius, fill, fill);
        if (hasFocus)
            paintPanel(painter, option->rect.adjusted(2, 2, -2, -2), radius - 2, fill, theme.onAccent);
        return;
    }
    QColor fill = theme.control;
    if (isEnabled && (option->state & (QStyle::State_Sunken | QStyle::State_On)))
        fill = theme.controlPressed;
    else if (isEnabled && (option->state & QStyle::State_MouseOver))
        fill = theme.controlHover;
    paintPanel(painter, option->rect, radius, fill, theme.controlBorder);
    if (hasFocus)
        paintFocusRing(painter, option->rect, radius);
}

void paintLineEdit(QPainter& painter, const QStyleOption* option)
{
    const Theme& theme = Theme::current();
    const bool hasFocus = option->state & QStyle::State_HasFocus;
    paintPanel(painter, option->rect, controlRadius, theme.field, theme.controlBorder);
    if (hasFocus)
        paintFocusRing(painter, option->rect, controlRadius);
}

void paintChevron(QPainter& painter, const QRect& area, const QColor& color)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const QPointF middle = QRectF(area).center();
    painter.drawPolyline(QPolygonF{middle + QPointF(-3.5, -1.5), middle + QPointF(0, 2), middle + QPointF(3.5, -1.5)});
    painter.restore();
}

void paintComboBox(QPainter& painter, const QStyleOptionComboBox& option, const QRect& arrow, const QWidget* widget)
{
    if (option.editable)
        paintLineEdit(painter, &option);
    else
        paintButton(painter, &option, widget);
    const Theme& theme = Theme::current();
    paintChevron(painter, arrow, option.state & QStyle::State_Enabled ? theme.secondaryText : theme.disabledText);
}

void paintScrollBar(QPainter& painter, const QStyleOptionSlider& option, const QRect& slider)
{
    const Theme& theme = Theme::current();
    painter.fillRect(option.rect, option.palette.color(QPalette::Base));
    if (option.maximum <= option.minimum)
        return;
    const bool isActive =
        (option.state & QStyle::State_Sunken) && option.activeSubControls == QStyle::SC_ScrollBarSlider;
    const bool isHovered = option.state & QStyle::State_MouseOver;
    QColor handle = theme.secondaryText;
    handle.setAlphaF(isActive ? 0.75F : isHovered ? 0.55F : 0.35F);
    const QRectF thin = QRectF(slider).adjusted(2, 2, -2, -2);
    const double radius = std::min(thin.width(), thin.height()) / 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(handle);
    painter.drawRoundedRect(thin, radius, radius);
    painter.restore();
}

/// Returns a part of a scroll bar. Thin bars have no arrow buttons, so the groove is the whole bar.
QRect scrollBarPart(const QStyleOptionSlider& option, QStyle::SubControl part)
{
    constexpr int shortestHandle = 28;
    const bool isHorizontal = option.orientation == Qt::Horizontal;
    const int length = isHorizontal ? option.rect.width() : option.rect.height();
    const int thickness = isHorizontal ? option.rect.height() : option.rect.width();
    const int range = option.maximum - option.minimum;
    int handle = length;
    if (range > 0) {
        const double part_ = static_cast<double>(option.pageStep) / (static_cast<double>(range) + option.pageStep);
        handle = std::clamp(static_cast<int>(part_ * length), std::min(shortestHandle, length), length);
    }
    const int start = QStyle::sliderPositionFromValue(option.minimum, option.maximum, option.sliderPosition,
                                                      length - handle, option.upsideDown);
    QRect rect;
    switch (part) {
    case QStyle::SC_ScrollBarSlider:
        rect = QRect(start, 0, handle, thickness);
        break;
    case QStyle::SC_ScrollBarSubPage:
        rect = QRect(0, 0, start, thickness);
        break;
    case QStyle::SC_ScrollBarAddPage:
        rect = QRect(start + handle, 0, length - start - handle, thickness);
        break;
    case QStyle::SC_ScrollBarGroove:
        rect = QRect(0, 0, length, thickness);
        break;
    default:
        return {};
    }
    if (!isHorizontal)
        rect = QRect(rect.y(), rect.x(), rect.height(), rect.width());
    return QStyle::visualRect(option.direction, option.rect, rect.translated(option.rect.topLeft()));
}

void paintRadioButton(QPainter& painter, const QStyleOption* option)
{
    const Theme& theme = Theme::current();
    const bool isEnabled = option->state & QStyle::State_Enabled;
    const bool isOn = option->state & QStyle::State_On;
    const QColor dot = isEnabled ? theme.accent : theme.disabledText;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(isOn || (option->state & QStyle::State_HasFocus) ? dot : theme.indicatorBorder);
    painter.setBrush(isOn ? dot : theme.control);
    painter.drawEllipse(insideBorder(option->rect));
    if (isOn) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme.onAccent);
        painter.drawEllipse(QRectF(option->rect).center(), 2.5, 2.5);
    }
    painter.restore();
}

void paintMenuBarItem(QPainter& painter, const QStyleOptionMenuItem& option)
{
    const Theme& theme = Theme::current();
    painter.fillRect(option.rect, theme.bars);
    const bool isOpen = option.state & QStyle::State_Sunken;
    const bool isSelected = option.state & QStyle::State_Selected;
    if (isOpen || isSelected) {
        const QColor fill = isOpen ? theme.controlPressed : theme.controlHover;
        paintPanel(painter, option.rect.adjusted(1, 2, -1, -2), controlRadius - 1, fill, fill);
    }
    painter.setPen(option.state & QStyle::State_Enabled ? theme.text : theme.disabledText);
    painter.drawText(option.rect, Qt::AlignCenter | Qt::TextShowMnemonic | Qt::TextSingleLine, option.text);
}

} // namespace

int checkBoxSize() { return Theme::scaled(static_cast<int>(ordinaryBox)); }

void paintCheckBox(QPainter& painter, const QRect& box, Qt::CheckState state, bool isEnabled, bool hasFocus)
{
    const Theme& theme = Theme::current();
    const QColor mark = isEnabled ? theme.accent : theme.disabledText;
    const bool isEmpty = state == Qt::Unchecked;
    paintPanel(painter, box, 4, isEmpty ? theme.control : mark,
               hasFocus  ? theme.accent
               : isEmpty ? theme.indicatorBorder
                         : mark);
    if (isEmpty)
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(theme.onAccent, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.translate(QRectF(box).center());
    painter.scale(box.width() / ordinaryBox, box.height() / ordinaryBox);
    if (state == Qt::Checked)
        painter.drawPolyline(QPolygonF{QPointF(-3.2, 0.2), QPointF(-1, 2.5), QPointF(3.4, -2.4)});
    else
        painter.drawLine(QPointF(-3, 0), QPointF(3, 0));
    painter.restore();
}

Style::Style() : QProxyStyle(QStyleFactory::create(u"Fusion"_s)) {}

void Style::polish(QWidget* widget)
{
    QProxyStyle::polish(widget);
    if (widget->inherits("QTipLabel"))
        widget->setContentsMargins(tipSideMargin, 0, tipSideMargin, 0);
    else if (auto* const menu = qobject_cast<QMenu*>(widget))
        connect(menu, &QMenu::aboutToShow, menu, [menu] { assignMnemonics(menu->actions()); });
}

void Style::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                          const QWidget* widget) const
{
    switch (element) {
    case PE_PanelButtonCommand:
        paintButton(*painter, option, widget);
        return;
    case PE_PanelLineEdit:
        // A line edit inside a spin box or a combo box has no frame of its own.
        if (const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option); frame && frame->lineWidth > 0) {
            paintLineEdit(*painter, option);
            return;
        }
        break;
    case PE_IndicatorCheckBox: {
        const Qt::CheckState state = option->state & State_NoChange ? Qt::PartiallyChecked
                                     : option->state & State_On     ? Qt::Checked
                                                                    : Qt::Unchecked;
        paintCheckBox(*painter, option->rect, state, option->state & State_Enabled, option->state & State_HasFocus);
        return;
    }
    case PE_IndicatorRadioButton:
        paintRadioButton(*painter, option);
        return;
    case PE_Frame: {
        if (const auto* area = qobject_cast<const QAbstractScrollArea*>(widget); area && hasFocusRing(area)) {
            paintFocusFrame(*painter, *area);
            return;
        }
        const Theme& theme = Theme::current();
        const bool hasFocus = option->state & State_HasFocus;
        paintPanel(*painter, option->rect, 3, Qt::transparent, theme.controlBorder);
        if (hasFocus)
            paintFocusRing(*painter, option->rect, 3);
        return;
    }
    case PE_PanelTipLabel:
        paintPanel(*painter, option->rect, tipRadius, option->palette.color(QPalette::ToolTipBase),
                   Theme::current().controlBorder);
        return;
    case PE_FrameFocusRect:
        // Other controls show the focus on their border, and rows draw it themselves.
        if (qobject_cast<const QCheckBox*>(widget) || qobject_cast<const QRadioButton*>(widget))
            paintFocusRing(*painter, QRectF(widget->rect()), 4);
        return;
    default:
        break;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void Style::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                        const QWidget* widget) const
{
    if (element == CE_PushButtonLabel && isFilled(option, widget) && (option->state & State_Enabled)) {
        if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option)) {
            QStyleOptionButton filled = *button;
            filled.palette.setColor(QPalette::ButtonText, Theme::current().onAccent);
            QProxyStyle::drawControl(element, &filled, painter, widget);
            return;
        }
    }
    if (element == CE_MenuBarItem) {
        if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option)) {
            paintMenuBarItem(*painter, *item);
            return;
        }
    }
    if (element == CE_MenuItem) {
        const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        if (item && item->menuItemType == QStyleOptionMenuItem::Separator && item->text.isEmpty()) {
            const QRect& row = option->rect;
            painter->fillRect(QRect(row.left() + 8, row.center().y(), row.width() - 16, 1), Theme::current().separator);
            return;
        }
    }
    if (element == CE_MenuBarEmptyArea) {
        painter->fillRect(option->rect, Theme::current().bars);
        return;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void Style::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                               const QWidget* widget) const
{
    if (control == CC_ComboBox) {
        if (const auto* box = qstyleoption_cast<const QStyleOptionComboBox*>(option)) {
            paintComboBox(*painter, *box, subControlRect(control, option, SC_ComboBoxArrow, widget), widget);
            return;
        }
    }
    if (control == CC_ScrollBar) {
        if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option)) {
            paintScrollBar(*painter, *bar, scrollBarPart(*bar, SC_ScrollBarSlider));
            return;
        }
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

QRect Style::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                            const QWidget* widget) const
{
    if (control == CC_ScrollBar) {
        if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option))
            return scrollBarPart(*bar, part);
    }
    if (control == CC_ComboBox && part == SC_ComboBoxEditField)
        return QProxyStyle::subControlRect(control, option, part, widget).adjusted(textPadding - 3, 0, 0, 0);
    return QProxyStyle::subControlRect(control, option, part, widget);
}

QRect Style::subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const
{
    const QRect rect = QProxyStyle::subElementRect(element, option, widget);
    if (element == SE_LineEditContents) {
        if (const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option); frame && frame->lineWidth > 0)
            return rect.adjusted(textPadding - 3, 0, 3 - textPadding, 0);
    }
    return rect;
}

QSize Style::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                              const QWidget* widget) const
{
    QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    switch (type) {
    case CT_PushButton: {
        // A large desktop font makes a control taller, so that it is not clipped.
        const bool isCompact = has(widget, "compact");
        const int height = std::max(isCompact ? compactHeight : controlHeight, contents.height() + 4);
        return {contents.width() + (isCompact ? 18 : 24), height};
    }
    case CT_LineEdit:
    case CT_ComboBox:
        size.rwidth() += textPadding;
        size.setHeight(std::max(controlHeight, contents.height() + 4));
        return size;
    case CT_MenuBarItem:
        return {size.width() + 2, std::max(size.height(), 26)};
    case CT_MenuItem:
        if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
            item && item->menuItemType != QStyleOptionMenuItem::Separator)
            size.setHeight(std::max(size.height(), 26));
        return size;
    default:
        return size;
    }
}

int Style::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const
{
    switch (metric) {
    case PM_ScrollBarExtent:
        return scrollBarThickness;
    case PM_DefaultFrameWidth:
        return hasFocusRing(widget) ? focusRingWidth : QProxyStyle::pixelMetric(metric, option, widget);
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
        return checkBoxSize();
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
    case PM_ScrollView_ScrollBarSpacing:
        return 0;
    case PM_SplitterWidth:
        return 1;
    case PM_MenuVMargin:
        return 4;
    case PM_ToolTipLabelFrameWidth:
        return 5; // a tip adds one pixel
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int Style::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget, QStyleHintReturn* answer) const
{
    switch (hint) {
    case SH_Widget_Animate:
    case SH_Widget_Animation_Duration:
    case SH_DialogButtonBox_ButtonsHaveIcons:
    case SH_EtchDisabledText:
        return 0;
    case SH_MenuBar_AltKeyNavigation:
        return 1;
    case SH_ToolTip_Mask:
        if (auto* const mask = qstyleoption_cast<QStyleHintReturnMask*>(answer))
            mask->region = roundedRegion(option->rect, tipRadius);
        return 1;
    default:
        return QProxyStyle::styleHint(hint, option, widget, answer);
    }
}

} // namespace plovik

#include "moc_Style.cpp"
