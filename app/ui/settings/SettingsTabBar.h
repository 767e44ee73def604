// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/settings/SettingsSymbols.h"

#include <QTabBar>

#include <vector>

namespace plovik {

/// The row of tabs at the top of the settings window: a symbol with its title below. Main thread.
class SettingsTabBar : public QTabBar {
    Q_OBJECT

public:
    explicit SettingsTabBar(QWidget* parent = nullptr);

    void add(const QString& title, SettingsSymbol symbol);

protected:
    QSize tabSizeHint(int index) const override;
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

private:
    std::vector<SettingsSymbol> symbols_;
    bool showsFocus_ = false; ///< the focus came by the keyboard
};

} // namespace plovik
