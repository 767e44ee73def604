// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/ConfirmationDialog.h"

#include "app/ui/dialogs/DialogParts.h"

#include <QCheckBox>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace plovik {

ConfirmationDialog::ConfirmationDialog(const Confirmation& question, QWidget* parent) : QDialog(parent)
{
    const bool isRisky = question.risk == Confirmation::Risk::losesWork;
    dialogParts::prepare(*this, question.title);
    setAccessibleDescription(question.detail.isEmpty() ? question.message : question.message + u'\n' + question.detail);
    auto* const cancel = new QPushButton(tr("Cancel"), this);
    auto* const confirm = new QPushButton(question.actionTitle, this);
    confirm->setProperty(isRisky ? "destructive" : "primary", true);
    for (QPushButton* button : {cancel, confirm})
        button->setAutoDefault(false);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(confirm, &QPushButton::clicked, this, &QDialog::accept);

    auto* const column = dialogParts::column(*this);
    column->addWidget(dialogParts::heading(question.title, this));
    if (!question.message.isEmpty())
        column->addWidget(dialogParts::secondaryText(question.message, this));
    if (!question.detail.isEmpty()) {
        QLabel* const detail = dialogParts::text(this);
        detail->setText(question.detail);
        column->addWidget(detail);
    }
    if (!question.kind.isEmpty()) {
        settles_ = new QCheckBox(tr("Do not ask again; Undo brings it back"), this);
        column->addSpacing(4);
        column->addWidget(settles_);
    }
    if (question.option) {
        option_ = new QCheckBox(question.option->title, this);
        option_->setAccessibleName(question.option->title);
        column->addSpacing(4);
        column->addWidget(option_);
    }
    column->addSpacing(10);
    std::vector<QPushButton*> buttons{cancel};
    for (const Way& choice : question.choices) {
        auto* const button = new QPushButton(choice.title, this);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this,
                [this, result = firstChoice + static_cast<int>(buttons.size()) - 1] { done(result); });
        buttons.push_back(button);
    }
    buttons.push_back(confirm);
    for (std::size_t index = 1; index < buttons.size(); ++index)
        setTabOrder(buttons[index - 1], buttons[index]);
    column->addLayout(dialogParts::buttonRow(buttons));
    (isRisky ? cancel : confirm)->setFocus();
    dialogParts::fit(*this);
}

bool ConfirmationDialog::isSettled() const { return settles_ && settles_->isChecked(); }

bool ConfirmationDialog::isOptionTicked() const { return option_ && option_->isChecked(); }

void ConfirmationDialog::keyPressEvent(QKeyEvent* event)
{
    // Return always presses the button that shows the focus.
    auto* const button = qobject_cast<QPushButton*>(focusWidget());
    if (button && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter))
        button->click();
    else
        QDialog::keyPressEvent(event);
}

} // namespace plovik

#include "moc_ConfirmationDialog.cpp"
