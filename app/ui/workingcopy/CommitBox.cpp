// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/workingcopy/CommitBox.h"

#include "app/platform/SpellChecker.h"
#include "app/settings/CommitDrafts.h"
#include "app/settings/Settings.h"
#include "app/store/Obstacles.h"
#include "app/store/actions/Operation.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/widgets/PaneCycle.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"
#include "app/ui/workingcopy/AmendNote.h"
#include "app/ui/workingcopy/BodyField.h"
#include "app/ui/workingcopy/CommitIntoChoice.h"
#include "app/ui/workingcopy/MessageButtons.h"
#include "app/ui/workingcopy/SubjectField.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QPainter>
#include <QPushButton>
#include <QScopedValueRollback>

#include <chrono>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

constexpr std::chrono::milliseconds draftPause{300};

} // namespace

CommitBox::CommitBox(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), store_(store), subject_(new SubjectField(this)), body_(new BodyField),
      amend_(new QCheckBox(tr("Amend"), this)), into_(new CommitIntoButton(store, this)), buttons_(new QHBoxLayout),
      absorb_(new QPushButton(command(CommandId::absorb).buttonTitle(), this)),
      commit_(new QPushButton(command(CommandId::commit).title(), this))
{
    makePane(*subject_);
    amend_->setAccessibleName(tr("Amend"));
    amend_->setToolTip(tr("Replace the last commit instead of adding one"));
    absorb_->setAccessibleName(command(CommandId::absorb).title());
    absorb_->setFocusPolicy(Qt::TabFocus);
    absorb_->setMinimumWidth(1); // it goes before it keeps the box from becoming narrower
    absorb_->hide();
    commit_->setAccessibleName(commit_->text());
    commit_->setProperty("primary", true);
    commit_->setFocusPolicy(Qt::TabFocus);
    QFont strong = commit_->font();
    strong.setWeight(QFont::DemiBold);
    commit_->setFont(strong);
    draftDelay_.setSingleShot(true);
    draftDelay_.setInterval(draftPause);
    arrange();
    restoreDraft();
    subject_->setText(store.draft().commitSubject.value());
    body_->setPlainText(store.draft().commitBody.value());
    connectFields();
    observeStore();
    activityChanged();
}

CommitBox::~CommitBox()
{
    keepDraftIfWaiting();
    commitDrafts::finishWriting();
}

void CommitBox::arrange()
{
    auto* panel = new BodyPanel(body_, this);
    buttons_->setSpacing(10);
    buttons_->addWidget(amend_);
    auto* const writing = new MessageButtons(store_, this);
    buttons_->addWidget(writing);
    buttons_->addStretch(1);
    buttons_->addWidget(absorb_);
    auto* const commits = new QHBoxLayout; // the arrow belongs to the button
    commits->setSpacing(2);
    commits->addWidget(commit_);
    commits->addWidget(into_);
    buttons_->addLayout(commits);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(12, 13, 12, 12);
    column->setSpacing(8);
    column->addWidget(subject_);
    column->addWidget(panel);
    column->addLayout(buttons_);
    column->addWidget(new AmendNote(store_, this));
    column->addWidget(new CommitIntoNote(store_, this));
    connect(writing, &MessageButtons::bodyExtended, this, [this] {
        body_->moveCursor(QTextCursor::End);
        body_->setFocus(Qt::OtherFocusReason);
    });
    // Otherwise the body would come last, and spaces typed for it would press the buttons before it.
    setTabOrder(subject_, body_);
    setTabOrder(body_, amend_);
    setTabOrder(amend_, commit_);
    setTabOrder(commit_, into_);
    setTabOrder(into_, absorb_);
    setTabOrder(absorb_, writing->firstInTabOrder());
}

void CommitBox::connectFields()
{
    connect(subject_, &QLineEdit::textChanged, this, &CommitBox::userTyped);
    connect(subject_, &QLineEdit::returnPressed, body_, [this] { body_->setFocus(Qt::OtherFocusReason); });
    connect(subject_, &SubjectField::moreLinesEntered, this, &CommitBox::enterMoreLines);
    connect(body_, &QPlainTextEdit::textChanged, this, &CommitBox::userTyped);
    connect(amend_, &QCheckBox::clicked, this, &CommitBox::userToggledAmend);
    connect(commit_, &QPushButton::clicked, this, &CommitBox::commit);
    connect(absorb_, &QPushButton::clicked, this, [this] { command(CommandId::absorb).run(store_); });

    connect(&draftDelay_, &QTimer::timeout, this, &CommitBox::keepDraft);
    connect(subject_, &SubjectField::focusLost, this, &CommitBox::keepDraftIfWaiting);
    connect(body_, &BodyField::focusChanged, this, [this](bool hasFocus) {
        keepDraftIfWaiting();
        if (hasFocus)
            spellingChosen();
    });
    connect(&Settings::shared(), &Settings::changed, this, [this](const QString& key) {
        if (key == QLatin1StringView(settings::checksSpelling.key))
            spellingChosen();
    });
    connect(qApp, &QCoreApplication::aboutToQuit, this, [this] {
        keepDraftIfWaiting();
        commitDrafts::finishWriting();
    });
}

