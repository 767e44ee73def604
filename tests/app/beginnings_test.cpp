// SPDX-License-Identifier: GPL-3.0-or-later
// Cloning and making repositories as a new user does, from the welcome window.

#include "app/settings/Settings.h"
#include "app/shell/AppDelegate.h"
#include "app/shell/RepositoryWindow.h"
#include "app/store/actions/Refs.h"
#include "app/ui/welcome/CloneDialog.h"
#include "app/ui/welcome/CreateDialog.h"
#include "app/ui/welcome/DroppedRepositories.h"
#include "app/ui/welcome/WelcomeView.h"
#include "tests/app/EventWait.h"
#include "tests/app/GitHttpServer.h"
#include "tests/app/ShownWidgets.h"
#include "tests/app/TlsAuthority.h"
#include "tests/support/TestRepository.h"

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QSignalSpy>
#include <QUrl>
#include <QtTest/QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

namespace fs = std::filesystem;
using test::named;
using test::waitUntil;
constexpr std::chrono::seconds patience{60};

template <typename Window>
Window* shownOne()
{
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (auto* const found = qobject_cast<Window*>(window); found && window->isVisible())
            return found;
    }
    return nullptr;
}

class BeginningsTest : public testing::Test {
protected:
    BeginningsTest()
    {
        Settings::shared().set(u"recentRepositories"_s, QStringList());
        QApplication::clipboard()->clear();
        origin.write("a", "1").commit("one");
    }
    ~BeginningsTest() override { QApplication::clipboard()->clear(); }

    CloneDialog& cloneDialog(const QString& address = {})
    {
        delegate.cloneFrom(address);
        return *shownOne<CloneDialog>();
    }
    static void type(const QWidget& dialog, const QString& field, const QString& text)
    {
        auto* const edit = named<QLineEdit>(dialog, field);
        edit->selectAll();
        QTest::keyClicks(edit, text);
    }
    static QString typed(const QWidget& dialog, const QString& field)
    {
        return named<QLineEdit>(dialog, field)->text();
    }
    static QString said(const QWidget& dialog) { return named<QLabel>(dialog, u"Progress"_s)->text(); }
    static QPushButton& button(const QWidget& dialog, const QString& title)
    {
        return *named<QPushButton>(dialog, title);
    }
    QString shown(const char* name) const { return QString::fromStdString((place / name).string()); }
    bool opens(const fs::path& root) const
    {
        return waitUntil(
            [&root] {
                const auto* const window = shownOne<RepositoryWindow>();
                return window && window->root() == root;
            },
            patience);
    }

    TestRepository origin;
    TemporaryFolder place;
    AppDelegate delegate{LaunchOptions()};
};

