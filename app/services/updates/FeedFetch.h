// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>
#include <QSslError>
#include <QTimer>
#include <QUrl>

#include <chrono>

namespace plovik {

/// Fetches one address over HTTPS, redirected to HTTPS only. It tells no more of this machine than that Plovik asks,
/// and reports once, later than start() returns. Deleting it ends the fetch. Main thread.
class FeedFetch : public QObject {
    Q_OBJECT

public:
    struct Limits {
        qint64 bytes = 5 * 1024 * 1024;
        std::chrono::milliseconds time{std::chrono::seconds(30)}; ///< for everything together
    };

    FeedFetch(QUrl address, Limits limits, QObject* parent);

    /// To be called once.
    void start();

Q_SIGNALS:
    void fetched(const QByteArray& body);
    /// `sentence` is for people.
    void failed(const QString& sentence);

private:
    void take();
    void finish();
    void fail(const QString& sentence);
    QString reason() const;
    QString host() const;

    QUrl address_;
    Limits limits_;
    QNetworkAccessManager network_;
    QNetworkReply* reply_ = nullptr; ///< owned by `network_`; null before and after the fetch
    QString tlsProblem_;
    QByteArray body_;
    QTimer deadline_;
};

} // namespace plovik
