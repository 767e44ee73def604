// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings/CommitDrafts.h"
#include "app/settings/Settings.h"
#include "app/store/MessageFormat.h"
#include "app/store/RepositoryStore.h"
#include "app/ui/commands/MainMenu.h"
#include "app/ui/dialogs/SentChangesDialog.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/workingcopy/BodyField.h"
#include "app/ui/workingcopy/WorkingCopyView.h"
#include "tests/app/GivenRunning.h"
#include "tests/app/NoTarget.h"
#include "tests/app/SettlingWorker.h"
#include "tests/app/ShownWidgets.h"
#include "tests/support/FullDisk.h"
#include "tests/support/NoMoreThreads.h"
#include "tests/support/TestRepository.h"

#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTextBlock>

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

/// A window on a repository, as far as the commit box is concerned.
struct Window {
    explicit Window(const std::filesystem::path& root, const MessageWriter& messages = {})
        : store(root, worker, {.messages = messages})
    {
        view.resize(1000, 700);
        view.show();
        view.activateWindow();
        store.snapshot().refresh(RefreshScope::full);
        EXPECT_TRUE(worker.settle());
    }
    ~Window() { worker.settle(); }

    template <typename Widget>
    Widget* named(const QString& name) const
    {
        for (auto* widget : view.findChildren<Widget*>()) {
            if (widget->accessibleName() == name)
                return widget;
        }
        return nullptr;
    }

    test::SettlingWorker worker;
    RepositoryStore store;
    WorkingCopyView view{store};
    QLineEdit* subject = named<QLineEdit>(u"Commit Subject"_s);
    QPlainTextEdit* body = named<QPlainTextEdit>(u"Commit Body"_s);
    QAbstractButton* amend = named<QAbstractButton>(u"Amend"_s);
    QAbstractButton* commit = named<QAbstractButton>(u"Commit"_s);
    QLabel* length = named<QLabel>(u"Subject Length"_s);
};

TEST(CommitBox, EnablesItsButtonWhenThereIsSomethingToCommit)
{
    TestRepository repo;
    repo.write("a", "1").commit("one").write("a", "2");
    Window window(repo.path());
    EXPECT_FALSE(window.commit->isEnabled());
    QTest::keyClicks(window.subject, u"two"_s);
    EXPECT_EQ(window.store.draft().commitSubject.value(), u"two"_s);
    EXPECT_FALSE(window.commit->isEnabled());
    window.store.staging().stageAll();
    EXPECT_TRUE(window.worker.settle());
    EXPECT_TRUE(window.commit->isEnabled());
    test::givenRunning(window.store, Verb::fetch);
    EXPECT_TRUE(window.commit->isEnabled()) << "it touches nothing that a commit needs";
    test::givenRunning(window.store, Verb::pull);
    EXPECT_FALSE(window.commit->isEnabled());
    test::givenRunning(window.store, std::nullopt);
    window.store.staging().unstageAll();
    EXPECT_TRUE(window.worker.settle());
    EXPECT_FALSE(window.commit->isEnabled());
    window.amend->click();
    EXPECT_TRUE(window.commit->isEnabled());
    window.subject->setText(u" \t"_s);
    EXPECT_FALSE(window.commit->isEnabled());
}

TEST(CommitBox, ContinuesWhereAllConflictsAreResolved)
{
    TestRepository repo;
    repo.write("a", "1\n").commit("base").git({"checkout", "-q", "-b", "topic"}).write("a", "2\n").commit("first");
    repo.write("b", "1\n").commit("second").git({"checkout", "-q", "main"}).write("a", "3\n").commit("ours");
    int status = 0;
    runPlainGit(repo.path(), {"rebase", "main", "topic"}, status);
    Window window(repo.path());
    EXPECT_EQ(window.commit->text(), u"Commit"_s);
    EXPECT_FALSE(window.commit->isEnabled());
    repo.write("a", "4\n").git({"add", "a"});
    window.store.snapshot().refresh(RefreshScope::full);
    EXPECT_TRUE(window.worker.settle());
    EXPECT_EQ(window.commit->text(), u"Continue"_s);
    window.subject->setFocus();
    QTest::keyClick(window.subject, Qt::Key_Return, Qt::ControlModifier);
    EXPECT_TRUE(window.worker.settle());
    EXPECT_FALSE(window.store.snapshot().inProgress.value());
    EXPECT_EQ(repo.read({"log", "--format=%s", "main..topic"}), "second\nfirst");
    EXPECT_EQ(window.commit->text(), u"Commit"_s);
}

