// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/widgets/WarningBar.h"

class QLabel;

namespace plovik {

/// A bar below the toolbar with a sentence that can be selected. It is hidden while it has no sentence. Main thread.
class MessageBar : public WarningBar {
    Q_OBJECT

public:
    enum class Dismissal { never, byUser };

    /// `name` is the accessible name of the sentence.
    MessageBar(const QString& name, Dismissal dismissal, QWidget* parent = nullptr);

    /// Shows the bar with `text`, or hides it for an empty one.
    void setText(const QString& text);

private:
    QLabel* label_;
};

} // namespace plovik
