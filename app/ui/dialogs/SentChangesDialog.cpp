// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/SentChangesDialog.h"

#include "app/settings/CodeFont.h"
#include "app/ui/dialogs/DialogParts.h"
#include "app/ui/widgets/Theme.h"
#include "app/ui/workingcopy/MessageButtons.h"

#include <QFontMetrics>
#include <QLabel>
#include <QPlainTextEdit>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

constexpr int shownColumns = 84;
constexpr int shownRows = 22;

} // namespace

SentChangesDialog::SentChangesDialog(RepositoryStore& store, QWidget* parent)
    : Sheet(store, tr("What Is Sent"), tr("Write Commit Message"), parent), receiver_(dialogParts::text(this)),
      text_(new QPlainTextEdit(this)), note_(tr("Reading the staged changes…"))
{
    receiver_->setAccessibleName(tr("Receiver"));
    receiver_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    receiver_->hide();
    text_->setAccessibleName(tr("Sent Text"));
    text_->setReadOnly(true);
    text_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    text_->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    text_->document()->setDocumentMargin(8);
    text_->setFont(CodeFont::current());
    const QFontMetrics metrics(text_->font());
    text_->setMinimumSize(metrics.horizontalAdvance(u'0') * shownColumns, metrics.lineSpacing() * shownRows);
    fields().addWidget(receiver_);
    fields().addWidget(text_, 1);
    text_->setFocus();
    validate();
    launch(reading(this));
}

bool SentChangesDialog::isComplete() const
{
    return !text_->document()->isEmpty() && !store().draft().generatingMessage.value() &&
           store().snapshot().status.value().stagedCount() > 0;
}

QCoro::Task<> SentChangesDialog::reading(QPointer<SentChangesDialog> dialog)
{
    MessageRequest request;
    QString problem;
    try {
        request = co_await dialog->store().draft().commitMessageRequest();
    } catch (const std::exception& failure) {
        problem = QString::fromUtf8(failure.what());
    }
    if (!dialog)
        co_return;
    dialog->problem_ = problem;
    if (problem.isEmpty())
        dialog->show(request);
    dialog->validate();
}

void SentChangesDialog::show(const MessageRequest& request)
{
    receiver_->setText(tr("To %1, model %2\n%3").arg(request.service, request.model, request.address));
    receiver_->show();
    text_->setPlainText(request.prompt + u"\n\n"_s + request.changes);
    note_ = tr("Besides your API key, this is all that is sent: first the prompt from the settings, then the staged "
               "changes.");
    dialogParts::fit(*this);
}

void SentChangesDialog::submit() { writeCommitMessage(store()); }

} // namespace plovik

#include "moc_SentChangesDialog.cpp"
