// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/shell/AISettings.h"

#include "app/await/Await.h"
#include "app/services/ai/APIKeyStore.h"

#include <QCoreApplication>
#include <QTimer>

#include <memory>
#include <utility>

namespace plovik {

namespace {

// An unlocked keyring answers within milliseconds. A locked one asks for a password, which quitting does not wait for.
constexpr std::chrono::milliseconds lastWait{1000};

QCoro::Task<> saveKey(std::shared_ptr<int> running, AIProvider provider, QString key,
                      std::function<void(bool)> finished)
{
    *running += 1;
    const bool isSaved = co_await apiKeyStore::setKey(provider, key);
    *running -= 1;
    finished(isSaved);
}

void waitForSaves(const int& running)
{
    QTimer limit;
    limit.setSingleShot(true);
    limit.start(lastWait);
    while (running > 0 && limit.isActive())
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::WaitForMoreEvents);
}

QCoro::Task<> readKey(AIProvider provider, std::function<void(std::optional<QString>)> found)
{
    std::optional<QString> key = co_await apiKeyStore::key(provider);
    found(std::move(key));
}

} // namespace

AIChoices aiChoices()
{
    AIChoices choices;
    for (const AIProvider each : aiProvider::all) {
        choices.providers.push_back({aiProvider::rawValue(each), aiProvider::displayName(each),
                                     aiProvider::defaultModel(each),
                                     QString::fromLatin1(aiProvider::keyVariable(each))});
    }
    choices.readKey = [](const QString& provider, std::function<void(std::optional<QString>)> found) {
        launch(readKey(aiProvider::fromRawValue(provider), std::move(found)));
    };
    const auto running = std::make_shared<int>(0);
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, qApp, [running] { waitForSaves(*running); });
    choices.saveKey = [running](const QString& provider, const QString& key, std::function<void(bool)> finished) {
        launch(saveKey(running, aiProvider::fromRawValue(provider), key, std::move(finished)));
    };
    choices.hasKeyInEnvironment = [](const QString& provider) {
        return !qgetenv(aiProvider::keyVariable(aiProvider::fromRawValue(provider))).trimmed().isEmpty();
    };
    return choices;
}

} // namespace plovik
