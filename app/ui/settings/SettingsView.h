// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/settings/AIChoices.h"
#include "app/ui/settings/CommandLineTab.h"
#include "app/ui/settings/EditorChoices.h"
#include "app/ui/settings/SettingsSymbols.h"

#include <QTimer>
#include <QWidget>

#include <functional>
#include <vector>

class QLabel;
class QStackedWidget;

namespace plovik {

class SettingsTabBar;

/// One page of the settings window.
struct SettingsTab {
    QString title;
    SettingsSymbol symbol;
    std::function<QWidget*(QWidget* parent)> makePage; ///< called once
};

/// The tabs of this version, in order.
std::vector<SettingsTab> settingsTabs(EditorChoices editors, CommandLineCommands commandLine, AIChoices ai);

/// The settings window: as large as the page that it shows, where it was last and otherwise in the middle of the
/// screen. What is changed in it is in force at once; where it cannot be kept, the window says so. Made once and shown
/// again; main thread.
class SettingsView : public QWidget {
    Q_OBJECT

public:
    explicit SettingsView(const std::vector<SettingsTab>& tabs, QWidget* parent = nullptr);

    /// Shows the page of that title, in any case; nothing changes for a title that no tab has.
    void showTab(const QString& title);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void addKeys();
    void turn(int pages);
    void showPage(int index);
    void restorePlace();
    void tellWhetherKept();

    SettingsTabBar* bar_;
    QStackedWidget* pages_;
    QLabel* notKept_;
    QTimer writing_; ///< one write for all changes of a moving control
};

} // namespace plovik
