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

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

using Kind = gitkit::OperationInProgress::Kind;

constexpr int markWidth = 3;

/// One line that gives way to what stands beside it.
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
    label.setToolTip(text);
    label.setVisible(!text.isEmpty());
}

QString markTip(const std::string& term)
{
    return u"Mark the commit that is checked out as “%1”, and go on to the next"_s.arg(shownText(term));
}

} // namespace

OperationBar::OperationBar(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), store_(store), title_(new GivingLabel(this)), detail_(new GivingLabel(this)),
      conflicts_(new QLabel(this)), continue_(makeButton(u"Continue"_s, &OperationBar::proceed)),
      good_(makeButton(u"Good"_s, &OperationBar::markGood)), bad_(makeButton(u"Bad"_s, &OperationBar::markBad)),
      skip_(makeButton(u"Skip"_s, &OperationBar::skip)),
      showFound_(makeButton(u"Show Commit"_s, &OperationBar::showFound)),
      abort_(makeButton(u"Abort"_s, &OperationBar::abort)), reset_(makeButton(u"Reset"_s, &OperationBar::reset))
{
    setAccessibleName(u"Operation"_s);
    continue_->setProperty("primary", true);
    showFound_->setProperty("primary", true);
    showFound_->setToolTip(u"Show it in the history"_s);
    reset_->setToolTip(u"End the bisect and check out what was checked out before"_s);
    conflicts_->setTextFormat(Qt::PlainText);
    followFont(*title_, 0, QFont::DemiBold);
    followColor(*detail_, QPalette::WindowText, &Theme::hunkHeaderText);
    followColor(*conflicts_, QPalette::WindowText, &Theme::statusConflicted);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(12 + markWidth, 5, 8, 6);
    row->setSpacing(8);
    row->addWidget(title_, 0);
    row->addWidget(detail_, 1);
    row->addStretch(0);
    row->addWidget(conflicts_);
    row->addSpacing(4);
    for (QPushButton* button : {continue_, good_, bad_, skip_, showFound_, abort_, reset_})
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
    notifiers_.push_back(store_.changes().activity.addNotifier([this] { activityChanged(); }));
    // The names of commits.
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
        showText(*conflicts_, operationText::conflicts(store_));
        setAccessibleDescription(QStringList{title_->text(), detail_->text(), conflicts_->text()}.join(u' ').trimmed());
        showButtons(*now);
    }
    setVisible(now.has_value());
}

void OperationBar::showButtons(const gitkit::OperationInProgress& now)
{
    const bool isBisect = now.bisect.has_value();
    const bool isFound = isBisect && now.bisect->found;
    const bool isIdle = !store_.changes().activity.value();
    const QString noun = operationText::noun(now.kind);
    continue_->setVisible(now.canContinue());
    continue_->setEnabled(actions::canContinueOperation(store_.actors()));
    continue_->setToolTip(whyNotContinue());
    for (QPushButton* button : {good_, bad_})
        button->setVisible(isBisect && !isFound);
    skip_->setVisible(now.canSkip() || (isBisect && !isFound));
    skip_->setToolTip(isBisect ? u"Test another commit instead"_s : u"Leave this commit out and go on"_s);
    showFound_->setVisible(isFound);
    abort_->setVisible(!isBisect);
    abort_->setToolTip(u"Go back to where the %1 began"_s.arg(noun));
    reset_->setVisible(isBisect);
    if (isBisect) {
        good_->setToolTip(markTip(now.bisect->good));
        bad_->setToolTip(markTip(now.bisect->bad));
    }
    for (QPushButton* button : {good_, bad_, skip_, abort_, reset_})
        button->setEnabled(isIdle);
}

QString OperationBar::whyNotContinue() const
{
    if (store_.changes().activity.value())
        return *store_.changes().activity.value();
    if (store_.snapshot().conflictCount() > 0)
        return u"Resolve and stage the conflicted files first"_s;
    const Kind kind = store_.snapshot().inProgress.value()->kind;
    return kind == Kind::merge ? u"Commit the merge"_s
                               : u"Commit what is staged, and go on with the %1"_s.arg(operationText::noun(kind));
}

void OperationBar::activityChanged()
{
    auto* const focus = qobject_cast<QPushButton*>(QApplication::focusWidget());
    if (store_.changes().activity.value() && focus && isAncestorOf(focus)) {
        // A button that is disabled while it has the focus would hand it to who knows whom.
        focused_ = focus;
        setFocus(Qt::OtherFocusReason);
    }
    showOperation();
    if (!store_.changes().activity.value() && focused_ && hasFocus() && focused_->isEnabled())
        focused_->setFocus(Qt::OtherFocusReason);
    if (!store_.changes().activity.value())
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
    painter.fillRect(QRect(0, 0, markWidth, height()), theme.accent);
    painter.fillRect(QRect(0, height() - 1, width(), 1), theme.separator);
}

} // namespace plovik
