// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/Confirmation.h"

#include <QDialog>

namespace plovik {

/// Asks a store's question; accepted when the user confirms. Deletes itself when it closes. Main thread.
///
/// Where work could be lost nothing is the default but "Cancel": Return right after the question appears, pressed for
/// whatever had the keyboard before, loses nothing. Reaching the other button takes Tab or the pointer.
class ConfirmationDialog : public QDialog {
    Q_OBJECT

public:
    ConfirmationDialog(const Confirmation& question, QWidget* parent);

protected:
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace plovik
