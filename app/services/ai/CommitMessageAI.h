// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/services/ai/AIProvider.h"

#include <QCoroTask>
#include <QSslConfiguration>
#include <QString>
#include <QUrl>

#include <chrono>
#include <exception>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>

namespace plovik {

/// Writes commit messages for staged changes by sending them to the provider that the settings name. Nothing is kept
/// between calls. Main thread; nothing blocks.
namespace commitMessageAI {

/// Why there is no message, as a sentence for the user. It never holds a key.
class Failure : public std::exception {
public:
    explicit Failure(const QString& message) : message_(message.toStdString()) {}
    const char* what() const noexcept override { return message_.c_str(); }

private:
    std::string message_;
};

/// Everything that is sent except the key.
struct Request {
    AIProvider provider = AIProvider::anthropic;
    QUrl address;
    QString model;
    QString prompt;
    QString changes; ///< the summary and the diff, cut where it is too long
};

/// What the settings and the environment leave open; the defaults are the product's.
struct Options {
    std::function<QCoro::Task<std::optional<QString>>(AIProvider)> storedKey; ///< the key store if empty
    std::chrono::milliseconds timeLimit{std::chrono::seconds(120)};           ///< from sending to the last byte
    qint64 replyLimit = 4 * 1024 * 1024;                                      ///< bytes
    std::optional<QSslConfiguration> tls;                                     ///< the system's authorities if empty
};

/// Returns what generate() would send now. `summary` and `diff` are UTF-8. Throws Failure when the environment names an
/// address that nothing may be sent to.
Request request(std::string_view summary, std::string_view diff);

/// Returns the message. Throws Failure, and Cancelled soon after `stop` was requested.
QCoro::Task<QString> generate(std::string summary, std::string diff, std::stop_token stop = {}, Options options = {});

} // namespace commitMessageAI

} // namespace plovik
