// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/drag/DropArea.h"

#include "app/store/Obstacles.h"
#include "app/store/RepositoryStore.h"
#include "app/store/actions/CarryOut.h"
#include "app/ui/drag/DragData.h"

#include <QAbstractScrollArea>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QScrollBar>

#include <utility>

namespace plovik {

namespace {

constexpr std::chrono::milliseconds untilRested{300};
constexpr std::chrono::milliseconds betweenScrolls{40};
constexpr int edge = 24; ///< of the surface, where it scrolls

DropQuestion questionOf(const Drop& drop) { return {drop.act, drop.ref.fullName, drop.to}; }

bool hasPreview(Drop::Act act)
{
    using enum Drop::Act;
    return act == merge || act == squash || act == rebase || act == fastForward || act == moveBranch;
}

} // namespace

DropArea::DropArea(RepositoryStore& store, QWidget& surface, PlacesAt placesAt)
    : QObject(&surface), store_(store), surface_(surface), placesAt_(std::move(placesAt)),
      previews_(store.git(), &readDropPreview, [this] { follow(); })
{
    surface.setAcceptDrops(true);
    surface.installEventFilter(this);
    rest_.setSingleShot(true);
    rest_.setInterval(untilRested);
    connect(&rest_, &QTimer::timeout, this, &DropArea::askForPreview);
    scroll_.setInterval(betweenScrolls);
    connect(&scroll_, &QTimer::timeout, this, &DropArea::scrollNearEdge);
}

DropFacts DropArea::facts() const
{
    const Snapshot& now = store_.snapshot();
    return {now.branches.value(),
            now.remoteBranches.value(),
            now.remotes.value(),
            now.status.value().files,
            now.status.value().oid.value_or(std::string()),
            &store_.rewriting().movable.value().commits};
}

/// Whether the drop could begin now.
bool DropArea::isPossible(const Drop& drop) const
{
    const std::optional<Verb> verb = dropVerb(drop.act);
    return verb && obstacle(store_.changes(), store_.snapshot(), *verb).isEmpty();
}

DropArea::Meant DropArea::meantAt(QPoint position, const Dragged& dragged, bool isOther) const
{
    for (const Place& place : placesAt_(position)) {
        Drop drop = dropOf(dragged, place.target, facts(), isOther);
        if (drop.act == Drop::Act::nothing)
            continue;
        // What is only not possible just now must not become something else.
        return isPossible(drop) ? Meant{std::move(drop), place.area} : Meant{};
    }
    return {};
}

/// Returns what was found out about the meant drop.
std::optional<DropPreview> DropArea::preview() const
{
    const bool isAnswered = previews_.answer() && previews_.answered() == questionOf(meant_.drop) &&
                            previews_.asked() == previews_.answered();
    return isAnswered ? previews_.answer() : std::nullopt;
}

void DropArea::askForPreview()
{
    if (hasPreview(meant_.drop.act))
        previews_.ask(questionOf(meant_.drop));
}

/// Takes up what is held over the surface, and shows what that means.
void DropArea::follow()
{
    if (!dragged_)
        return;
    Meant meant = meantAt(position_, *dragged_, isOther_);
    const bool isOtherDrop = meant.drop != meant_.drop;
    meant_ = std::move(meant);
    if (isOtherDrop) {
        previews_.forget();
        rest_.start();
    }
    const std::optional<DropPreview> known = preview();
    if (meant_.drop.act == Drop::Act::nothing || (known && isInVain(meant_.drop.act, *known))) {
        if (hint_)
            hint_->hide();
        if (ring_)
            ring_->hide();
        return;
    }
    showHint();
}

void DropArea::showHint()
{
    if (!hint_)
        hint_ = new DropHint(*surface_.window());
    if (!ring_)
        ring_ = new DropRing(surface_);
    DropHint::Words words{.action = dropWords(meant_.drop, store_.snapshot())};
    if (const std::optional<DropPreview> known = preview())
        words.preview = previewWords(*known);
    const Drop other = meantAt(position_, *dragged_, true).drop;
    if (!isOther_ && other.act != meant_.drop.act && other.act != Drop::Act::nothing)
        words.other = tr("With Ctrl: %1").arg(dropWords(other, store_.snapshot()));
    hint_->say(words, surface_.mapTo(surface_.window(), position_));
    ring_->setGeometry(meant_.area & surface_.rect());
    ring_->show();
    ring_->raise();
}

void DropArea::leave()
{
    dragged_.reset();
    meant_ = {};
    rest_.stop();
    scroll_.stop();
    previews_.forget();
    delete hint_;
    delete std::exchange(ring_, nullptr);
}

void DropArea::hover(QDropEvent& event)
{
    position_ = event.position().toPoint();
    isOther_ = event.modifiers().testFlag(Qt::ControlModifier);
    follow();
    const bool isNearEdge = position_.y() < edge || position_.y() >= surface_.height() - edge;
    if (isNearEdge != scroll_.isActive())
        isNearEdge ? scroll_.start() : scroll_.stop();
    if (hint_ && hint_->isVisible()) {
        event.setDropAction(Qt::MoveAction);
        event.accept();
    } else if (event.type() == QEvent::DragEnter) {
        event.accept(); // otherwise no move over the surface would be told
    } else {
        event.ignore();
    }
}

/// Does what the hint says. Where the repository has changed under the hint, does nothing.
void DropArea::let(QDropEvent& event)
{
    const Drop shown = hint_ && hint_->isVisible() ? meant_.drop : Drop();
    position_ = event.position().toPoint();
    const bool isSame = dragged_ && meantAt(position_, *dragged_, isOther_).drop == shown;
    leave();
    if (!isSame || shown.act == Drop::Act::nothing) {
        event.ignore();
        return;
    }
    event.setDropAction(Qt::MoveAction);
    event.accept();
    std::vector<gitkit::Commit> commits;
    if (shown.act == Drop::Act::cherryPick) {
        for (const std::string& hash : shown.names) {
            if (std::optional<gitkit::Commit> commit = store_.history().history.value().commit(hash))
                commits.push_back(std::move(*commit));
        }
        if (commits.size() != shown.names.size()) // the list shows others by now
            return;
    }
    // Posted, so that the pointer is free again when something is asked.
    QMetaObject::invokeMethod(
        this, [this, shown, commits] { actions::carryOut(store_.actors(), shown, commits); }, Qt::QueuedConnection);
}

void DropArea::scrollNearEdge()
{
    auto* const area = qobject_cast<QAbstractScrollArea*>(surface_.parentWidget());
    if (!area || area->viewport() != &surface_ || !dragged_)
        return;
    QScrollBar* const bar = area->verticalScrollBar();
    const int step = std::max(4, bar->singleStep() / 2);
    bar->setValue(bar->value() + (position_.y() < edge ? -step : step));
    follow();
}

bool DropArea::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove: {
        auto& held = static_cast<QDropEvent&>(*event);
        dragged_ = draggedIn(store_, *held.mimeData());
        if (dragged_)
            hover(held);
        else
            held.ignore();
        return true;
    }
    case QEvent::DragLeave:
        leave();
        return true;
    case QEvent::Drop:
        let(static_cast<QDropEvent&>(*event));
        return true;
    default:
        return QObject::eventFilter(watched, event);
    }
}

} // namespace plovik

#include "moc_DropArea.cpp"
