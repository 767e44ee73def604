// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/ai/ProviderReply.h"

#include "app/services/ai/AlertText.h"
#include "app/services/ai/CommitMessageAI.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

using commitMessageAI::Failure;

struct ReplyText {
    Q_DECLARE_TR_FUNCTIONS(ProviderReply)
};

/// Returns what the provider says about a request that it did not fulfil.
QString detailOf(const HttpAnswer& answer)
{
    if (!answer.redirect.isEmpty())
        return ReplyText::tr("The redirect to %1 was refused.").arg(answer.redirect.host());
    return QJsonDocument::fromJson(answer.body).object()["error"_L1]["message"_L1].toString();
}

void checkStatus(AIProvider provider, const HttpAnswer& answer, const QString& key)
{
    if (answer.status == 0 || (answer.status >= 200 && answer.status < 300))
        return;
    const QString detail = alertText(detailOf(answer), key);
    throw Failure(ReplyText::tr("%1 request failed (%2): %3")
                      .arg(aiProvider::displayName(provider), QString::number(answer.status),
                           detail.isEmpty() ? ReplyText::tr("no details given") : detail));
}

QJsonObject objectIn(const HttpAnswer& answer)
{
    if (answer.body.trimmed().isEmpty())
        throw Failure(ReplyText::tr("%1 sent an empty reply.").arg(answer.address.host()));
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(answer.body, &error);
    if (error.error != QJsonParseError::NoError)
        throw Failure(ReplyText::tr("The reply of %1 is cut off or no JSON: %2.")
                          .arg(answer.address.host(), error.errorString()));
    if (!document.isObject())
        throw Failure(ReplyText::tr("The reply of %1 is no JSON object.").arg(answer.address.host()));
    return document.object();
}

QString anthropicText(const QJsonObject& reply)
{
    if (reply["stop_reason"_L1] == "refusal"_L1)
        throw Failure(ReplyText::tr("Claude declined to write a message for these changes."));
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
    if (answer.failure)
        throw Failure(alertText(sentence(*answer.failure), key));
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
