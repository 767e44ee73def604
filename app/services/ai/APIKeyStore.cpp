// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/ai/APIKeyStore.h"

#include <QCoroFuture>

#include <QByteArray>
#include <QFuture>
#include <QLibrary>
#include <QPromise>
#include <QStringDecoder>
#include <QTimer>

#include <qt6keychain/keychain.h>

#include <chrono>
#include <memory>

using namespace Qt::StringLiterals;

namespace plovik::apiKeyStore {

namespace {

using QKeychain::Job;

// The user has this long to unlock the keyring. A bus that has not answered by then counts as none; without a secret
// service the answer comes at once.
constexpr std::chrono::minutes patience{5};

const QString service = u"app.plovik.Plovik.ai"_s;

struct Answer {
    QKeychain::Error error = QKeychain::OtherError;
    QByteArray secret;
};

/// Forgets the daemon that the jobs' library has met first. The library would keep to that daemon when another one has
/// taken its place, and nothing would work until the next launch. Jobs that run are not disturbed.
void meetDaemonAnew()
{
    using Disconnect = void (*)();
    static const auto disconnect =
        reinterpret_cast<Disconnect>(QLibrary::resolve(u"secret-1"_s, 0, "secret_service_disconnect"));
    if (disconnect)
        disconnect();
}

/// Queues a job, which deletes itself. Jobs run one after another, in the order of these calls.
QFuture<Answer> start(Job* job, AIProvider provider)
{
    const auto promise = std::make_shared<QPromise<Answer>>();
    promise->start();
    const auto answer = [promise](const Answer& given) {
        if (promise->future().isFinished())
            return;
        promise->addResult(given);
        promise->finish();
    };
    QObject::connect(job, &Job::finished, job, [answer](Job* done) {
        const auto* const read = qobject_cast<QKeychain::ReadPasswordJob*>(done);
        answer({done->error(), read ? read->binaryData() : QByteArray()});
    });
    QTimer::singleShot(patience, job, [answer] { answer({}); });
    job->setAutoDelete(true);
    job->setInsecureFallback(false); // not into a file that anyone can read
    job->setKey(aiProvider::rawValue(provider));
    meetDaemonAnew();
    job->start();
    return promise->future();
}

QFuture<Answer> startWriting(const QString& text, AIProvider provider)
{
    auto* const job = new QKeychain::WritePasswordJob(service);
    job->setTextData(text);
    return start(job, provider);
}

} // namespace

QCoro::Task<std::optional<QString>> key(AIProvider provider)
{
    const Answer answer = co_await start(new QKeychain::ReadPasswordJob(service), provider);
    QStringDecoder decode(QStringDecoder::Utf8);
    const QString text = decode(answer.secret);
    if (answer.error != QKeychain::NoError || decode.hasError() || text.isEmpty())
        co_return std::nullopt;
    co_return text;
}

QCoro::Task<bool> setKey(AIProvider provider, QString key)
{
    const QString text = key.trimmed();
    const QFuture<Answer> writing = startWriting(text, provider);
    if (!text.isEmpty()) {
        const Answer written = co_await writing;
        co_return written.error == QKeychain::NoError;
    }
    // Removing from a locked keyring removes nothing and reports success. Therefore the key is emptied first, which has
    // the keyring unlocked, or fails. Both jobs are queued now, so that no later call comes between them.
    const QFuture<Answer> removing = start(new QKeychain::DeletePasswordJob(service), provider);
    const Answer emptied = co_await writing;
    const Answer removed = co_await removing;
    co_return emptied.error == QKeychain::NoError &&
        (removed.error == QKeychain::NoError || removed.error == QKeychain::EntryNotFound);
}

} // namespace plovik::apiKeyStore
