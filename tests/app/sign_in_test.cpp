// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/GitRepository.h"
#include "app/services/askpass/Askpass.h"
#include "app/store/RepositoryStore.h"
#include "app/store/actions/Pushes.h"
#include "app/store/actions/Remotes.h"
#include "app/store/readers/Latest.h"
#include "app/ui/dialogs/PromptText.h"
#include "app/ui/window/RepositoryView.h"
#include "tests/app/GitHttpServer.h"
#include "tests/app/SettlingWorker.h"
#include "tests/app/ShownWidgets.h"
#include "tests/app/SshServer.h"
#include "tests/app/TlsAuthority.h"
#include "tests/support/TestRepository.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QLocalServer>
#include <QLocalSocket>
#include <QProcess>
#include <QPushButton>
#include <QtTest/QTest>

#include <gtest/gtest.h>

#include <map>

#include <future>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

using test::named;
using test::waitUntil;
using PromptKind = PromptText::Kind;
constexpr std::chrono::seconds patience{60};

PromptText read(const std::string& text, SignInKind kind = SignInKind::answer, const std::string& destination = {})
{
    SignInPrompt prompt;
    prompt.kind = kind;
    prompt.text = text;
    prompt.destination = destination;
    PromptText found = promptText(prompt);
    found.question.clear();
    return found;
}

