// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/workingcopy/MessageButtons.h"

#include "app/settings/Settings.h"
#include "app/store/MessageFormat.h"
#include "app/store/ShownText.h"
#include "app/store/readers/AmendReaders.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/widgets/IconButton.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Spinner.h"
#include "app/ui/widgets/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>

#include <algorithm>
#include <map>
#include <ranges>
#include <utility>

namespace plovik {

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t lookedAtCommits = 300;
constexpr std::size_t offeredAuthors = 10;
constexpr int widestMessage = 460; ///< of an entry with a message, in pixels

QCoro::Task<> ignoringResult(QCoro::Task<bool> task) { co_await task; }

} // namespace

void writeCommitMessage(RepositoryStore& store) { launch(ignoringResult(store.draft().generateCommitMessage())); }

MessageButtons::MessageButtons(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), store_(store),
      write_(new IconButton(Icon::sparkles, command(CommandId::writeMessage).title(), this)),
      more_(new IconButton(Icon::next, tr("Commit Message Options"), this)), spinner_(new Spinner(this)),
      writing_(new QLabel(tr("Writing…"), this)), cancel_(new QPushButton(tr("Cancel"), this))
{
    cancel_->setAccessibleName(tr("Cancel Commit Message"));
    cancel_->setToolTip(tr("Stop writing and leave the message as it is"));
    cancel_->setProperty("compact", true);
    cancel_->setFocusPolicy(Qt::TabFocus);
    more_->setFixedWidth(18);
    arrange();
    connect(write_, &IconButton::clicked, this, &MessageButtons::write);
    connect(more_, &IconButton::clicked, this, &MessageButtons::showMenu);
    connect(cancel_, &QPushButton::clicked, this, [this] { store_.draft().cancelCommitMessage(); });
    connect(&Settings::shared(), &Settings::changed, this, [this](const QString& key) {
        if (key == QLatin1String(settings::aiEnabled.key))
            showState();
    });
    notifiers_.push_back(store.draft().generatingMessage.addNotifier([this] { showState(); }));
    notifiers_.push_back(store.snapshot().status.addNotifier([this] { showState(); }));
    showState();
}

QWidget* MessageButtons::firstInTabOrder() const { return write_; }

void MessageButtons::arrange()
{
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(write_);
    row->addWidget(more_);
    row->addWidget(spinner_);
    row->addSpacing(6);
    row->addWidget(writing_);
    row->addSpacing(8);
    row->addWidget(cancel_);
}

void MessageButtons::write()
{
    const bool hadFocus = write_->hasFocus();
    writeCommitMessage(store_);
    if (hadFocus && cancel_->isVisible())
        cancel_->setFocus(Qt::OtherFocusReason);
}

void MessageButtons::showMenu()
{
    QMenu* const menu = makeContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(more_->mapToGlobal(QPoint(0, more_->height())));
}

QMenu* MessageButtons::makeContextMenu()
{
    auto* const menu = new QMenu(this);
    menu->setToolTipsVisible(true);
    QAction* const signOff = menu->addAction(tr("Sign Off"), this, [this] { launch(signingOff()); });
    signOff->setToolTip(tr("Add a Signed-off-by line with your name"));
    QMenu* const people = menu->addMenu(tr("Add Co-Author"));
    connect(people, &QMenu::aboutToShow, this, [this, people] {
        if (people->isEmpty())
            addPeople(*people);
    });
    // An entry with a menu is triggered by its command alone.
    connect(people->menuAction(), &QAction::triggered, this, &MessageButtons::showPeople);
    QMenu* const messages = menu->addMenu(tr("Recent Messages"));
    connect(messages, &QMenu::aboutToShow, this, [this, messages] {
        if (messages->isEmpty())
            launch(addingMessages(messages));
    });
    connect(messages->menuAction(), &QAction::triggered, this, &MessageButtons::showMessages);
    menu->addSeparator();
    QAction* const wrap = menu->addAction(tr("Wrap Body at %1 Columns").arg(messageFormat::bodyColumns), this, [this] {
        store_.draft().setBody(messageFormat::wrapped(store_.draft().commitBody.value()));
    });
    for (const auto& [id, entry] : {std::pair{CommandId::signOff, signOff},
                                    {CommandId::addCoAuthor, people->menuAction()},
                                    {CommandId::recentMessages, messages->menuAction()},
                                    {CommandId::wrapBody, wrap}})
    {
        markAs(id, entry);
        if (const QString why = whyNotChange(); !why.isEmpty()) {
            entry->setEnabled(false);
            entry->setToolTip(plainToolTip(why));
        }
    }
    QAction* const spelling = menu->addAction(tr("Check Spelling"));
    spelling->setCheckable(true);
    spelling->setChecked(Settings::shared().value(settings::checksSpelling));
    connect(spelling, &QAction::toggled, menu,
            [](bool isOn) { Settings::shared().set(settings::checksSpelling, isOn); });
    if (Settings::shared().value(settings::aiEnabled)) {
        menu->addSeparator();
        const Command& writing = command(CommandId::writeMessage);
        menu->addAction(writing.title(), this, &MessageButtons::write)->setEnabled(writing.isOffered(store_));
        addCommand(*menu, store_, CommandId::showWhatIsSent);
    }
    return menu;
}

