// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/ai/ProviderAddress.h"

#include "app/services/ai/CommitMessageAI.h"
#include "app/services/http/Http.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

QString ownAddress(AIProvider provider)
{
    return provider == AIProvider::openAI ? u"https://api.openai.com"_s : u"https://api.anthropic.com"_s;
}

QString pathOf(AIProvider provider) { return provider == AIProvider::openAI ? u"/chat/completions"_s : u"/messages"_s; }

struct AddressText {
    Q_DECLARE_TR_FUNCTIONS(ProviderAddress)
};

/// Returns a sentence about the variable %1, or nothing when the address may be used.
QString objectionTo(const QUrl& base)
{
    if (!base.isValid() || base.host().isEmpty())
        return AddressText::tr("The environment variable %1 holds no address of a server.");
    if (base.scheme() != "https"_L1 && !(base.scheme() == "http"_L1 && isLoopback(base)))
        return AddressText::tr(
            "The environment variable %1 must begin with https://, or name this computer itself with http://.");
    if (!base.userInfo().isEmpty())
        return AddressText::tr("The environment variable %1 may not hold a user name or a password.");
    if (base.hasQuery() || base.hasFragment())
        return AddressText::tr("The environment variable %1 may not hold a “?” or a “#”.");
    return {};
}

} // namespace

QUrl providerAddress(AIProvider provider)
{
    const char* const variable = aiProvider::addressVariable(provider);
    const QString set = qEnvironmentVariable(variable).trimmed();
    QUrl address(set.isEmpty() ? ownAddress(provider) : set, QUrl::StrictMode);
    if (const QString objection = objectionTo(address); !objection.isEmpty())
        throw commitMessageAI::Failure(objection.arg(QString::fromLatin1(variable)));

    QString path = address.path(QUrl::FullyEncoded);
    while (path.endsWith(u'/'))
        path.chop(1);
    if (!path.endsWith("/v1"_L1))
        path += u"/v1"_s;
    address.setPath(path + pathOf(provider), QUrl::TolerantMode);
    return address;
}

} // namespace plovik