void CommitBox::observeStore()
{
    const auto showControls = [this] { updateControls(); };
    notifiers_.push_back(store_.draft().commitSubject.addNotifier([this] { showMessage(); }));
    notifiers_.push_back(store_.draft().commitBody.addNotifier([this] { showMessage(); }));
    notifiers_.push_back(store_.draft().amend.addNotifier(showControls));
    notifiers_.push_back(store_.into().target.addNotifier([this] { intoChanged(); }));
    notifiers_.push_back(store_.rewriting().plan.addNotifier(showControls));
    notifiers_.push_back(store_.rewriting().movable.addNotifier(showControls));
    notifiers_.push_back(store_.snapshot().status.addNotifier(showControls));
    notifiers_.push_back(store_.snapshot().inProgress.addNotifier(showControls));
    notifiers_.push_back(store_.conflicts().areResolved.addNotifier(showControls));
    notifiers_.push_back(store_.changes().running.addNotifier([this] { activityChanged(); }));
}

void CommitBox::restoreDraft()
{
    if (store_.draft().ownText() != CommitDraft::Text{})
        return;
    const commitDrafts::Draft draft = commitDrafts::read(store_.root());
    if (!draft.isEmpty())
        store_.draft().restore({draft.subject, draft.body}, draft.amends, draft.head.toStdString());
}

void CommitBox::userTyped()
{
    if (isUpdating_)
        return;
    {
        const QScopedValueRollback typing(isTyping_, true);
        store_.draft().setSubject(subject_->text());
        store_.draft().setBody(body_->text());
    }
    draftDelay_.start();
}

void CommitBox::userToggledAmend(bool isOn) { store_.draft().setAmend(isOn); }

void CommitBox::enterMoreLines(const QString& lines)
{
    QString above = lines;
    while (above.startsWith(u'\n'))
        above.remove(0, 1);
    QTextCursor cursor(body_->document());
    cursor.insertText(body_->document()->isEmpty() ? above : above + u"\n\n"_s);
}

void CommitBox::showMessage()
{
    updateControls();
    if (isTyping_)
        return;
    const QString& subject = store_.draft().commitSubject.value();
    const QString& body = store_.draft().commitBody.value();
    {
        const QScopedValueRollback updating(isUpdating_, true);
        if (subject_->text() != subject)
            subject_->replaceText(subject);
        if (body_->text() != body)
            body_->replaceText(body);
    }
    // The message of an amended commit is not saved: git has it, and it must not return without "Amend".
    if (store_.draft().ownText() == CommitDraft::Text{})
        keepDraft();
    else if (!store_.draft().amend.value())
        draftDelay_.start();
}

void CommitBox::activityChanged()
{
    const bool isWritingInto = store_.into().isChosen() && store_.changes().isRunning({Verb::rewrite});
    const bool wasCommitting = std::exchange(
        isCommitting_,
        isWritingInto || store_.changes().isRunning({Verb::commit, Verb::amend, Verb::continueOperation}));
    // Text that is typed now would be lost when the fields are emptied after the commit.
    subject_->setReadOnly(isCommitting_);
    body_->setReadOnly(isCommitting_);
    updateControls();
    // The store empties the fields after the change has ended.
    if (wasCommitting && !isCommitting_)
        QTimer::singleShot(0, this, &CommitBox::commitEnded);
}

void CommitBox::commitEnded()
{
    if (!isCommitting_ && store_.draft().ownText() == CommitDraft::Text{})
        Q_EMIT committed();
}

QString CommitBox::whyNotCommit() const
{
    if (store_.into().isChosen())
        return store_.into().whyNot();
    const Verb verb = store_.draft().amend.value() ? Verb::amend : Verb::commit;
    if (const QString why = obstacle(store_.changes(), store_.snapshot(), verb); !why.isEmpty())
        return why;
    if (store_.snapshot().status.value().stagedCount() == 0 && !store_.draft().amend.value())
        return tr("Nothing is staged");
    if (store_.draft().holdsTemplate() && !store_.draft().commitSubject.value().trimmed().isEmpty())
        return tr("The message is the template as it was; edit it first");
    return tr("A commit needs a subject");
}

