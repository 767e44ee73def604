// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/RefLabel.h"
#include "app/ui/widgets/Theme.h"

#include <QPainter>
#include <QStaticText>

#include <optional>
#include <vector>

namespace plovik {

/// The labels before a commit's subject, side by side in this order: the checked out one, the default branch and its
/// remote one, tags, other branches, other remote branches. Labels that do not fit collapse into "+N". Main thread.
class RefBadges {
public:
    struct Fonts {
        QFont plain;
        QFont strong; ///< for the checked out label
        double height = 18;
        double moreWidth = 40; ///< reserved for "+N" while labels remain

        static Fonts current();
    };

    RefBadges() = default;
    /// Lays out the labels. `budget` is the available width in device-independent pixels.
    RefBadges(const std::vector<gitkit::RefLabel>& labels, double budget, const Fonts& fonts);

    double width() const { return badges_.empty() ? 0 : badges_.back().left + badges_.back().width; }

    /// Draws the badges. `middleLeft` is the middle of the first badge's left edge.
    void paint(QPainter& painter, QPointF middleLeft, const Fonts& fonts, const Theme& theme) const;
    /// The same from right to left. `middleRight` is the middle of the first badge's right edge.
    void paintMirrored(QPainter& painter, QPointF middleRight, const Fonts& fonts, const Theme& theme) const;

    /// Returns the full names of the labels under `x`, one per line, or an empty text when there are none. `labels`
    /// are the labels that were laid out.
    QString namesAt(double x, const std::vector<gitkit::RefLabel>& labels) const;

    /// Returns the label that stands alone under `x`, and from where to where; nullopt elsewhere.
    struct Found {
        gitkit::RefLabel label;
        double left = 0;
        double width = 0;
    };
    std::optional<Found> labelAt(double x, const std::vector<gitkit::RefLabel>& labels) const;

    /// Returns the labels that have collapsed into the badge under `x`.
    std::vector<gitkit::RefLabel> collapsedAt(double x, const std::vector<gitkit::RefLabel>& labels) const;

private:
    enum class Look { checkedOut, local, remote, tag, more };
    struct Badge {
        Look look = Look::more;
        QStaticText text;
        double left = 0;
        double width = 0;
        std::size_t place = 0; ///< the label's index in `order_`; for `more` that of the first collapsed label
    };

    const Badge* badgeAt(double x) const;
    static Look lookOf(const gitkit::RefLabel& label);
    static Badge makeBadge(Look look, const QString& name, double maxWidth, const Fonts& fonts);
    void paintBadge(QPainter& painter, const Badge& badge, QPointF middleLeft, const Fonts& fonts,
                    const Theme& theme) const;

    std::vector<Badge> badges_;
    std::vector<std::size_t> order_; ///< the labels' indexes in the order of display
};

} // namespace plovik
