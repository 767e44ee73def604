// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/PromptText.h"

#include "app/store/ShownText.h"

#include <QRegularExpression>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

using Kind = PromptText::Kind;

constexpr qsizetype mostCharacters = 1000; ///< of a question that is shown in its own words
constexpr qsizetype mostLines = 16;
constexpr qsizetype mostOfUser = 32;
constexpr qsizetype mostOfName = 200; ///< of a host, a key, a user

/// Removes characters that move the cursor, reverse the writing or are invisible.
QString harmless(const QString& text)
{
    QString result;
    result.reserve(text.size());
    for (const QChar character : text) {
        const auto category = character.category();
        if (character == u'\n' || character == u'\t')
            result += character == u'\n' ? u'\n' : u' ';
        else if (category != QChar::Other_Control && category != QChar::Other_Format)
            result += character;
    }
    return result.trimmed();
}

QString shortened(const QString& text, qsizetype most) { return text.size() > most ? text.first(most) + u'…' : text; }

/// Shortens a text in its middle: the question is at the end, and mostly the asking program at the beginning.
QString withoutMiddle(const QString& text)
{
    QStringList lines = text.split(u'\n');
    while (lines.size() > mostLines)
        lines.removeAt(mostLines / 2);
    const QString all = lines.join(u'\n');
    return all.size() > mostCharacters ? all.first(mostCharacters / 2) + u" … "_s + all.last(mostCharacters / 2) : all;
}

QString name(const QString& text) { return shortened(text.simplified(), mostOfName); }

QRegularExpressionMatch matched(const QString& pattern, const QString& text)
{
    const QRegularExpression expression(QRegularExpression::anchoredPattern(pattern),
                                        QRegularExpression::DotMatchesEverythingOption);
    return expression.match(text);
}

/// Returns an address without its user and its secrets. The user is shown elsewhere.
QString withoutUser(const QString& address)
{
    QUrl url(address);
    if (!url.isValid() || url.host().isEmpty())
        return QString(address).remove(QRegularExpression(u"(?<=://)[^/]*@"_s));
    url.setUserInfo({});
    url.setQuery(QString());
    return url.toDisplayString();
}

/// Returns the user of an address; empty where it looks like a token, which some hosts accept as the user.
QString userOf(const QString& address)
{
    const QUrl url(address);
    const QString user = url.isValid() ? url.userName(QUrl::FullyDecoded) : QString();
    return user.size() > mostOfUser && !user.contains(u'@') ? QString() : user;
}

bool readAddress(const QString& question, PromptText& read)
{
    const auto asked = matched(u"(Username|Password) for '(.*)': ?"_s, question);
    if (!asked.hasMatch())
        return false;
    const QString address = asked.captured(2);
    if (asked.captured(1) == u"Password" && address.startsWith(u"cert:///")) {
        read.kind = Kind::passphrase;
        read.key = name(QUrl(address).path());
        return true;
    }
    read.kind = asked.captured(1) == u"Username" ? Kind::userName : Kind::password;
    read.host = name(withoutUser(address));
    read.user = name(harmless(userOf(address)));
    return true;
}

bool readSsh(const QString& question, PromptText& read)
{
    if (const auto key = matched(u"Enter passphrase for (?:key )?[\"']?(.*?)[\"']?: ?"_s, question); key.hasMatch()) {
        read.kind = Kind::passphrase;
        read.key = name(key.captured(1));
        return true;
    }
    if (const auto pin = matched(u"Enter PIN for (.*?): ?"_s, question); pin.hasMatch()) {
        read.kind = Kind::pin;
        read.key = name(pin.captured(1));
        return true;
    }
    auto account = matched(u"([^@\\s]+)@(\\S+)'s password: ?"_s, question);
    if (!account.hasMatch())
        account = matched(u"\\(([^@\\s]+)@([^)\\s]+)\\) (?i:password): ?"_s, question);
    if (account.hasMatch()) {
        read.kind = Kind::password;
        read.user = name(account.captured(1));
        read.host = name(account.captured(2));
        return true;
    }
    return false;
}

bool readUnknownHost(const QString& question, PromptText& read)
{
    const auto host =
        matched(u"The authenticity of host '(.*?)(?: \\(.*?\\))?' can't be established\\.\\s*(.*)"_s, question);
    if (!host.hasMatch())
        return false;
    read.kind = Kind::unknownHost;
    read.host = name(host.captured(1));
    static const QRegularExpression key(u"(\\S+) key fingerprint is (\\S+?)\\.?\\s"_s);
    if (const auto found = key.match(host.captured(2)); found.hasMatch()) {
        read.keyType = name(found.captured(1));
        read.fingerprint = name(found.captured(2));
    }
    return true;
}

Kind kindOfOther(const QString& question)
{
    if (question.endsWith(u"(yes/no)?") || question.contains(u"(yes/no"))
        return Kind::permission;
    static const QRegularExpression asksName(u"\\b(user ?name|login|e-?mail)\\b"_s,
                                             QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression asksSecret(u"pass|secret|token|pin\\b|code|key"_s,
                                               QRegularExpression::CaseInsensitiveOption);
    return question.contains(asksName) && !question.contains(asksSecret) ? Kind::text : Kind::secret;
}

} // namespace

PromptText promptText(const SignInPrompt& prompt)
{
    PromptText read;
    const QString question = harmless(exactText(prompt.text));
    read.question = withoutMiddle(question);
    read.host = name(harmless(exactText(prompt.destination)));
    if (prompt.kind == SignInKind::permission) {
        read.kind = Kind::permission;
        return read;
    }
    if (prompt.kind == SignInKind::notice) {
        const auto key = matched(u"Confirm user presence for key (.*)"_s, question);
        read.kind = Kind::touch;
        read.key = name(key.captured(1));
        return read;
    }
    if (!readAddress(question, read) && !readSsh(question, read) && !readUnknownHost(question, read))
        read.kind = kindOfOther(question);
    return read;
}

} // namespace plovik
