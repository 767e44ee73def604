// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/CommitHeader.h"

#include "app/store/ShownText.h"
#include "app/ui/commit/CommitFacts.h"
#include "app/ui/commit/CommitRefs.h"
#include "app/ui/commit/HashField.h"
#include "app/ui/commit/MessageText.h"

#include <QEvent>
#include <QLabel>
#include <QPointer>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace plovik {

namespace {

QLabel* makeLabel(Qt::TextFormat format, Qt::TextInteractionFlags interaction = Qt::NoTextInteraction)
{
    auto* const label = new QLabel;
    label->setTextFormat(format);
    label->setTextInteractionFlags(interaction);
    label->setWordWrap(true);
    label->setForegroundRole(QPalette::PlaceholderText);
    label->hide();
    return label;
}

void fill(QLabel* label, const QString& text)
{
    label->setText(text);
    label->setVisible(!text.isEmpty());
}

} // namespace

CommitHeader::CommitHeader(RepositoryStore& store, CommitKind kind, QWidget* parent)
    : QWidget(parent), store_(store), names_(store.git(), &readCommitHash, [this] { nameRead(); }), kind_(kind),
      area_(new QScrollArea), message_(new MessageText), refs_(new CommitRefs),
      people_(makeLabel(Qt::RichText, Qt::TextSelectableByMouse)), hash_(new HashField),
      parents_(makeLabel(Qt::RichText, Qt::TextBrowserInteraction)), notice_(makeLabel(Qt::PlainText))
{
    people_->setAccessibleName(tr("Commit Author"));
    parents_->setAccessibleName(tr("Commit Parents"));
    hash_->setVisible(kind == CommitKind::ordinary);
    auto* const text = new QWidget;
    auto* const column = new QVBoxLayout(text);
    column->setContentsMargins(14, kind == CommitKind::ordinary ? 14 : 10, 14, 8);
    column->setSpacing(0);
    const auto add = [column](QWidget* widget, int above) {
        widget->setContentsMargins(0, above, 0, 0);
        column->addWidget(widget);
    };
    add(message_, 0);
    column->addSpacing(kind == CommitKind::ordinary ? 10 : 4);
    add(refs_, 0);
    add(people_, 2);
    add(hash_, 0);
    add(parents_, 2);
    add(notice_, 8);
    column->addStretch(1);
    text->setBackgroundRole(QPalette::Base);
    text->setAutoFillBackground(true);
    area_->setWidget(text);
    area_->setWidgetResizable(true);
    area_->setFrameShape(QFrame::NoFrame);
    area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area_->setFocusPolicy(Qt::NoFocus);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(area_);

    connect(parents_, &QLabel::linkActivated, this, [this](const QString& link) { goTo(link.toStdString()); });
    connect(message_, &MessageText::commitRequested, this, [this](const QString& name) {
        clickedIn_ = shown_.hash;
        names_.askAgain(name.toStdString());
    });
    if (kind == CommitKind::ordinary) {
        const auto refsChanged = [this] { showRefs(); };
        notifiers_.push_back(store_.history().history.addNotifier(refsChanged));
        notifiers_.push_back(store_.snapshot().branches.addNotifier(refsChanged));
        notifiers_.push_back(store_.snapshot().remoteBranches.addNotifier(refsChanged));
        notifiers_.push_back(store_.snapshot().tags.addNotifier(refsChanged));
    }
}

std::optional<gitkit::Commit> CommitHeader::commitOnPage(const std::string& hash) const
{
    return store_.history().history.value().commit(hash);
}

void CommitHeader::expect(const std::string& hash)
{
    if (kind_ == CommitKind::stash) {
        const auto& stashes = store_.snapshot().stashes.value();
        const auto found = std::ranges::find(stashes, hash, &gitkit::Stash::hash);
        take(found == stashes.end() ? commitFacts::ofUnknown(hash) : commitFacts::of(*found));
    } else {
        const std::optional<gitkit::Commit> commit = commitOnPage(hash);
        take(commit ? commitFacts::of(*commit) : commitFacts::ofUnknown(hash));
    }
}

void CommitHeader::showDetail(const gitkit::CommitDetail& detail) { take(detail); }

void CommitHeader::take(const gitkit::CommitDetail& detail)
{
    if (detail.hash != shown_.hash) {
        area_->verticalScrollBar()->setValue(0);
        notice_->hide();
    }
    shown_ = commitFacts::withoutFiles(detail);
    message_->setMessage(MessageParts::of(shown_.message));
    showFacts();
    showRefs();
    updateGeometry();
}

void CommitHeader::showFacts()
{
    if (shown_.hash.empty())
        return;
    fill(people_, kind_ == CommitKind::stash ? commitFacts::dateLine(shown_) : commitFacts::people(shown_));
    fill(parents_, kind_ == CommitKind::stash ? commitFacts::stashBase(shown_) : commitFacts::parents(shown_));
    hash_->setHash(shownText(shown_.hash));
}

void CommitHeader::showRefs()
{
    if (kind_ == CommitKind::stash || shown_.hash.empty())
        return;
    const std::optional<gitkit::Commit> commit = commitOnPage(shown_.hash);
    refs_->setLabels(commit ? commit->refs
                            : commitFacts::labelsOf(shown_.hash, {store_.snapshot().branches.value(),
                                                                  store_.snapshot().remoteBranches.value(),
                                                                  store_.snapshot().tags.value()}));
}

void CommitHeader::say(const QString& sentence)
{
    fill(notice_, sentence);
    updateGeometry();
}

void CommitHeader::goTo(const std::string& hash)
{
    if (kind_ == CommitKind::ordinary && commitOnPage(hash))
        store_.window().selectCommit(hash);
    else
        store_.history().showCommit(hash);
}

void CommitHeader::nameRead()
{
    // The user has selected another commit in the meantime and stays there.
    if (shown_.hash != clickedIn_)
        return;
    if (names_.failure())
        say(tr("There is no commit %1 in this repository.").arg(shownText(*names_.asked())));
    else
        goTo(*names_.result());
}

QSize CommitHeader::sizeHint() const
{
    const QWidget* const text = area_->widget();
    const int width = std::max(area_->viewport()->width(), text->minimumSizeHint().width());
    const int height =
        text->layout()->hasHeightForWidth() ? text->layout()->totalHeightForWidth(width) : text->sizeHint().height();
    return {320, height};
}

void CommitHeader::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    // The text of the facts contains the name of the fixed font.
    if (event->type() == QEvent::FontChange)
        showFacts();
}

} // namespace plovik

#include "moc_CommitHeader.cpp"
