// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/Confirmation.h"

#include <QDialog>

class QCheckBox;

namespace plovik {

/// Shows a question of the store; it is accepted when the user confirms, and done with `alternativeChosen` when the user
/// takes the alternative. Deletes itself when it closes. Main thread.
///
/// Where work could be lost, "Cancel" is the default button: somebody who presses Return for another widget just when
/// the question appears loses nothing. The other button is reached by Tab or by the pointer.
class ConfirmationDialog : public QDialog {
    Q_OBJECT

public:
    ConfirmationDialog(const Confirmation& question, QWidget* parent);

    /// The result when the user chooses the question's alternative.
    static constexpr int alternativeChosen = 2;

    /// Returns whether the user does not want to be asked this again.
    bool isSettled() const;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QCheckBox* settles_ = nullptr; ///< null where the question is always asked
};

} // namespace plovik
