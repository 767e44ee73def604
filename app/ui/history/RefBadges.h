// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/RefLabel.h"
#include "app/ui/widgets/Theme.h"

#include <QPainter>
#include <QStaticText>

#include <vector>

namespace plovik {

/// The labels before a commit's subject, side by side: what is checked out, other branches, remote branches, tags.
/// Labels that do not fit collapse into "+N".
class RefBadges {
public:
    struct Fonts {
        QFont plain;
        QFont strong; ///< for what is checked out
        double height = 18;
        double moreWidth = 40; ///< kept free for "+N" while labels are left

        static Fonts current();
    };

    RefBadges() = default;
    /// `budget` is the width that they may take, in device-independent pixels.
    RefBadges(const std::vector<gitkit::RefLabel>& labels, double budget, const Fonts& fonts);

    double width() const { return badges_.empty() ? 0 : badges_.back().left + badges_.back().width; }

    /// `middleLeft` is the middle of the first badge's left edge.
    void paint(QPainter& painter, QPointF middleLeft, const Fonts& fonts, const Theme& theme) const;

    /// The full names of the labels under `x`, one a line; empty where there is none. `labels` are those laid out.
    QString namesAt(double x, const std::vector<gitkit::RefLabel>& labels) const;

private:
    enum class Look { checkedOut, local, remote, tag, more };
    struct Badge {
        Look look = Look::more;
        QStaticText text;
        double left = 0;
        double width = 0;
        std::size_t place = 0; ///< of the label in `order_`; for `more` of the first
    };

    static Look lookOf(const gitkit::RefLabel& label);
    static Badge makeBadge(Look look, const QString& name, double maxWidth, const Fonts& fonts);
    void paintBadge(QPainter& painter, const Badge& badge, QPointF middleLeft, const Fonts& fonts,
                    const Theme& theme) const;

    std::vector<Badge> badges_;
    std::vector<std::size_t> order_; ///< of the labels, by their positions
};

} // namespace plovik
