// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/Separator.h"

#include <QWidget>

namespace plovik {

QWidget* makeSeparator(QWidget* parent)
{
    auto* const line = new QWidget(parent);
    line->setFixedHeight(1);
    line->setAutoFillBackground(true);
    line->setBackgroundRole(QPalette::Dark);
    return line;
}

} // namespace plovik
