// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/log/OutputText.h"

#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTextBlock>
#include <QTextEdit>

#include <algorithm>
#include <utility>

namespace plovik {

OutputText::OutputText(QWidget* parent) : QPlainTextEdit(parent) { viewport()->setMouseTracking(true); }

void OutputText::setPlaces(std::vector<OutputPlace> places)
{
    if (places == places_)
        return;
    places_ = std::move(places);
    mark();
}

/// Marks beside the document, which stays as it is: nothing scrolls, and what is selected stays selected.
void OutputText::mark()
{
    QList<QTextEdit::ExtraSelection> marks;
    for (const OutputPlace& place : places_) {
        QTextEdit::ExtraSelection& mark = marks.emplaceBack();
        mark.cursor = QTextCursor(document());
        mark.cursor.setPosition(static_cast<int>(place.begin));
        mark.cursor.setPosition(static_cast<int>(place.begin + place.length), QTextCursor::KeepAnchor);
        mark.format.setForeground(palette().link());
        mark.format.setFontUnderline(true);
    }
    setExtraSelections(marks);
}

const OutputPlace* OutputText::placeAt(QPoint position) const
{
    const int at = cursorForPosition(position).position();
    const auto found = std::ranges::find_if(
        places_, [at](const OutputPlace& place) { return at >= place.begin && at <= place.begin + place.length; });
    if (found == places_.end())
        return nullptr;
    // The cursor nearest to a position beside the line is at its end.
    QTextCursor cursor(document());
    cursor.setPosition(static_cast<int>(found->begin));
    const QRect begin = cursorRect(cursor);
    cursor.setPosition(static_cast<int>(found->begin + found->length));
    const QRect end = cursorRect(cursor);
    const bool isInOneLine = begin.top() == end.top();
    return !isInOneLine || (position.x() >= begin.left() && position.x() <= end.left() && position.y() <= end.bottom())
               ? &*found
               : nullptr;
}

const OutputPlace* OutputText::placeInLine() const
{
    const QTextBlock line = textCursor().block();
    const auto found = std::ranges::find_if(places_, [&line](const OutputPlace& place) {
        return place.begin >= line.position() && place.begin < line.position() + line.length();
    });
    return found == places_.end() ? nullptr : &*found;
}

void OutputText::changeEvent(QEvent* event)
{
    QPlainTextEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        mark();
}

void OutputText::mouseMoveEvent(QMouseEvent* event)
{
    QPlainTextEdit::mouseMoveEvent(event);
    viewport()->setCursor(placeAt(event->position().toPoint()) ? Qt::PointingHandCursor : Qt::IBeamCursor);
}

void OutputText::mouseReleaseEvent(QMouseEvent* event)
{
    QPlainTextEdit::mouseReleaseEvent(event);
    const OutputPlace* const place = placeAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && place && !textCursor().hasSelection())
        Q_EMIT placeChosen(*place);
}

void OutputText::keyPressEvent(QKeyEvent* event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const OutputPlace* const place = isReturn ? placeInLine() : nullptr;
    if (place)
        Q_EMIT placeChosen(*place);
    else
        QPlainTextEdit::keyPressEvent(event);
}

} // namespace plovik

#include "moc_OutputText.cpp"
