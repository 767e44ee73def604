// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/Style.h"

#include "app/ui/widgets/ControlPainting.h"
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
constexpr int textPadding = 10;
constexpr int scrollBarThickness = 10;
constexpr int tipRadius = 6;
constexpr int tipSideMargin = 2; ///< besides the margin that a tip has at all sides

/// Returns what a window with rounded corners covers, where no compositor could make its corners transparent.
QRegion roundedRegion(const QRect& rect, int radius)
{
    QPainterPath outline;
    outline.addRoundedRect(rect, radius, radius);
    return {outline.toFillPolygon().toPolygon()};
}

} // namespace

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
        const bool isCompact = hasProperty(widget, "compact");
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
