// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/askpass/Askpass.h"

#include "app/platform/OwnProgram.h"

#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QPointer>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <array>
#include <cstdlib>
#include <map>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace plovik::askpass {

namespace {

namespace fs = std::filesystem;

constexpr qsizetype mostBytes = 64 * 1024; ///< of a question with its token, kind and destination
constexpr qsizetype parts = 4;             ///< token, kind, destination, text

/// Returns a token that nobody can guess.
QByteArray makeToken()
{
    std::array<quint32, 8> numbers{};
    QRandomGenerator::system()->generate(numbers.begin(), numbers.end());
    return QByteArray(reinterpret_cast<const char*>(numbers.data()), sizeof numbers).toHex();
}

/// A program that waits at the other end of a socket.
class AskingProgram : public SignInQuestion {
public:
    explicit AskingProgram(QLocalSocket& socket) : socket_(&socket)
    {
        watching_ = QObject::connect(&socket, &QLocalSocket::disconnected, &socket, [this] {
            // The call may destroy this object.
            if (const std::function<void()> call = std::exchange(gone, nullptr))
                call();
        });
    }
    ~AskingProgram() override
    {
        QObject::disconnect(watching_);
        if (socket_)
            socket_->disconnectFromServer();
    }
    AskingProgram(const AskingProgram&) = delete;
    AskingProgram& operator=(const AskingProgram&) = delete;

    void answer(QByteArray text) override
    {
        // An answer is one line.
        if (const qsizetype end = text.indexOf('\n'); end >= 0)
            text.truncate(end);
        if (socket_) {
            socket_->write("+");
            socket_->write(text);
            socket_->write("\n");
            socket_->flush();
        }
        text.fill('\0');
    }

private:
    QPointer<QLocalSocket> socket_; ///< deletes itself once it is disconnected
    QMetaObject::Connection watching_;
};

/// Returns whether the user has set the variable. A Plovik that another one's action started, perhaps by a hook,
/// inherits it without the user's choice.
bool isUsersOwn(const char* name) { return std::getenv(name) && !std::getenv("PLOVIK_ASKPASS"); }

SignInKind kindOf(const QByteArray& hint)
{
    if (hint == "confirm")
        return SignInKind::permission;
    return hint == "none" ? SignInKind::notice : SignInKind::answer;
}

/// Listens in a folder of its own, and passes each question on to the action that its token belongs to.
class Server {
public:
    using Asked = std::function<void(std::unique_ptr<SignInQuestion>)>;

    Server()
    {
        const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
        if (!(runtime && *runtime == '/' && listen(QFile::decodeName(runtime))))
            listen(u"/tmp"_s);
        QObject::connect(&server_, &QLocalServer::newConnection, &server_, [this] {
            while (QLocalSocket* const socket = server_.nextPendingConnection())
                accept(*socket);
        });
    }

    bool isListening() const { return server_.isListening(); }
    QString socketPath() const { return server_.fullServerName(); }

    QByteArray add(Asked asked)
    {
        QByteArray token = makeToken();
        asked_[token] = std::move(asked);
        return token;
    }
    void remove(const QByteArray& token) { asked_.erase(token); }

private:
    bool listen(const QString& parent)
    {
        folder_ = std::make_unique<QTemporaryDir>(parent + u"/plovik-XXXXXX"_s); // readable by its owner alone
        server_.setSocketOptions(QLocalServer::UserAccessOption);
        return folder_->isValid() && server_.listen(folder_->filePath(u"ask"_s));
    }

    void accept(QLocalSocket& socket)
    {
        socket.setReadBufferSize(mostBytes);
        QObject::connect(&socket, &QLocalSocket::disconnected, &socket, &QObject::deleteLater);
        const auto read = [this, &socket, text = QByteArray()]() mutable {
            text += socket.read(mostBytes);
            if (text.count('\0') >= parts)
                ask(socket, text.split('\0'));
            else if (text.size() > mostBytes)
                socket.abort();
        };
        QObject::connect(&socket, &QLocalSocket::readyRead, &socket, read);
    }

    void ask(QLocalSocket& socket, const QByteArrayList& question)
    {
        QObject::disconnect(&socket, &QLocalSocket::readyRead, nullptr, nullptr); // nothing after the question is read
        const auto action = asked_.find(question[0]);
        if (action == asked_.end()) {
            socket.disconnectFromServer();
            return;
        }
        auto asking = std::make_unique<AskingProgram>(socket);
        asking->kind = kindOf(question[1]);
        asking->destination = question[2].toStdString();
        asking->text = question[3].toStdString();
        action->second(std::move(asking));
    }

    std::unique_ptr<QTemporaryDir> folder_;
    std::map<QByteArray, Asked> asked_; ///< by token
    QLocalServer server_;
};

class Line : public SignInLine {
public:
    Line(std::shared_ptr<Server> server, fs::path program, Server::Asked asked)
        : server_(std::move(server)), program_(std::move(program)), token_(server_->add(std::move(asked)))
    {}
    ~Line() override { server_->remove(token_); }
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;

    /// Git asks the program in GIT_ASKPASS, then the one in core.askPass, then the one in SSH_ASKPASS, which is the
    /// only one that ssh asks. So a program that the user has set in one of the first two still comes first.
    std::vector<std::pair<std::string, std::string>> environment() const override
    {
        std::vector<std::pair<std::string, std::string>> entries{
            {"PLOVIK_ASKPASS", token_.toStdString() + ':' + QFile::encodeName(server_->socketPath()).toStdString()},
            {"SSH_ASKPASS", program_.string()}};
        // Without this, ssh asks no program if there is no display or if there is a terminal.
        if (!isUsersOwn("SSH_ASKPASS_REQUIRE"))
            entries.emplace_back("SSH_ASKPASS_REQUIRE", "force");
        return entries;
    }

private:
    std::shared_ptr<Server> server_;
    fs::path program_;
    QByteArray token_;
};

bool isRunnable(const fs::path& file) { return !file.empty() && ::access(file.c_str(), X_OK) == 0; }

} // namespace

fs::path program()
{
    const fs::path own = ownProgramFolder();
    if (own.empty())
        return {};
    for (const char* const place : {PLOVIK_HELPERS_FROM_PROGRAMS "/plovik-askpass", "../cli/askpass/plovik-askpass"}) {
        if (fs::path found = (own / place).lexically_normal(); isRunnable(found))
            return found;
    }
    return {};
}

OpenSignIn opener(fs::path program)
{
    return [program = std::move(program),
            server = std::shared_ptr<Server>()](Server::Asked asked) mutable -> std::unique_ptr<SignInLine> {
        if (program.empty() || isUsersOwn("SSH_ASKPASS"))
            return nullptr;
        if (!server)
            server = std::make_shared<Server>();
        if (!server->isListening())
            return nullptr;
        return std::make_unique<Line>(server, program, std::move(asked));
    };
}

} // namespace plovik::askpass
