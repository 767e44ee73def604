// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/updates/FeedFetch.h"

#include <QLocale>
#include <QNetworkRequest>
#include <QSslSocket>

#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

constexpr int mostRedirects = 5;

QNetworkRequest requestFor(const QUrl& address)
{
    QNetworkRequest request(address);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setMaximumRedirectsAllowed(mostRedirects);
    request.setHeader(QNetworkRequest::UserAgentHeader, u"Plovik"_s);
    request.setRawHeader("Accept-Language", "en");
    // Nothing to unpack, so that what arrives is as large as what is kept.
    request.setRawHeader("Accept-Encoding", "identity");
    return request;
}

/// As the end of a sentence.
QString ending(QString text)
{
    text = text.simplified();
    while (text.endsWith(u'.'))
        text.chop(1);
    return text;
}

} // namespace

FeedFetch::FeedFetch(QUrl address, Limits limits, QObject* parent)
    : QObject(parent), address_(std::move(address)), limits_(limits)
{
    deadline_.setSingleShot(true);
    connect(&deadline_, &QTimer::timeout, this, [this] {
        const auto seconds = std::chrono::ceil<std::chrono::seconds>(limits_.time).count();
        fail(u"%1 did not answer within %2 seconds."_s.arg(host()).arg(seconds));
    });
}

void FeedFetch::start()
{
    QString refusal;
    if (!address_.isValid() || address_.scheme() != "https"_L1 || address_.host().isEmpty())
        refusal = u"The address of the list of releases is not a secure one."_s;
    else if (!QSslSocket::supportsSsl())
        refusal = u"Secure connections need OpenSSL and Qt's support for it, which are not installed."_s;
    if (!refusal.isEmpty()) {
        QMetaObject::invokeMethod(this, [this, refusal] { fail(refusal); }, Qt::QueuedConnection);
        return;
    }
    deadline_.start(limits_.time);
    reply_ = network_.get(requestFor(address_));
    connect(reply_, &QNetworkReply::readyRead, this, &FeedFetch::take);
    connect(reply_, &QNetworkReply::finished, this, &FeedFetch::finish);
    connect(reply_, &QNetworkReply::sslErrors, this,
            [this](const QList<QSslError>& errors) { tlsProblem_ = errors.value(0).errorString(); });
}

void FeedFetch::take()
{
    body_ += reply_->read(limits_.bytes + 1 - body_.size());
    if (body_.size() > limits_.bytes)
        fail(u"What %1 sent is larger than %2."_s.arg(host(), QLocale::c().formattedDataSize(limits_.bytes, 0)));
}

void FeedFetch::finish()
{
    take();
    if (!reply_)
        return; // too large
    const int status = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (reply_->error() != QNetworkReply::NoError || status != 200) {
        fail(reason());
        return;
    }
    deadline_.stop();
    std::exchange(reply_, nullptr)->deleteLater();
    Q_EMIT fetched(std::exchange(body_, {}));
}

void FeedFetch::fail(const QString& sentence)
{
    deadline_.stop();
    if (QNetworkReply* const reply = std::exchange(reply_, nullptr)) {
        reply->disconnect(this);
        reply->abort();
        reply->deleteLater();
    }
    Q_EMIT failed(sentence);
}

QString FeedFetch::reason() const
{
    switch (reply_->error()) {
    case QNetworkReply::HostNotFoundError:
        return u"%1 was not found."_s.arg(host());
    case QNetworkReply::ConnectionRefusedError:
        return u"%1 refused the connection."_s.arg(host());
    case QNetworkReply::SslHandshakeFailedError:
        return tlsProblem_.isEmpty()
                   ? u"No secure connection to %1 could be made."_s.arg(host())
                   : u"The connection to %1 would not be secure: %2."_s.arg(host(), ending(tlsProblem_));
    case QNetworkReply::InsecureRedirectError:
        return u"%1 leads on to an address that is not secure."_s.arg(host());
    case QNetworkReply::TooManyRedirectsError:
        return u"%1 leads from one address to the next without end."_s.arg(host());
    default:
        break;
    }
    if (const int status = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(); status >= 300) {
        const QString phrase = reply_->attribute(QNetworkRequest::HttpReasonPhraseAttribute).toString().simplified();
        return u"%1 answered “%2”."_s.arg(host(), u"%1 %2"_s.arg(status).arg(phrase).trimmed());
    }
    return u"%1 could not be reached: %2."_s.arg(host(), ending(reply_->errorString()));
}

QString FeedFetch::host() const { return (reply_ ? reply_->url() : address_).host(); }

} // namespace plovik
