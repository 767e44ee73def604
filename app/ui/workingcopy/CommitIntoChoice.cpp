// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/workingcopy/CommitIntoChoice.h"

#include "app/store/ShownText.h"
#include "app/ui/commands/PalettePopup.h"
#include "app/ui/widgets/IconButton.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <utility>

namespace plovik {

using namespace Qt::StringLiterals;

namespace {

constexpr int intoButtonWidth = 18;

QLabel* makeIntoLine(QWidget* parent, const QString& name)
{
    auto* const label = new QLabel(parent);
    label->setAccessibleName(name);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    followFont(*label, -0.75);
    return label;
}

} // namespace

CommitIntoButton::CommitIntoButton(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), store_(store), button_(new IconButton(Icon::next, tr("Commit into an Older Commit…"), this))
{
    button_->setFixedWidth(intoButtonWidth);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(button_);
    setFocusProxy(button_);
    connect(button_, &IconButton::clicked, this, &CommitIntoButton::choose);
    notifiers_.push_back(store.rewriting().movable.addNotifier([this] {
        if (isWanted_ && store_.rewriting().isKnown())
            open();
    }));
    notifiers_.push_back(store.snapshot().status.addNotifier([this] { showState(); }));
    showState();
}

void CommitIntoButton::showState() { button_->setEnabled(store_.snapshot().status.value().hasCommits()); }

void CommitIntoButton::choose()
{
    store_.rewriting().watch();
    isWanted_ = true;
    if (store_.rewriting().isKnown())
        open();
}

void CommitIntoButton::open()
{
    isWanted_ = false;
    PaletteRequest request{.scope = PaletteRequest::Scope::none};
    const auto& commits = store_.rewriting().movable.value().commits;
    for (auto commit = commits.rbegin(); commit != commits.rend(); ++commit) {
        request.first.push_back({.kind = PaletteEntry::Kind::commit,
                                 .name = commit->hash,
                                 .title = shownText(subjectOf(*commit)),
                                 .detail = shownText(gitkit::shortHash(commit->hash))});
    }
    const PalettePopup::Actions actions{
        .row =
            [this](const PaletteEntry& entry) {
                return PaletteRow{.title = entry.title,
                                  .detail = entry.detail,
                                  .isCurrent = entry.name == store_.into().target.value()};
            },
        .choose = [this](const PaletteEntry& entry) { store_.into().choose(entry.name); }};
    const PalettePopup::Names names{tr("Commits"), tr("Filter Commits"), tr("Commit into which commit?")};
    (new PalettePopup(store_.git(), names, request, actions, this))->openBelow(*button_, commits.size());
}

CommitIntoNote::CommitIntoNote(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), store_(store), words_(makeIntoLine(this, tr("Commit That Is Written Into"))),
      published_(makeIntoLine(this, tr("That Commit Is Published"))), cancel_(new QPushButton(tr("Cancel"), this))
{
    followColor(*published_, QPalette::WindowText, &Theme::warningText);
    cancel_->setAccessibleName(tr("Cancel Committing into an Older Commit"));
    cancel_->setToolTip(tr("Go back to the message of the next commit"));
    cancel_->setProperty("compact", true);
    cancel_->setFocusPolicy(Qt::TabFocus);
    auto* const row = new QHBoxLayout;
    row->addWidget(words_, 1);
    row->addWidget(cancel_, 0, Qt::AlignTop);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(4);
    column->addLayout(row);
    column->addWidget(published_);
    connect(cancel_, &QPushButton::clicked, this, [this] { store_.into().leave(); });
    const auto shows = [this] { showState(); };
    notifiers_.push_back(store.into().target.addNotifier(shows));
    notifiers_.push_back(store.rewriting().movable.addNotifier(shows));
    notifiers_.push_back(store.changes().running.addNotifier(shows));
    showState();
}

void CommitIntoNote::showState()
{
    setVisible(store_.into().isChosen());
    if (!store_.into().isChosen())
        return;
    words_->setText(tr("Commit into %1").arg(inQuotes(store_.into().subject())));
    cancel_->setEnabled(!store_.changes().isRunning({Verb::rewrite}));
    const gitkit::MovableCommit* const commit = store_.rewriting().find(store_.into().target.value());
    published_->setVisible(commit && commit->isPublished);
    published_->setText(tr("It is on %1: others may have it, and an ordinary push will be refused.")
                            .arg(shownText(store_.rewriting().movable.value().publishedOn)));
}

} // namespace plovik

#include "moc_CommitIntoChoice.cpp"
