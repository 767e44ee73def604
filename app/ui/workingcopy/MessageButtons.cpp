// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/workingcopy/MessageButtons.h"

#include "app/settings/Settings.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/widgets/IconButton.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Spinner.h"
#include "app/ui/widgets/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>

#include <utility>

namespace plovik {

namespace {

QCoro::Task<> ignoringResult(QCoro::Task<bool> task) { co_await task; }

} // namespace

void writeCommitMessage(RepositoryStore& store) { launch(ignoringResult(store.draft().generateCommitMessage())); }

MessageButtons::MessageButtons(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), store_(store),
      write_(new IconButton(Icon::sparkles, command(CommandId::writeMessage).title(), this)),
      more_(new IconButton(Icon::next, tr("Commit Message Options"), this)), spinner_(new Spinner(this)),
      writing_(new QLabel(tr("Writing…"), this)), cancel_(new QPushButton(tr("Cancel"), this))
{
    cancel_->setAccessibleName(tr("Cancel Commit Message"));
    cancel_->setToolTip(tr("Stop writing and leave the message as it is"));
    cancel_->setProperty("compact", true);
    cancel_->setFocusPolicy(Qt::TabFocus);
    more_->setFixedWidth(18);
    arrange();
    connect(write_, &IconButton::clicked, this, &MessageButtons::write);
    connect(more_, &IconButton::clicked, this, &MessageButtons::showMenu);
    connect(cancel_, &QPushButton::clicked, this, [this] { store_.draft().cancelCommitMessage(); });
    connect(&Settings::shared(), &Settings::changed, this, [this](const QString& key) {
        if (key == QLatin1String(settings::aiEnabled.key))
            showState();
    });
    notifiers_.push_back(store.draft().generatingMessage.addNotifier([this] { showState(); }));
    notifiers_.push_back(store.snapshot().status.addNotifier([this] { showState(); }));
    showState();
}

QWidget* MessageButtons::lastInTabOrder() const { return cancel_; }

void MessageButtons::arrange()
{
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(write_);
    row->addWidget(more_);
    row->addWidget(spinner_);
    row->addSpacing(6);
    row->addWidget(writing_);
    row->addSpacing(8);
    row->addWidget(cancel_);
}

void MessageButtons::write()
{
    const bool hadFocus = write_->hasFocus();
    writeCommitMessage(store_);
    if (hadFocus && cancel_->isVisible())
        cancel_->setFocus(Qt::OtherFocusReason);
}

void MessageButtons::showMenu()
{
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const Command& writing = command(CommandId::writeMessage);
    menu->addAction(writing.title(), this, &MessageButtons::write)->setEnabled(writing.isOffered(store_));
    addCommand(*menu, store_, CommandId::showWhatIsSent);
    menu->popup(more_->mapToGlobal(QPoint(0, more_->height())));
}

void MessageButtons::showState()
{
    const bool isOffered = Settings::shared().value(settings::aiEnabled);
    const bool isWriting = store_.draft().generatingMessage.value();
    const bool hadFocus = cancel_->hasFocus();
    for (QWidget* const widget : {static_cast<QWidget*>(write_), static_cast<QWidget*>(more_)})
        widget->setVisible(isOffered && !isWriting);
    for (QWidget* const widget :
         {static_cast<QWidget*>(spinner_), static_cast<QWidget*>(writing_), static_cast<QWidget*>(cancel_)})
        widget->setVisible(isWriting);
    const bool hasStaged = store_.snapshot().status.value().stagedCount() > 0;
    write_->setEnabled(hasStaged);
    write_->setToolTip(plainToolTip(hasStaged ? tr("Write a commit message for the staged changes with AI")
                                              : tr("Stage changes to have a commit message written for them")));
    if (hadFocus && !isWriting)
        write_->setFocus(Qt::OtherFocusReason);
}

} // namespace plovik

#include "moc_MessageButtons.cpp"
