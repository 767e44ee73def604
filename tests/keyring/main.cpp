// SPDX-License-Identifier: GPL-3.0-or-later
#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    // No session bus but the one that the tests start, which a process of libsecret's knows once for all.
    for (const char* name : {"DBUS_SESSION_BUS_ADDRESS", "DISPLAY", "XDG_CURRENT_DESKTOP", "KDE_FULL_SESSION"})
        qunsetenv(name);
    testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
