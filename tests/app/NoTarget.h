// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/commands/MainMenu.h"

namespace plovik::test {

/// For menus whose commands of the application are of no interest.
class NoTarget : public MenuTarget {
public:
    void openDocument() override {}
    void cloneRepository() override {}
    void cloneFrom(const QString&) override {}
    void newRepository() override {}
    void showSettings() override {}
    void openFolder(const std::filesystem::path&) override {}
    std::vector<std::filesystem::path> openRoots() const override { return {}; }
    void quit() override {}
    void about() override {}
    void checkForUpdates() override {}
    void bringAllToFront() override {}
};

} // namespace plovik::test