TEST(CommitBox, CommitsFromTheKeyboardAndGoesBackToTheList)
{
    TestRepository repo;
    repo.write("a", "1").commit("one").write("a", "2").git({"add", "a"}).write("b", "1");
    Window window(repo.path());
    window.subject->setFocus();
    QTest::keyClicks(window.subject, u"two"_s);
    QTest::keyClick(window.subject, Qt::Key_Return);
    EXPECT_TRUE(window.body->hasFocus());
    window.body->insertPlainText(u"10\u00A0km\n\n  indented"_s); // a space that must not break stays one
    QTest::keyClick(window.body, Qt::Key_Return, Qt::ControlModifier);
    EXPECT_TRUE(window.subject->isReadOnly());
    EXPECT_TRUE(window.worker.settle());
    EXPECT_EQ(window.view.list()->model()->rowCount(), 1);
    EXPECT_EQ(repo.read({"log", "-1", "--format=%B"}), "two\n\n10\u00A0km\n\n  indented\n");
    EXPECT_EQ(window.subject->text() + window.body->toPlainText(), QString());
    EXPECT_FALSE(window.subject->isReadOnly());
    EXPECT_TRUE(window.view.list()->hasFocus());
}

TEST(CommitBox, OffersNoCommitThatGitWouldRefuse)
{
    TestRepository repo;
    repo.write("a", "1").write("b", "1").commit("one").git({"checkout", "-q", "-b", "topic"});
    repo.write("a", "2").write("b", "2").commit("two").git({"checkout", "-q", "main"});
    repo.write("a", "3").commit("three");
    int status = 0;
    runPlainGit(repo.path(), {"merge", "topic"}, status);
    Window window(repo.path());
    ASSERT_FALSE(window.subject->text().isEmpty()) << "git has prepared a message, and b is staged";
    EXPECT_FALSE(window.commit->isEnabled());
    EXPECT_EQ(window.commit->toolTip(), u"Resolve and stage the conflicted files first"_s);
    repo.git({"add", "a"});
    window.store.snapshot().refresh(RefreshScope::full);
    ASSERT_TRUE(window.worker.settle());
    EXPECT_TRUE(window.commit->isEnabled());
    window.store.draft().setAmend(true);
    EXPECT_FALSE(window.commit->isEnabled());
    EXPECT_EQ(window.commit->toolTip(), u"Continue or abort the merge first"_s);
}

TEST(CommitBox, TakesTabFromFieldToFieldBeforeItsButtons)
{
    Settings::shared().set(settings::aiEnabled, false);
    TestRepository repo;
    repo.write("a", "1").commit("one").write("a", "2").git({"add", "a"});
    Window window(repo.path());
    window.subject->setFocus();
    QTest::keyClicks(window.subject, u"two"_s);
    QTest::keyClick(window.subject, Qt::Key_Tab);
    ASSERT_TRUE(window.body->hasFocus());
    QTest::keyClicks(window.view.window()->focusWidget(), u"a b"_s);
    EXPECT_EQ(window.body->toPlainText(), u"a b"_s);
    EXPECT_FALSE(window.amend->isChecked());
    QTest::keyClick(window.body, Qt::Key_Tab);
    EXPECT_TRUE(window.amend->hasFocus());
    QTest::keyClick(window.amend, Qt::Key_Tab);
    EXPECT_TRUE(window.commit->hasFocus());
    QTest::keyClick(window.commit, Qt::Key_Backtab);
    QTest::keyClick(window.amend, Qt::Key_Backtab);
    QTest::keyClick(window.body, Qt::Key_Backtab);
    EXPECT_TRUE(window.subject->hasFocus());
}

