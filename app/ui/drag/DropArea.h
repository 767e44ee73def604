// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/DropWords.h"
#include "app/store/Drops.h"
#include "app/store/readers/Latest.h"
#include "app/ui/drag/DropHint.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <optional>
#include <vector>

class QDropEvent;

namespace plovik {

class RepositoryStore;

/// Makes a surface of the window take what is dragged over it: says what letting go would do, with a preview once the pointer
/// has rested, and does that and nothing else. Owned by the surface; main thread.
class DropArea : public QObject {
    Q_OBJECT

public:
    /// A target, and where it is on the surface.
    struct Place {
        DropTarget target;
        QRect area;
    };
    /// Returns the targets at a place of the surface, the foremost first. The first on which a drop does something counts.
    using PlacesAt = std::function<std::vector<Place>(QPoint)>;

    /// `store` outlives the area.
    DropArea(RepositoryStore& store, QWidget& surface, PlacesAt placesAt);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Meant {
        Drop drop;
        QRect area;
    };

    Meant meantAt(QPoint position, const Dragged& dragged, bool isOther) const;
    DropFacts facts() const;
    bool isPossible(const Drop& drop) const;
    void hover(QDropEvent& event);
    void follow();
    void showHint();
    void leave();
    void let(QDropEvent& event);
    void askForPreview();
    std::optional<DropPreview> preview() const;
    void scrollNearEdge();

    RepositoryStore& store_;
    QWidget& surface_;
    PlacesAt placesAt_;
    std::optional<Dragged> dragged_; ///< over the surface
    QPoint position_;
    bool isOther_ = false;
    Meant meant_; ///< what the hint says
    QPointer<DropHint> hint_;
    DropRing* ring_ = nullptr;
    QTimer rest_;   ///< runs until the pointer has rested on a target
    QTimer scroll_; ///< runs near an edge
    Latest<DropQuestion, DropPreview> previews_;
};

} // namespace plovik
