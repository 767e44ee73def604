#pragma once

#include <QWidget>

class QComboBox;
class QDoubleSpinBox;
class QPlainTextEdit;

namespace plovik {

/// The settings tab of the font of code and diffs. Main thread.
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
    QDoubleSpinBox* size_;
    QPlainTextEdit* preview_;
};

} // namespace plovik
