// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/window/Toolbar.h"

#include "app/store/ShownText.h"
#include "app/ui/widgets/BarButton.h"
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
    project_->setToolTip(shownText(store.root().native()));
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

    notifiers_.push_back(store.snapshot().status.addNotifier([this] { statusChanged(); }));
    notifiers_.push_back(store.changes().activity.addNotifier([this] { updateButtons(); }));
    statusChanged();
}

void Toolbar::makeButtons(QHBoxLayout& row)
{
    struct Button {
        QString title;
        void (Toolbar::*signal)();
    };
    for (const Button& button : {Button{tr("Fetch"), &Toolbar::fetchRequested},
                                 {tr("Pull"), &Toolbar::pullRequested},
                                 {tr("Push"), &Toolbar::pushRequested},
                                 {tr("Branch"), &Toolbar::branchRequested},
                                 {tr("Stash"), &Toolbar::stashRequested}})
    {
        auto* made = new BarButton(button.title, this);
        connect(made, &BarButton::clicked, this, button.signal);
        if (button.signal == &Toolbar::branchRequested)
            row.addSpacing(groupGap - 6);
        row.addWidget(made);
        buttons_.push_back(made);
    }
    pull_ = buttons_[1];
    push_ = buttons_[2];
    stash_ = buttons_[4];
}

void Toolbar::updateButtons()
{
    // The store drops an action that is asked for while another one runs.
    const bool isIdle = !store_.changes().activity.value();
    for (BarButton* button : buttons_)
        button->setEnabled(isIdle);
    stash_->setEnabled(isIdle && !store_.snapshot().status.value().files.empty());
}

void Toolbar::statusChanged()
{
    const gitkit::RepoStatus& status = store_.snapshot().status.value();
    const QString head = store_.snapshot().headDescription();
    branch_->setText(head);
    branch_->setToolTip(head);
    pull_->setBadge(status.behind > 0 ? u"↓%1"_s.arg(status.behind) : QString());
    push_->setBadge(status.ahead > 0 ? u"↑%1"_s.arg(status.ahead) : QString());
    updateButtons();
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
