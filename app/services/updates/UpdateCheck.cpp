// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/updates/UpdateCheck.h"

#include "app/services/http/Http.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

constexpr int mostRedirects = 5;

struct Text {
    Q_DECLARE_TR_FUNCTIONS(UpdateCheck)
};

/// Returns what is wrong with the answer, as a sentence; nothing when it is a whole page.
QString problemOf(const HttpAnswer& answer)
{
    if (answer.failure)
        return sentence(*answer.failure);
    if (answer.status == 200)
        return {};
    return Text::tr("%1 answered “%2”.")
        .arg(answer.address.host(), u"%1 %2"_s.arg(answer.status).arg(answer.phrase).trimmed());
}

UpdateAnswer newerIn(const QByteArray& feed, const UpdateSource& source)
{
    const std::vector<Release> releases = parseReleaseFeed(feed);
    const std::optional<SemanticVersion> running = SemanticVersion::parse(source.running);
    if (releases.empty() || !running)
        return {.problem = Text::tr("What %1 sent is no list of releases.").arg(source.feed.host())};
    const Release* const newer = newerRelease(releases, *running);
    return {.newer = newer ? std::optional(*newer) : std::nullopt};
}

} // namespace

UpdateSource UpdateSource::built()
{
    return {.running = QStringLiteral(PLOVIK_VERSION), .feed = QUrl(QStringLiteral(PLOVIK_RELEASE_FEED))};
}

QCoro::Task<UpdateAnswer> checkForUpdates(UpdateSource source, std::stop_token stop)
{
    if (!source.feed.isValid() || source.feed.scheme() != "https"_L1 || source.feed.host().isEmpty())
        co_return {.problem = Text::tr("The address of the list of releases is not a secure one.")};
    HttpCall call{.head = QNetworkRequest(source.feed),
                  .redirects = mostRedirects,
                  .timeLimit = source.limits.time,
                  .replyLimit = source.limits.bytes};
    const HttpAnswer answer = co_await send(std::move(call), std::move(stop));
    if (const QString problem = problemOf(answer); !problem.isEmpty())
        co_return {.problem = problem};
    co_return newerIn(answer.body, source);
}

} // namespace plovik
