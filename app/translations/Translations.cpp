// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/translations/Translations.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTranslator>

/// Outside all namespaces, as Qt requires it for the resources of a static library.
static void initResources() { Q_INIT_RESOURCE(translations); }

namespace plovik {

void installTranslations()
{
    initResources();
    auto* const translator = new QTranslator(QCoreApplication::instance());
    if (!translator->load(QLocale(), QStringLiteral("plovik"), QStringLiteral("_"), QStringLiteral(":/translations")) &&
        !translator->load(QStringLiteral(":/translations/plovik_en.qm")))
    {
        delete translator;
        return;
    }
    QCoreApplication::installTranslator(translator);
}

} // namespace plovik
