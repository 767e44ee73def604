// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/Confirmation.h"

#include <QDialog>

class QCheckBox;

namespace plovik {

/// Shows a question of the store; it is accepted when the user confirms, and done with
/// `firstChoice` or a number above it when the user takes one of the further choices. Deletes itself when it closes.
/// Main thread.
///
/// Where work could be lost, "Cancel" is the default button: somebody who presses Return for another widget just when
/// the question appears loses nothing. The other button is reached by Tab or by the pointer.
class ConfirmationDialog : public QDialog {
    Q_OBJECT

public:
    ConfirmationDialog(const Confirmation& question, QWidget* parent);

    /// The result when the user takes the first of the question's further choices; the others follow.
    static constexpr int firstChoice = 2;

    /// Returns whether the user does not want to be asked this again.
    bool isSettled() const;
    /// Returns whether the question's option is ticked.
    bool isOptionTicked() const;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QCheckBox* settles_ = nullptr; ///< null where the question is always asked
    QCheckBox* option_ = nullptr;  ///< null where the question has none
};

} // namespace plovik
