// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/RequestDialog.h"

#include "app/store/ShownText.h"
#include "app/store/actions/Remotes.h"
#include "app/ui/dialogs/RefNameRules.h"

#include <QComboBox>
#include <QLineEdit>
#include <QRegularExpression>
#include <QVBoxLayout>

namespace plovik {

using namespace Qt::StringLiterals;

int requestNumber(const QString& text)
{
    static const QRegularExpression plain(u"^\\s*[#!]?(\\d+)\\s*$"_s);
    static const QRegularExpression address(u"/(?:pull|pulls|merge_requests|pull-requests)/(\\d+)(?:[/?#].*)?\\s*$"_s);
    for (const QRegularExpression* const pattern : {&plain, &address}) {
        if (const QRegularExpressionMatch match = pattern->match(text); match.hasMatch())
            return match.captured(1).toInt(); // 0 where it is too large for any
    }
    return 0;
}

RequestDialog::RequestDialog(RepositoryStore& store, QWidget* parent)
    : Sheet(store, tr("Check Out a Pull or Merge Request"), tr("Check Out"), parent), number_(new QLineEdit(this)),
      remote_(new QComboBox(this)), name_(new QLineEdit(this))
{
    number_->setAccessibleName(tr("Request Number"));
    number_->setPlaceholderText(tr("Number or address of the request"));
    remote_->setAccessibleName(tr("Remote"));
    name_->setAccessibleName(tr("New Branch Name"));
    name_->setPlaceholderText(tr("Name of the branch"));
    for (const std::string& remote : store.snapshot().remotes.value())
        remote_->addItem(shownText(remote), QByteArray::fromStdString(remote));
    // Requests are made to the repository that others are made from.
    for (const QString& usual : {u"origin"_s, u"upstream"_s}) {
        if (const int place = remote_->findText(usual); place >= 0)
            remote_->setCurrentIndex(place);
    }
    remote_->setVisible(remote_->count() > 1);
    for (QWidget* const field :
         {static_cast<QWidget*>(number_), static_cast<QWidget*>(remote_), static_cast<QWidget*>(name_)})
        fields().addWidget(field);
    connect(number_, &QLineEdit::textChanged, this, [this] {
        suggestName();
        validate();
    });
    connect(name_, &QLineEdit::textChanged, this, &RequestDialog::validate);
    number_->setFocus();
    validate();
}

/// Names the branch after the request, unless the user has named it.
void RequestDialog::suggestName()
{
    if (name_->text() != suggested_)
        return;
    const int number = requestNumber(number_->text());
    suggested_ = number > 0 ? u"request-%1"_s.arg(number) : QString();
    name_->setText(suggested_);
}

QString RequestDialog::problem() const
{
    if (!number_->text().isEmpty() && requestNumber(number_->text()) == 0)
        return tr("Enter a number, as 12, #12 or !12, or the address of the request.");
    return name_->text().isEmpty()
               ? QString()
               : refNames::branchProblem(name_->text().toStdString(), store().snapshot().branches.value());
}

QString RequestDialog::note() const
{
    return tr("It is fetched from %1, and checked out as a branch of its own.").arg(remote_->currentText());
}

bool RequestDialog::isComplete() const { return requestNumber(number_->text()) > 0 && !name_->text().isEmpty(); }

void RequestDialog::submit()
{
    actions::checkOutRequest(store().actors(), {.remote = remote_->currentData().toByteArray().toStdString(),
                                                .number = requestNumber(number_->text()),
                                                .branch = name_->text().toStdString()});
}

} // namespace plovik

#include "moc_RequestDialog.cpp"
