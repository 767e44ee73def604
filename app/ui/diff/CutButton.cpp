// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/CutButton.h"

#include "app/ui/diff/DiffController.h"
#include "app/ui/diff/DiffMetrics.h"

namespace plovik {

namespace {

constexpr int gapBelow = 12;

} // namespace

CutButton::CutButton(DiffController& controller, QWidget* section) : QPushButton(section), controller_(controller)
{
    setCursor(Qt::ArrowCursor);
    setFocusPolicy(Qt::TabFocus);
    hide();
    connect(this, &QPushButton::clicked, &controller_, &DiffController::allLinesRequested);
}

void CutButton::follow()
{
    const QString& title = controller_.diff().notes().more;
    setText(title);
    // The lines that were asked for stand where the button was.
    if (title.isEmpty() && hasFocus())
        parentWidget()->setFocus(Qt::OtherFocusReason);
    setVisible(!title.isEmpty());
}

int CutButton::room() const { return isHidden() ? 0 : sizeHint().height() + gapBelow; }

void CutButton::place(int top)
{
    const QSize size = sizeHint();
    setGeometry(DiffMetrics::margin, top, size.width(), size.height());
}

void CutButton::focusInEvent(QFocusEvent* event)
{
    QPushButton::focusInEvent(event);
    Q_EMIT focused();
}

} // namespace plovik

#include "moc_CutButton.cpp"
