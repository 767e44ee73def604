// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/TestRepository.h"

#include "app/translations/Translations.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    useEmptyGitConfiguration();
    const QCoreApplication application(argc, argv);
    plovik::installTranslations();
    return RUN_ALL_TESTS();
}
