// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPushButton>

namespace plovik {

class DiffController;

/// The button behind the last line of a diff that was cut, which asks for the lines beyond. It is hidden while the diff
/// is whole or its lines are being counted. Stands in the widget that shows the diff. Main thread.
class CutButton : public QPushButton {
    Q_OBJECT

public:
    /// `controller` and `section` outlive the button.
    CutButton(DiffController& controller, QWidget* section);

    /// Follows the diff that the controller has now.
    void follow();
    /// Returns the height that the button takes with the gap below it, in pixels; 0 while it is hidden.
    int room() const;
    void place(int top);

Q_SIGNALS:
    /// The keyboard has come to the button, which may be out of sight.
    void focused();

protected:
    void focusInEvent(QFocusEvent* event) override;

private:
    DiffController& controller_;
};

} // namespace plovik