TEST(PromptTexts, AreReadAsGitAndSshWriteThem)
{
    const QString host = u"https://example.org:8443/"_s;
    EXPECT_EQ(read("Username for 'https://example.org:8443/': "),
              (PromptText{.kind = PromptKind::userName, .host = host}));
    EXPECT_EQ(read("Password for 'https://ada%40home@example.org:8443/': "),
              (PromptText{.kind = PromptKind::password, .host = host, .user = u"ada@home"_s}));
    EXPECT_EQ(read("Password for 'https://" + std::string(40, 't') + ":secret@example.org:8443/?key=secret': "),
              (PromptText{.kind = PromptKind::password, .host = host}));
    EXPECT_EQ(
        read("Enter passphrase for key '/home/ada/.ssh/my id': ", SignInKind::answer, "git@example.org"),
        (PromptText{.kind = PromptKind::passphrase, .host = u"git@example.org"_s, .key = u"/home/ada/.ssh/my id"_s}));
    const PromptText account{.kind = PromptKind::password, .host = u"example.org"_s, .user = u"Ada"_s};
    EXPECT_EQ(read("Ada@example.org's password: ", SignInKind::answer, "work"), account);
    EXPECT_EQ(read("(Ada@example.org) Password: "), account);
    EXPECT_EQ(read("Enter PIN for ED25519-SK key /k: "),
              (PromptText{.kind = PromptKind::pin, .key = u"ED25519-SK key /k"_s}));
    EXPECT_EQ(read("Confirm user presence for key ED25519-SK SHA256:abc", SignInKind::notice),
              (PromptText{.kind = PromptKind::touch, .key = u"ED25519-SK SHA256:abc"_s}));
    EXPECT_EQ(read("The authenticity of host '[example.org]:22 ([1.2.3.4]:22)' can't be established.\n"
                   "ED25519 key fingerprint is SHA256:a.b/c+d.\nThis key is not known by any other names.\n"
                   "Are you sure you want to continue connecting (yes/no/[fingerprint])? "),
              (PromptText{.kind = PromptKind::unknownHost,
                          .host = u"[example.org]:22"_s,
                          .keyType = u"ED25519"_s,
                          .fingerprint = u"SHA256:a.b/c+d"_s}));
    EXPECT_EQ(read("Allow it?", SignInKind::permission).kind, PromptKind::permission);
    EXPECT_EQ(read("Accept updated hostkeys? (yes/no): ").kind, PromptKind::permission);
    EXPECT_EQ(read("Login name:").kind, PromptKind::text);
    EXPECT_EQ(read("Password for user name ada:").kind, PromptKind::secret);
    EXPECT_EQ(read("(ada@example.org) Verification code: ").kind, PromptKind::secret);

    SignInPrompt prompt;
    prompt.text = "\x1b[2J\xe2\x80\xae<b>" + std::string(100'000, 'x') + "\a\xff" + std::string(900, '\n') + "Code?";
    const PromptText hostile = promptText(prompt);
    EXPECT_TRUE(hostile.question.startsWith(u"[2J<b>xxx"_s));
    EXPECT_TRUE(hostile.question.endsWith(u"\nCode?"_s));
    EXPECT_LT(hostile.question.size(), 1100);
    EXPECT_LT(hostile.question.count(u'\n'), 20);
}

bool fetchAsRead(const gitkit::GitRepository& repo, const int&)
{
    repo.fetch();
    return true;
}

/// Whether a fetch fails that runs as reads do.
bool failsToRead(const GitAccess& git)
{
    bool hasEnded = false;
    Latest<int, bool> reading(git, &fetchAsRead, [&hasEnded] { hasEnded = true; });
    reading.ask(1);
    return waitUntil([&hasEnded] { return hasEnded; }, patience) && reading.failure();
}

/// A window over a repository whose ssh is a script, which asks as ssh does.
class SignInWindow {
public:
    SignInWindow()
    {
        repo.commit("one").git({"remote", "add", "origin", "ssh://git@example.org/x"});
        store->snapshot().refresh(RefreshScope::full);
        EXPECT_TRUE(worker.settle());
    }
    ~SignInWindow() { EXPECT_TRUE(worker.settle()); }
    SignInWindow(const SignInWindow&) = delete;
    SignInWindow& operator=(const SignInWindow&) = delete;

    /// What `lines` print is in out(); git fails.
    void fetchWith(const std::string& lines)
    {
        repo.write("../ssh", "{ " + lines + "\n} >>'" + out().string() + "'\nexit 1\n");
        repo.git({"config", "ssh.variant", "ssh"})
            .git({"config", "core.sshCommand", "sh '" + (repo / "../ssh").string() + "'"});
        std::filesystem::remove(out());
        actions::fetch(store->actors());
    }
    bool isAsked() const
    {
        return waitUntil([this] { return store->changes().prompt().value().has_value(); }, patience);
    }
    bool ends()
    {
        return waitUntil([this] { return !store->changes().activity.value(); }, patience) && worker.settle();
    }
    std::filesystem::path out() const { return repo / "../out"; }
    std::string printed() const { return readFile(out()); }

    TestRepository repo;
    test::SettlingWorker worker;
    std::unique_ptr<RepositoryStore> store =
        std::make_unique<RepositoryStore>(repo.path(), worker, StoreServices{.signIn = askpass::opener()});
};

const std::string askOnce = "\"$SSH_ASKPASS\" 'Question: ' || echo refused";

/// Exit status and output of the program with an address of its own.
std::pair<int, QByteArray> askAt(const std::string& address)
{
    QProcess program;
    QProcessEnvironment environment;
    environment.insert(u"PLOVIK_ASKPASS"_s, QString::fromStdString(address));
    program.setProcessEnvironment(environment);
    program.start(QString::fromStdString(askpass::program().string()), {u"Question: "_s});
    EXPECT_TRUE(waitUntil([&program] { return program.state() == QProcess::NotRunning; }, patience));
    return {program.exitCode(), program.readAll()};
}

TEST(SignIn, TwoWindowsAskAtOnceAndEachHearsItsOwnAnswer)
{
    SignInWindow one;
    SignInWindow two;
    one.fetchWith(askOnce);
    two.fetchWith(askOnce);
    ASSERT_TRUE(one.isAsked() && two.isAsked());
    const SignInPrompt asked = *two.store->changes().prompt().value();
    EXPECT_EQ(asked.text, "Question: ");
    EXPECT_EQ(asked.destination, "git@example.org");
    EXPECT_EQ(asked.action, u"Fetching…"_s);
    two.store->changes().answerPrompt(asked.id, u"zwei ü"_s);
    one.store->changes().answerPrompt(one.store->changes().prompt().value()->id, u"one\nline"_s);
    ASSERT_TRUE(one.ends() && two.ends());
    EXPECT_EQ(one.printed(), "one\n");
    EXPECT_EQ(two.printed(), "zwei ü\n");
    EXPECT_FALSE(one.store->changes().prompt().value());
}

TEST(SignIn, AQuestionNamesTheHostOfSshWhateverItIsCalled)
{
    for (const auto& [address, host] : std::map<std::string, std::string>{
             {"ssh://git-lab.example:2222/x", "git-lab.example"}, {"git-lab.example:x", "git-lab.example"}})
    {
        SignInWindow window;
        window.repo.git({"remote", "set-url", "origin", address}).git({"config", "protocol.version", "2"});
        window.fetchWith(askOnce);
        ASSERT_TRUE(window.isAsked());
        const SignInPrompt asked = *window.store->changes().prompt().value();
        EXPECT_EQ(asked.destination, host);
        window.store->changes().cancelPrompt(asked.id);
        ASSERT_TRUE(window.ends());
    }
}

TEST(SignIn, AQuestionNamesNoHostThatGitWasNotGiven)
{
    SignInWindow window;
    window.fetchWith("sh -c '\"$SSH_ASKPASS\" Code || echo refused' ssh other.example \"git-upload-pack 'x'\"");
    ASSERT_TRUE(window.isAsked());
    EXPECT_EQ(window.store->changes().prompt().value()->destination, "");
    window.store->changes().cancelActivity();
    ASSERT_TRUE(window.ends());
}

TEST(SignIn, ACancelledQuestionIsNotAskedAgainByItsAction)
{
    SignInWindow window;
    window.fetchWith("for try in 1 2 3; do " + askOnce + "; done");
    ASSERT_TRUE(window.isAsked());
    window.store->changes().answerPrompt(window.store->changes().prompt().value()->id, u"wrong"_s);
    ASSERT_TRUE(window.isAsked());
    EXPECT_TRUE(window.store->changes().prompt().value()->isRepeated);
    window.store->changes().cancelPrompt(window.store->changes().prompt().value()->id);
    ASSERT_TRUE(window.ends());
    EXPECT_EQ(window.printed(), "wrong\nrefused\nrefused\n");
    EXPECT_TRUE(window.store->window().errorMessage.value()->contains(u"Could not read from remote repository"_s));

    // Permissions and touches; the next action asks anew.
    window.fetchWith("export SSH_ASKPASS_PROMPT=confirm; " + askOnce + "; " + askOnce);
    ASSERT_TRUE(window.isAsked());
    window.store->changes().answerPrompt(window.store->changes().prompt().value()->id, u"no"_s);
    ASSERT_TRUE(window.isAsked());
    window.store->changes().answerPrompt(window.store->changes().prompt().value()->id, u"yes"_s);
    ASSERT_TRUE(window.ends());
    EXPECT_EQ(window.printed(), "refused\nyes\n");

    window.store->window().dismissError();
    window.fetchWith("SSH_ASKPASS_PROMPT=none \"$SSH_ASKPASS\" 'Touch' & exec sleep 60");
    ASSERT_TRUE(window.isAsked());
    window.store->changes().cancelPrompt(window.store->changes().prompt().value()->id);
    ASSERT_TRUE(window.ends());
    EXPECT_FALSE(window.store->window().errorMessage.value());
}

TEST(SignIn, AQuestionGoesWithWhoeverAskedAndWithItsAction)
{
    SignInWindow window;
    const std::string fifo = (window.repo / "../go").string();
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    window.fetchWith("\"$SSH_ASKPASS\" 'Question: ' & read line <'" + fifo + "'; kill $!; wait; echo killed");
    ASSERT_TRUE(window.isAsked());
    writeFile(fifo, "go\n");
    ASSERT_TRUE(waitUntil([&window] { return !window.store->changes().prompt().value(); }, patience));
    ASSERT_TRUE(window.ends());
    EXPECT_EQ(window.printed(), "killed\n");
    window.store->window().dismissError();

    window.fetchWith("echo $PLOVIK_ASKPASS; " + askOnce);
    ASSERT_TRUE(window.isAsked());
    const std::string address = window.printed().substr(0, window.printed().find('\n'));
    std::string guessed = address;
    guessed[5] = guessed[5] == '0' ? '1' : '0';
    EXPECT_EQ(askAt(guessed), std::pair(1, QByteArray()));
    const std::filesystem::path folder = std::filesystem::path(address.substr(address.find(':') + 1)).parent_path();
    EXPECT_EQ(std::filesystem::status(folder).permissions(), std::filesystem::perms::owner_all);
    window.store->changes().cancelActivity();
    EXPECT_FALSE(window.store->changes().prompt().value());
    ASSERT_TRUE(window.ends());
    EXPECT_FALSE(window.store->window().errorMessage.value());
    EXPECT_EQ(askAt(address), std::pair(1, QByteArray())); // the action has ended

    window.fetchWith("echo $PLOVIK_ASKPASS; " + askOnce);
    ASSERT_TRUE(window.isAsked());
    window.store.reset(); // the window is closed
    EXPECT_TRUE(waitUntil([&window] { return window.printed().ends_with("refused\n"); }, patience));
    EXPECT_FALSE(std::filesystem::exists(folder));
    EXPECT_EQ(askAt(address), std::pair(1, QByteArray()));
}

TEST(SignIn, AnApplicationThatDiesIsARefusal)
{
    const TemporaryFolder folder;
    auto dying = std::make_unique<QLocalServer>();
    ASSERT_TRUE(dying->listen(QString::fromStdString((folder / "ask").string())));
    QObject::connect(dying.get(), &QLocalServer::newConnection, dying.get(), [&dying] {
        QLocalSocket* const socket = dying->nextPendingConnection();
        QObject::connect(socket, &QLocalSocket::readyRead, socket, [socket] {
            socket->write("+half an answer");
            socket->disconnectFromServer();
        });
    });
    EXPECT_EQ(askAt("token:" + (folder / "ask").string()), std::pair(1, QByteArray()));
    dying.reset();
    EXPECT_EQ(askAt("token:" + (folder / "ask").string()), std::pair(1, QByteArray()));
    EXPECT_EQ(askAt(""), std::pair(1, QByteArray()));
}

TEST(SignIn, AsksNobodyWhileReadingAndLeavesTheUsersOwnProgramAlone)
{
    const std::string tell = "echo ${SSH_ASKPASS##*/},$SSH_ASKPASS_REQUIRE,${GIT_ASKPASS-unset},${PLOVIK_ASKPASS:+on}";
    const auto told = [&tell] {
        SignInWindow window;
        window.fetchWith(tell);
        EXPECT_TRUE(window.ends());
        const std::string acting = window.printed();
        std::filesystem::remove(window.out());
        EXPECT_TRUE(failsToRead(window.store->git()));
        return acting + window.printed();
    };
    EXPECT_EQ(told(), "plovik-askpass,force,unset,on\n,never,,\n");
    {
        const ScopedVariable own("SSH_ASKPASS_REQUIRE", "prefer");
        EXPECT_EQ(told(), "plovik-askpass,prefer,unset,on\n,never,,\n");
    }
    const ScopedVariable own("SSH_ASKPASS", "/own/program");
    EXPECT_EQ(told(), "program,,unset,\nprogram,never,,\n");
}

/// A whole window, with the dialogs that it shows.
class SignInDialogs : public testing::Test {
protected:
    SignInDialogs() { view.show(); }

    void setRemote(const QString& url)
    {
        window.repo.git({"config", "remote.origin.url", url.toStdString()}).git({"config", "http.proxy", ""});
        origin.write("a", "1").commit("theirs").git({"config", "http.receivepack", "true"});
    }
    QDialog* dialog() const { return test::openDialog(view); }
    /// Waits for the dialog of that title, and says what it tells under it.
    std::string told(const QString& title)
    {
        if (!waitUntil([&] { return dialog() && dialog()->isVisible() && dialog()->accessibleName() == title; },
                       patience))
            return "not shown";
        std::string all;
        for (const QLabel* label : dialog()->findChildren<QLabel*>())
            all += label->text().toStdString() + "\n";
        return all;
    }
    bool failsQuietlyToRead() { return failsToRead(store.git()) && !dialog(); }
    void press(const QString& button) { named<QPushButton>(*dialog(), button)->click(); }
    void type(const QString& field, const QString& text)
    {
        auto* const edit = named<QLineEdit>(*dialog(), field);
        ASSERT_TRUE(edit);
        edit->setText(text);
        QTest::keyClick(edit, Qt::Key_Return);
    }
    std::string problem() { return store.window().errorMessage.value().value_or(QString()).toStdString(); }

    TestRepository origin{{"-b", "theirs"}};
    SignInWindow window;
    RepositoryStore& store = *window.store;
    RepositoryView view{store};
};

TEST_F(SignInDialogs, AnAccountIsAskedForByARemoteOverHttps)
{
    test::TlsAuthority authority;
    test::GitHttpServer server(authority.identity(u"127.0.0.1"_s), origin.path().parent_path(), "ada:s3cret \"ü");
    const TemporaryFolder folder;
    writeFile(folder / "ca.pem", authority.own().toPem().toStdString());
    const ScopedVariable trusted("GIT_SSL_CAINFO", (folder / "ca.pem").string());
    setRemote(server.url(QString::fromStdString(origin.path().filename().string())));
    const QString title = u"Sign In to "_s + server.url({}).chopped(1);
    const auto signIn = [&](const QString& user, const QString& password) {
        EXPECT_NE(told(title).find("asks for your user name."), std::string::npos) << problem();
        type(u"User Name"_s, user);
        ASSERT_TRUE(waitUntil([this] { return dialog() && named<QLineEdit>(*dialog(), u"Password"_s); }, patience));
        EXPECT_NE(told(title).find("asks for the password of “" + user.toStdString() + "”."), std::string::npos);
        auto* const field = named<QLineEdit>(*dialog(), u"Password"_s);
        EXPECT_EQ(field->echoMode(), QLineEdit::Password);
        named<QCheckBox>(*dialog(), u"Show Password"_s)->click();
        EXPECT_EQ(field->echoMode(), QLineEdit::Normal);
        type(u"Password"_s, password);
        ASSERT_TRUE(window.ends());
    };
    EXPECT_TRUE(failsQuietlyToRead()); // and asks nobody
    EXPECT_EQ(server.refused, 0);

    actions::fetch(store.actors());
    signIn(u"ada"_s, u"wrong"_s);
    EXPECT_NE(problem().find("Authentication failed"), std::string::npos) << problem();
    EXPECT_EQ(server.refused, 1);
    store.window().dismissError();

    actions::fetch(store.actors());
    signIn(u"ada"_s, u"s3cret \"ü"_s);
    EXPECT_EQ(problem(), "");
    EXPECT_EQ(window.repo.read({"rev-parse", "origin/theirs"}), origin.head());
    actions::push(store.actors());
    signIn(u"ada"_s, u"s3cret \"ü"_s);
    EXPECT_EQ(problem(), "");
    EXPECT_EQ(origin.read({"rev-parse", "main"}), window.repo.head());

    actions::fetch(store.actors());
    told(title);
    press(u"Cancel"_s);
    ASSERT_TRUE(window.ends());
    EXPECT_NE(problem().find("could not read Username"), std::string::npos) << problem();
    store.window().dismissError();

    window.repo.write("../own", "#!/bin/sh\ncase $1 in User*) echo ada;; *) echo 's3cret \"ü';; esac\n");
    std::filesystem::permissions(window.repo / "../own", std::filesystem::perms::owner_all);
    window.repo.git({"config", "core.askPass", (window.repo / "../own").string()});
    actions::fetch(store.actors());
    ASSERT_TRUE(window.ends());
    EXPECT_EQ(problem(), "");
    EXPECT_TRUE(failsQuietlyToRead());
}

TEST_F(SignInDialogs, AHostAndAKeyAreAskedForOverSsh)
{
    const test::SshServer server(u"a passphrase"_s);
    if (!server.missing().isEmpty())
        GTEST_SKIP() << server.missing().toStdString();
    const ScopedVariable client("GIT_SSH_COMMAND", server.client());
    setRemote(server.url(origin.path()));
    const QString host = server.url({}).section(u'@', 1).section(u':', 1);
    const QString unknown = u"Trust “[127.0.0.1]:%1”?"_s.arg(host);

    actions::fetch(store.actors());
    EXPECT_NE(told(unknown).find("\n" + server.fingerprint() + "\n"), std::string::npos) << told(unknown) << problem();
    QTest::keyClick(dialog(), Qt::Key_Return); // nobody is trusted by accident
    ASSERT_TRUE(window.ends());
    EXPECT_NE(problem().find("Host key verification failed."), std::string::npos) << problem();
    store.window().dismissError();

    actions::fetch(store.actors());
    EXPECT_NE(told(unknown), "not shown");
    press(u"Connect"_s);
    const QString unlock = u"Unlock Key"_s;
    EXPECT_NE(told(unlock).find("user key, which is locked"), std::string::npos) << problem();
    EXPECT_EQ(told(unlock).find("Asked again"), std::string::npos);
    const QDialog* const first = dialog();
    type(u"Passphrase"_s, u"wrong"_s);
    ASSERT_TRUE(waitUntil([&] { return dialog() && dialog() != first; }, patience));
    EXPECT_NE(told(unlock).find("Asked again"), std::string::npos);
    type(u"Passphrase"_s, u"a passphrase"_s);
    ASSERT_TRUE(window.ends());
    EXPECT_EQ(problem(), "");
    EXPECT_EQ(window.repo.read({"rev-parse", "origin/theirs"}), origin.head());

    actions::fetch(store.actors());
    EXPECT_NE(told(unlock), "not shown");
    press(u"Cancel"_s);
    ASSERT_TRUE(window.ends());
    EXPECT_NE(problem().find("Permission denied"), std::string::npos) << problem();
}

} // namespace
} // namespace plovik
