// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/settings/EditorChoices.h"
#include "app/ui/settings/IndexChoices.h"

#include <QStringList>
#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;

namespace plovik {

class SettingsForm;

/// The settings tab for the appearance, the application that opens files, the indexes of
/// large repositories, and the questions that were answered for good. Main thread.
class GeneralTab : public QWidget {
    Q_OBJECT

public:
    explicit GeneralTab(EditorChoices editors, IndexChoices indexes = {}, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void showAppearance();
    void fillEditors();
    void showEditor();
    void pickEditor(int index);
    void addIndexes(SettingsForm& form);
    void showIndexes();
    void addQuestions(SettingsForm& form);
    void showQuestions();

    EditorChoices editors_;
    QString earlierCustomChoice_; ///< stays in the list after another application was chosen
    QComboBox* appearance_;
    QComboBox* editor_;
    IndexChoices indexes_;
    QCheckBox* keepsIndexes_;
    QLabel* indexRoom_ = nullptr;
    QPushButton* clearIndexes_ = nullptr;
    QPushButton* askAgain_ = nullptr;
};

} // namespace plovik
