// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/web/WebSettings.h"

#include "app/settings/Settings.h"

#include <QUrl>

#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

constexpr std::pair<const char*, gitkit::Forge> forgeNames[] = {
    {"github", gitkit::Forge::gitHub}, {"gitlab", gitkit::Forge::gitLab},       {"gitea", gitkit::Forge::gitea},
    {"forgejo", gitkit::Forge::gitea}, {"bitbucket", gitkit::Forge::bitbucket}, {"azure", gitkit::Forge::azure}};

bool isWebAddress(const QString& address)
{
    const QString scheme = QUrl(address).scheme();
    return scheme == u"http"_s || scheme == u"https"_s;
}

/// Calls `read` with both words of each line and returns the lines for which it returns false.
template <typename Read>
QStringList readLines(const QString& lines, Read read)
{
    static const QRegularExpression blanks(u"\\s+"_s);
    QStringList misread;
    for (const QString& line : lines.split(u'\n', Qt::SkipEmptyParts)) {
        const QStringList words = line.split(blanks, Qt::SkipEmptyParts);
        if (!words.isEmpty() && (words.size() != 2 || !read(words[0], words[1])))
            misread.append(line);
    }
    return misread;
}

} // namespace

QString MessageLink::addressOf(const QRegularExpressionMatch& match) const
{
    QString made = address;
    for (int group = 9; group >= 0; --group)
        made.replace(u'$' + QString::number(group), QString::fromUtf8(QUrl::toPercentEncoding(match.captured(group))));
    return isWebAddress(made) ? made : QString();
}

namespace webSettings {

Hosts hostsIn(const QString& lines)
{
    Hosts found;
    found.misread = readLines(lines, [&found](const QString& host, const QString& kind) {
        for (const auto& [name, forge] : forgeNames) {
            if (kind.compare(QLatin1StringView(name), Qt::CaseInsensitive) != 0)
                continue;
            found.hosts.emplace_back(host.toLower().toStdString(), forge);
            return true;
        }
        return false;
    });
    return found;
}

Links linksIn(const QString& lines)
{
    Links found;
    found.misread = readLines(lines, [&found](const QString& pattern, const QString& address) {
        MessageLink link{QRegularExpression(pattern), address};
        // One that fits the empty text would be found everywhere.
        if (!link.pattern.isValid() || link.pattern.match(QString()).hasMatch() || !isWebAddress(address))
            return false;
        found.links.push_back(std::move(link));
        return true;
    });
    return found;
}

gitkit::WebHosts hosts() { return hostsIn(Settings::shared().value(settings::webHosts)).hosts; }

std::vector<MessageLink> links() { return linksIn(Settings::shared().value(settings::messageLinks)).links; }

} // namespace webSettings

} // namespace plovik
