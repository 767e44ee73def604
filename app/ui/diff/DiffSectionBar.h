// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/DiffAction.h"

#include <QWidget>

#include <map>

class QPushButton;

namespace plovik {

/// The bar above one diff: its title, the path, and the buttons for what is selected or for all of it. Stays in sight
/// while its diff scrolls by. Main thread.
class DiffSectionBar : public QWidget {
    Q_OBJECT

public:
    static constexpr int barHeight = 34;

    explicit DiffSectionBar(QWidget* parent);

    void setText(const QString& title, const QString& detail);
    /// What the bar offers. `refusal` says why it cannot be done; empty when it can.
    struct Offer {
        DiffAction::Part part = DiffAction::Part::lines;
        int count = 0; ///< of lines; 0 offers nothing
        QString refusal;
    };
    void setOffer(const DiffContent& content, const Offer& offer);
    /// Room at the right end for what stands over the bar.
    void setReserve(int width);
    /// Draws a line above, too, where another diff ends.
    void setFollows(bool follows);

    /// Those made so far, from the left to the right.
    const std::map<DiffAction::Verb, QPushButton*>& buttons() const { return buttons_; }

Q_SIGNALS:
    void triggered(DiffAction::Verb verb, DiffAction::Part part);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QPushButton* button(DiffAction::Verb verb);
    void placeButtons();

    QString title_, detail_;
    DiffAction::Part part_ = DiffAction::Part::lines;
    std::map<DiffAction::Verb, QPushButton*> buttons_;
    int buttonsLeft_ = 0;
    int reserve_ = 0;
    bool follows_ = false;
};

/// A small button as diffs have it.
QPushButton* makeDiffButton(QWidget* parent);

} // namespace plovik
