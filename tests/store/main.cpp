// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/TestRepository.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    useEmptyGitConfiguration();
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
