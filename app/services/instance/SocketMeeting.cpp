// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/FileUri.h"
#include "app/services/instance/SingleInstance.h"

#include <QDataStream>
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

constexpr QByteArrayView confirmation = "taken\n";
constexpr qsizetype mostBytes = 1 << 20; ///< of a request

/// Everything travels as bytes, because the names of folders need not be UTF-8.
QByteArrayList fieldsOf(const LaunchRequest& request)
{
    const bool isAction = request.kind == LaunchRequest::Kind::action;
    QByteArrayList fields{QByteArray::fromStdString(request.action.name),
                          QByteArray::fromStdString(request.activationToken),
                          QByteArray::fromStdString(request.startupId)};
    if (isAction)
        fields.append(QByteArray::fromStdString(request.action.argument));
    for (const auto& folder : isAction ? request.action.folders : request.folders)
        fields.append(QByteArray::fromStdString(folder.string()));
    return fields;
}

LaunchRequest requestOf(LaunchRequest::Kind kind, const QByteArrayList& fields)
{
    LaunchRequest request{.kind = kind,
                          .action = {.name = fields.value(0).toStdString()},
                          .activationToken = fields.value(1).toStdString(),
                          .startupId = fields.value(2).toStdString()};
    const bool isAction = kind == LaunchRequest::Kind::action;
    if (isAction)
        request.action.argument = fields.value(3).toStdString();
    for (const QByteArray& folder : fields.mid(isAction ? 4 : 3))
        (isAction ? request.action.folders : request.folders).emplace_back(folder.toStdString());
    return request;
}

/// Two launches may come from different versions of Plovik, which may use different versions of Qt.
void prepare(QDataStream& stream) { stream.setVersion(QDataStream::Qt_6_0); }

/// Returns the folder for what lives as long as the user's session; empty where no folder can be trusted.
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
        // The lock decides which launch is first. The system releases it when its holder ends, even in a crash, so the
        // holder of the lock knows that a socket that it finds is stale.
        if (folder_.empty())
            folder_ = runtimeFolder();
        if (folder_.empty())
            return Claim::unavailable;
        lock_ = ::open((folder_ / "app.plovik.Plovik.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
        if (lock_ < 0)
            return Claim::unavailable;
        if (::flock(lock_, LOCK_EX | LOCK_NB) != 0)
            return errno == EWOULDBLOCK ? Claim::taken : Claim::unavailable;

        QLocalServer::removeServer(socketPath());
        server_.setSocketOptions(QLocalServer::UserAccessOption);
        if (!server_.listen(socketPath())) {
            unlock();
            return Claim::unavailable;
        }
        QObject::connect(&server_, &QLocalServer::newConnection, &server_,
                         [this, received = std::move(received)] { accept(received); });
        return Claim::first;
    }

    bool hand(const LaunchRequest& request, std::chrono::milliseconds timeout) override
    {
        const QDeadlineTimer deadline(timeout);
        const auto left = [&deadline] { return static_cast<int>(deadline.remainingTime()); };
        QLocalSocket socket;
        // The first launch may hold the lock and not listen yet.
        while (!connected(socket, left())) {
            if (deadline.hasExpired())
                return false;
            std::this_thread::sleep_for(5ms);
        }
        QDataStream stream(&socket);
        prepare(stream);
        stream << static_cast<quint8>(request.kind) << fieldsOf(request);
        while (socket.bytesAvailable() < confirmation.size()) {
            if (!socket.waitForReadyRead(left()))
                return false;
        }
        return socket.readAll() == confirmation;
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
            const auto read = [socket, received] {
                if (socket->bytesAvailable() > mostBytes) {
                    socket->abort();
                    return;
                }
                QDataStream stream(socket);
                prepare(stream);
                stream.startTransaction();
                quint8 kind = 0;
                QByteArrayList fields;
                stream >> kind >> fields;
                if (!stream.commitTransaction())
                    return;
                received(requestOf(static_cast<LaunchRequest::Kind>(kind), fields));
                socket->write(confirmation.data(), confirmation.size());
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
