// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/window/Toolbar.h"

#include "app/store/ShownText.h"
#include "app/ui/commands/Foretelling.h"
#include "app/ui/commands/MainMenu.h"
#include "app/ui/commands/RepositoryChoices.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/ThemeFollowing.h"
#include "app/ui/window/ActivityView.h"
#include "app/ui/window/BranchChoice.h"
#include "app/ui/window/RepositoryChoice.h"
#include "app/ui/window/ToolButton.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QMenu>
#include <QPainter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

constexpr int toolbarHeight = 46;
constexpr int groupGap = 16;
constexpr int toolGap = 6;
constexpr int toolbarMargin = 8;

ToolIcon iconOf(CommandId id)
{
    switch (id) {
    case CommandId::fetch:
        return ToolIcon::fetch;
    case CommandId::pull:
        return ToolIcon::pull;
    case CommandId::push:
        return ToolIcon::push;
    case CommandId::newBranch:
        return ToolIcon::branch;
    default:
        return ToolIcon::stash;
    }
}

QString keysOf(CommandId id) { return command(id).shortcut().toString(QKeySequence::NativeText); }

QString countsText(const gitkit::Divergence& counts)
{
    QStringList parts;
    if (counts.ahead > 0)
        parts += u"↑%L1"_s.arg(counts.ahead);
    if (counts.behind > 0)
        parts += u"↓%L1"_s.arg(counts.behind);
    return parts.join(u' ');
}

} // namespace

Toolbar::Toolbar(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), store_(store),
      project_(new ToolButton(ToolIcon::repository, tr("Repositories"), ToolButton::Kind::list, this)),
      branch_(new ToolButton(ToolIcon::branch, tr("Switch Branch"), ToolButton::Kind::list, this)),
      activity_(new ActivityView(store, this)), foretelling_(new Foretelling(
                                                    store, {.act = ForetoldQuestion::Act::pull},
                                                    [this](const QString& words) {
                                                        pullWords_ = words;
                                                        updateButtons();
                                                    },
                                                    this))
{
    setMinimumHeight(toolbarHeight);
    project_->setShownTitle(shownText(store.root().filename().native()));
    project_->setToolTip(plainToolTip(tr("%1\nSwitch to another repository (%2)", "folder, keys")
                                          .arg(shownText(store.root().native()), keysOf(CommandId::switchRepository))));
    followFont(*project_, 0, QFont::Bold);
    connect(project_, &ToolButton::clicked, this, &Toolbar::switchRepository);
    connect(branch_, &ToolButton::clicked, this, &Toolbar::switchBranch);

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(toolbarMargin, 0, toolbarMargin + 4, 1);
    row->setSpacing(toolGap);
    row->addWidget(project_);
    row->addWidget(branch_);
    row->addSpacing(groupGap - toolGap);
    makeButtons(*row);
    row->addWidget(activity_, 1);

    notifiers_ = followOffers(store, [this] { updateButtons(); });
    notifiers_.push_back(store.snapshot().status.addNotifier([this] { statusChanged(); }));
    notifiers_.push_back(store.counts().changes.addNotifier([this] { statusChanged(); }));
    updateButtons();
    statusChanged();
}

void Toolbar::makeButtons(QHBoxLayout& row)
{
    using enum CommandId;
    for (const CommandId id : {fetch, pull, push, newBranch, stashChanges}) {
        const Command& shown = command(id);
        auto* const button = new ToolButton(iconOf(id), shown.buttonTitle(), ToolButton::Kind::command, this);
        connect(button, &ToolButton::clicked, this, [this, &shown] { shown.run(store_); });
        if (id == newBranch)
            row.addSpacing(groupGap - toolGap);
        row.addWidget(button);
        buttons_[id] = button;
    }
    buttons_[pull]->installEventFilter(this);
}

/// Tells what a pull would do while the pointer or the focus is on its button.
bool Toolbar::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Enter || event->type() == QEvent::FocusIn) {
        foretelling_->begin();
    } else if (event->type() == QEvent::Leave || event->type() == QEvent::FocusOut) {
        foretelling_->end();
        pullWords_.clear();
    }
    return QWidget::eventFilter(watched, event);
}

void Toolbar::updateButtons()
{
    for (const auto& [id, button] : buttons_) {
        const Command& shown = command(id);
        button->setEnabled(shown.isOffered(store_));
        const QString name = tr("%1 (%2)", "command, keys").arg(shown.title(), keysOf(id));
        QString more = shown.whyNot(store_);
        if (more.isEmpty() && id == CommandId::push) // what cannot be undone says so before
            more = tr("Others may fetch this within seconds.");
        if (more.isEmpty() && id == CommandId::pull)
            more = pullWords_;
        button->setToolTip(plainToolTip(more.isEmpty() ? name : name + u'\n' + more));
    }
}

void Toolbar::statusChanged()
{
    const gitkit::Divergence counts = store_.counts().ofHead();
    const QString head = store_.snapshot().headDescription();
    branch_->setVisible(!head.isEmpty());
    branch_->setBadge(countsText(counts));
    branch_->setShownTitle(head);
    branch_->setToolTip(plainToolTip(
        tr("%1\nSwitch to another branch (%2)", "branch, keys").arg(head, keysOf(CommandId::switchBranch))));
    buttons_[CommandId::pull]->setBadge(counts.behind > 0 ? u"↓%L1"_s.arg(counts.behind) : QString());
    buttons_[CommandId::push]->setBadge(counts.ahead > 0 ? u"↑%L1"_s.arg(counts.ahead) : QString());
    fitTitles();
}

/// Hides the titles of the commands when they, the names and what runs do not fit.
void Toolbar::fitTitles()
{
    int needed = 2 * toolbarMargin + 4 + 2 * groupGap + project_->fullWidth() + toolGap;
    if (!branch_->isHidden())
        needed += branch_->fullWidth() + toolGap;
    for (const auto& [id, button] : buttons_)
        needed += button->fullWidth() + toolGap;
    needed += activity_->sizeHint().width();
    for (const auto& [id, button] : buttons_)
        button->setShowsTitle(needed <= width());
}

QSize Toolbar::minimumSizeHint() const { return {0, QWidget::minimumSizeHint().height()}; }

void Toolbar::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    fitTitles();
}

bool Toolbar::event(QEvent* event)
{
    // What runs, a badge or a font may ask for another width.
    if (event->type() == QEvent::LayoutRequest)
        fitTitles();
    return QWidget::event(event);
}

void Toolbar::switchBranch() { chooseBranch(store_, *branch_); }

void Toolbar::switchRepository()
{
    if (application_)
        chooseRepository(store_, *application_, *project_);
}

void Toolbar::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    const Theme& theme = Theme::current();
    QPainter painter(this);
    painter.fillRect(rect(), theme.bars);
    painter.fillRect(QRect(0, height() - 1, width(), 1), theme.separator);
}

} // namespace plovik

#include "moc_Toolbar.cpp"
