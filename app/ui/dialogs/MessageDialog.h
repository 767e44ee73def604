// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

namespace plovik {

/// Tells one thing: a title, a sentence or more below it that can be selected and copied, and the button "OK". Deletes
/// itself when it closes. Main thread.
class MessageDialog : public QDialog {
    Q_OBJECT

public:
    MessageDialog(const QString& title, const QString& detail, QWidget* parent);
};

} // namespace plovik
