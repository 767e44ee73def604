// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/ai/ProviderAddress.h"

#include "app/services/ai/CommitMessageAI.h"

#include <QHostAddress>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

QString ownAddress(AIProvider provider)
{
    return provider == AIProvider::openAI ? u"https://api.openai.com"_s : u"https://api.anthropic.com"_s;
}

QString pathOf(AIProvider provider) { return provider == AIProvider::openAI ? u"/chat/completions"_s : u"/messages"_s; }

/// As the end of a sentence that begins with the variable's name; empty when there is none.
QString objectionTo(const QUrl& base)
{
    if (!base.isValid() || base.host().isEmpty())
        return u"holds no address of a server."_s;
    if (base.scheme() != "https"_L1 && !(base.scheme() == "http"_L1 && isLoopback(base)))
        return u"must begin with https://, or name this computer itself with http://."_s;
    if (!base.userInfo().isEmpty())
        return u"may not hold a user name or a password."_s;
    if (base.hasQuery() || base.hasFragment())
        return u"may not hold a “?” or a “#”."_s;
    return {};
}

} // namespace

bool isLoopback(const QUrl& address)
{
    return address.host() == "localhost"_L1 || QHostAddress(address.host()).isLoopback();
}

QUrl providerAddress(AIProvider provider)
{
    const char* const variable = aiProvider::addressVariable(provider);
    const QString set = qEnvironmentVariable(variable).trimmed();
    QUrl address(set.isEmpty() ? ownAddress(provider) : set, QUrl::StrictMode);
    if (const QString objection = objectionTo(address); !objection.isEmpty())
        throw CommitMessageAI::Failure(
            u"The environment variable %1 %2"_s.arg(QString::fromLatin1(variable), objection));

    QString path = address.path(QUrl::FullyEncoded);
    while (path.endsWith(u'/'))
        path.chop(1);
    if (!path.endsWith("/v1"_L1))
        path += u"/v1"_s;
    address.setPath(path + pathOf(provider), QUrl::TolerantMode);
    return address;
}

} // namespace plovik
