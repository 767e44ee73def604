// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/window/Toolbar.h"

#include "app/store/ShownText.h"
#include "app/ui/widgets/BarButton.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/ThemeFollowing.h"
#include "app/ui/window/ActivityView.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

constexpr int toolbarHeight = 46;
constexpr int groupGap = 22;

QLabel* makeLabel(QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    return label;
}

} // namespace

Toolbar::Toolbar(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), store_(store), project_(makeLabel(this)), branch_(makeLabel(this))
{
    setMinimumHeight(toolbarHeight);
    project_->setText(shownText(store.root().filename().native()));
    project_->setToolTip(plainToolTip(shownText(store.root().native())));
    followFont(*project_, 0, QFont::Bold);
    branch_->setForegroundRole(QPalette::PlaceholderText);
    // A long branch name is cut so that the buttons keep their room.
    branch_->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred);
    branch_->setMinimumWidth(24);

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(12, 0, 12, 1);
    row->setSpacing(6);
    row->addWidget(project_);
    row->addSpacing(3);
    row->addWidget(branch_);
    row->addSpacing(groupGap - 4);
    makeButtons(*row);
    row->addWidget(new ActivityView(store, this), 1);

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
        auto* const button = new BarButton(shown.buttonTitle(), this);
        connect(button, &BarButton::clicked, this, [this, &shown] { shown.run(store_); });
        if (id == newBranch)
            row.addSpacing(groupGap - 6);
        row.addWidget(button);
        buttons_[id] = button;
    }
}

void Toolbar::updateButtons()
{
    for (const auto& [id, button] : buttons_) {
        button->setEnabled(command(id).isOffered(store_));
        button->setToolTip(plainToolTip(command(id).whyNot(store_)));
    }
}

void Toolbar::statusChanged()
{
    const gitkit::Divergence counts = store_.counts().ofHead();
    const QString head = store_.snapshot().headDescription();
    branch_->setText(head);
    branch_->setToolTip(plainToolTip(head));
    buttons_[CommandId::pull]->setBadge(counts.behind > 0 ? u"↓%1"_s.arg(counts.behind) : QString());
    buttons_[CommandId::push]->setBadge(counts.ahead > 0 ? u"↑%1"_s.arg(counts.ahead) : QString());
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
