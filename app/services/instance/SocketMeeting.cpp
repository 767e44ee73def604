// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/FileUri.h"
#include "app/services/instance/SingleInstance.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace plovik {

namespace {

using namespace std::chrono_literals;

/// A request is lines of "key value", the value percent-encoded, ended by an empty line; the answer is one line.
constexpr QByteArrayView kEnd = "\n\n";
constexpr QByteArrayView kTaken = "taken\n";
constexpr qsizetype kMostBytes = 1 << 20;

QByteArray encoded(const LaunchRequest& request)
{
    QByteArray text = request.kind == LaunchRequest::Kind::Open ? "open" : "activate";
    const auto add = [&text](QByteArrayView key, const QByteArray& value) {
        if (!value.isEmpty())
            text.append('\n').append(key).append(' ').append(value.toPercentEncoding());
    };
    for (const auto& folder : request.folders)
        add("folder", QByteArray::fromStdString(folder.string()));
    add("action", QByteArray::fromStdString(request.action));
    add("activation-token", QByteArray::fromStdString(request.activationToken));
    add("startup-id", QByteArray::fromStdString(request.startupId));
    return text.append(kEnd);
}

LaunchRequest decoded(const QByteArray& text)
{
    LaunchRequest request;
    for (const QByteArray& line : text.split('\n')) {
        const qsizetype space = line.indexOf(' ');
        const QByteArray key = space < 0 ? line : line.left(space);
        std::string value = QByteArray::fromPercentEncoding(line.mid(key.size() + 1)).toStdString();
        if (key == "open")
            request.kind = LaunchRequest::Kind::Open;
        else if (key == "folder")
            request.folders.emplace_back(std::move(value));
        else if (key == "action") {
            request.kind = LaunchRequest::Kind::Action;
            request.action = std::move(value);
        } else if (key == "activation-token")
            request.activationToken = std::move(value);
        else if (key == "startup-id")
            request.startupId = std::move(value);
    }
    return request;
}

/// The folder for what lives as long as the user's session; nothing where none can be trusted.
std::filesystem::path runtimeFolder()
{
    if (const char* const given = std::getenv("XDG_RUNTIME_DIR"); given && *given == '/')
        return given;
    const auto uid = ::getuid();
    std::filesystem::path folder = "/tmp/plovik-" + std::to_string(uid);
    ::mkdir(folder.c_str(), 0700);
    struct stat status{};
    const bool isOurs = ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == uid &&
                        (status.st_mode & 077) == 0;
    return isOurs ? folder : std::filesystem::path();
}

class SocketMeeting : public LaunchMeeting {
public:
    explicit SocketMeeting(std::filesystem::path folder) : folder_(std::move(folder)) {}

    ~SocketMeeting() override
    {
        server_.close();
        unlock();
    }

    Claim claim(std::function<void(LaunchRequest)> received) override
    {
        // The lock decides who is first. The system lets go of it when its holder ends, however that ends, so that a
        // socket left behind is known to be stale by whoever holds the lock.
        if (folder_.empty())
            folder_ = runtimeFolder();
        if (folder_.empty())
            return Claim::Unavailable;
        lock_ = ::open((folder_ / "app.plovik.Plovik.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
        if (lock_ < 0)
            return Claim::Unavailable;
        if (::flock(lock_, LOCK_EX | LOCK_NB) != 0)
            return errno == EWOULDBLOCK ? Claim::Taken : Claim::Unavailable;

        QLocalServer::removeServer(socketPath());
        server_.setSocketOptions(QLocalServer::UserAccessOption);
        if (!server_.listen(socketPath())) {
            unlock();
            return Claim::Unavailable;
        }
        QObject::connect(&server_, &QLocalServer::newConnection, &server_,
                         [this, received = std::move(received)] { accept(received); });
        return Claim::First;
    }

    bool hand(const LaunchRequest& request, std::chrono::milliseconds timeout) override
    {
        const QDeadlineTimer deadline(timeout);
        const auto left = [&deadline] { return static_cast<int>(deadline.remainingTime()); };
        QLocalSocket socket;
        // The first one may hold the lock and not listen yet.
        while (!connected(socket, left())) {
            if (deadline.hasExpired())
                return false;
            std::this_thread::sleep_for(5ms);
        }
        socket.write(encoded(request));
        while (socket.bytesAvailable() < kTaken.size()) {
            if (!socket.waitForReadyRead(left()))
                return false;
        }
        return socket.readAll() == kTaken;
    }

private:
    QString socketPath() const { return QFile::decodeName((folder_ / "app.plovik.Plovik.socket").c_str()); }

    void unlock()
    {
        if (lock_ >= 0)
            ::close(std::exchange(lock_, -1));
    }

    bool connected(QLocalSocket& socket, int timeout) const
    {
        socket.connectToServer(socketPath());
        return socket.waitForConnected(timeout);
    }

    void accept(const std::function<void(LaunchRequest)>& received)
    {
        while (QLocalSocket* socket = server_.nextPendingConnection()) {
            QObject::connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
            const auto read = [socket, received, text = QByteArray()]() mutable {
                text += socket->readAll();
                if (text.size() > kMostBytes) {
                    socket->abort();
                    return;
                }
                if (!text.endsWith(kEnd))
                    return;
                received(decoded(std::exchange(text, {})));
                socket->write(kTaken.data(), kTaken.size());
            };
            QObject::connect(socket, &QLocalSocket::readyRead, socket, read);
        }
    }

    std::filesystem::path folder_;
    int lock_ = -1;
    QLocalServer server_;
};

} // namespace

std::unique_ptr<LaunchMeeting> meetingOnSocket(const std::filesystem::path& folder)
{
    return std::make_unique<SocketMeeting>(folder);
}

} // namespace plovik
