// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QLabel;
class QPlainTextEdit;

namespace plovik {

/// The settings tab for servers of git that are not known by their names, and for references in messages that lead to the
/// web. Main thread.
class WebTab : public QWidget {
    Q_OBJECT

public:
    explicit WebTab(QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void showStored();
    void tellMisread();

    QPlainTextEdit* hosts_;
    QPlainTextEdit* links_;
    QLabel* problem_;
};

} // namespace plovik