void CommitBox::updateControls()
{
    const bool goesOn = this->goesOn();
    const bool isInto = store_.into().isChosen();
    const bool canCommit = isInto ? store_.into().whyNot().isEmpty() : goesOn || store_.draft().canCommit();
    const QString keys = command(CommandId::commit).shortcut().toString(QKeySequence::NativeText);
    commit_->setText(goesOn ? tr("Continue") : command(CommandId::commit).title());
    commit_->setAccessibleName(commit_->text());
    commit_->setEnabled(canCommit);
    commit_->setToolTip(plainToolTip(!canCommit ? whyNotCommit()
                                     : goesOn   ? tr("Continue (%1)").arg(keys)
                                                : tr("Commit (%1)").arg(keys)));
    showAbsorb();
    amend_->setChecked(store_.draft().amend.value());
    amend_->setEnabled(!isCommitting_ && !isInto &&
                       (store_.snapshot().status.value().hasCommits() || store_.draft().amend.value()));
}

/// Shows the button where something could be absorbed, and where it has room besides the others.
void CommitBox::showAbsorb()
{
    const Command& absorb = command(CommandId::absorb);
    const gitkit::RepoStatus& status = store_.snapshot().status.value();
    const bool isAbout = !store_.draft().amend.value() && !store_.into().isChosen();
    const int more = absorb_->isHidden() ? absorb_->sizeHint().width() + buttons_->spacing() : 0;
    const QMargins margins = layout()->contentsMargins();
    const bool fits = buttons_->sizeHint().width() + more + margins.left() + margins.right() <= width();
    absorb_->setVisible(isAbout && fits && status.hasCommits() && status.stagedCount() > 0);
    absorb_->setEnabled(absorb.isOffered(store_));
    absorb_->setToolTip(plainToolTip(absorb_->isEnabled()
                                         ? tr("Put staged changes into the commits that touched their lines last (%1)")
                                               .arg(absorb.shortcut().toString(QKeySequence::NativeText))
                                         : absorb.whyNot(store_)));
}

void CommitBox::commit()
{
    // Qt would move the focus to another widget when the button is disabled.
    if (commit_->hasFocus())
        subject_->setFocus(Qt::OtherFocusReason);
    if (store_.into().isChosen())
        return store_.into().commit();
    // Git goes on by itself: a commit alone would leave the rest of a rebase or of several picks behind.
    if (goesOn())
        actions::continueOperation(store_.actors());
    else
        store_.draft().commit();
}

void CommitBox::commitInto() { into_->choose(); }

void CommitBox::intoChanged()
{
    updateControls();
    if (store_.into().isChosen())
        subject_->setFocus(Qt::OtherFocusReason);
}

/// Whether the conflicts in which an operation has stopped are resolved, so that it continues in place of a commit.
bool CommitBox::goesOn() const
{
    return store_.conflicts().areResolved.value() && !store_.draft().amend.value() && !store_.into().isChosen() &&
           actions::canContinueOperation(store_.actors());
}

void CommitBox::keepDraft()
{
    draftDelay_.stop();
    if (store_.draft().holdsPreparedMessage())
        return; // git keeps it until the operation is over
    // While the box is about an older commit, the message of the next one waits; without one, what is typed is kept.
    const CommitInto& into = store_.into();
    const bool keepsWaiting = into.isChosen() && (!into.isEdited() || into.keptText() != CommitDraft::Text{});
    const CommitDraft::Text text = keepsWaiting ? into.keptText() : store_.draft().ownText();
    const commitDrafts::Draft draft{
        .subject = text.subject,
        .body = text.body,
        .amends = keepsWaiting ? into.keptAmends() : store_.draft().amend.value(),
        .head = QString::fromStdString(store_.snapshot().status.value().oid.value_or(std::string()))};
    commitDrafts::keep(store_.root(), draft, [window = QPointer<CommitBox>(this)](const QString& problem) {
        if (window)
            window->store_.window().tell(tr("The commit message cannot be saved: %1").arg(problem));
    });
}

void CommitBox::keepDraftIfWaiting()
{
    if (draftDelay_.isActive())
        keepDraft();
}

/// Looks for a dictionary when the body is first entered, so that a window opens without waiting for it.
void CommitBox::spellingChosen()
{
    const bool isWanted = Settings::shared().value(settings::checksSpelling);
    if (!isWanted)
        body_->stopCheckingSpelling();
    if (isWanted != hasDictionary_ && isWanted)
        launch(checkingSpelling());
    hasDictionary_ = isWanted;
}

QCoro::Task<> CommitBox::checkingSpelling()
{
    const QPointer<CommitBox> self(this);
    std::unique_ptr<SpellChecker> checker;
    try {
        checker = co_await store_.git().run<std::unique_ptr<SpellChecker>>(
            Worker::Lane::shortRead, [locale = QLocale()] { return makeSpellChecker(locale); });
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): without a thread there is no dictionary
    }
    if (self && checker && hasDictionary_)
        body_->checkSpelling(std::move(checker));
}

void CommitBox::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    showAbsorb();
}

void CommitBox::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    keepDraftIfWaiting();
}

void CommitBox::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    QPainter(this).fillRect(QRect(0, 0, width(), 1), Theme::current().separator);
}

} // namespace plovik

#include "moc_CommitBox.cpp"
