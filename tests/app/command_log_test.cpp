// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/runner/RunContext.h"
#include "app/store/RepositoryStore.h"
#include "app/ui/commands/MainMenu.h"
#include "app/ui/dialogs/ErrorAlert.h"
#include "app/ui/log/CommandLogModel.h"
#include "app/ui/widgets/TerminalText.h"
#include "app/ui/window/ActivityView.h"
#include "app/ui/window/RepositoryView.h"
#include "tests/app/SettlingWorker.h"
#include "tests/app/ShownWidgets.h"
#include "tests/support/Given.h"
#include "tests/support/TestRepository.h"

#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QtTest/QTest>

#include <gtest/gtest.h>

#include <filesystem>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

using test::named;
using test::waitUntil;
using Stream = gitkit::RunListener::Stream;

TEST(Activity, IsShownWithItsTimeItsProgressAndAWayOut)
{
    RepositoryStore store{"/nonexistent"};
    std::chrono::steady_clock::time_point now{};
    ActivityView view{store, nullptr, [&now] { return now; }};
    view.resize(300, 40);
    view.show();
    const auto* activity = named<QLabel>(view, u"Activity"_s);
    const auto* elapsed = named<QLabel>(view, u"Elapsed Time"_s);
    auto* cancel = named<QPushButton>(view, u"Cancel"_s);
    EXPECT_FALSE(cancel->isVisible());

    given(store.changes().activity, u"Fetching…"_s);
    EXPECT_TRUE(cancel->isVisible() && cancel->isEnabled());
    const QRect place = activity->geometry();
    const auto after = [&](int seconds) {
        now += std::chrono::seconds(seconds);
        view.showElapsed();
        return elapsed->text();
    };
    EXPECT_EQ(after(1), QString());
    EXPECT_EQ(after(6), u"0:07"_s);
    EXPECT_EQ(shownDuration(std::chrono::seconds(3607)), u"1:00:07"_s);
    EXPECT_EQ(activity->text(), u"Fetching…"_s);
    const QString line = u"Receiving objects:  42% (420/1000), 1.2 MiB | 3 MiB/s"_s;
    given(store.changes().progress, line);
    QApplication::processEvents();
    EXPECT_EQ(named<QLabel>(view, u"Progress"_s)->text(), line);
    EXPECT_EQ(activity->geometry().right(), place.right());
    EXPECT_LE(named<QLabel>(view, u"Progress"_s)->geometry().right(), cancel->x());

    // A hook is told of once it takes longer, and its output is one click away.
    auto* const output = named<QPushButton>(view, u"Show Output"_s);
    given(store.changes().hook, RunningHook{7, u"pre-commit"_s, now});
    EXPECT_EQ(activity->text(), u"Fetching…"_s);
    EXPECT_FALSE(output->isVisible());
    after(12);
    EXPECT_EQ(activity->text(), u"pre-commit · 12 s"_s);
    EXPECT_TRUE(output->isVisible() && !elapsed->isVisible());
    output->click();
    EXPECT_TRUE(store.window().showsCommandLog.value());
    EXPECT_EQ(store.window().shownCommand.value(), 7u);
    given(store.changes().hook, std::nullopt);
    EXPECT_EQ(activity->text(), u"Fetching…"_s);
    EXPECT_FALSE(output->isVisible());
    after(0);
    EXPECT_TRUE(elapsed->isVisible());

    given(store.changes().isCancelling, true);
    EXPECT_EQ(activity->text(), u"Cancelling…"_s);
    EXPECT_FALSE(cancel->isEnabled());
    given(store.changes().activity, std::nullopt);
    given(store.changes().isCancelling, false);
    EXPECT_TRUE(activity->text().isEmpty() && elapsed->text().isEmpty() && !cancel->isVisible());
}

