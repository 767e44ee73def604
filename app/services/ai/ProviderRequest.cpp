// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/ai/ProviderRequest.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

using commitMessageAI::Request;

constexpr int mostTokens = 16000;

/// Returns whether another model may take over on the provider's side.
bool fallsBack(const Request& request)
{
    constexpr std::array models{"claude-opus-5"_L1, "claude-fable-5"_L1, "claude-sonnet-5-5"_L1};
    return request.provider == AIProvider::anthropic &&
           std::ranges::any_of(models, [&](QLatin1StringView each) { return request.model.startsWith(each); });
}

QJsonObject message(const QString& role, const QString& content)
{
    return {{u"role"_s, role}, {u"content"_s, content}};
}

QJsonObject anthropicBody(const Request& request)
{
    QJsonObject body{{u"model"_s, request.model},
                     {u"max_tokens"_s, mostTokens},
                     {u"system"_s, request.prompt},
                     {u"messages"_s, QJsonArray{message(u"user"_s, request.changes)}},
                     {u"output_config"_s, QJsonObject{{u"effort"_s, u"low"_s}}}};
    if (fallsBack(request))
        body[u"fallbacks"_s] = u"default"_s;
    return body;
}

QJsonObject openAIBody(const Request& request)
{
    return {{u"model"_s, request.model},
            {u"messages"_s, QJsonArray{message(u"system"_s, request.prompt), message(u"user"_s, request.changes)}}};
}

} // namespace

QNetworkRequest headOf(const Request& request, const QByteArray& key)
{
    QNetworkRequest head(request.address);
    head.setRawHeader("Content-Type", "application/json");
    if (request.provider == AIProvider::openAI) {
        head.setRawHeader("Authorization", "Bearer " + key);
        return head;
    }
    head.setRawHeader("x-api-key", key);
    head.setRawHeader("anthropic-version", "2023-06-01");
    if (fallsBack(request))
        head.setRawHeader("anthropic-beta", "server-side-fallback-2026-07-01");
    return head;
}

QByteArray bodyOf(const Request& request)
{
    const bool openAI = request.provider == AIProvider::openAI;
    return QJsonDocument(openAI ? openAIBody(request) : anthropicBody(request)).toJson(QJsonDocument::Compact);
}

} // namespace plovik
