// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Date.h"

#include <QLocale>
#include <QString>

namespace plovik {

/// When something happened, as coarsely as a list tells it. Days are those of the local calendar.
struct RelativeDate {
    enum class Unit { unknown, now, minutes, hours, yesterday, days, lastWeek, date };

    Unit unit = Unit::unknown;
    qint64 count = 0; ///< minutes, hours or days; for `date` the Julian day

    /// What lies ahead of `now` by more than a minute, and what is older than two weeks, is told by its date. The epoch
    /// stands for a time that could not be read, and is unknown.
    static RelativeDate between(gitkit::Date date, gitkit::Date now);

    /// "2 h ago", "yesterday", "last week", or the date in the locale's short form.
    QString text(const QLocale& locale) const;

    bool operator==(const RelativeDate&) const = default;
};

/// Date and time in the locale's long form, for tooltips and details.
QString absoluteDate(gitkit::Date date, const QLocale& locale);
/// Hours and minutes as the locale writes them in short.
QString shortTimeFormat(const QLocale& locale);

} // namespace plovik