TEST(CommandLogModel, FollowsTheLogAndKeepsWhatItsFilterLetsThrough)
{
    CommandLog commands;
    CommandLogModel model{commands};
    const auto log = commands.listener();
    const auto lines = [&model] {
        std::vector<std::string> all;
        for (int row = 0; row < model.rowCount(); ++row)
            all.push_back(model.index(row).data().toString().toStdString());
        return all;
    };
    using Lines = std::vector<std::string>;
    log->began(1, {"-c", "color.ui=false", "status"}, "/x");
    log->began(2, {"fetch", "https://a:b@c/", "a\nb"}, "/x");
    log->began(3, {"log"}, "/x");
    model.update();
    EXPECT_EQ(lines(), (Lines{"git log", "git fetch 'https://•••@c/' 'a b'", "git status"}));
    EXPECT_EQ(shownEnd(model.command(model.index(0))), u"running"_s);
    log->ended(1, {.status = 0, .duration = std::chrono::milliseconds(120)});
    log->ended(2, {.status = 143, .signalled = true, .stopped = true});
    model.update();
    EXPECT_EQ(shownTook(model.command(model.index(2))), u"0.12 s"_s);
    EXPECT_EQ(shownEnd(model.command(model.index(2))), QString());
    EXPECT_EQ(shownEnd(model.command(model.index(1))), u"cancelled"_s);

    model.setFilter({}, true);
    EXPECT_EQ(model.rowCount(), 1);
    log->ended(3, {.status = 128}); // a read that failed is worth a look
    model.update();
    EXPECT_EQ(lines().front(), "git log");
    EXPECT_EQ(shownEnd(model.command(model.index(0))), u"✗ 128"_s);
    model.setFilter(u"C/ FETCH"_s, false);
    EXPECT_EQ(model.rowCount(), 1);
    EXPECT_FALSE(model.indexOf(3).isValid());
    model.setFilter({}, false);
    for (CommandLog::Number number = 4; number < 1100; ++number)
        log->began(number, {"show", std::to_string(number)}, "/x");
    model.update();
    EXPECT_EQ(model.rowCount(), 1000);
    EXPECT_EQ(lines().front(), "git show 1099");
    EXPECT_FALSE(model.indexOf(2).isValid());
}

