// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/http/HttpFailure.h"

#include <QCoreApplication>
#include <QLocale>

namespace plovik {

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(HttpFailure)
};

/// Makes the library's words fit for the end of a sentence.
QString ending(QString text)
{
    text = text.simplified();
    while (text.endsWith(u'.'))
        text.chop(1);
    return text;
}

QString pattern(const HttpFailure& failure)
{
    using Kind = HttpFailure::Kind;
    const auto seconds = static_cast<int>(failure.limit);
    switch (failure.kind) {
    case Kind::noTls:
        return Text::tr("Secure connections need OpenSSL and Qt's support for it, which are not installed.");
    case Kind::hostNotFound:
        return Text::tr("%1 was not found.");
    case Kind::refused:
        return Text::tr("%1 refused the connection.");
    case Kind::closed:
        return Text::tr("%1 closed the connection before its reply was whole.");
    case Kind::notSecure:
        return Text::tr("The connection to %1 would not be secure: %2.");
    case Kind::tlsFailed:
        return Text::tr("No secure connection to %1 could be made: %2.");
    case Kind::proxyNotFound:
        return Text::tr("The proxy %1 was not found.");
    case Kind::proxyRefused:
        return Text::tr("The proxy %1 refused the connection.");
    case Kind::proxyWantsSignIn:
        return Text::tr("The proxy %1 wants a user name and a password.");
    case Kind::tooLarge:
        return Text::tr("The reply of %1 is larger than %2.");
    case Kind::noAnswer:
        return Text::tr("%1 did not answer within %Ln second(s).", nullptr, seconds);
    case Kind::noEnd:
        return Text::tr("The reply of %1 did not end within %Ln second(s).", nullptr, seconds);
    case Kind::insecureRedirect:
        return Text::tr("%1 leads on to an address that is not secure.");
    case Kind::tooManyRedirects:
        return Text::tr("%1 leads from one address to the next without end.");
    case Kind::unreachable:
        break;
    }
    return Text::tr("%1 could not be reached: %2.");
}

} // namespace

QString sentence(const HttpFailure& failure)
{
    const QString detail = failure.kind == HttpFailure::Kind::tooLarge
                               ? QLocale::c().formattedDataSize(failure.limit, 0)
                               : ending(failure.reason);
    const QString text = pattern(failure);
    // Only as many values as the sentence has places for; both at once, so that no value is searched for places.
    return text.contains(u"%2") ? text.arg(failure.host, detail) : text.contains(u"%1") ? text.arg(failure.host) : text;
}

} // namespace plovik
