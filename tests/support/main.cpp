// SPDX-License-Identifier: GPL-3.0-or-later
// The main of the test programs that need no Qt application.
#include "tests/support/OwnEnvironment.h"

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    const OwnEnvironment environment(argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
