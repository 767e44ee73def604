// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/http/HttpPost.h"

#include "app/services/ai/ProviderAddress.h"
#include "app/services/ai/Stoppable.h"
#include "app/services/ai/Wakeup.h"

#include <QIODevice>
#include <QLocale>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSslError>
#include <QSslSocket>
#include <QTimer>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

/// As the end of a sentence.
QString ending(QString text)
{
    text = text.simplified();
    while (text.endsWith(u'.'))
        text.chop(1);
    return text;
}

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
    // Nothing to unpack, so that what arrives is as large as what is kept.
    head.setRawHeader("Accept-Encoding", "identity");
    return head;
}

/// Errors of the way to the host, not the host's own statuses.
bool isTransport(QNetworkReply::NetworkError error)
{
    return (error > QNetworkReply::NoError && error <= QNetworkReply::UnknownProxyError) ||
           error == QNetworkReply::ProtocolFailure || error == QNetworkReply::ProtocolUnknownError;
}

/// A body that can be read once. Qt posts again by itself what a host took without an answer, which may have been paid
/// for; it cannot where the body does not come again.
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

class Exchange : public QObject {
public:
    explicit Exchange(const HttpCall& call) : call_(call), body_(call.body)
    {
        answer_.host = call.head.url().host();
        if (call.head.url().scheme() == "https"_L1 && !QSslSocket::supportsSsl()) {
            end(u"Secure connections need OpenSSL and Qt's support for it, which are not installed."_s);
            return;
        }
        deadline_.setSingleShot(true);
        connect(&deadline_, &QTimer::timeout, this, &Exchange::timeOut);
        deadline_.start(call.timeLimit);
        network_.setProxy(call.proxy);
        QNetworkRequest head = plainly(call.head);
        head.setHeader(QNetworkRequest::ContentLengthHeader, call.body.size());
        head.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
        reply_ = network_.post(head, &body_);
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
    void readHead()
    {
        answer_.status = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        const QUrl target = reply_->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
        if (!target.isEmpty())
            answer_.redirect = call_.head.url().resolved(target);
        if (reply_->header(QNetworkRequest::ContentLengthHeader).toLongLong() > call_.replyLimit)
            refuseSize();
    }

    void take()
    {
        answer_.body += reply_->read(call_.replyLimit + 1 - answer_.body.size());
        if (answer_.body.size() > call_.replyLimit)
            refuseSize();
    }

    void finish()
    {
        readHead();
        if (reply_)
            take();
        if (reply_)
            end(reply_->error() == QNetworkReply::NoError || (answer_.status != 0 && !isTransport(reply_->error()))
                    ? QString()
                    : reason());
    }

    void refuseSize()
    {
        const QString limit = QLocale::c().formattedDataSize(call_.replyLimit, 0);
        end(u"The reply of %1 is larger than %2."_s.arg(answer_.host, limit));
    }

    void timeOut()
    {
        const auto seconds = std::chrono::ceil<std::chrono::seconds>(call_.timeLimit).count();
        const QString sentence =
            answer_.status == 0 ? u"%1 did not answer within %2."_s : u"The reply of %1 did not end within %2."_s;
        end(sentence.arg(answer_.host, seconds == 1 ? u"a second"_s : u"%1 seconds"_s.arg(seconds)));
    }

    void end(const QString& problem)
    {
        answer_.problem = problem;
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

    QString reason() const
    {
        switch (reply_->error()) {
        case QNetworkReply::HostNotFoundError:
            return u"%1 was not found."_s.arg(answer_.host);
        case QNetworkReply::ConnectionRefusedError:
            return u"%1 refused the connection."_s.arg(answer_.host);
        case QNetworkReply::RemoteHostClosedError:
        case QNetworkReply::ContentReSendError:
            return u"%1 closed the connection before its reply was whole."_s.arg(answer_.host);
        case QNetworkReply::SslHandshakeFailedError:
            return tlsProblem_.isEmpty()
                       ? u"No secure connection to %1 could be made: %2."_s.arg(answer_.host,
                                                                                ending(reply_->errorString()))
                       : u"The connection to %1 would not be secure: %2."_s.arg(answer_.host, ending(tlsProblem_));
        case QNetworkReply::ProxyAuthenticationRequiredError:
            return u"The proxy %1 wants a user name and a password."_s.arg(call_.proxy.hostName());
        case QNetworkReply::ProxyConnectionRefusedError:
            return u"The proxy %1 refused the connection."_s.arg(call_.proxy.hostName());
        case QNetworkReply::ProxyNotFoundError:
            return u"The proxy %1 was not found."_s.arg(call_.proxy.hostName());
        default:
            return u"%1 could not be reached: %2."_s.arg(answer_.host, ending(reply_->errorString()));
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

} // namespace

QCoro::Task<HttpAnswer> post(HttpCall call, std::stop_token stop)
{
    Exchange exchange(call);
    co_await wakeOrStop(exchange.done(), std::move(stop));
    co_return std::move(exchange.answer());
}

QNetworkProxy systemProxy(const QUrl& address)
{
    if (isLoopback(address))
        return QNetworkProxy::NoProxy;
    return QNetworkProxyFactory::systemProxyForQuery(QNetworkProxyQuery(address)).value(0, QNetworkProxy::NoProxy);
}

} // namespace plovik
