// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/http/Http.h"

#include "app/await/Stop.h"

#include <QDeadlineTimer>
#include <QHostAddress>
#include <QIODevice>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QSslError>
#include <QSslSocket>
#include <QTimer>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

using Kind = HttpFailure::Kind;

/// Adds what every request has. It tells no more of this machine than that Plovik asks.
QNetworkRequest plainly(QNetworkRequest head)
{
    head.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    head.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    head.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    head.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    head.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    head.setAttribute(QNetworkRequest::Http2AllowedAttribute, false); // a single request gains nothing by it
    head.setHeader(QNetworkRequest::UserAgentHeader, u"Plovik"_s);
    head.setRawHeader("Accept-Language", "en");
    // Nothing has to be unpacked, so what arrives is as large as what is kept.
    head.setRawHeader("Accept-Encoding", "identity");
    return head;
}

/// Returns whether the error happened on the way to the host, instead of being one of the host's own statuses.
bool isTransport(QNetworkReply::NetworkError error)
{
    return (error > QNetworkReply::NoError && error <= QNetworkReply::UnknownProxyError) ||
           error == QNetworkReply::ProtocolFailure || error == QNetworkReply::ProtocolUnknownError;
}

/// A body that can be read once. Qt posts a body again when a host took it and sent no answer, but the host may have
/// acted on it already. Qt cannot do that with a body that does not rewind.
class BodyOnce : public QIODevice {
public:
    explicit BodyOnce(QByteArray bytes) : bytes_(std::move(bytes)) { open(ReadOnly | Unbuffered); }

    bool isSequential() const override { return true; }
    bool reset() override { return false; }
    qint64 bytesAvailable() const override { return bytes_.size() - at_ + QIODevice::bytesAvailable(); }

protected:
    qint64 readData(char* data, qint64 most) override
    {
        const qint64 count = std::min<qint64>(most, bytes_.size() - at_);
        std::copy_n(bytes_.constData() + at_, count, data);
        at_ += count;
        return count == 0 && most > 0 ? -1 : count;
    }
    qint64 writeData(const char* /*data*/, qint64 /*size*/) override { return -1; }

private:
    QByteArray bytes_;
    qsizetype at_ = 0;
};

/// One request to one address. Redirects are left to the caller.
class Exchange : public QObject {
public:
    Exchange(const HttpCall& call, const QNetworkProxy& proxy, const QDeadlineTimer& deadline)
        : call_(call), body_(call.body.value_or(QByteArray()))
    {
        answer_.address = call.head.url();
        if (answer_.address.scheme() == "https"_L1 && !QSslSocket::supportsSsl()) {
            end(failure(Kind::noTls));
            return;
        }
        deadline_.setSingleShot(true);
        connect(&deadline_, &QTimer::timeout, this, &Exchange::timeOut);
        deadline_.start(std::chrono::ceil<std::chrono::milliseconds>(deadline.remainingTimeAsDuration()));
        network_.setProxy(proxy);
        reply_ = start();
        connect(reply_, &QNetworkReply::metaDataChanged, this, &Exchange::readHead);
        connect(reply_, &QNetworkReply::readyRead, this, &Exchange::take);
        connect(reply_, &QNetworkReply::finished, this, &Exchange::finish);
        connect(reply_, &QNetworkReply::sslErrors, this,
                [this](const QList<QSslError>& errors) { tlsProblem_ = errors.value(0).errorString(); });
    }
    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;
    ~Exchange() override { drop(); }

    const Wakeup& done() const { return done_; }
    HttpAnswer& answer() { return answer_; }

private:
    QNetworkReply* start()
    {
        QNetworkRequest head = plainly(call_.head);
        if (!call_.body)
            return network_.get(head);
        head.setHeader(QNetworkRequest::ContentLengthHeader, call_.body->size());
        head.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
        return network_.post(head, &body_);
    }

    void readHead()
    {
        answer_.status = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        answer_.phrase = reply_->attribute(QNetworkRequest::HttpReasonPhraseAttribute).toString().simplified();
        const QUrl target = reply_->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
        if (!target.isEmpty())
            answer_.redirect = answer_.address.resolved(target);
        if (reply_->header(QNetworkRequest::ContentLengthHeader).toLongLong() > call_.replyLimit)
            end(failure(Kind::tooLarge, call_.replyLimit));
    }

    void take()
    {
        answer_.body += reply_->read(call_.replyLimit + 1 - answer_.body.size());
        if (answer_.body.size() > call_.replyLimit)
            end(failure(Kind::tooLarge, call_.replyLimit));
    }

