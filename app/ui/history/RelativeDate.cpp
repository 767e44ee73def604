// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/history/RelativeDate.h"

#include <QCoreApplication>
#include <QDateTime>

namespace plovik {

using namespace Qt::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(RelativeDate)
};

constexpr qint64 minute = 60;
constexpr qint64 hour = 60 * minute;
/// Younger dates are told in hours even when midnight lies between.
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

RelativeDate RelativeDate::toNow(gitkit::Date date)
{
    return between(date, std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()));
}

QString RelativeDate::text(const QLocale& locale) const
{
    switch (unit) {
    case Unit::unknown:
        return Text::tr("no date");
    case Unit::now:
        return Text::tr("just now");
    case Unit::minutes:
        return Text::tr("%1 min ago").arg(count);
    case Unit::hours:
        return Text::tr("%1 h ago").arg(count);
    case Unit::yesterday:
        return Text::tr("yesterday");
    case Unit::days:
        return Text::tr("%Ln day(s) ago", nullptr, static_cast<int>(count));
    case Unit::lastWeek:
        return Text::tr("last week");
    case Unit::date:
        return locale.toString(QDate::fromJulianDay(count), QLocale::ShortFormat);
    }
    return {};
}

QString absoluteDate(gitkit::Date date, const QLocale& locale)
{
    const QDateTime local = localTime(date);
    if (date == gitkit::Date{} || !local.isValid())
        return Text::tr("no readable date");
    return Text::tr("%1, %2", "date, time")
        .arg(locale.toString(local.date(), QLocale::LongFormat),
             locale.toString(local.time(), shortTimeFormat(locale)));
}

QString shortTime(gitkit::Date date, const QLocale& locale)
{
    const QDateTime local = localTime(date);
    if (date == gitkit::Date{} || !local.isValid())
        return Text::tr("no date");
    return Text::tr("%1 %2", "date, time, both short")
        .arg(locale.toString(local.date(), QLocale::ShortFormat),
             locale.toString(local.time(), shortTimeFormat(locale)));
}

QString shortTimeFormat(const QLocale& locale)
{
    // The short format of the C locale has seconds, which are not wanted here.
    QString format = locale.timeFormat(QLocale::ShortFormat);
    return format.remove(u":ss"_s);
}

} // namespace plovik
