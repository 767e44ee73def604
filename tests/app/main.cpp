// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/translations/Translations.h"
#include "tests/support/OwnEnvironment.h"

#include <QApplication>
#include <QFontDatabase>

#include <cstdio>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

int main(int argc, char** argv)
{
    const OwnEnvironment environment(argv);
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    if (!QFontDatabase::families().contains(u"DejaVu Sans Mono"_s)) {
        std::fputs("These tests need the DejaVu fonts in /usr/share/fonts.\n", stderr);
        return 1;
    }
    plovik::installTranslations();
    const int result = RUN_ALL_TESTS();
    // What pools have finished meanwhile comes back to stores that are gone, and unwinds.
    QCoreApplication::processEvents();
    return result;
}
