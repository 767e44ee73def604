// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/ai/ProviderReply.h"

#include "app/services/ai/AlertText.h"
#include "app/services/ai/CommitMessageAI.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

using Failure = CommitMessageAI::Failure;

/// What the provider says about a request that it did not fulfil.
QString detailOf(const HttpAnswer& answer)
{
    if (!answer.redirect.isEmpty())
        return u"The redirect to %1 was refused."_s.arg(answer.redirect.host());
    return QJsonDocument::fromJson(answer.body).object()["error"_L1]["message"_L1].toString();
}

void checkStatus(AIProvider provider, const HttpAnswer& answer, const QString& key)
{
    if (answer.status == 0 || (answer.status >= 200 && answer.status < 300))
        return;
    const QString detail = alertText(detailOf(answer), key);
    throw Failure(u"%1 request failed (%2): "_s.arg(aiProvider::displayName(provider)).arg(answer.status) +
                  (detail.isEmpty() ? u"no details given"_s : detail));
}

QJsonObject objectIn(const HttpAnswer& answer)
{
    if (answer.body.trimmed().isEmpty())
        throw Failure(u"%1 sent an empty reply."_s.arg(answer.host));
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(answer.body, &error);
    if (error.error != QJsonParseError::NoError)
        throw Failure(u"The reply of %1 is cut off or no JSON: %2."_s.arg(answer.host, error.errorString()));
    if (!document.isObject())
        throw Failure(u"The reply of %1 is no JSON object."_s.arg(answer.host));
    return document.object();
}

QString anthropicText(const QJsonObject& reply)
{
    if (reply["stop_reason"_L1] == "refusal"_L1)
        throw Failure(u"Claude declined to write a message for these changes."_s);
    QString text;
    for (const QJsonValue block : reply["content"_L1].toArray()) {
        if (block["type"_L1] == "text"_L1)
            text += block["text"_L1].toString();
    }
    return text;
}

QString openAIText(const QJsonObject& reply)
{
    return reply["choices"_L1].toArray().at(0)["message"_L1]["content"_L1].toString();
}

} // namespace

QString replyText(AIProvider provider, const HttpAnswer& answer, const QString& key)
{
    checkStatus(provider, answer, key);
    if (!answer.problem.isEmpty())
        throw Failure(alertText(answer.problem, key));
    const QJsonObject reply = objectIn(answer);
    return provider == AIProvider::openAI ? openAIText(reply) : anthropicText(reply);
}

QString withoutCodeFence(const QString& text)
{
    QStringList lines = text.trimmed().split(u'\n');
    if (lines.size() >= 2 && lines.first().startsWith("```"_L1) && lines.last().startsWith("```"_L1)) {
        lines.removeFirst();
        lines.removeLast();
    }
    return lines.join(u'\n').trimmed();
}

} // namespace plovik
