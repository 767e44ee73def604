// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/OwnEnvironment.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    const OwnEnvironment environment(argv);
    testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