/// A writer that is at it until it is stopped, or done at once.
MessageWriter writerOf(const std::optional<QString>& message)
{
    struct Stopped {
        std::stop_token stop;
        std::optional<std::stop_callback<std::function<void()>>> callback = {};
        static bool await_ready() { return false; }
        void await_suspend(std::coroutine_handle<> waiting)
        {
            callback.emplace(stop, [waiting] { waiting.resume(); });
        }
        static void await_resume() {}
    };
    return {[message](MessageWriter::Changes, std::stop_token stop) -> QCoro::Task<QString> {
                return [](std::optional<QString> text, std::stop_token stopping) -> QCoro::Task<QString> {
                    if (!text)
                        co_await Stopped{stopping};
                    co_return text.value_or(QString());
                }(message, stop);
            },
            [](const MessageWriter::Changes& changes) {
                return MessageRequest{u"Somebody"_s, u"https://example.org"_s, u"model-1"_s, u"Write!"_s,
                                      QString::fromStdString(changes.diff)};
            }};
}

struct WrittenMessage : testing::Test {
    WrittenMessage()
    {
        repo.write("a", "1").commit("one").write("a", "2").git({"add", "a"});
        Settings::shared().set(settings::aiEnabled, true);
    }
    ~WrittenMessage() override { Settings::shared().set(settings::aiEnabled, false); }

    TestRepository repo;
};

TEST_F(WrittenMessage, IsOfferedOnlyWhileSwitchedOnAndCanBeCancelled)
{
    Window window(repo.path(), writerOf(std::nullopt));
    auto* const write = window.named<QAbstractButton>(u"Write Commit Message"_s);
    auto* const cancel = window.named<QAbstractButton>(u"Cancel Commit Message"_s);
    Settings::shared().set(settings::aiEnabled, false);
    EXPECT_FALSE(write->isVisible());
    Settings::shared().set(settings::aiEnabled, true);
    EXPECT_TRUE(write->isVisible() && write->isEnabled());
    window.store.staging().unstageAll();
    EXPECT_TRUE(window.worker.settle());
    EXPECT_FALSE(write->isEnabled());
    window.store.staging().stageAll();
    EXPECT_TRUE(window.worker.settle());

    write->setFocus();
    QTest::keyClick(write, Qt::Key_Space);
    EXPECT_TRUE(window.worker.settle());
    EXPECT_TRUE(cancel->isVisible() && cancel->hasFocus() && !write->isVisible());
    QTest::keyClick(cancel, Qt::Key_Space);
    EXPECT_FALSE(window.store.draft().generatingMessage.value());
    EXPECT_TRUE(write->isVisible() && write->hasFocus() && !cancel->isVisible());
    EXPECT_FALSE(window.store.window().errorMessage.value());
}