    void finish()
    {
        readHead();
        if (reply_)
            take();
        if (!reply_)
            return; // it was too large
        const auto error = reply_->error();
        const bool isWhole = error == QNetworkReply::NoError || (answer_.status != 0 && !isTransport(error));
        end(isWhole ? std::nullopt : std::optional(networkFailure()));
    }

    void timeOut()
    {
        end(failure(answer_.status == 0 ? Kind::noAnswer : Kind::noEnd,
                    std::chrono::ceil<std::chrono::seconds>(call_.timeLimit).count()));
    }

    void end(std::optional<HttpFailure> failure)
    {
        answer_.failure = std::move(failure);
        drop();
        done_.wake();
    }

    void drop()
    {
        deadline_.stop();
        if (!reply_)
            return;
        reply_->disconnect(this);
        reply_->abort();
        reply_ = nullptr;
    }

    HttpFailure failure(Kind kind, qint64 limit = 0) const
    {
        return {.kind = kind, .host = answer_.address.host(), .limit = limit};
    }

    HttpFailure networkFailure() const
    {
        const QString host = answer_.address.host();
        const QString proxy = network_.proxy().hostName();
        switch (reply_->error()) {
        case QNetworkReply::HostNotFoundError:
            return {Kind::hostNotFound, host};
        case QNetworkReply::ConnectionRefusedError:
            return {Kind::refused, host};
        case QNetworkReply::RemoteHostClosedError:
        case QNetworkReply::ContentReSendError:
            return {Kind::closed, host};
        case QNetworkReply::SslHandshakeFailedError:
            return tlsProblem_.isEmpty() ? HttpFailure{Kind::tlsFailed, host, reply_->errorString()}
                                         : HttpFailure{Kind::notSecure, host, tlsProblem_};
        case QNetworkReply::ProxyAuthenticationRequiredError:
            return {Kind::proxyWantsSignIn, proxy};
        case QNetworkReply::ProxyConnectionRefusedError:
            return {Kind::proxyRefused, proxy};
        case QNetworkReply::ProxyNotFoundError:
            return {Kind::proxyNotFound, proxy};
        default:
            return {Kind::unreachable, host, reply_->errorString()};
        }
    }

    const HttpCall& call_;
    BodyOnce body_;
    HttpAnswer answer_;
    Wakeup done_;
    QTimer deadline_;
    QString tlsProblem_;
    QNetworkAccessManager network_;
    QNetworkReply* reply_ = nullptr; ///< owned by `network_`; null once the answer stands
};

/// Asking the desktop may take long, for it may have to fetch a script that decides.
QCoro::Task<QNetworkProxy> proxyFor(QUrl address, std::stop_token stop)
{
    if (isLoopback(address))
        co_return QNetworkProxy::NoProxy;
    const std::function<QNetworkProxy()> ask = [address] {
        const auto proxies = QNetworkProxyFactory::systemProxyForQuery(QNetworkProxyQuery(address));
        return proxies.value(0, QNetworkProxy::NoProxy);
    };
    co_return co_await inBackground(ask, std::move(stop));
}

bool isAsSecure(const QUrl& from, const QUrl& to)
{
    return to.scheme() == "https"_L1 || (from.scheme() == "http"_L1 && to.scheme() == "http"_L1);
}

} // namespace

QCoro::Task<HttpAnswer> send(HttpCall call, std::stop_token stop)
{
    const bool follows = !call.body && call.redirects > 0;
    const QDeadlineTimer deadline(call.timeLimit);
    for (;; --call.redirects) {
        const QNetworkProxy proxy = co_await proxyFor(call.head.url(), stop);
        Exchange exchange(call, proxy, deadline);
        co_await wakeOrStop(exchange.done(), stop);
        HttpAnswer answer = std::move(exchange.answer());
        if (!follows || answer.failure || answer.redirect.isEmpty())
            co_return answer;
        if (!isAsSecure(answer.address, answer.redirect))
            answer.failure = {.kind = Kind::insecureRedirect, .host = answer.address.host()};
        else if (call.redirects == 0)
            answer.failure = {.kind = Kind::tooManyRedirects, .host = answer.address.host()};
        if (answer.failure)
            co_return answer;
        call.head.setUrl(answer.redirect);
    }
}

bool isLoopback(const QUrl& address)
{
    return address.host() == "localhost"_L1 || QHostAddress(address.host()).isLoopback();
}

} // namespace plovik
