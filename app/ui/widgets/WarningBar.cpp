// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/WarningBar.h"

#include "app/ui/widgets/Theme.h"

#include <QPainter>

namespace plovik {

void WarningBar::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    const Theme& theme = Theme::current();
    QPainter painter(this);
    painter.fillRect(rect(), theme.warning);
    painter.fillRect(QRect(0, height() - 1, width(), 1), theme.separator);
}

} // namespace plovik

#include "moc_WarningBar.cpp"
