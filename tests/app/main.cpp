// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/translations/Translations.h"

#include <QApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

int main(int argc, char** argv)
{
    // No display, no session bus and no settings but those that a test makes.
    QTemporaryDir home;
    for (const char* folder : {"HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"})
        qputenv(folder, home.path().toLocal8Bit());
    qputenv("XDG_DATA_HOME", home.filePath(u"data/of its own"_s).toLocal8Bit());
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("QT_QPA_PLATFORM", "offscreen");

    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    plovik::installTranslations();
    const int result = RUN_ALL_TESTS();
    // What pools have finished meanwhile comes back to stores that are gone, and unwinds.
    QCoreApplication::processEvents();
    return result;
}
