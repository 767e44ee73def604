// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/CommitMessageDialog.h"

#include "app/settings/CodeFont.h"
#include "app/store/ShownText.h"
#include "app/ui/dialogs/DialogParts.h"
#include "app/ui/dialogs/NewRefSheets.h"
#include "app/ui/widgets/Theme.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QPlainTextEdit>
#include <QVBoxLayout>

namespace plovik {

namespace {

constexpr int messageRows = 12;
constexpr int messageColumns = 76;

} // namespace

CommitMessageDialog::CommitMessageDialog(RepositoryStore& store, CommitMessageSheet sheet, QWidget* parent)
    : Sheet(store, tr("Edit Message"), tr("Put into the Plan"), parent), sheet_(std::move(sheet)),
      message_(new QPlainTextEdit(this))
{
    fields().addWidget(dialogParts::secondaryText(describedCommit(store, sheet_.commit), this));
    message_->setAccessibleName(tr("Message"));
    message_->setTabChangesFocus(true);
    followFont(*message_, [] { return Theme::fixedFont(0); });
    const QFontMetrics metrics(message_->font());
    message_->setMinimumSize(metrics.averageCharWidth() * messageColumns, metrics.lineSpacing() * messageRows);
    QString text = exactText(store.rewriting().messageOf(sheet_.commit));
    while (text.endsWith(u'\n'))
        text.chop(1);
    message_->setPlainText(text);
    fields().addWidget(message_);
    connect(message_, &QPlainTextEdit::textChanged, this, &CommitMessageDialog::validate);
    message_->setFocus();
    dialogParts::fit(*this, message_->minimumWidth() + 60, 0);
    validate();
}

bool CommitMessageDialog::isComplete() const { return !message_->toPlainText().trimmed().isEmpty(); }

void CommitMessageDialog::submit() { store().rewriting().reword(sheet_.commit, message_->toPlainText()); }

} // namespace plovik

#include "moc_CommitMessageDialog.cpp"
