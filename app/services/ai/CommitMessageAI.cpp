// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/ai/CommitMessageAI.h"

#include "app/await/Stop.h"
#include "app/services/ai/APIKeyStore.h"
#include "app/services/ai/Beginning.h"
#include "app/services/ai/ProviderAddress.h"
#include "app/services/ai/ProviderReply.h"
#include "app/services/ai/ProviderRequest.h"
#include "app/services/http/Http.h"
#include "app/settings/Settings.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik::commitMessageAI {

namespace {

struct MessageText {
    Q_DECLARE_TR_FUNCTIONS(CommitMessageAI)
};

constexpr qsizetype mostCharacters = 300'000;

/// Returns the name without spaces and tabs at its ends.
QString trimmedName(const QString& name)
{
    const auto isKept = [](QChar each) { return each != u'\t' && each.category() != QChar::Separator_Space; };
    const auto first = std::ranges::find_if(name, isKept);
    const auto last = std::find_if(name.rbegin(), std::reverse_iterator(first), isKept);
    return name.sliced(first - name.begin(), last.base() - first);
}

QString modelSetFor(AIProvider provider)
{
    const auto& setting = provider == AIProvider::openAI ? settings::aiModelOpenAI : settings::aiModelAnthropic;
    const QString model = trimmedName(Settings::shared().value(setting));
    return model.isEmpty() ? aiProvider::defaultModel(provider) : model;
}

QString promptSet()
{
    const QString prompt = Settings::shared().value(settings::aiCommitPrompt).trimmed();
    return prompt.isEmpty() ? QString::fromUtf8(settings::aiCommitPrompt.fallback) : prompt;
}

/// Returns everything but the changes, as settings and environment have it now.
Request requestSet()
{
    Request request;
    request.provider = aiProvider::fromRawValue(Settings::shared().value(settings::aiProvider));
    request.address = providerAddress(request.provider);
    request.model = modelSetFor(request.provider);
    request.prompt = promptSet();
    return request;
}

QString changesIn(std::string_view summary, std::string_view diff)
{
    const Beginning kept = beginningOf(diff, mostCharacters);
    const QString text = u"Changed files:\n"_s + QString::fromUtf8(summary) + u"\n\nDiff:\n"_s + kept.text;
    return kept.isWhole ? text : text + u"\n\n[The diff is cut off here because it is too long.]"_s;
}

/// Returns the key in the key store, else the one in the environment, else an empty text.
QCoro::Task<QString> readKey(AIProvider provider, Options options, std::stop_token stop)
{
    using Stored = std::optional<QString>;
    const auto read = options.storedKey ? options.storedKey : &apiKeyStore::key;
    const std::function<QCoro::Task<Stored>()> start = [read, provider] { return read(provider); };
    const Stored stored = co_await unlessStopped<Stored>(start, std::move(stop));
    const QString key = stored.value_or(QString()).trimmed();
    co_return key.isEmpty() ? qEnvironmentVariable(aiProvider::keyVariable(provider)).trimmed() : key;
}

void checkKey(const QString& key, AIProvider provider)
{
    const QString name = aiProvider::displayName(provider);
    if (key.isEmpty())
        throw Failure(MessageText::tr("Add your %1 API key under Settings → AI first.").arg(name));
    if (!std::ranges::all_of(key, [](QChar each) { return each > u' ' && each < u'\x7F'; }))
        throw Failure(
            MessageText::tr("Your %1 API key holds characters that cannot be sent. Enter it again under Settings → AI.")
                .arg(name));
}

/// Returns the whole call. Long texts make this slow.
HttpCall callFor(const Request& request, const QString& key, const Options& options)
{
    HttpCall call{.head = headOf(request, key.toLatin1()),
                  .body = bodyOf(request),
                  .timeLimit = options.timeLimit,
                  .replyLimit = options.replyLimit};
    if (options.tls)
        call.head.setSslConfiguration(*options.tls);
    return call;
}

} // namespace

Request request(std::string_view summary, std::string_view diff)
{
    Request request = requestSet();
    request.changes = changesIn(summary, diff);
    return request;
}

QCoro::Task<QString> generate(std::string summary, std::string diff, std::stop_token stop, Options options)
{
    const Request request = requestSet();
    const AIProvider provider = request.provider;
    const QString key = co_await readKey(provider, options, stop);
    checkKey(key, provider);

    std::function<HttpCall()> prepare = [request, key, options, summary = std::move(summary), diff = std::move(diff)] {
        Request whole = request;
        whole.changes = changesIn(summary, diff);
        return callFor(whole, key, options);
    };
    HttpCall call = co_await inBackground<HttpCall>(std::move(prepare), stop);
    const HttpAnswer answer = co_await send(std::move(call), stop);

    const std::function<QString()> read = [provider, answer, key] {
        return withoutCodeFence(replyText(provider, answer, key));
    };
    const QString message = co_await inBackground<QString>(read, stop);
    if (message.isEmpty())
        throw Failure(MessageText::tr("%1 returned an empty commit message.").arg(aiProvider::displayName(provider)));
    co_return message;
}

} // namespace plovik::commitMessageAI
