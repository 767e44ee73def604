// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QComboBox;
class QPlainTextEdit;

namespace plovik {

class SizeControl;

/// The settings tab for the font of code and diffs. Main thread.
class EditorTab : public QWidget {
    Q_OBJECT

public:
    explicit EditorTab(QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void fillFamilies();
    void showSettings();

    QComboBox* family_;
    SizeControl* size_;
    SizeControl* tabWidth_;
    QPlainTextEdit* preview_;
};

} // namespace plovik
