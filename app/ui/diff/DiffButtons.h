// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/DiffOffers.h"

#include <QObject>
#include <QRect>

#include <map>

class QPainter;
class QPushButton;
class QWidget;

namespace plovik {

/// The small buttons for what is offered, in a row that is aligned to the right: one for each verb. The buttons are
/// children of the widget that they stand in and are made when they are first offered. Main thread.
class DiffButtons : public QObject {
    Q_OBJECT

public:
    /// `widget` outlives this.
    explicit DiffButtons(QWidget& widget);

    /// Shows a button for each offer and hides the others.
    void show(const std::vector<DiffOffer>& offers);
    /// Places the buttons at the right end of an area, in the middle of its height. Returns where the room left of
    /// them ends.
    int place(const QRect& area);
    /// The width that the shown buttons take with the gaps between them, in pixels.
    int width() const;
    /// Draws the buttons as they look without focus and pointer, at another height.
    void paint(QPainter& painter, int shift) const;
    void applyFont();
    bool haveFocus() const;
    /// The buttons made so far, from left to right.
    const std::map<DiffAction::Verb, QPushButton*>& all() const { return buttons_; }

Q_SIGNALS:
    void triggered(plovik::DiffAction::Verb verb, plovik::DiffAction::Part part);
    /// The keyboard has come to one of the buttons.
    void focused();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QPushButton* button(DiffAction::Verb verb);

    QWidget& widget_;
    std::map<DiffAction::Verb, QPushButton*> buttons_;
    std::map<DiffAction::Verb, DiffAction::Part> parts_; ///< what a press of each button is about
};

} // namespace plovik
