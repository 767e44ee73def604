// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/history/PlanBar.h"

#include "app/store/Obstacles.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QHBoxLayout>
#include <QKeySequence>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace plovik {

namespace {

QString withKeys(const QString& title, QKeyCombination keys)
{
    return PlanBar::tr("%1 (%2)").arg(title, QKeySequence(keys).toString(QKeySequence::NativeText));
}

} // namespace

PlanBar::PlanBar(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), store_(store), sentence_(new QLabel(this)), published_(new QLabel(this))
{
    sentence_->setAccessibleName(tr("Plan"));
    published_->setAccessibleName(tr("Published Commits"));
    for (QLabel* const label : {sentence_, published_}) {
        label->setWordWrap(true);
        label->setTextFormat(Qt::PlainText);
    }
    followColor(*published_, QPalette::WindowText, &Theme::secondaryText);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(12, 6, 8, 7);
    row->setSpacing(8);
    auto* const words = new QVBoxLayout;
    words->setSpacing(2);
    words->addWidget(sentence_);
    words->addWidget(published_);
    row->addLayout(words, 1);
    dropEmptied_ = addButton(tr("Drop Empty Commits"), &Rewriting::dropEmptied);
    squash_ = addButton(tr("Squash Them"), &Rewriting::squashFixups);
    cancel_ = addButton(tr("Cancel"), &Rewriting::cancel);
    apply_ = addButton(tr("Apply"), &Rewriting::apply);
    apply_->setProperty("prominent", true);
    cancel_->setToolTip(plainToolTip(withKeys(tr("Drops the plan"), cancelPlanKeys)));
    const auto follow = [this](const auto& value) { notifiers_.push_back(value.addNotifier([this] { show(); })); };
    follow(store.rewriting().plan);
    follow(store.rewriting().outcome);
    follow(store.rewriting().movable);
    follow(store.changes().running);
    follow(store.snapshot().inProgress);
    show();
}

QPushButton* PlanBar::addButton(const QString& title, void (Rewriting::*act)())
{
    auto* const button = new QPushButton(title, this);
    button->setProperty("compact", true);
    button->setFocusPolicy(Qt::TabFocus);
    connect(button, &QPushButton::clicked, this, [this, act] { (store_.rewriting().*act)(); });
    layout()->addWidget(button);
    layout()->setAlignment(button, Qt::AlignTop);
    return button;
}

void PlanBar::show()
{
    const bool isPlanned = store_.rewriting().plan.value().has_value();
    const int fixups = isPlanned ? 0 : store_.rewriting().fixups();
    for (QWidget* const part : std::initializer_list<QWidget*>{apply_, cancel_})
        part->setVisible(isPlanned);
    squash_->setVisible(fixups > 0);
    if (isPlanned)
        showPlan();
    else
        showFixups(fixups);
    setVisible(isPlanned || fixups > 0);
}

void PlanBar::showFixups(int fixups)
{
    dropEmptied_->hide();
    published_->hide();
    sentence_->setText(tr("%Ln fixup commit(s)", nullptr, fixups));
}

void PlanBar::showPlan()
{
    const Rewriting& rewriting = store_.rewriting();
    const QString published = rewriting.publishedSentence();
    sentence_->setText(rewriting.sentence());
    published_->setText(published);
    published_->setVisible(!published.isEmpty());
    const auto& outcome = rewriting.outcome.value();
    dropEmptied_->setVisible(outcome && std::ranges::find(outcome->marks, gitkit::RewriteMark::Kind::emptied,
                                                          &gitkit::RewriteMark::kind) != outcome->marks.end());
    QString whyNot = obstacle(store_.changes(), store_.snapshot(), Verb::rewrite);
    if (whyNot.isEmpty())
        whyNot = rewriting.whyNotApplied();
    apply_->setText(rewriting.applyTitle());
    apply_->setEnabled(whyNot.isEmpty() && outcome.has_value());
    QString hint = whyNot.isEmpty() ? withKeys(rewriting.applyTitle(), applyPlanKeys) : whyNot;
    if (whyNot.isEmpty() && rewriting.movable.value().hasMessageHook)
        hint += u'\n' + tr("The hook “prepare-commit-msg” does not run for it.");
    apply_->setToolTip(plainToolTip(hint));
}

void PlanBar::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    const Theme& theme = Theme::current();
    QPainter painter(this);
    painter.fillRect(rect(), theme.bars);
    painter.fillRect(QRect(0, height() - 1, width(), 1), theme.separator);
}

} // namespace plovik

#include "moc_PlanBar.cpp"
