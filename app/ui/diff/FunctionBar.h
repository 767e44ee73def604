// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/DiffOutline.h"

#include <QString>
#include <QWidget>

namespace plovik {

class DiffGeometry;

/// Shows the name of the function that the topmost lines of a diff stand in, where the line that names it is out of
/// sight. A click asks for where the function begins. Stands in the widget that shows the diff. Main thread.
class FunctionBar : public QWidget {
    Q_OBJECT

public:
    /// `diff` and `geometry` outlive the bar.
    FunctionBar(const ShownDiff& diff, const DiffGeometry& geometry, QWidget* section);

    /// Places the bar, or hides it. `visibleTop` is how much of the section is scrolled out of sight.
    void follow(int visibleTop);
    /// Returns the height of the bar, and 0 for a diff in which it is never shown.
    int mostHeight() const;

Q_SIGNALS:
    /// Emitted with the row that names the function.
    void pressed(int row);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void setText(const QString& text, const QFont& font, int left);

    const ShownDiff& diff_;
    const DiffGeometry& geometry_;
    DiffOutline outline_;
    int namedRow_ = 0; ///< where the function begins
    QString text_;
    QFont font_;
    int left_ = 0; ///< where the text begins
};

} // namespace plovik
