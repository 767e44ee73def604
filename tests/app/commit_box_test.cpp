// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings/CommitDrafts.h"
#include "app/store/RepositoryStore.h"
#include "app/views/workingcopy/WorkingCopyView.h"
#include "tests/app/SettlingWorker.h"
#include "tests/support/TestRepository.h"

#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

/// A window on a repository, as far as the commit box is concerned.
struct Window {
    explicit Window(const std::filesystem::path& root) : store(root, worker)
    {
        view.resize(1000, 700);
        view.show();
        view.activateWindow();
        store.refresh(RefreshScope::full);
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
    EXPECT_EQ(window.store.commitSubject.value(), u"two"_s);
    EXPECT_FALSE(window.commit->isEnabled());
    window.store.stageAll();
    EXPECT_TRUE(window.worker.settle());
    EXPECT_TRUE(window.commit->isEnabled());
    window.store.activity = u"Fetching…"_s;
    EXPECT_FALSE(window.commit->isEnabled());
    window.store.activity = std::nullopt;
    window.store.unstageAll();
    EXPECT_TRUE(window.worker.settle());
    EXPECT_FALSE(window.commit->isEnabled());
    window.amend->click();
    EXPECT_TRUE(window.commit->isEnabled());
    window.subject->setText(u" \t"_s);
    EXPECT_FALSE(window.commit->isEnabled());
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
    EXPECT_TRUE(window.store.errorMessage.value());
    EXPECT_TRUE(window.worker.settle());
    EXPECT_TRUE(window.commit->isEnabled());
    EXPECT_EQ(window.subject->text(), u"two"_s);
    EXPECT_TRUE(window.subject->hasFocus());
}

TEST(CommitBox, TellsTheLengthOfTheSubject)
{
    Window window(TestRepository().path());
    EXPECT_EQ(window.length->text(), QString());
    window.subject->setText(u"\U0001F600é"_s);
    EXPECT_EQ(window.length->text(), u"2"_s);
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

TEST(CommitBox, SplitsAPastedMessage)
{
    Window window(TestRepository().path());
    window.body->setPlainText(u"end"_s);
    QGuiApplication::clipboard()->setText(u"subject\r\n\r\nline\nline "_s);
    window.subject->setText(u"My  tail"_s);
    window.subject->setCursorPosition(3);
    QTest::keyClick(window.subject, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(window.store.commitSubject.value(), u"My subject"_s);
    EXPECT_EQ(window.store.commitBody.value(), u"line\nline tail\n\nend"_s);
    window.subject->undo();
    EXPECT_EQ(window.subject->text(), u"My  tail"_s);

    window.subject->clear();
    window.body->clear();
    window.subject->paste(); // as a menu does
    EXPECT_EQ(window.store.commitSubject.value(), u"subject"_s);
    EXPECT_EQ(window.store.commitBody.value(), u"line\nline"_s);
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
    EXPECT_EQ(commitDrafts::read(other.path()), (commitDrafts::Draft{u"two"_s, u"why\n"_s}));
    EXPECT_EQ(QFileInfo(file).permissions() & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());

    Window window(repo.path());
    EXPECT_EQ(window.subject->text(), u"two"_s);
    EXPECT_EQ(window.body->toPlainText(), u"why\n"_s);
    window.commit->click();
    EXPECT_TRUE(window.worker.settle());
    EXPECT_TRUE(window.store.status.value().files.empty());
    commitDrafts::finishWriting();
    EXPECT_FALSE(QFile::exists(file));
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
