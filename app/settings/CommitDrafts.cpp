// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings/CommitDrafts.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QStandardPaths>

#include <atomic>
#include <fcntl.h>
#include <future>
#include <map>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik::commitDrafts {

namespace {

const QString subjectKey = u"subject"_s;
const QString bodyKey = u"body"_s;
const QString amendsKey = u"amends"_s;
const QString headKey = u"head"_s;

std::map<std::string, Draft>& keptInThisRun()
{
    static std::map<std::string, Draft> drafts;
    return drafts;
}

/// The newest writing. Each one waits for the one before, so that an older draft never replaces a newer one.
std::shared_future<void>& writing()
{
    static std::shared_future<void> newest;
    return newest;
}

/// Runs `write` on another thread, or on this one where none can be started.
void startWriting(const std::function<void()>& write)
{
    try {
        writing() = std::async(std::launch::async, [before = writing(), write]() mutable {
                        if (before.valid())
                            before.wait();
                        before = {}; // otherwise every writing would live as long as the newest one
                        write();
                    }).share();
    } catch (const std::system_error&) {
        finishWriting();
        write();
    }
}

/// Returns why the draft could not be written; an empty text when it was.
QString write(const QString& file, const Draft& draft)
{
    if (draft.isEmpty()) {
        QFile::remove(file);
        return {};
    }
    QDir().mkpath(QFileInfo(file).path());
    QSaveFile out(file);
    if (!out.open(QIODevice::WriteOnly))
        return out.errorString();
    // Only its user may read the file, because a draft may describe something that is not public yet.
    out.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    const QByteArray text = QJsonDocument(QJsonObject{{subjectKey, draft.subject},
                                                      {bodyKey, draft.body},
                                                      {amendsKey, draft.amends},
                                                      {headKey, draft.head}})
                                .toJson();
    // On a full disk only flush() fails, and commit() would then replace the file by an empty one.
    if (out.write(text) == text.size() && out.flush() && out.commit())
        return {};
    out.cancelWriting();
    return out.errorString();
}

} // namespace

QString fileFor(const std::filesystem::path& root)
{
    const QByteArray name =
        QCryptographicHash::hash(QByteArrayView(root.native()), QCryptographicHash::Sha256).toHex().left(32);
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/Plovik/drafts/"_s +
           QString::fromLatin1(name) + u".json"_s;
}

Draft read(const std::filesystem::path& root)
{
    if (const auto kept = keptInThisRun().find(root.native()); kept != keptInThisRun().end())
        return kept->second;
    // Another program may have put a pipe in its place, and opening that would wait.
    const int opened = ::open(QFile::encodeName(fileFor(root)).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    struct stat found{};
    QFile file;
    if (opened < 0 || !file.open(opened, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle) ||
        ::fstat(opened, &found) != 0 || !S_ISREG(found.st_mode))
        return {};
    const QJsonObject stored = QJsonDocument::fromJson(file.readAll()).object();
    return {stored.value(subjectKey).toString(), stored.value(bodyKey).toString(), stored.value(amendsKey).toBool(),
            stored.value(headKey).toString()};
}

void keep(const std::filesystem::path& root, const Draft& draft, std::function<void(const QString&)> failed)
{
    keptInThisRun()[root.native()] = draft;
    startWriting([file = fileFor(root), draft, failed = std::move(failed)] {
        static std::atomic_bool wasTold = false;
        const QString problem = write(file, draft);
        if (problem.isEmpty())
            wasTold = false;
        else if (failed && !wasTold.exchange(true))
            QMetaObject::invokeMethod(qApp, [failed, problem] { failed(problem); });
    });
}

void finishWriting()
{
    if (writing().valid())
        writing().wait();
}

} // namespace plovik::commitDrafts
