// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/commands/MainMenu.h"

namespace plovik::test {

/// For menus whose commands of the application are of no interest.
class NoTarget : public MenuTarget {
public:
    void openDocument() override {}
    void showSettings() override {}
    void hideAll() override {}
    void showAll() override {}
    void quit() override {}
    void about() override {}
    void checkForUpdates() override {}
    void bringAllToFront() override {}
};

} // namespace plovik::test