TEST_F(BeginningsTest, AnAddressIsClonedAndOpensInPlaceOfTheWelcomeWindow)
{
    const ScopedVariable home("HOME", place.path().string());
    QApplication::clipboard()->setText(u" https://example.org/ada/engine.git\n"_s);
    delegate.showWelcome();
    auto* const welcome = shownOne<WelcomeView>();
    QApplication::setActiveWindow(welcome);
    QTest::keyClick(welcome, Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
    auto* const dialog = shownOne<CloneDialog>();
    ASSERT_TRUE(dialog);
    EXPECT_EQ(typed(*dialog, u"Address"_s), u"https://example.org/ada/engine.git"_s) << "from the clipboard";
    EXPECT_EQ(typed(*dialog, u"Folder"_s), u"~/engine"_s);

    type(*dialog, u"Address"_s, u"file://"_s + QString::fromStdString(origin.path().string()));
    EXPECT_EQ(typed(*dialog, u"Folder"_s), u"~/"_s + QString::fromStdString(origin.path().filename().string()));
    fs::create_directories(place / "full/of");
    type(*dialog, u"Folder"_s, u"~/full"_s);
    EXPECT_EQ(said(*dialog), u"The folder “full” is not empty."_s);
    EXPECT_FALSE(button(*dialog, u"Clone"_s).isEnabled());
    type(*dialog, u"Folder"_s, u"somewhere"_s);
    EXPECT_TRUE(said(*dialog).contains(u"whole path"_s));
    type(*dialog, u"Folder"_s, u"~/a/b/"_s);
    EXPECT_EQ(said(*dialog), QString());
    type(*dialog, u"Branch"_s, u"no..name"_s);
    EXPECT_FALSE(button(*dialog, u"Clone"_s).isEnabled());
    type(*dialog, u"Branch"_s, u"main"_s);
    auto* const depth = named<QComboBox>(*dialog, u"History"_s);
    depth->setCurrentIndex(1);
    EXPECT_TRUE(said(*dialog).contains(u"newest commit"_s));
    button(*dialog, u"Clone"_s).click();
    EXPECT_FALSE(named<QLineEdit>(*dialog, u"Address"_s)->isEnabled());
    ASSERT_TRUE(opens(place / "a/b"));
    EXPECT_FALSE(welcome->isVisible());
    EXPECT_FALSE(shownOne<CloneDialog>());
    EXPECT_TRUE(fs::exists(place / "a/b/.git/shallow"));
}

TEST_F(BeginningsTest, ACancelledCloneLeavesItsFieldsAndNothingElse)
{
    writeFile(place / "ssh", "exec sleep 60\n");
    const ScopedVariable ssh("GIT_SSH_COMMAND", "sh '" + (place / "ssh").string() + "'");
    CloneDialog& dialog = cloneDialog(u"git@example.org:engine"_s);
    type(dialog, u"Folder"_s, shown("new/engine"));
    button(dialog, u"Clone"_s).click();
    ASSERT_TRUE(waitUntil([this] { return fs::exists(place / "new/engine/.git"); }, patience));
    EXPECT_EQ(said(dialog), u"Connecting…"_s);
    delegate.cloneFrom(u"git@example.org:other"_s);
    EXPECT_EQ(typed(dialog, u"Address"_s), u"git@example.org:engine"_s) << "another one asks for another";
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_EQ(said(dialog), u"Cancelling…"_s);
    ASSERT_TRUE(waitUntil([&dialog] { return !dialog.isRunning(); }, patience));
    EXPECT_FALSE(fs::exists(place / "new"));
    EXPECT_FALSE(test::openDialog(dialog)) << "nothing has failed";
    EXPECT_TRUE(button(dialog, u"Clone"_s).isEnabled());

    // Whoever quits meanwhile waits for the same.
    button(dialog, u"Clone"_s).click();
    ASSERT_TRUE(waitUntil([this] { return fs::exists(place / "new/engine/.git"); }, patience));
    const QSignalSpy finished(&delegate, &AppDelegate::finished);
    delegate.quit();
    EXPECT_TRUE(waitUntil([&finished] { return finished.count() > 0; }, patience));
    EXPECT_FALSE(fs::exists(place / "new"));
}

TEST_F(BeginningsTest, ARemoteAsksOverTheDialogAndARefusalIsToldInItsWords)
{
    test::TlsAuthority authority;
    test::GitHttpServer server(authority.identity(u"127.0.0.1"_s), origin.path().parent_path(), "ada:s3cret");
    writeFile(place / "ca.pem", authority.own().toPem().toStdString());
    const ScopedVariable trusted("GIT_SSL_CAINFO", (place / "ca.pem").string());
    CloneDialog& dialog = cloneDialog(server.url(QString::fromStdString(origin.path().filename().string())));
    type(dialog, u"Folder"_s, shown("copy"));
    const auto answer = [&dialog](const QString& field, const QString& text) {
        ASSERT_TRUE(waitUntil(
            [&] { return test::openDialog(dialog) && named<QLineEdit>(*test::openDialog(dialog), field); }, patience));
        QTest::keyClicks(named<QLineEdit>(*test::openDialog(dialog), field), text);
        QTest::keyClick(test::openDialog(dialog), Qt::Key_Return);
    };
    button(dialog, u"Clone"_s).click();
    answer(u"User Name"_s, u"ada"_s);
    answer(u"Password"_s, u"wrong"_s);
    ASSERT_TRUE(waitUntil([&dialog] { return !dialog.isRunning() && test::openDialog(dialog); }, patience));
    QStringList told;
    for (const QLabel* const label : test::openDialog(dialog)->findChildren<QLabel*>())
        told += label->text();
    for (const QPlainTextEdit* const text : test::openDialog(dialog)->findChildren<QPlainTextEdit*>())
        told += text->toPlainText();
    EXPECT_TRUE(told.join(u'\n').contains(u"did not accept"_s)) << told.join(u'\n').toStdString();
    EXPECT_FALSE(fs::exists(place / "copy"));
    test::openDialog(dialog)->close();

    button(dialog, u"Clone"_s).click();
    answer(u"User Name"_s, u"ada"_s);
    answer(u"Password"_s, u"s3cret"_s);
    ASSERT_TRUE(opens(place / "copy"));
    EXPECT_EQ(readFile(place / "copy/a"), "1");
}

TEST_F(BeginningsTest, AFailedSubmoduleIsToldInTheWindowThatOpens)
{
    TestRepository part;
    part.commit("one");
    origin.git({"-c", "protocol.file.allow=always", "submodule", "--quiet", "add", "--", part.path().string(), "lib"})
        .commit("two");
    fs::rename(part.path() / ".git", part.path() / "gone");
    CloneDialog& dialog = cloneDialog();
    type(dialog, u"Address"_s, QString::fromStdString(origin.path().string()));
    type(dialog, u"Folder"_s, shown("copy"));
    named<QCheckBox>(dialog, u"With Submodules"_s)->click();
    button(dialog, u"Clone"_s).click();
    ASSERT_TRUE(opens(place / "copy"));
    bool isTold = false;
    for (const QLabel* const label : shownOne<RepositoryWindow>()->findChildren<QLabel*>())
        isTold = isTold || label->text().contains(u"not all of it"_s);
    EXPECT_TRUE(isTold);
}

TEST_F(BeginningsTest, ANewRepositoryOpensOnTheBranchOfTheConfiguration)
{
    writeFile(place / "config", "[init]\n\tdefaultBranch = trunk\n[user]\n\tname = Ada\n\temail = ada@example.org\n");
    const ScopedVariable config("GIT_CONFIG_GLOBAL", (place / "config").string());
    delegate.newRepository();
    auto* const dialog = shownOne<CreateDialog>();
    ASSERT_TRUE(waitUntil([dialog] { return typed(*dialog, u"First Branch"_s) == u"trunk"; }, patience));
    type(*dialog, u"Folder"_s, QString::fromStdString(origin.path().string()));
    EXPECT_TRUE(said(*dialog).contains(u"is a repository already"_s));
    EXPECT_FALSE(button(*dialog, u"Create Repository"_s).isEnabled());
    type(*dialog, u"Folder"_s, QString::fromStdString((origin / "inside").string()));
    EXPECT_TRUE(said(*dialog).contains(u"inside the repository"_s));
    type(*dialog, u"Folder"_s, shown("new"));
    button(*dialog, u"Create Repository"_s).click();
    ASSERT_TRUE(opens(place / "new"));
    auto* const window = shownOne<RepositoryWindow>();
    ASSERT_TRUE(waitUntil([window] { return window->store().snapshot().hasLoaded.value(); }, patience));
    EXPECT_EQ(window->store().snapshot().headDescription(), u"trunk"_s);
}

TEST_F(BeginningsTest, TheCommandLinesWishesBeginAtOnce)
{
    delegate.carryOut({.name = "clone-repository", .argument = origin.path().string(), .folders = {place / "copy"}});
    ASSERT_TRUE(opens(place / "copy"));
    shownOne<RepositoryWindow>()->close();
    delegate.carryOut({.name = "new-repository", .folders = {place / "new"}});
    ASSERT_TRUE(opens(place / "new"));
    shownOne<RepositoryWindow>()->close();

    // What cannot begin asks, with the reason.
    delegate.carryOut({.name = "clone-repository", .argument = "host:x", .folders = {place / "new"}});
    ASSERT_TRUE(shownOne<CloneDialog>());
    EXPECT_EQ(said(*shownOne<CloneDialog>()), u"The folder “new” is not empty."_s);
}

TEST_F(BeginningsTest, ADropOnARepositoryWindowOpensOrAsksToClone)
{
    TestRepository other;
    other.commit("one");
    delegate.open({origin.path()});
    ASSERT_TRUE(opens(origin.path()));
    auto* const window = shownOne<RepositoryWindow>();
    const auto drop = [window](const QMimeData& data) {
        QDragEnterEvent enter({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QApplication::sendEvent(window, &enter);
        QDropEvent event({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        if (enter.isAccepted())
            QApplication::sendEvent(window, &event);
        return enter.isAccepted();
    };
    QMimeData text;
    text.setText(u"any text"_s);
    EXPECT_FALSE(drop(text));
    text.setText(u"git@example.org:engine.git"_s);
    EXPECT_TRUE(drop(text));
    ASSERT_TRUE(shownOne<CloneDialog>());
    EXPECT_EQ(typed(*shownOne<CloneDialog>(), u"Address"_s), u"git@example.org:engine.git"_s);
    QMimeData folder;
    folder.setUrls({QUrl::fromLocalFile(QString::fromStdString(other.path().string()))});
    EXPECT_TRUE(drop(folder));
    EXPECT_TRUE(waitUntil([this] { return delegate.openRoots().size() == 2; }, patience));
}

TEST_F(BeginningsTest, WhatAPartialCloneLacksIsDownloadedByAButton)
{
    origin.write("a", "2").commit("two").git({"config", "uploadpack.allowFilter", "true"});
    int status = 0;
    runPlainGit(place.path(), {"clone", "-q", "--filter=blob:none", "file://" + origin.path().string(), "copy"},
                status);
    delegate.open({place / "copy"});
    ASSERT_TRUE(opens(place / "copy"));
    auto* const window = shownOne<RepositoryWindow>();
    window->show(SidebarItem::history());
    ASSERT_TRUE(waitUntil([window] { return window->store().snapshot().hasLoaded.value(); }, patience));
    window->store().window().selectCommit(origin.read({"rev-parse", "HEAD~1"}));
    const auto download = [window] {
        auto* const found = named<QPushButton>(*window, u"Download"_s);
        return found && found->isVisible() ? found : nullptr;
    };
    window->store().window().selectCommit(origin.head());
    ASSERT_TRUE(waitUntil([&download] { return download(); }, patience));
    download()->click();
    // Git would run a program of the remote's, which is on this machine.
    ASSERT_TRUE(window->store().window().confirmation.value());
    window->store().window().confirm(window->store().window().confirmation.value()->id);
    EXPECT_TRUE(waitUntil([&download] { return !download(); }, patience));
    EXPECT_FALSE(window->store().window().errorMessage.value());
}

TEST_F(BeginningsTest, ABareRepositoryIsShownAndNotChanged)
{
    int status = 0;
    runPlainGit(place.path(), {"clone", "-q", "--bare", origin.path().string(), "engine.git"}, status);
    delegate.open({place / "engine.git/objects"});
    ASSERT_TRUE(opens(place / "engine.git"));
    auto* const window = shownOne<RepositoryWindow>();
    RepositoryStore& store = window->store();
    ASSERT_TRUE(waitUntil([&store] { return store.snapshot().hasLoaded.value(); }, patience));
    EXPECT_EQ(store.snapshot().readProblem.value(), QString());
    EXPECT_EQ(store.snapshot().headDescription(), u"main"_s);
    EXPECT_EQ(store.window().selection.value(), SidebarItem::history());
    EXPECT_EQ(window->windowTitle(), u"engine.git (bare) — main"_s);
    EXPECT_TRUE(waitUntil([&store] { return store.history().history.value().size() == 1; }, patience));
    auto* const sidebar = named<QTreeView>(*window, u"Sidebar"_s);
    QStringList shown;
    for (QModelIndex row = sidebar->model()->index(0, 0); row.isValid(); row = sidebar->indexBelow(row)) {
        if (!sidebar->isRowHidden(row.row(), row.parent()))
            shown += row.data().toString();
    }
    EXPECT_EQ(shown, QStringList({u"History"_s, u"Where HEAD Was"_s, u"BRANCHES"_s, u"main"_s}));

    for (const QAbstractButton* const row : window->findChildren<QAbstractButton*>())
        EXPECT_FALSE(row->isVisible() && row->text().startsWith(u"Working Copy"_s));

    // Whatever begins a change says why it does not, and nothing is written.
    for (const CommandId id : {CommandId::fetch, CommandId::newBranch, CommandId::stashChanges, CommandId::addRemote}) {
        EXPECT_FALSE(command(id).isOffered(store));
        EXPECT_TRUE(command(id).whyNot(store).contains(u"bare"_s));
    }
    EXPECT_FALSE(command(CommandId::showWorkingCopy).isOffered(store));
    const std::string before = runPlainGit(place / "engine.git", {"for-each-ref"}, status);
    actions::createBranch(store.actors(), "topic", std::nullopt, gitkit::AfterCreating::stay);
    EXPECT_TRUE(store.window().notice.value().contains(u"bare"_s));
    EXPECT_FALSE(GitAccess::areChangesUnderWay());
    EXPECT_EQ(runPlainGit(place / "engine.git", {"for-each-ref"}, status), before);
    EXPECT_FALSE(fs::exists(place / "engine.git/index"));
}

TEST(CloneAddresses, AreToldFromOtherTexts)
{
    for (const QString& address : {u"https://example.org/a.git"_s, u"ssh://git@example.org:22/~a/b"_s,
                                   u"git@example.org:a/b.git"_s, u"HTTP://example.org/a"_s, u"file:///srv/a.git"_s})
        EXPECT_EQ(cloneAddress(u" "_s + address + u"\n"_s), address);
    for (const QString& other : {u""_s, u"word"_s, u"https://example.org"_s, u"https://example.org/a b"_s,
                                 u"see https://example.org/a"_s, u"ada@example.org"_s, u"-o@example.org:a"_s,
                                 u"ext::sh -c x"_s, u"mailto:ada@example.org"_s, u"https://x/"_s + QString(9000, u'y')})
        EXPECT_EQ(cloneAddress(other), QString()) << other.toStdString();
}

} // namespace
} // namespace plovik