TEST_F(WrittenMessage, GivesWayToWhatWasTypedBefore)
{
    Window window(repo.path(), writerOf(u"Count on\n\nTwo is more."_s));
    QMenuBar bar(&window.view);
    test::NoTarget target;
    mainMenu::build(bar, target, window.store);
    bar.show(); // or its keys would be dead
    QTest::keyClicks(window.subject, u"mine"_s);
    window.body->setFocus();
    QTest::keyClicks(window.body, u"typed"_s);
    window.named<QAbstractButton>(u"Write Commit Message"_s)->click();
    EXPECT_TRUE(window.worker.settle());
    EXPECT_EQ(window.subject->text() + u'|' + window.body->toPlainText(), u"Count on|Two is more."_s);
    // One step for both fields; what is typed into the written text is undone before.
    QTest::keyClicks(window.body, u"!"_s);
    for (int step = 0; step < 2; ++step)
        QTest::keyClick(window.body, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(window.subject->text() + u'|' + window.body->toPlainText(), u"mine|typed"_s);
}

TEST_F(WrittenMessage, ShowsFirstWhatIsSent)
{
    repo.write("a", "caf\xe9\n").git({"add", "a"});
    Window window(repo.path(), writerOf(u"Written"_s));
    SentChangesDialog dialog(window.store, &window.view);
    dialog.setAttribute(Qt::WA_DeleteOnClose, false);
    dialog.open();
    EXPECT_TRUE(window.worker.settle());
    EXPECT_EQ(test::named<QLabel>(dialog, u"Receiver"_s)->text(), u"To Somebody, model model-1\nhttps://example.org"_s);
    const QString sent = test::named<QPlainTextEdit>(dialog, u"Sent Text"_s)->toPlainText();
    EXPECT_TRUE(sent.startsWith(u"Write!\n\ndiff --git a/a b/a"_s) && sent.contains(u"+caf\uFFFD"_s))
        << sent.toStdString();
}

TEST(CommitBox, KeepsTheMessageOfACommitThatFails)
{
    TestRepository repo;
    repo.write("a", "1").commit("one").write("a", "2").git({"add", "a"});
    repo.write(".git/hooks/pre-commit", "#!/bin/sh\necho no >&2\nexit 1\n");
    std::filesystem::permissions(repo / ".git/hooks/pre-commit", std::filesystem::perms::owner_all);
    Window window(repo.path());
    window.subject->setFocus();
    QTest::keyClicks(window.subject, u"two"_s);
    QTest::keyClick(window.subject, Qt::Key_Return, Qt::ControlModifier);
    EXPECT_TRUE(window.worker.settle());
    EXPECT_TRUE(window.store.window().errorMessage.value());
    EXPECT_TRUE(window.worker.settle());
    EXPECT_TRUE(window.commit->isEnabled());
    EXPECT_EQ(window.subject->text(), u"two"_s);
    EXPECT_TRUE(window.subject->hasFocus());
}

TEST(CommitBox, TellsTheLengthOfALongSubject)
{
    Window window(TestRepository().path());
    window.subject->setText(QString(49, u'x'));
    EXPECT_EQ(window.length->text(), QString());
    EXPECT_EQ(window.subject->accessibleDescription(), u"49 characters."_s);
    window.subject->setText(u"\U0001F600"_s + QString(49, u'x'));
    EXPECT_EQ(window.length->text(), u"50"_s);
    const auto color = [&] { return window.length->palette().color(QPalette::WindowText); };
    const QColor quiet = color();
    window.subject->setText(QString(72, u'x'));
    const QColor plain = color();
    window.subject->setText(QString(73, u'x'));
    EXPECT_EQ(window.length->text(), u"73"_s);
    EXPECT_NE(plain, quiet);
    EXPECT_NE(color(), plain);
    EXPECT_TRUE(window.length->font().bold());
}

TEST(CommitBox, SaysWhatAnAmendedCommitHoldsAndWhoMayHaveIt)
{
    TestRepository repo;
    repo.write("a", "1").commit("one").write("b b", "1").write("c", "1").git({"add", "."}).commit("two");
    Window window(repo.path());
    const auto* const files = window.named<QLabel>(u"Amended Files"_s);
    const auto* const published = window.named<QLabel>(u"Amended Commit Published"_s);
    EXPECT_FALSE(files->isVisible());
    window.amend->click();
    ASSERT_TRUE(window.worker.settle());
    EXPECT_EQ(files->text(), u"Holds 2 files of the last commit: b b, c"_s);
    EXPECT_FALSE(published->isVisible());
    repo.git({"update-ref", "refs/remotes/origin/main", "HEAD"});
    window.amend->click();
    window.amend->click();
    ASSERT_TRUE(window.worker.settle());
    EXPECT_TRUE(published->text().contains(u"origin/main"_s)) << published->text().toStdString();
}

TEST(CommitBox, AddsTrailersFromItsMenu)
{
    TestRepository repo;
    repo.write("a", "1").commit("one");
    Window window(repo.path());
    window.body->setPlainText(u"Why"_s);
    const auto choose = [&](const QString& title) {
        window.named<QAbstractButton>(u"Commit Message Options"_s)->click();
        QMenu* menu = window.view.findChild<QMenu*>();
        for (QAction* action : menu->findChildren<QAction*>())
            if (withoutMnemonic(action->text()) == title)
                action->trigger();
        for (QMenu* sub : menu->findChildren<QMenu*>()) {
            Q_EMIT sub->aboutToShow();
            EXPECT_TRUE(window.worker.settle());
            for (QAction* action : sub->actions())
                if (withoutMnemonic(action->text()) == title)
                    action->trigger();
        }
        delete menu;
        EXPECT_TRUE(window.worker.settle());
    };
    const QString me = QString::fromStdString(repo.read({"log", "-1", "--format=%an <%ae>"})).trimmed();
    choose(u"Sign Off"_s);
    choose(u"Sign Off"_s);
    const QString committer = QString::fromStdString(repo.read({"log", "-1", "--format=%cn <%ce>"})).trimmed();
    EXPECT_EQ(window.body->toPlainText(), u"Why\n\nSigned-off-by: "_s + committer) << "once is enough";
    choose(me);
    EXPECT_TRUE(window.body->toPlainText().endsWith(committer + u"\nCo-authored-by: "_s + me));

    // A message that was used before takes the place of what was typed, and gives it back.
    const QString typed = window.body->toPlainText();
    choose(QString::fromStdString(repo.read({"log", "-1", "--format=%s"})));
    EXPECT_NE(window.body->toPlainText(), typed);
    EXPECT_TRUE(window.store.draft().canUndoMessage.value());
    window.store.draft().undoMessage();
    EXPECT_EQ(window.body->toPlainText(), typed);
    EXPECT_EQ(window.view.window()->focusWidget(), window.body);
}

TEST(CommitBox, UnderlinesWhatNoDictionaryHas)
{
    struct Dictionary : SpellChecker {
        bool isRight(const QString& word) const override { return word != u"wrnog"_s && word != u"teh"_s; }
        QStringList suggestions(const QString&) const override { return {u"wrong"_s}; }
    };
    Window window(TestRepository().path());
    auto* const body = qobject_cast<BodyField*>(window.body);
    body->checkSpelling(std::make_unique<Dictionary>());
    const auto marked = [&](const QString& text) {
        body->setPlainText(text);
        QStringList words;
        for (QTextBlock block = body->document()->begin(); block.isValid(); block = block.next())
            for (const auto& range : block.layout()->formats())
                words << block.text().mid(range.start, range.length);
        return words.join(u' ');
    };
    EXPECT_EQ(marked(u"A wrnog word, (teh) end."_s), u"wrnog teh"_s);
    EXPECT_EQ(marked(u"two-wrnog-words"_s), u"wrnog"_s);
    EXPECT_EQ(marked(u"`wrnog` teh_teh teh.cpp tehTeh WRNOG teh2"_s), QString()) << "names of the code";
    EXPECT_EQ(marked(u"    wrnog\nFixes: teh"_s), QString());
    EXPECT_EQ(window.store.draft().commitBody.value(), u"    wrnog\nFixes: teh"_s);
    EXPECT_EQ(marked(u"teh"_s), u"teh"_s);
    body->stopCheckingSpelling();
    EXPECT_EQ(body->document()->begin().layout()->formats().size(), 0);
}

TEST(MessageFormat, WrapsWhatIsTooLongAndLeavesTheRest)
{
    const QString words = QString(u"word "_s).repeated(20).trimmed(); // 99 characters
    const QString filled =
        QString(u"word "_s).repeated(14).trimmed() + u'\n' + QString(u"word "_s).repeated(6).trimmed();
    using messageFormat::wrapped;
    EXPECT_EQ(wrapped(words), filled);
    EXPECT_EQ(wrapped(u"short\nlines"_s), u"short\nlines"_s);
    EXPECT_EQ(wrapped(u"- "_s + words).section(u'\n', 1), u"  "_s + QString(u"word "_s).repeated(6).trimmed());
    for (const QString& kept : {u"    "_s + words, u"> "_s + words, u"Fixes: "_s + words, QString(100, u'x')})
        EXPECT_EQ(wrapped(kept), kept);
    EXPECT_EQ(wrapped(words + u"\n\n    code\n"_s), filled + u"\n\n    code\n"_s);

    using messageFormat::withTrailer;
    EXPECT_EQ(withTrailer({}, u"A: b"_s), u"A: b"_s);
    EXPECT_EQ(withTrailer(u"Why: because\nof that\n"_s, u"A: b"_s), u"Why: because\nof that\n\nA: b"_s);
    EXPECT_EQ(withTrailer(u"Why.\n\nC: d"_s, u"A: b"_s), u"Why.\n\nC: d\nA: b"_s);
    EXPECT_EQ(withTrailer(u"Why.\n\nC: d\nA: B"_s, u"A: b"_s), u"Why.\n\nC: d\nA: B"_s);
}

TEST(CommitBox, SplitsAPastedMessage)
{
    Window window(TestRepository().path());
    window.body->setPlainText(u"end"_s);
    QGuiApplication::clipboard()->setText(u"subject\r\n\r\nline\nline "_s);
    window.subject->setText(u"My  tail"_s);
    window.subject->setCursorPosition(3);
    QTest::keyClick(window.subject, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(window.store.draft().commitSubject.value(), u"My subject"_s);
    EXPECT_EQ(window.store.draft().commitBody.value(), u"line\nline tail\n\nend"_s);
    window.subject->undo();
    EXPECT_EQ(window.subject->text(), u"My  tail"_s);

    window.subject->clear();
    window.body->clear();
    window.subject->paste(); // as a menu does
    EXPECT_EQ(window.store.draft().commitSubject.value(), u"subject"_s);
    EXPECT_EQ(window.store.draft().commitBody.value(), u"line\nline"_s);
}

TEST(CommitBox, BringsBackWhatWasTypedUntilItIsCommitted)
{
    TestRepository repo;
    repo.write("a", "1").commit("one").write("a", "2").git({"add", "a"});
    const QString file = commitDrafts::fileFor(repo.path());
    {
        Window window(repo.path());
        QTest::keyClicks(window.subject, u"two"_s);
        EXPECT_TRUE(QTest::qWaitFor([&] { return QFile::exists(file); })); // as a crash would find it
        window.body->setPlainText(u"why\n"_s);
    }
    // The same file, under the name of a repository that this run knows nothing of.
    const TestRepository other;
    ASSERT_TRUE(QFile::copy(file, commitDrafts::fileFor(other.path())));
    EXPECT_EQ(commitDrafts::read(other.path()).subject, u"two"_s);
    EXPECT_EQ(commitDrafts::read(other.path()).body, u"why\n"_s);
    EXPECT_EQ(QFileInfo(file).permissions() & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());

    Window window(repo.path());
    EXPECT_EQ(window.subject->text(), u"two"_s);
    EXPECT_EQ(window.body->toPlainText(), u"why\n"_s);
    window.commit->click();
    EXPECT_TRUE(window.worker.settle());
    EXPECT_TRUE(window.store.snapshot().status.value().files.empty());
    commitDrafts::finishWriting();
    EXPECT_FALSE(QFile::exists(file));
}

TEST(CommitBox, ATemplateTakesNoDraftsPlaceAndIsNone)
{
    TestRepository repo;
    repo.write("a", "1").commit("one").write("a", "2").git({"add", "a"});
    {
        Window window(repo.path());
        QTest::keyClicks(window.subject, u"two"_s);
    }
    repo.write(".git/template", "fix: \n").git({"config", "commit.template", ".git/template"});
    {
        Window window(repo.path());
        EXPECT_EQ(window.subject->text(), u"two"_s);
        window.subject->clear();
        window.store.draft().empty();
        EXPECT_EQ(window.subject->text(), u"fix:"_s);
        EXPECT_FALSE(window.commit->isEnabled());
        EXPECT_EQ(window.commit->toolTip(), plainToolTip(u"The message is the template as it was; edit it first"_s));
    }
    EXPECT_TRUE(commitDrafts::read(repo.path()).isEmpty());
}

TEST(CommitBox, KeepsNoMessageThatGitKeeps)
{
    TestRepository repo;
    repo.write("a", "1").commit("one\n\nbody");
    {
        Window window(repo.path());
        window.amend->click();
        EXPECT_TRUE(window.worker.settle());
        EXPECT_EQ(window.body->toPlainText(), u"body"_s);
        EXPECT_EQ(window.subject->text(), u"one"_s);
    }
    EXPECT_TRUE(commitDrafts::read(repo.path()).isEmpty());
    {
        Window window(repo.path());
        window.amend->click();
        EXPECT_TRUE(window.worker.settle());
        EXPECT_EQ(window.body->toPlainText(), u"body"_s);
        window.subject->end(false);
        QTest::keyClicks(window.subject, u" more"_s);
    }
    EXPECT_EQ(commitDrafts::read(repo.path()).subject, u"one more"_s);
    {
        Window window(repo.path());
        EXPECT_TRUE(window.amend->isChecked());
        EXPECT_EQ(window.subject->text(), u"one more"_s);
    }
    repo.commit("another");
    Window window(repo.path());
    EXPECT_FALSE(window.amend->isChecked()) << "it was not for this commit";
    EXPECT_EQ(window.subject->text(), u"one more"_s);
}

TEST(CommitBox, ForgetsADraftThatWasCommittedAfterItsWindowHadClosed)
{
    TestRepository repo;
    repo.write("a", "1").commit("one");
    {
        Window window(repo.path());
        QTest::keyClicks(window.subject, u"two"_s);
        window.body->setPlainText(u"why"_s);
    }
    repo.write("a", "2").commit("two\n\nwhy");
    Window window(repo.path());
    EXPECT_EQ(window.subject->text(), QString());
    EXPECT_EQ(window.body->toPlainText(), QString());
}

TEST(CommitBox, WaitsForNoPipeInADraftsPlace)
{
    const TestRepository repo;
    const QString file = commitDrafts::fileFor(repo.path());
    ASSERT_TRUE(QDir().mkpath(QFileInfo(file).path()));
    ASSERT_EQ(::mkfifo(QFile::encodeName(file).constData(), 0600), 0);
    EXPECT_TRUE(commitDrafts::read(repo.path()).isEmpty());
    commitDrafts::keep(repo.path(), {u"two"_s, {}});
    commitDrafts::finishWriting();
    EXPECT_TRUE(QFileInfo(file).isFile()) << "it was replaced";
}

TEST(CommitBox, WritesADraftWhereNoThreadCanBeStarted)
{
    const TestRepository repo;
    {
        const test::NoMoreThreads none;
        commitDrafts::keep(repo.path(), {u"two"_s, {}});
    }
    EXPECT_TRUE(QFile::exists(commitDrafts::fileFor(repo.path())));
}

TEST(CommitBox, LosesNoDraftOnAFullDiskAndSaysItOnce)
{
    const TestRepository repo;
    commitDrafts::keep(repo.path(), {u"two"_s, {}});
    commitDrafts::finishWriting();
    const std::string file = QFile::encodeName(commitDrafts::fileFor(repo.path())).toStdString();
    const std::string before = readFile(file);
    int told = 0;
    {
        const test::FullDisk full(20);
        for (const QString& body : {u"why"_s, u"and how"_s})
            commitDrafts::keep(repo.path(), {u"two"_s, body}, [&told](const QString&) { ++told; });
        commitDrafts::finishWriting();
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(readFile(file), before);
    EXPECT_EQ(told, 1);
    EXPECT_EQ(Window(repo.path()).body->toPlainText(), u"and how"_s) << "kept for this run";
}

TEST(CommitBox, KeepsADraftForThisRunWhereNothingCanBeWritten)
{
    const TestRepository repo;
    const QString folder = QFileInfo(commitDrafts::fileFor(repo.path())).path();
    QDir(folder).removeRecursively();
    ASSERT_TRUE(QDir().mkpath(QFileInfo(folder).path()));
    QFile inTheWay(folder);
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    commitDrafts::keep(repo.path(), {u"two"_s, {}});
    commitDrafts::finishWriting();
    EXPECT_EQ(Window(repo.path()).subject->text(), u"two"_s);
    inTheWay.remove();
}

} // namespace
} // namespace plovik