TEST(TerminalTexts, KeepBothEndsOfWhatIsTooLong)
{
    EXPECT_EQ(printedText(u"a"_s + QChar(0) + u"b\r\n 5%\r\x1b[K99%\n\x1b]0;x\ny"_s), u"a\nb\n99%\n\ny"_s);
    QStringList lines;
    for (int line = 0; line < 100'000; ++line)
        lines.append(QString::number(line));
    const QString shown = boundedText(lines.join(u'\n'));
    EXPECT_TRUE(shown.startsWith(u"0\n1\n"_s) && shown.endsWith(u"\n99998\n99999"_s));
    EXPECT_TRUE(shown.contains(u"98,000 lines are left out"_s)) << shown.size();
    EXPECT_EQ(shown.count(u'\n'), 2002);
    EXPECT_LT(boundedText(QString(1'000'000, u'x')).size(), 5000);
}

TEST(ErrorAlerts, TellOfAChangedHostKeyAsTheDangerItIs)
{
    ErrorAlert alert{{.kind = gitkit::ErrorKind::hostKeyChanged,
                      .message = u"@@@@@@@@\n@ WARNING: REMOTE HOST IDENTIFICATION HAS CHANGED! @\n@@@@@@@@\n"
                                 "Host key for [host.example]:22 has changed and you have requested strict checking.\n"
                                 "Host key verification failed.\nfatal: Could not read from remote repository."_s},
                     {},
                     nullptr};
    alert.show();
    const auto* danger = named<QLabel>(alert, u"Danger"_s);
    EXPECT_TRUE(danger->isVisible() && danger->text().contains(u"The key of [host.example]:22 is not"_s));
    EXPECT_TRUE(alert.message().contains(u"Host key verification failed."_s));
    EXPECT_FALSE(named<QPushButton>(alert, u"Show in Command Log"_s)->isVisible());
    alert.setFailure({.message = u"Another one."_s});
    EXPECT_FALSE(danger->isVisible());
}

/// A window's content over a real repository with a hook that says no.
class CommandLogPanelTest : public testing::Test {
protected:
    CommandLogPanelTest()
    {
        repo.write("a", "1\n").commit("one").write("a", "2\n").git({"add", "a"});
        repo.write(".git/hooks/pre-commit",
                   "#!/bin/sh\necho first\nseq 3000\necho https://me:pw@host/ last >&2\nexit 3\n");
        std::filesystem::permissions(repo / ".git/hooks/pre-commit", std::filesystem::perms::owner_all);
        view.resize(1200, 700);
        view.show();
        store.snapshot().refresh(RefreshScope::full);
        EXPECT_TRUE(worker.settle());
    }
    ~CommandLogPanelTest() override { worker.settle(); }

    QPlainTextEdit* output() const { return named<QPlainTextEdit>(view, u"Command Output"_s); }

    TestRepository repo;
    test::SettlingWorker worker;
    struct Opened {
        std::filesystem::path file;
        int line;
        int column;
        bool operator==(const Opened&) const = default;
    };
    std::vector<Opened> opened;
    RepositoryStore store{
        repo.path(), worker, {.openAtLine = [this](const auto& file, int line, int column, const auto&) {
            opened.push_back({file, line, column});
        }}};
    RepositoryView view{store};
};

TEST_F(CommandLogPanelTest, WhatAHookSaidIsWholeInTheAlertAndTheLog)
{
    EXPECT_FALSE(output()); // nothing is made before it is wanted
    store.draft().setSubject(u"two"_s);
    store.draft().commit();
    ASSERT_TRUE(worker.settle());
    QDialog* alert = test::openDialog(view);
    ASSERT_TRUE(alert);
    const QString told = qobject_cast<ErrorAlert*>(alert)->message();
    EXPECT_TRUE(told.startsWith(u"first\n1\n"_s) && told.endsWith(u"3000\nhttps://•••@host/ last"_s));
    EXPECT_EQ(store.draft().commitSubject.value(), u"two"_s);

    named<QPushButton>(*alert, u"Show in Command Log"_s)->click();
    EXPECT_FALSE(test::openDialog(view));
    auto* list = named<QListView>(view, u"Command Log"_s);
    ASSERT_TRUE(list && list->isVisible());
    EXPECT_TRUE(list->currentIndex().data().toString().startsWith(u"git commit"_s));
    EXPECT_TRUE(output()->toPlainText().startsWith(u"first\n1\n"_s));
    EXPECT_TRUE(output()->toPlainText().contains(u"https://•••@host/ last"_s));
    EXPECT_TRUE(named<QLabel>(view, u"Command Facts"_s)->text().contains(u"exit status 1"_s));

    QTest::keyClick(list, Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(QGuiApplication::clipboard()->text().startsWith(u"cd "_s));
    EXPECT_TRUE(QGuiApplication::clipboard()->text().contains(u" && git -c core.quotepath=false"_s));
    named<QLineEdit>(view, u"Filter Commands"_s)->setText(u"nothing has this"_s);
    EXPECT_EQ(list->model()->rowCount(), 0);
    QTest::keyClick(named<QLineEdit>(view, u"Filter Commands"_s), Qt::Key_Escape);
    EXPECT_GT(list->model()->rowCount(), 5);
    QTest::keyClick(list, Qt::Key_Escape);
    EXPECT_FALSE(store.window().showsCommandLog.value() || list->isVisible());
}

TEST_F(CommandLogPanelTest, AnOlderCommandComesIntoSightWhenThePanelOpensWithIt)
{
    const auto log = store.changes().commandLog().listener();
    for (CommandLog::Number number = 1'000'000; number < 1'000'100; ++number)
        log->began(number, {"fetch", std::to_string(number)}, repo.path());
    ASSERT_TRUE(waitUntil([this] { return store.changes().commandLog().commands().size() >= 100; }));
    store.window().showCommand(1'000'020);
    store.window().showCommandLog(true);
    auto* const list = named<QListView>(view, u"Command Log"_s);
    ASSERT_TRUE(list);
    EXPECT_TRUE(waitUntil([list] {
        const QModelIndex current = list->currentIndex();
        return current.data().toString().contains(u"1000020"_s) &&
               list->viewport()->rect().contains(list->visualRect(current));
    }));
}

TEST_F(CommandLogPanelTest, OutputIsFollowedAsItComesUntilTheUserScrollsUp)
{
    const auto log = store.changes().commandLog().listener();
    const CommandLog::Number number = 1'000'000;
    log->began(number, {"push"}, repo.path());
    store.window().showCommand(number);
    store.window().showCommandLog(true);
    ASSERT_TRUE(waitUntil([this] { return output() && output()->isVisible(); }));
    const auto prints = [&](const std::string& text) {
        log->printed(number, Stream::error, text);
        const QString wanted = QString::fromStdString(text);
        return waitUntil([&] { return output()->toPlainText().endsWith(wanted); });
    };
    std::string lines;
    for (int line = 0; line < 200; ++line)
        lines += "hook says " + std::to_string(line) + "\n";
    ASSERT_TRUE(prints(lines));
    QScrollBar& bar = *output()->verticalScrollBar();
    EXPECT_EQ(bar.value(), bar.maximum());
    ASSERT_TRUE(prints("more\nand more\n"));
    EXPECT_EQ(bar.value(), bar.maximum());
    bar.setValue(5);
    ASSERT_TRUE(prints("the end\n"));
    EXPECT_EQ(bar.value(), 5);
}

TEST_F(CommandLogPanelTest, IsWhereAHookThatRefusedLeadsOnFrom)
{
    repo.write("src/b c.cpp", "x\n").write("d.cpp", "x\n");
    repo.write(".git/hooks/pre-commit", "#!/bin/sh\necho 'd.cpp:12:5: error'\necho 'see gone.cpp:3, ../d.cpp:1'\n"
                                        "echo \"$PWD/d.cpp:7 12:34:56 http://host:80\"\nexit 3\n");
    store.draft().setSubject(u"two"_s);
    store.draft().commit();
    ASSERT_TRUE(worker.settle());
    named<QPushButton>(*test::openDialog(view), u"Show in Command Log"_s)->click();
    ASSERT_TRUE(worker.settle());

    // Places in files that are there are links.
    const QString text = output()->toPlainText();
    QStringList links;
    for (const QTextEdit::ExtraSelection& mark : output()->extraSelections())
        links.append(mark.cursor.selectedText());
    EXPECT_EQ(links, (QStringList{u"d.cpp:12:5"_s, QString::fromStdString((repo / "d.cpp").string()) + u":7"_s}));
    QTest::keyClick(output(), Qt::Key_Home, Qt::ControlModifier);
    QTest::keyClick(output(), Qt::Key_Return);
    ASSERT_EQ(opened.size(), 1u);
    EXPECT_EQ(opened[0], (Opened{repo / "d.cpp", 12, 5}));
    EXPECT_TRUE(named<QLabel>(view, u"Command Facts"_s)->text().contains(u"pre-commit: "_s));
    EXPECT_TRUE(named<QLabel>(view, u"Command Facts"_s)->text().contains(u", ✗ 3"_s));

    EXPECT_FALSE(named<QPushButton>(view, u"Stop"_s)->isVisible());
    ASSERT_TRUE(named<QPushButton>(view, u"Run Again"_s)->isVisible());
    const std::string head = repo.head();
    named<QPushButton>(view, u"Commit Without Hooks"_s)->click();
    ASSERT_TRUE(worker.settle());
    EXPECT_NE(repo.head(), head);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(named<QPushButton>(view, u"Commit Without Hooks"_s));
}

} // namespace
} // namespace plovik
