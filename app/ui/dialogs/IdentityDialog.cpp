// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/IdentityDialog.h"

#include "app/store/ShownText.h"

#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

namespace plovik {

IdentityDialog::IdentityDialog(RepositoryStore& store, const IdentitySheet& asked, QWidget* parent)
    : Sheet(store, tr("Who Makes the Commits?"), asked.then ? tr("Continue") : tr("Commit"), parent), then_(asked.then),
      name_(new QLineEdit(exactText(asked.known.name), this)),
      email_(new QLineEdit(exactText(asked.known.email), this)),
      everywhere_(new QRadioButton(tr("In all of my repositories"), this))
{
    name_->setAccessibleName(tr("Name"));
    name_->setPlaceholderText(tr("Name"));
    email_->setAccessibleName(tr("E-Mail"));
    email_->setPlaceholderText(tr("E-mail"));
    auto* const here = new QRadioButton(tr("In this repository"), this);
    for (QRadioButton* const place : {here, everywhere_})
        place->setAccessibleName(place->text());
    here->setChecked(true);
    for (QLineEdit* const field : {name_, email_}) {
        fields().addWidget(field);
        connect(field, &QLineEdit::textChanged, this, &IdentityDialog::validate);
    }
    fields().addWidget(here);
    fields().addWidget(everywhere_);
    (name_->text().isEmpty() ? name_ : email_)->setFocus();
    validate();
}

QString IdentityDialog::problem() const
{
    for (const QLineEdit* const field : {name_, email_}) {
        if (field->text().contains(u'<') || field->text().contains(u'>'))
            return tr("Git leaves “<” and “>” out.");
    }
    return {};
}

QString IdentityDialog::note() const { return tr("Every commit carries a name and an address. Git knows none yet."); }

bool IdentityDialog::isComplete() const
{
    return !name_->text().trimmed().isEmpty() && !email_->text().trimmed().isEmpty();
}

void IdentityDialog::submit()
{
    const gitkit::Identity identity{name_->text().trimmed().toStdString(), email_->text().trimmed().toStdString()};
    const auto place = everywhere_->isChecked() ? gitkit::IdentityPlace::everywhere : gitkit::IdentityPlace::repository;
    if (then_)
        (*then_)(identity, place);
    else
        store().draft().commitAs(identity, place);
}

} // namespace plovik

#include "moc_IdentityDialog.cpp"
