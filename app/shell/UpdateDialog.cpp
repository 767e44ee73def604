// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/shell/UpdateDialog.h"

#include "app/await/Await.h"
#include "app/ui/dialogs/DialogParts.h"
#include "app/ui/widgets/Spinner.h"

#include <QDesktopServices>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <utility>

namespace plovik {

namespace {

constexpr int leastNotesHeight = 90;

QPlainTextEdit* notesField(QWidget* parent)
{
    auto* const field = new QPlainTextEdit(parent);
    field->setReadOnly(true);
    field->setTabChangesFocus(true);
    field->setMinimumHeight(leastNotesHeight);
    field->setAccessibleName(UpdateDialog::tr("Release Notes"));
    field->document()->setDocumentMargin(8);
    return field;
}

} // namespace

UpdateDialog::UpdateDialog(UpdateSource source, QWidget* parent)
    : QDialog(parent), source_(std::move(source)), heading_(dialogParts::heading({}, this)),
      text_(dialogParts::text(this)), spinner_(new Spinner(this)), notes_(notesField(this)),
      close_(new QPushButton(this)), retry_(new QPushButton(tr("Try Again"), this)),
      open_(new QPushButton(tr("Open Release Page"), this))
{
    dialogParts::prepare(*this, tr("Check for Updates"));
    setWindowModality(Qt::NonModal); // the user can go on working while it asks
    text_->setTextInteractionFlags(Qt::TextSelectableByMouse);

    QVBoxLayout* const column = dialogParts::column(*this);
    auto* const top = new QHBoxLayout;
    top->setSpacing(8);
    top->addWidget(spinner_);
    top->addWidget(heading_, 1);
    column->addLayout(top);
    column->addWidget(text_);
    column->addWidget(notes_, 1);
    column->addSpacing(8);
    column->addLayout(dialogParts::buttonRow({close_, retry_, open_}));

    connect(close_, &QPushButton::clicked, this, &QDialog::reject);
    connect(retry_, &QPushButton::clicked, this, &UpdateDialog::ask);
    connect(open_, &QPushButton::clicked, this, [this] {
        QDesktopServices::openUrl(page_);
        accept();
    });
    ask();
}

UpdateDialog::~UpdateDialog() { stop_.request_stop(); }

void UpdateDialog::ask()
{
    page_.clear();
    notes_->clear();
    if (source_.feed.isEmpty())
        say(tr("Updates come with your system"),
            tr("This is Plovik %1. Its updates arrive with those of your system's packages.").arg(source_.running));
    else
        launch(check());
}

QCoro::Task<> UpdateDialog::check()
{
    isAsking_ = true;
    say(tr("Checking for updates…"), tr("Asking %1 for the newest version.").arg(source_.feed.host()));
    const UpdateAnswer answer = co_await checkForUpdates(source_, stop_.get_token());
    isAsking_ = false;
    if (!answer.problem.isEmpty())
        showFailure(answer.problem);
    else if (answer.newer)
        offer(*answer.newer);
    else
        say(tr("Plovik is up to date"), tr("Plovik %1 is the newest version.").arg(source_.running));
}

void UpdateDialog::offer(const Release& release)
{
    page_ = release.page;
    notes_->setPlainText(release.notes);
    say(tr("Plovik %1 is available").arg(release.name), tr("You have Plovik %1.").arg(source_.running));
}

void UpdateDialog::showFailure(const QString& sentence)
{
    say(tr("Updates could not be checked"), sentence);
    retry_->show();
    retry_->setDefault(true);
    retry_->setFocus();
}

/// Shows the two texts, and the widgets of the current state.
void UpdateDialog::say(const QString& heading, const QString& text)
{
    heading_->setText(heading);
    text_->setText(text);
    setAccessibleDescription(tr("%1. %2").arg(heading, text));
    spinner_->setVisible(isAsking_);
    notes_->setVisible(!notes_->document()->isEmpty());
    retry_->hide();
    open_->setVisible(!page_.isEmpty());
    close_->setText(isAsking_ ? tr("Cancel") : tr("Close"));
    QPushButton* const first = page_.isEmpty() ? close_ : open_;
    first->setDefault(true);
    first->setFocus();
    dialogParts::fit(*this);
}

} // namespace plovik

#include "moc_UpdateDialog.cpp"
