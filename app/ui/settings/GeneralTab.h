// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/settings/EditorChoices.h"

#include <QStringList>
#include <QWidget>

class QComboBox;

namespace plovik {

/// The settings tab for the appearance and for the application that opens files. Main thread.
class GeneralTab : public QWidget {
    Q_OBJECT

public:
    explicit GeneralTab(EditorChoices editors, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void showAppearance();
    void fillEditors();
    void showEditor();
    void pickEditor(int index);

    EditorChoices editors_;
    QString earlierCustomChoice_; ///< stays in the list after another application was chosen
    QComboBox* appearance_;
    QComboBox* editor_;
};

} // namespace plovik
