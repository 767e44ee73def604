// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/window/OperationBar.h"

#include "app/store/ShownText.h"
#include "app/store/actions/Operation.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/ThemeFollowing.h"
#include "app/ui/window/OperationText.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>

namespace plovik {

namespace {

constexpr int markWidth = 3;

/// A line of text that shrinks and is elided when the widgets beside it need the room.
class GivingLabel : public QLabel {
public:
    explicit GivingLabel(QWidget* parent) : QLabel(parent) { setTextFormat(Qt::PlainText); }

    QSize minimumSizeHint() const override { return {std::min(textWidth(text(), font()), 48), sizeHint().height()}; }

protected:
    void paintEvent(QPaintEvent* event) override
    {
        Q_UNUSED(event)
        QPainter painter(this);
        paintText(painter, rect(), text(), font(), palette().color(foregroundRole()));
    }
};

void showText(QLabel& label, const QString& text)
{
    label.setText(text);
    label.setToolTip(plainToolTip(text));
    label.setVisible(!text.isEmpty());
}

QString markTip(const std::string& term)
{
    return OperationBar::tr("Mark the commit that is checked out as “%1”, and go on to the next").arg(shownText(term));
}

} // namespace

OperationBar::OperationBar(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), store_(store), title_(new GivingLabel(this)), detail_(new GivingLabel(this)),
      conflicts_(makeButton(QString(), &OperationBar::showConflict)),
      resolved_(new QLabel(tr("All conflicts resolved."), this)),
      continue_(makeButton(tr("Continue"), &OperationBar::proceed)),
      takeApart_(makeButton(tr("Take Apart"), &OperationBar::takeApart)),
      good_(makeButton(tr("Good"), &OperationBar::markGood)), bad_(makeButton(tr("Bad"), &OperationBar::markBad)),
      skip_(makeButton(tr("Skip"), &OperationBar::skip)),
      showFound_(makeButton(tr("Show Commit"), &OperationBar::showFound)),
      abort_(makeButton(tr("Abort"), &OperationBar::abort)), reset_(makeButton(tr("Reset"), &OperationBar::reset))
{
    setAccessibleName(tr("Operation"));
    continue_->setProperty("primary", true);
    showFound_->setProperty("primary", true);
    showFound_->setToolTip(tr("Show it in the history"));
    reset_->setToolTip(tr("End the bisect and check out what was checked out before"));
    conflicts_->setToolTip(tr("Show the next one"));
    resolved_->setTextFormat(Qt::PlainText);
    followFont(*title_, 0, QFont::DemiBold);
    followColor(*detail_, QPalette::WindowText, &Theme::hunkHeaderText);
    followColor(*conflicts_, QPalette::ButtonText, &Theme::statusConflicted);
    followColor(*resolved_, QPalette::WindowText, &Theme::secondaryText);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(12 + markWidth, 5, 8, 6);
    row->setSpacing(8);
    row->addWidget(title_, 0);
    row->addWidget(detail_, 1);
    row->addStretch(0);
    row->addWidget(conflicts_);
    row->addWidget(resolved_);
    row->addSpacing(4);
    for (QPushButton* button : {continue_, takeApart_, good_, bad_, skip_, showFound_, abort_, reset_})
        row->addWidget(button);
    observeStore();
    showOperation();
}

QPushButton* OperationBar::makeButton(const QString& title, void (OperationBar::*act)())
{
    auto* button = new QPushButton(title, this);
    button->setAccessibleName(title);
    button->setProperty("compact", true);
    button->setFocusPolicy(Qt::TabFocus);
    followFont(*button, -0.75);
    connect(button, &QPushButton::clicked, this, act);
    return button;
}

void OperationBar::observeStore()
{
    const auto show = [this] { showOperation(); };
    notifiers_.push_back(store_.snapshot().inProgress.addNotifier(show));
    notifiers_.push_back(store_.snapshot().status.addNotifier(show));
    notifiers_.push_back(store_.conflicts().list.addNotifier(show));
    notifiers_.push_back(store_.conflicts().areResolved.addNotifier(show));
    notifiers_.push_back(store_.changes().running.addNotifier([this] { runningChanged(); }));
    // Commits are shown by the names of their branches and tags, and with the subjects of the history.
    notifiers_.push_back(store_.snapshot().branches.addNotifier(show));
    notifiers_.push_back(store_.snapshot().remoteBranches.addNotifier(show));
    notifiers_.push_back(store_.snapshot().tags.addNotifier(show));
    notifiers_.push_back(store_.history().history.addNotifier(show));
}

void OperationBar::showOperation()
{
    const std::optional<gitkit::OperationInProgress>& now = store_.snapshot().inProgress.value();
    if (now) {
        showText(*title_, operationText::title(store_));
        showText(*detail_, operationText::detail(store_));
        showConflicts();
        showButtons(*now);
    }
    setVisible(now.has_value());
}

void OperationBar::showConflicts()
{
    const QString left = operationText::conflicts(store_);
    conflicts_->setText(left);
    conflicts_->setAccessibleName(left);
    conflicts_->setVisible(!left.isEmpty());
    resolved_->setVisible(store_.conflicts().areResolved.value());
    const QString said = resolved_->isHidden() ? left : resolved_->text();
    setAccessibleDescription(QStringList{title_->text(), detail_->text(), said}.join(u' ').trimmed());
}

void OperationBar::showButtons(const gitkit::OperationInProgress& now)
{
    const bool isBisect = now.bisect.has_value();
    const bool isFound = isBisect && now.bisect->found;
    continue_->setVisible(now.canContinue());
    continue_->setEnabled(actions::canContinueOperation(store_.actors()));
    continue_->setToolTip(plainToolTip(whyNotContinue()));
    takeApart_->setVisible(actions::canBecomePart(store_.snapshot()));
    takeApart_->setToolTip(tr("Put its changes back into the files, to make several commits of them"));
    for (QPushButton* button : {good_, bad_})
        button->setVisible(isBisect && !isFound);
    skip_->setVisible(now.canSkip() || (isBisect && !isFound));
    skip_->setToolTip(
        plainToolTip(isBisect ? tr("Test another commit instead") : tr("Leave this commit out and go on")));
    showFound_->setVisible(isFound);
    abort_->setVisible(!isBisect);
    abort_->setToolTip(plainToolTip(operationText::abortTip(now.kind)));
    reset_->setVisible(isBisect);
    if (isBisect) {
        good_->setToolTip(plainToolTip(markTip(now.bisect->good)));
        bad_->setToolTip(plainToolTip(markTip(now.bisect->bad)));
    }
    for (QPushButton* button : {takeApart_, good_, bad_, skip_, abort_, reset_})
        button->setEnabled(canTakeStep());
}

QString OperationBar::whyNotContinue() const
{
    if (const QString why = store_.changes().whyNot(Verb::continueOperation); !why.isEmpty())
        return why;
    if (store_.snapshot().conflictCount() > 0)
        return tr("Resolve and stage the conflicted files first");
    return operationText::continueTip(store_.snapshot().inProgress.value()->kind);
}

/// All steps take a turn, so that a change is in the way of one exactly when it is in the way of all.
bool OperationBar::canTakeStep() const { return store_.changes().offers(Verb::endOperation); }

void OperationBar::runningChanged()
{
    auto* const focus = qobject_cast<QPushButton*>(QApplication::focusWidget());
    if (!canTakeStep() && focus && isAncestorOf(focus)) {
        // Qt would move the focus to another widget when the button is disabled.
        focused_ = focus;
        setFocus(Qt::OtherFocusReason);
    }
    showOperation();
    if (!canTakeStep())
        return;
    if (focused_ && hasFocus() && focused_->isEnabled())
        focused_->setFocus(Qt::OtherFocusReason);
    focused_ = nullptr;
}

void OperationBar::skip()
{
    if (store_.snapshot().inProgress.value() && store_.snapshot().inProgress.value()->bisect)
        actions::bisect(store_.actors(), gitkit::BisectMark::skip);
    else
        actions::skipOperation(store_.actors());
}

void OperationBar::showFound()
{
    const std::optional<gitkit::OperationInProgress>& now = store_.snapshot().inProgress.value();
    if (now && now->bisect && now->bisect->found)
        store_.history().showCommit(now->bisect->found->hash);
}

void OperationBar::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    const Theme& theme = Theme::current();
    QPainter painter(this);
    painter.fillRect(rect(), theme.hunkHeader);
    painter.fillRect(QRect(isRightToLeft() ? width() - markWidth : 0, 0, markWidth, height()), theme.accent);
    painter.fillRect(QRect(0, height() - 1, width(), 1), theme.separator);
}

} // namespace plovik

#include "moc_OperationBar.cpp"
