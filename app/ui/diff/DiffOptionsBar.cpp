// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffOptionsBar.h"

#include "app/settings/Settings.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/diff/DiffSectionBar.h"
#include "app/ui/widgets/IconButton.h"
#include "app/ui/widgets/Theme.h"

#include <QHBoxLayout>
#include <QKeySequence>
#include <QPainter>

namespace plovik {

namespace {

QString keysOf(CommandId id) { return command(id).shortcut().toString(QKeySequence::NativeText); }

} // namespace

DiffOptionsBar::DiffOptionsBar(QWidget* parent)
    : QWidget(parent),
      sideBySide_(new IconButton(Icon::sideBySide, tr("Side by Side"), this, keysOf(CommandId::sideBySide))),
      whiteSpace_(
          new IconButton(Icon::whiteSpace, tr("Ignore White Space"), this, keysOf(CommandId::ignoreWhiteSpace))),
      wholeFile_(new IconButton(Icon::wholeFile, tr("Whole File"), this, keysOf(CommandId::wholeFile))),
      wrap_(new IconButton(Icon::wrap, tr("Wrap Lines"), this, keysOf(CommandId::wrapLines))),
      find_(new IconButton(Icon::find, tr("Find"), this,
                           QKeySequence(QKeySequence::Find).toString(QKeySequence::NativeText)))
{
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(6, 0, 8, 0);
    row->setSpacing(2);
    for (IconButton* const button : {sideBySide_, whiteSpace_, wholeFile_, wrap_, find_})
        row->addWidget(button);
    for (IconButton* const toggle : {sideBySide_, whiteSpace_, wholeFile_, wrap_})
        toggle->setCheckable(true);

    connect(sideBySide_, &IconButton::toggled, this,
            [](bool isOn) { Settings::shared().set(settings::diffSideBySide, isOn); });
    connect(whiteSpace_, &IconButton::toggled, this,
            [](bool isOn) { Settings::shared().set(settings::diffIgnoresWhiteSpace, isOn); });
    connect(wrap_, &IconButton::toggled, this, [](bool isOn) { Settings::shared().set(settings::diffWraps, isOn); });
    connect(wholeFile_, &IconButton::toggled, this, &DiffOptionsBar::wholeFileToggled);
    connect(find_, &IconButton::clicked, this, &DiffOptionsBar::findRequested);
    connect(&Settings::shared(), &Settings::changed, this, &DiffOptionsBar::follow);
    follow();
    // One pixel less leaves the line below the section's bar, which this one covers, in sight.
    resize(sizeHint().width(), DiffSectionBar::barHeight() - 1);
}

void DiffOptionsBar::addOption(QAbstractButton* button)
{
    static_cast<QHBoxLayout*>(layout())->insertWidget(0, button);
    added_ = button;
    resize(sizeHint().width(), height());
}

void DiffOptionsBar::setWholeFile(bool isWhole) { wholeFile_->setChecked(isWhole); }

bool DiffOptionsBar::setHasText(bool hasText)
{
    if (hasText != find_->isHidden())
        return false;
    for (IconButton* const button : {sideBySide_, whiteSpace_, wholeFile_, wrap_, find_})
        button->setVisible(hasText);
    layout()->activate();
    resize(hasText || added_ ? sizeHint().width() : 0, height());
    return true;
}

void DiffOptionsBar::orderTabs(QWidget* before)
{
    for (QAbstractButton* const button :
         std::initializer_list<QAbstractButton*>{added_, sideBySide_, whiteSpace_, wholeFile_, wrap_, find_})
    {
        if (!button)
            continue;
        if (before->nextInFocusChain() != button)
            setTabOrder(before, button);
        before = button;
    }
}

void DiffOptionsBar::follow()
{
    sideBySide_->setChecked(Settings::shared().value(settings::diffSideBySide));
    wrap_->setChecked(Settings::shared().value(settings::diffWraps));
    whiteSpace_->setChecked(Settings::shared().value(settings::diffIgnoresWhiteSpace));
}

void DiffOptionsBar::paintEvent(QPaintEvent*) { QPainter(this).fillRect(rect(), Theme::current().content); }

} // namespace plovik

#include "moc_DiffOptionsBar.cpp"
