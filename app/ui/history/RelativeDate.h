// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Date.h"

#include <QLocale>
#include <QString>

namespace plovik {

/// When something happened, as coarse as in a list. Days are those of the local calendar.
struct RelativeDate {
    enum class Unit { unknown, now, minutes, hours, yesterday, days, lastWeek, date };

    Unit unit = Unit::unknown;
    qint64 count = 0; ///< minutes, hours or days; for `date` the Julian day

    /// Dates that are more than a minute after `now` or older than two weeks get `Unit::date`. The epoch stands for a
    /// time that could not be read and gets `Unit::unknown`.
    static RelativeDate between(gitkit::Date date, gitkit::Date now);
    static RelativeDate toNow(gitkit::Date date);

    /// Returns "2 h ago", "yesterday", "last week", or the date in the locale's short form.
    QString text(const QLocale& locale) const;

    bool operator==(const RelativeDate&) const = default;
};

/// Returns date and time in the locale's long form, for tooltips and details.
QString absoluteDate(gitkit::Date date, const QLocale& locale);
/// Returns date and time in the locale's short form, for lists.
QString shortTime(gitkit::Date date, const QLocale& locale);
/// Returns the locale's short format for hours and minutes.
QString shortTimeFormat(const QLocale& locale);

} // namespace plovik
