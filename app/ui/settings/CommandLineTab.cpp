// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/settings/CommandLineTab.h"

#include "app/ui/settings/SettingsForm.h"

#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

#include <utility>

namespace plovik {

namespace {

QString buttonTitle(CommandLineState::Offer offer)
{
    switch (offer) {
    case CommandLineState::Offer::install:
        return CommandLineTab::tr("Install");
    case CommandLineState::Offer::update:
        return CommandLineTab::tr("Update Link");
    case CommandLineState::Offer::reveal:
        return CommandLineTab::tr("Show in File Browser");
    case CommandLineState::Offer::nothing:
        break;
    }
    return {};
}

} // namespace

CommandLineTab::CommandLineTab(CommandLineCommands commands, QWidget* parent)
    : QWidget(parent), commands_(std::move(commands)), statement_(new QLabel(this)), path_(new QLineEdit(this)),
      button_(new QPushButton(this)), problem_(problemLabel(tr("Command Line Problem"), this))
{
    statement_->setAccessibleName(tr("Command Line Tool"));
    path_->setAccessibleName(tr("Command Line Tool Path"));
    // A path cannot be wrapped; in a field the user can scroll to the rest of a long one.
    path_->setReadOnly(true);
    path_->setFrame(false);
    QPalette bare = path_->palette();
    bare.setColor(QPalette::Base, Qt::transparent);
    path_->setPalette(bare);
    statement_->setTextFormat(Qt::PlainText);
    statement_->setWordWrap(true);
    QFont emphasised = font();
    emphasised.setWeight(QFont::DemiBold);
    statement_->setFont(emphasised);
    connect(button_, &QPushButton::clicked, this, &CommandLineTab::act);

    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(40, 28, 40, 28);
    column->setSpacing(6);
    column->addWidget(statement_);
    column->addWidget(path_);
    column->addSpacing(6);
    column->addWidget(button_, 0, Qt::AlignLeft);
    column->addWidget(problem_);
    column->addSpacing(6);
    column->addWidget(noteLabel(tr("Run “plovik” inside a repository to open it in Plovik."), this));
    column->addStretch(1);
}

void CommandLineTab::showEvent(QShowEvent* event)
{
    if (!isInstalling_)
        tellProblem(*problem_, QString());
    reload();
    QWidget::showEvent(event);
}

void CommandLineTab::reload()
{
    state_ = commands_.state ? commands_.state()
                             : CommandLineState{tr("Only an installed Plovik contains the command line tool."), {}, {}};
    statement_->setText(state_.statement);
    const std::string& path = state_.path.native();
    path_->setText(QString::fromUtf8(path.data(), static_cast<qsizetype>(path.size())));
    path_->setCursorPosition(0);
    path_->setVisible(!path.empty());
    button_->setText(buttonTitle(state_.offer));
    button_->setAccessibleName(button_->text());
    button_->setVisible(state_.offer != CommandLineState::Offer::nothing);
    button_->setEnabled(!isInstalling_);
}

void CommandLineTab::act()
{
    tellProblem(*problem_, QString());
    const QPointer<CommandLineTab> self(this);
    if (state_.offer == CommandLineState::Offer::reveal) {
        commands_.reveal(state_.path, [self](const QString& problem) {
            if (self)
                tellProblem(*self->problem_, problem);
        });
        return;
    }
    isInstalling_ = true;
    button_->setEnabled(false);
    commands_.install([self](const QString& problem) {
        if (!self)
            return;
        self->isInstalling_ = false;
        self->reload();
        tellProblem(*self->problem_, problem);
    });
}

} // namespace plovik

#include "moc_CommandLineTab.cpp"
