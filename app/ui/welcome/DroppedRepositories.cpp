// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/welcome/DroppedRepositories.h"

#include "app/platform/FileUri.h"

#include <QMimeData>
#include <QRegularExpression>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace plovik {

QString cloneAddress(const QString& text)
{
    static const QRegularExpression url(u"^(https?|ssh|git|git\\+ssh|ssh\\+git|file)://[^\\s/]*/\\S+$"_s,
                                        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression ofSsh(u"^[A-Za-z0-9_][\\w.+-]*@[\\w.-]+:(?!//)\\S+$"_s);
    constexpr qsizetype longest = 2000;
    if (text.size() > 2 * longest)
        return {};
    const QString address = text.trimmed();
    const bool isOne = address.size() <= longest && (url.match(address).hasMatch() || ofSsh.match(address).hasMatch());
    return isOne ? address : QString();
}

DroppedRepositories droppedRepositories(const QMimeData& dropped)
{
    DroppedRepositories found;
    for (const QUrl& url : dropped.urls()) {
        const auto path = pathOfFileUri(url.toEncoded().toStdString());
        std::error_code unreadable;
        if (path && std::filesystem::is_directory(*path, unreadable))
            found.folders.push_back(*path);
        else if (!url.isLocalFile() && found.address.isEmpty())
            found.address = cloneAddress(url.toString(QUrl::FullyEncoded));
    }
    if (found.isEmpty() && !dropped.hasUrls())
        found.address = cloneAddress(dropped.text());
    return found;
}

} // namespace plovik
