// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/DiffButtons.h"
#include "app/ui/diff/DiffMetrics.h"

#include <QWidget>

namespace plovik {

/// The bar above one diff: its title, the path, and the buttons for what is selected or for all of it. It stays in
/// sight while its diff scrolls by. Main thread.
class DiffSectionBar : public QWidget {
    Q_OBJECT

public:
    static int barHeight() { return DiffMetrics::barHeight(); }

    explicit DiffSectionBar(QWidget* parent);

    void setText(const QString& title, const QString& detail);
    void setOffers(const std::vector<DiffOffer>& offers);
    /// Keeps room at the right end, in pixels, for a widget that stands over the bar.
    void setReserve(int width);
    /// Draws a line above the bar, for a diff that comes after another one.
    void setFollows(bool follows);

    const DiffButtons& buttons() const { return buttons_; }

Q_SIGNALS:
    void triggered(plovik::DiffAction::Verb verb, plovik::DiffAction::Part part);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void placeButtons();

    QString title_, detail_;
    DiffButtons buttons_{*this};
    int buttonsLeft_ = 0;
    int reserve_ = 0;
    bool follows_ = false;
};

} // namespace plovik
