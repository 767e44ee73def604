// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/Sheet.h"

#include "app/ui/dialogs/DialogParts.h"
#include "app/ui/widgets/RowPainting.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace plovik {

Sheet::Sheet(RepositoryStore& store, const QString& title, const QString& confirmTitle, QWidget* parent)
    : QDialog(parent), store_(store), heading_(dialogParts::heading(title, this)), fields_(new QVBoxLayout),
      sentence_(dialogParts::text(this)), confirm_(new QPushButton(confirmTitle, this))
{
    dialogParts::prepare(*this, title);
    auto* const cancel = new QPushButton(tr("Cancel"), this);
    cancel->setAutoDefault(false);
    confirm_->setDefault(true);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(confirm_, &QPushButton::clicked, this, &QDialog::accept);
    // The sentence keeps its line while it is empty, so that nothing moves.
    sentence_->setMinimumHeight(sentence_->fontMetrics().height());
    QSizePolicy policy = sentence_->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    sentence_->setSizePolicy(policy);
    sentence_->hide();
    fields_->setSpacing(8);

    auto* const column = dialogParts::column(*this);
    column->addWidget(heading_);
    column->addSpacing(4);
    column->addLayout(fields_);
    column->addWidget(sentence_);
    column->addSpacing(4);
    column->addLayout(dialogParts::buttonRow({cancel, confirm_}));

    const auto validates = [this] { validate(); };
    notifiers_.push_back(store.changes().running.addNotifier(validates));
    notifiers_.push_back(store.snapshot().status.addNotifier(validates));
    notifiers_.push_back(store.snapshot().branches.addNotifier(validates));
    notifiers_.push_back(store.snapshot().tags.addNotifier(validates));
}

void Sheet::validate()
{
    const QString wrong = problem();
    const QString said = wrong.isEmpty() ? note() : wrong;
    sentence_->setForegroundRole(wrong.isEmpty() ? QPalette::PlaceholderText : QPalette::BrightText);
    if (said != sentence_->text()) {
        sentence_->setText(said);
        sentence_->setVisible(!said.isEmpty());
        dialogParts::fit(*this);
    }
    const std::optional<Verb> begun = verb();
    confirm_->setEnabled(wrong.isEmpty() && isComplete() && (!begun || store_.changes().offers(*begun)));
    confirm_->setToolTip(plainToolTip(begun ? store_.changes().whyNot(*begun) : QString()));
}

void Sheet::confirm() { confirm_->click(); }

} // namespace plovik

#include "moc_Sheet.cpp"
