// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/CommitSummary.h"

#include "app/ui/widgets/Theme.h"

#include <QLocale>
#include <QStringList>

#include <algorithm>

namespace plovik::commitSummary {

using namespace Qt::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(CommitSummary)
};

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
    const auto count = static_cast<int>(detail.files.size());
    if (isMerge(detail, kind)) {
        return count == 0 ? Text::tr("No files changed against the first parent")
                          : Text::tr("%Ln file(s) changed against the first parent", nullptr, count);
    }
    if (count == 0)
        return Text::tr("No files changed");
    const qint64 untracked =
        std::ranges::count_if(detail.files, [](const gitkit::CommitFile& file) { return file.source.has_value(); });
    if (untracked == 0)
        return Text::tr("%Ln file(s) changed", nullptr, count);
    return Text::tr("%Ln file(s) changed, %1 untracked", nullptr, count).arg(QLocale().toString(untracked));
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
        return Text::tr("This stash changes no files.");
    if (isMerge(detail, kind))
        return Text::tr("This merge changes no files against its first parent.");
    return Text::tr("This commit changes no files.");
}

} // namespace plovik::commitSummary
