// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/settings/OwnCommands.h"

#include <QWidget>

#include <vector>

class QCheckBox;
class QComboBox;
class QKeySequenceEdit;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

namespace plovik {

/// The settings tab of the user's own commands: their list, and the selected one. What is typed is stored at once. Main thread.
class OwnCommandsTab : public QWidget {
    Q_OBJECT

public:
    explicit OwnCommandsTab(QWidget* parent = nullptr);

private:
    void reload();
    void add();
    void remove();
    void showEntry();
    void storeEntry();
    void showProblem();

    std::vector<ownCommands::Entry> entries_;
    QListWidget* list_;
    QPushButton* remove_;
    QLineEdit* title_;
    QLineEdit* line_;
    QComboBox* place_;
    QKeySequenceEdit* keys_;
    QCheckBox* asksFirst_;
    QLabel* problem_;
    bool isShowing_ = false; ///< the fields are being filled
};

} // namespace plovik
