// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings/SettledQuestions.h"

#include "app/settings/Settings.h"

namespace plovik::settledQuestions {

namespace {

QStringList kinds()
{
    return Settings::shared().value(settings::settledQuestions).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

} // namespace

bool contains(const QString& kind) { return kinds().contains(kind); }

void add(const QString& kind)
{
    if (!contains(kind))
        Settings::shared().set(settings::settledQuestions, (kinds() << kind).join(QLatin1Char(' ')));
}

bool areThere() { return !kinds().isEmpty(); }

void clear() { Settings::shared().set(settings::settledQuestions, QString()); }

} // namespace plovik::settledQuestions
