// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/settings/AIChoices.h"

#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace plovik {

class APIKeyField;

/// The settings tab for commit messages written with a language model. Everything can be set up before the feature is
/// switched on. Main thread.
class AITab : public QWidget {
    Q_OBJECT

public:
    explicit AITab(AIChoices choices, QWidget* parent = nullptr);
    ~AITab() override;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void layOut(QLabel* keyNote);
    void connectControls();
    const AIChoices::Provider& provider() const;
    void showProvider();
    void showModel();
    void showPrompt();
    void resetPrompt();

    const AIChoices choices_;
    QCheckBox* isEnabled_;
    QComboBox* provider_;
    APIKeyField* key_;
    QLineEdit* model_;
    QPlainTextEdit* prompt_;
    QPushButton* resetPrompt_;
};

} // namespace plovik
