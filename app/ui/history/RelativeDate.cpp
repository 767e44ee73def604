// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/history/RelativeDate.h"

#include <QDateTime>

namespace plovik {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 minute = 60;
constexpr qint64 hour = 60 * minute;
/// A commit made this long ago is told by its hours even when midnight lies between.
constexpr qint64 sameSitting = 6 * hour;

QDateTime localTime(gitkit::Date date)
{
    return QDateTime::fromSecsSinceEpoch(static_cast<qint64>(date.time_since_epoch().count()));
}

} // namespace

RelativeDate RelativeDate::between(gitkit::Date date, gitkit::Date now)
{
    const QDate day = localTime(date).date();
    if (date == gitkit::Date{} || !day.isValid())
        return {};
    const RelativeDate onItsDate{Unit::date, day.toJulianDay()};
    const QDate today = localTime(now).date();
    if (date > now + std::chrono::seconds(minute))
        return onItsDate;

    const auto age = static_cast<qint64>((now - date).count());
    const qint64 days = day.daysTo(today);
    if (age < minute)
        return {Unit::now, 0};
    if (age < hour)
        return {Unit::minutes, age / minute};
    if (age < sameSitting || days == 0)
        return {Unit::hours, age / hour};
    if (days == 1)
        return {Unit::yesterday, 0};
    if (days < 7)
        return {Unit::days, days};
    if (days < 14)
        return {Unit::lastWeek, 0};
    return onItsDate;
}

QString RelativeDate::text(const QLocale& locale) const
{
    switch (unit) {
    case Unit::unknown:
        return u"no date"_s;
    case Unit::now:
        return u"just now"_s;
    case Unit::minutes:
        return u"%1 min ago"_s.arg(count);
    case Unit::hours:
        return u"%1 h ago"_s.arg(count);
    case Unit::yesterday:
        return u"yesterday"_s;
    case Unit::days:
        return u"%1 days ago"_s.arg(count);
    case Unit::lastWeek:
        return u"last week"_s;
    case Unit::date:
        return locale.toString(QDate::fromJulianDay(count), QLocale::ShortFormat);
    }
    return {};
}

QString absoluteDate(gitkit::Date date, const QLocale& locale)
{
    const QDateTime local = localTime(date);
    if (date == gitkit::Date{} || !local.isValid())
        return u"no readable date"_s;
    return locale.toString(local.date(), QLocale::LongFormat) + u", "_s +
           locale.toString(local.time(), shortTimeFormat(locale));
}

QString shortTimeFormat(const QLocale& locale)
{
    // Where no locale is set the short form has seconds, which nobody asks for.
    QString format = locale.timeFormat(QLocale::ShortFormat);
    return format.remove(u":ss"_s);
}

} // namespace plovik
