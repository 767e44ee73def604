// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffOptionsBar.h"

#include "app/settings/Settings.h"
#include "app/ui/diff/DiffSectionBar.h"
#include "app/ui/widgets/IconButton.h"
#include "app/ui/widgets/Theme.h"

#include <QHBoxLayout>
#include <QKeySequence>
#include <QPainter>

namespace plovik {

using namespace Qt::StringLiterals;

DiffOptionsBar::DiffOptionsBar(QWidget* parent)
    : QWidget(parent), sideBySide_(new IconButton(Icon::sideBySide, u"Side by Side"_s, this)),
      whiteSpace_(new IconButton(Icon::whiteSpace, u"Ignore White Space"_s, this)),
      wholeFile_(new IconButton(Icon::wholeFile, u"Whole File"_s, this))
{
    const QString keys = QKeySequence(QKeySequence::Find).toString(QKeySequence::NativeText);
    auto* const find = new IconButton(Icon::find, u"Find"_s, this, keys);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(6, 0, 8, 0);
    row->setSpacing(2);
    for (IconButton* const button : {sideBySide_, whiteSpace_, wholeFile_, find})
        row->addWidget(button);
    for (IconButton* const toggle : {sideBySide_, whiteSpace_, wholeFile_})
        toggle->setCheckable(true);

    connect(sideBySide_, &IconButton::toggled, this,
            [](bool isOn) { Settings::shared().set(settings::diffSideBySide, isOn); });
    connect(whiteSpace_, &IconButton::toggled, this,
            [](bool isOn) { Settings::shared().set(settings::diffIgnoresWhiteSpace, isOn); });
    connect(wholeFile_, &IconButton::toggled, this, &DiffOptionsBar::wholeFileToggled);
    connect(find, &IconButton::clicked, this, &DiffOptionsBar::findRequested);
    connect(&Settings::shared(), &Settings::changed, this, &DiffOptionsBar::follow);
    follow();
    // The line below belongs to the bar that this one stands over.
    resize(sizeHint().width(), DiffSectionBar::barHeight - 1);
}

void DiffOptionsBar::setWholeFile(bool isWhole) { wholeFile_->setChecked(isWhole); }

void DiffOptionsBar::follow()
{
    sideBySide_->setChecked(Settings::shared().value(settings::diffSideBySide));
    whiteSpace_->setChecked(Settings::shared().value(settings::diffIgnoresWhiteSpace));
}

void DiffOptionsBar::paintEvent(QPaintEvent*) { QPainter(this).fillRect(rect(), Theme::current().content); }

} // namespace plovik
