// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/shell/UpdateDialog.h"

#include "app/ui/dialogs/DialogParts.h"
#include "app/ui/widgets/Spinner.h"

#include <QDesktopServices>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

constexpr int leastNotesHeight = 90;

QPlainTextEdit* notesField(QWidget* parent)
{
    auto* const field = new QPlainTextEdit(parent);
    field->setReadOnly(true);
    field->setTabChangesFocus(true);
    field->setMinimumHeight(leastNotesHeight);
    field->setAccessibleName(u"Release Notes"_s);
    field->document()->setDocumentMargin(8);
    return field;
}

} // namespace

UpdateDialog::UpdateDialog(UpdateSource source, QWidget* parent)
    : QDialog(parent), source_(std::move(source)), heading_(dialogParts::heading({}, this)),
      text_(dialogParts::text(this)), spinner_(new Spinner(this)), notes_(notesField(this)),
      close_(new QPushButton(this)), retry_(new QPushButton(u"Try Again"_s, this)),
      open_(new QPushButton(u"Open Release Page"_s, this))
{
    dialogParts::prepare(*this, u"Check for Updates"_s);
    setWindowModality(Qt::NonModal); // work goes on while it asks
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
    connect(retry_, &QPushButton::clicked, this, &UpdateDialog::check);
    connect(open_, &QPushButton::clicked, this, [this] {
        QDesktopServices::openUrl(page_);
        accept();
    });
    check();
}

void UpdateDialog::check()
{
    page_.clear();
    notes_->clear();
    if (source_.feed.isEmpty()) {
        say(u"Updates come with your system"_s,
            u"This is Plovik %1. Its updates arrive with those of your system's packages."_s.arg(source_.running));
        return;
    }
    fetch_ = new FeedFetch(source_.feed, source_.limits, this);
    connect(fetch_, &FeedFetch::fetched, this, &UpdateDialog::read);
    connect(fetch_, &FeedFetch::failed, this, &UpdateDialog::showFailure);
    say(u"Checking for updates…"_s, u"Asking %1 for the newest version."_s.arg(source_.feed.host()));
    fetch_->start();
}

void UpdateDialog::read(const QByteArray& feed)
{
    const std::vector<Release> releases = parseReleaseFeed(feed);
    const std::optional<SemanticVersion> running = SemanticVersion::parse(source_.running);
    if (releases.empty() || !running) {
        showFailure(u"What %1 sent is no list of releases."_s.arg(source_.feed.host()));
        return;
    }
    fetch_->deleteLater();
    fetch_.clear();
    if (const Release* const newer = newerRelease(releases, *running))
        offer(*newer);
    else
        say(u"Plovik is up to date"_s, u"Plovik %1 is the newest version."_s.arg(source_.running));
}

void UpdateDialog::offer(const Release& release)
{
    page_ = release.page;
    notes_->setPlainText(release.notes);
    say(u"Plovik %1 is available"_s.arg(release.name), u"You have Plovik %1."_s.arg(source_.running));
}

void UpdateDialog::showFailure(const QString& sentence)
{
    fetch_->deleteLater();
    fetch_.clear();
    say(u"Updates could not be checked"_s, sentence);
    retry_->show();
    retry_->setDefault(true);
    retry_->setFocus();
}

/// Shows what there is now, and the widgets that belong to it.
void UpdateDialog::say(const QString& heading, const QString& text)
{
    heading_->setText(heading);
    text_->setText(text);
    setAccessibleDescription(heading + u". "_s + text);
    spinner_->setVisible(fetch_);
    notes_->setVisible(!notes_->document()->isEmpty());
    retry_->hide();
    open_->setVisible(!page_.isEmpty());
    close_->setText(fetch_ ? u"Cancel"_s : u"Close"_s);
    QPushButton* const first = page_.isEmpty() ? close_ : open_;
    first->setDefault(true);
    first->setFocus();
    dialogParts::fit(*this);
}

} // namespace plovik
