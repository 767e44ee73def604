// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/settings/AIChoices.h"
#include "app/ui/settings/CommandLineTab.h"
#include "app/ui/settings/EditorChoices.h"
#include "app/ui/settings/IndexChoices.h"
#include "app/ui/settings/SettingsSymbols.h"

#include <QStringList>
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
    QString name;  ///< "command-line": the same in every language
    QString title; ///< shown
    SettingsSymbol symbol;
    std::function<QWidget*(QWidget* parent)> makePage; ///< called once
};

/// The tabs of this version, in order.
std::vector<SettingsTab> settingsTabs(EditorChoices editors, CommandLineCommands commandLine, AIChoices ai,
                                      IndexChoices indexes = {});

/// The settings window. It is as large as the page that it shows, and opens where it was last, at first in the middle
/// of the screen. Changes are in force at once; the window says when they cannot be stored. Made once and shown again.
/// Main thread.
class SettingsView : public QWidget {
    Q_OBJECT

public:
    explicit SettingsView(const std::vector<SettingsTab>& tabs, QWidget* parent = nullptr);

    /// Shows the page of that name; nothing changes for a name that no tab has. Upper case is read as lower case and a
    /// blank as a dash.
    void showTab(const QString& name);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void addKeys();
    void turn(int pages);
    void showPage(int index);
    void restorePlace();
    void tellWhetherKept();

    QStringList names_; ///< of the tabs, in order
    SettingsTabBar* bar_;
    QStackedWidget* pages_;
    QLabel* notKept_;
    QTimer writing_; ///< collects the changes of a moving control in one write
};

} // namespace plovik
