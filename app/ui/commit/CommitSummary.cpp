// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/CommitSummary.h"

#include "app/ui/widgets/Theme.h"

#include <QLocale>
#include <QStringList>

#include <algorithm>

namespace plovik::commitSummary {

using namespace Qt::StringLiterals;

namespace {

bool isMerge(const gitkit::CommitDetail& detail, CommitKind kind)
{
    return kind == CommitKind::ordinary && detail.parents.size() > 1;
}

QString coloured(QChar sign, qint64 count, const QColor& color)
{
    return u"<span style='color:%1'>%2%3</span>"_s.arg(color.name(), sign, QLocale().toString(count));
}

} // namespace

QString files(const gitkit::CommitDetail& detail, CommitKind kind)
{
    const std::size_t count = detail.files.size();
    QString text = count == 1 ? u"1 file changed"_s
                              : u"%1 files changed"_s.arg(QLocale().toString(static_cast<qulonglong>(count)));
    if (count == 0)
        text = u"No files changed"_s;
    const auto untracked =
        std::ranges::count_if(detail.files, [](const gitkit::CommitFile& file) { return file.source.has_value(); });
    if (untracked > 0)
        text += u", %1 untracked"_s.arg(QLocale().toString(static_cast<qlonglong>(untracked)));
    return isMerge(detail, kind) ? text + u" against the first parent"_s : text;
}

QString totals(const CommitReading& reading)
{
    if (!reading.counts)
        return {};
    qint64 added = 0;
    qint64 removed = 0;
    for (const gitkit::ChangeCounts& counts : *reading.counts) {
        added += counts.added.value_or(0);
        removed += counts.removed.value_or(0);
    }
    QStringList parts;
    if (added > 0)
        parts << coloured(u'+', added, Theme::current().statusAdded);
    if (removed > 0)
        parts << coloured(u'−', removed, Theme::current().statusDeleted);
    return parts.join(u"&nbsp;&nbsp;"_s);
}

QString nothingChanged(const gitkit::CommitDetail& detail, CommitKind kind)
{
    if (kind == CommitKind::stash)
        return u"This stash changes no files."_s;
    if (isMerge(detail, kind))
        return u"This merge changes no files against its first parent."_s;
    return u"This commit changes no files."_s;
}

} // namespace plovik::commitSummary