/// What is added while the fields wait to be filled or emptied would be lost.
QString MessageButtons::whyNotChange() const
{
    if (store_.draft().generatingMessage.value())
        return tr("A message is being written.");
    const bool isCommitting = store_.changes().isRunning({Verb::commit, Verb::amend, Verb::continueOperation});
    return isCommitting ? tr("The message is being committed.") : QString();
}

void MessageButtons::showPeople()
{
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    addPeople(*menu);
    menu->popup(mapToGlobal(QPoint(more_->x(), more_->y() + more_->height())));
}

/// Offers those who wrote the newest commits of the history as co-authors, the most frequent first.
void MessageButtons::addPeople(QMenu& menu)
{
    std::map<std::string, int> commits;
    const HistoryRows& rows = store_.history().history.value();
    for (std::size_t row = 0; row < std::min(rows.size(), lookedAtCommits); ++row) {
        const gitkit::Commit commit = rows[row].commit;
        ++commits[commit.authorName + " <" + commit.authorEmail + '>'];
    }
    std::vector<std::pair<int, std::string>> authors;
    for (const auto& [author, count] : commits)
        authors.emplace_back(-count, author);
    std::ranges::sort(authors);
    for (const auto& [count, author] : authors | std::views::take(offeredAuthors)) {
        const QString shown = shownText(author);
        menu.addAction(plainMenuText(shown), this, [this, shown] { extendBody(u"Co-authored-by: "_s + shown); });
    }
    if (!authors.empty())
        menu.addSeparator();
    menu.addAction(tr("Another Person"), this, [this] { extendBody(u"Co-authored-by: "_s); });
}

void MessageButtons::showMessages()
{
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    launch(addingMessages(menu));
    menu->popup(mapToGlobal(QPoint(more_->x(), more_->y() + more_->height())));
}

/// Offers the messages of the newest commits. What was typed before comes back by Undo.
QCoro::Task<> MessageButtons::addingMessages(QPointer<QMenu> menu)
{
    QAction* const waiting = menu->addAction(tr("Reading…"));
    waiting->setEnabled(false);
    std::vector<std::string> messages;
    QString problem = tr("Nothing has been committed yet.");
    try {
        messages = co_await store_.git().read(readRecentMessages);
    } catch (const std::exception& thrown) {
        problem = failureOf(thrown).message;
    }
    if (!menu)
        co_return;
    for (const std::string& message : messages) {
        const QString text = exactText(message);
        const QString subject = text.section(u'\n', 0, 0);
        QAction* const entry = menu->addAction(plainMenuText(menu->fontMetrics().elidedText(
                                                   shownText(subject.toStdString()), Qt::ElideRight, widestMessage)),
                                               this, [this, text] { store_.draft().useMessage(text); });
        entry->setToolTip(plainToolTip(text));
    }
    if (messages.empty())
        menu->addAction(plainMenuText(problem))->setEnabled(false);
    delete waiting;
}

void MessageButtons::extendBody(const QString& trailer)
{
    store_.draft().setBody(messageFormat::withTrailer(store_.draft().commitBody.value(), trailer));
    Q_EMIT bodyExtended();
}

QCoro::Task<> MessageButtons::signingOff()
{
    const QPointer<MessageButtons> self(this);
    std::optional<Failure> failure;
    std::string identity;
    try {
        identity = co_await store_.git().read(readIdentity);
    } catch (const std::exception& thrown) {
        failure = failureOf(thrown);
    }
    if (!self)
        co_return;
    if (failure)
        store_.window().report(*failure);
    else
        extendBody(u"Signed-off-by: "_s + shownText(identity));
}

void MessageButtons::showState()
{
    const bool isOffered = Settings::shared().value(settings::aiEnabled);
    const bool isWriting = store_.draft().generatingMessage.value();
    const bool hadFocus = cancel_->hasFocus();
    write_->setVisible(isOffered && !isWriting);
    more_->setVisible(!isWriting);
    for (QWidget* const widget :
         {static_cast<QWidget*>(spinner_), static_cast<QWidget*>(writing_), static_cast<QWidget*>(cancel_)})
        widget->setVisible(isWriting);
    const bool hasStaged = store_.snapshot().status.value().stagedCount() > 0;
    write_->setEnabled(hasStaged);
    write_->setToolTip(plainToolTip(hasStaged ? tr("Write a commit message for the staged changes with AI")
                                              : tr("Stage changes to have a commit message written for them")));
    if (hadFocus && !isWriting)
        write_->setFocus(Qt::OtherFocusReason);
}

} // namespace plovik

#include "moc_MessageButtons.cpp"
