// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/ai/CommitMessageAI.h"

#include "app/services/ai/APIKeyStore.h"
#include "app/services/ai/FirstCharacters.h"
#include "app/services/ai/ProviderAddress.h"
#include "app/services/ai/ProviderReply.h"
#include "app/services/ai/ProviderRequest.h"
#include "app/services/ai/Stoppable.h"
#include "app/services/http/HttpPost.h"
#include "app/settings/Settings.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

using Failure = CommitMessageAI::Failure;
using Options = CommitMessageAI::Options;
using Request = CommitMessageAI::Request;

constexpr std::size_t mostCharacters = 300'000;

/// Without spaces and tabs at the ends.
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

/// All but the changes, as settings and environment have it now.
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
    const std::string_view kept = firstCharacters(diff, mostCharacters);
    std::string text;
    text.reserve(summary.size() + kept.size() + 100);
    text.append("Changed files:\n").append(summary).append("\n\nDiff:\n").append(kept);
    if (kept.size() < diff.size())
        text += "\n\n[The diff is cut off here because it is too long.]";
    return QString::fromUtf8(text);
}

/// Reads the key where the key store has it, else from the environment.
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
        throw Failure(u"Add your %1 API key under Settings → AI first."_s.arg(name));
    if (!std::ranges::all_of(key, [](QChar each) { return each > u' ' && each < u'\x7F'; }))
        throw Failure(
            u"Your %1 API key holds characters that cannot be sent. Enter it again under Settings → AI."_s.arg(name));
}

/// The whole call, ready to go out; long texts and unknown proxies make this slow.
HttpCall callFor(const Request& request, const QString& key, const Options& options)
{
    HttpCall call{.head = headOf(request, key.toLatin1()),
                  .body = bodyOf(request),
                  .proxy = systemProxy(request.address),
                  .timeLimit = options.timeLimit,
                  .replyLimit = options.replyLimit};
    if (options.tls)
        call.head.setSslConfiguration(*options.tls);
    return call;
}

// A coroutine of its own, because the object may be gone before it ends.
QCoro::Task<QString> write(Options options, std::string summary, std::string diff, std::stop_token stop)
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
    const HttpAnswer answer = co_await post(std::move(call), stop);

    const std::function<QString()> read = [provider, answer, key] {
        return withoutCodeFence(replyText(provider, answer, key));
    };
    const QString message = co_await inBackground<QString>(read, stop);
    if (message.isEmpty())
        throw Failure(aiProvider::displayName(provider) + u" returned an empty commit message."_s);
    co_return message;
}

} // namespace

Request CommitMessageAI::request(std::string_view summary, std::string_view diff)
{
    Request request = requestSet();
    request.changes = changesIn(summary, diff);
    return request;
}

QCoro::Task<QString> CommitMessageAI::generate(std::string summary, std::string diff, std::stop_token stop) const
{
    return write(options_, std::move(summary), std::move(diff), std::move(stop));
}

} // namespace plovik
