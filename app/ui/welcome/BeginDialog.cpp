// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/welcome/BeginDialog.h"

#include "app/ui/dialogs/DialogParts.h"
#include "app/ui/dialogs/ErrorAlert.h"
#include "app/ui/dialogs/PromptDialog.h"
#include "app/ui/widgets/Spinner.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <utility>

namespace plovik {

BeginDialog::BeginDialog(const QString& title, const QString& confirmTitle, OpenSignIn signIn, QWidget* parent)
    : QDialog(parent), maker_(Worker::pool(), std::move(signIn)), form_(new QWidget(this)),
      fields_(new QVBoxLayout(form_)), sentence_(dialogParts::text(this)), spinner_(new Spinner(this)),
      cancel_(new QPushButton(tr("Cancel"), this)), confirm_(new QPushButton(confirmTitle, this))
{
    dialogParts::prepare(*this, title);
    setWindowModality(Qt::NonModal); // a clone takes minutes, and other windows have nothing to do with it
    cancel_->setAutoDefault(false);
    confirm_->setDefault(true);
    connect(cancel_, &QPushButton::clicked, this, &QDialog::reject);
    connect(confirm_, &QPushButton::clicked, this, &BeginDialog::begin);
    fields_->setContentsMargins(0, 0, 0, 0);
    fields_->setSpacing(8);
    sentence_->setAccessibleName(tr("Progress"));
    sentence_->setMinimumHeight(2 * sentence_->fontMetrics().lineSpacing());
    sentence_->setAlignment(Qt::AlignTop | Qt::AlignLeading);
    auto* const told = new QHBoxLayout;
    told->setSpacing(8);
    told->addWidget(spinner_, 0, Qt::AlignTop);
    told->addWidget(sentence_, 1);
    auto* const column = dialogParts::column(*this);
    column->addWidget(dialogParts::heading(title, this));
    column->addSpacing(4);
    column->addWidget(form_);
    column->addLayout(told);
    column->addSpacing(4);
    column->addLayout(dialogParts::buttonRow({cancel_, confirm_}));
    spinner_->hide();

    const auto shows = [this] { showRun(); };
    notifiers_.push_back(maker_.isRunning.addNotifier(shows));
    notifiers_.push_back(maker_.isCancelling.addNotifier(shows));
    notifiers_.push_back(maker_.progress.addNotifier(shows));
    notifiers_.push_back(maker_.failure.addNotifier([this] { showFailure(); }));
    notifiers_.push_back(maker_.prompt().addNotifier([this] { showPrompt(); }));
}

BeginDialog::~BeginDialog() { notifiers_.clear(); }

void BeginDialog::begin()
{
    validate();
    if (!confirm_->isEnabled() || isRunning())
        return;
    start(maker_, [this](const std::filesystem::path& folder, const QString& problem) {
        Q_EMIT made(folder, problem);
        accept();
    });
}

void BeginDialog::reject()
{
    if (isRunning())
        maker_.cancel();
    else
        QDialog::reject();
}

void BeginDialog::closeEvent(QCloseEvent* /*event*/) { done(QDialog::Rejected); }

void BeginDialog::done(int result)
{
    maker_.cancel();
    QDialog::done(result);
}

void BeginDialog::validate()
{
    if (isRunning())
        return;
    const QString wrong = problem();
    sentence_->setForegroundRole(wrong.isEmpty() ? QPalette::PlaceholderText : QPalette::BrightText);
    say(wrong.isEmpty() ? note() : wrong);
    confirm_->setEnabled(wrong.isEmpty() && isComplete());
    dialogParts::fit(*this, width());
}

/// The name says what the sentence is about, so its words are the description.
void BeginDialog::say(const QString& sentence)
{
    sentence_->setText(sentence);
    sentence_->setAccessibleDescription(sentence);
}

void BeginDialog::showRun()
{
    const bool runs = isRunning();
    form_->setEnabled(!runs);
    confirm_->setEnabled(!runs);
    spinner_->setVisible(runs);
    cancel_->setEnabled(!maker_.isCancelling.value());
    if (!runs) {
        validate();
        return;
    }
    sentence_->setForegroundRole(QPalette::WindowText);
    const QString line = maker_.progress.value();
    if (maker_.isCancelling.value())
        say(tr("Cancelling…"));
    else
        say(line.isEmpty() ? tr("Connecting…") : line);
}

void BeginDialog::showFailure()
{
    if (const std::optional<Failure> failure = maker_.failure.value())
        (new ErrorAlert(*failure, {}, this))->open();
}

void BeginDialog::showPrompt()
{
    // Closing it here is no answer.
    if (PromptDialog* const old = std::exchange(prompt_, nullptr))
        old->reject();
    const std::optional<SignInPrompt> asked = maker_.prompt().value();
    if (!asked)
        return;
    prompt_ = new PromptDialog(*asked, this);
    connect(prompt_, &QDialog::finished, this,
            [this, dialog = prompt_.data(), id = asked->id](int answer) { promptClosed(dialog, id, answer); });
    prompt_->open();
    QApplication::alert(prompt_);
}

void BeginDialog::promptClosed(PromptDialog* dialog, quint64 id, int answer)
{
    if (dialog != prompt_)
        return;
    prompt_ = nullptr;
    if (answer == QDialog::Accepted)
        maker_.answerPrompt(id, dialog->answer());
    else
        maker_.cancelPrompt(id);
}

} // namespace plovik

#include "moc_BeginDialog.cpp"
