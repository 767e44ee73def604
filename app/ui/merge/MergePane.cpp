// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/merge/MergePane.h"

#include "app/settings/CodeFont.h"
#include "app/settings/Settings.h"
#include "app/store/ConflictWords.h"
#include "app/store/ShownText.h"
#include "app/store/readers/ConflictMarkers.h"
#include "app/ui/merge/MergeStart.h"
#include "app/ui/merge/MergeView.h"

#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace plovik {

namespace {

constexpr std::size_t usualMarkerSize = 7;

} // namespace

MergePane::MergePane(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), store_(store), view_(new MergeView(this)), syntax_(store, *view_),
      reading_(store.git(), &readMerge, [this] { mergeRead(); })
{
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(view_);
    setFocusProxy(view_);
    view_->setTabWidth(CodeFont::tabWidth());
    connect(&Settings::shared(), &Settings::changed, this, [this] { view_->setTabWidth(CodeFont::tabWidth()); });
    connect(view_, &MergeView::resultSettled, this, [this] {
        keep();
        syntax_.readResult();
    });
    connect(view_, &MergeView::resolveRequested, this, &MergePane::resolve);
    connect(view_, &MergeView::startOverRequested, this, &MergePane::startOver);
    connect(view_, &MergeView::forgetRequested, this, [this] {
        if (const gitkit::Conflict* const now = conflict())
            store_.conflicts().forgetResolution(*now);
    });
    connect(view_, &MergeView::withoutLineEndsRequested, this, [this] {
        ignoresLineEnds_ = true;
        follow();
    });
    notifiers_.push_back(store_.window().selectedPaths.addNotifier([this] { follow(); }));
    notifiers_.push_back(store_.conflicts().list.addNotifier([this] { follow(); }));
    notifiers_.push_back(store_.snapshot().generation.addNotifier([this] { follow(); }));
    follow();
}

MergePane::~MergePane() = default;

/// Returns the conflict of the selected file, if it is one of lines.
const gitkit::Conflict* MergePane::conflict() const
{
    const std::set<std::string>& paths = store_.window().selectedPaths.value();
    const gitkit::Conflict* const found = paths.size() == 1 ? store_.conflicts().find(*paths.begin()) : nullptr;
    return found && found->isText() && !found->isBinary ? found : nullptr;
}

void MergePane::follow()
{
    const gitkit::Conflict* const now = conflict();
    if (!now || (!shown_.empty() && now->path != shown_)) {
        keep(); // of the file that was shown
        empty();
    }
    if (now)
        reading_.askAgain({*now, ignoresLineEnds_});
}

void MergePane::empty()
{
    reading_.forget();
    ignoresLineEnds_ = false;
    seen_.reset();
    suspected_.reset();
    afterKeep_ = nullptr; // it was meant for the file that is left
    if (!std::exchange(shown_, {}).empty())
        Q_EMIT filledChanged();
}

void MergePane::mergeRead()
{
    if (reading_.failure() || !reading_.result()->sides) {
        empty();
        return;
    }
    const MergeRequest& request = *reading_.answered();
    const ReadMerge& merge = *reading_.result();
    const gitkit::Conflict& now = request.conflict;
    const bool isSame = shown_ == now.path && merging_ && merging_->left == now.left && merging_->right == now.right &&
                        merging_->base == now.base && view_->content().sides && *view_->content().sides == *merge.sides;
    if (!isSame) {
        fill(request, merge);
        return;
    }
    merging_ = now;
    if (isKeeping_ || merge.working == kept_) {
        if (!isKeeping_ && merge.working)
            seen_ = merge.stamp;
        return;
    }
    // A reading may have begun before the file was written here: only what is read twice is believed.
    if (suspected_ != merge.stamp) {
        suspected_ = merge.stamp;
        reading_.askAgain(request);
        return;
    }
    if (!view_->isChanged()) {
        fill(request, merge);
        return;
    }
    if (!merge.working) { // it is gone: what was written here stays, and is written again
        seen_ = merge.stamp;
        kept_.clear();
        return;
    }
    seen_ = merge.stamp;
    kept_ = *merge.working;
    view_->takeOutside(startsFrom(*merge.sides, kept_, static_cast<std::size_t>(now.markerSize)));
}

void MergePane::fill(const MergeRequest& request, const ReadMerge& merge)
{
    const gitkit::Conflict& now = request.conflict;
    const gitkit::ConflictNames& names = store_.conflicts().list.value().names;
    MergeContent content;
    content.path = now.path;
    content.sides = merge.sides;
    content.names = {conflictWords::title(names.left), conflictWords::title(names.right),
                     conflictWords::title(names.base)};
    content.isRemembered = now.isRemembered;
    content.comparesWithoutLineEnds = request.ignoresLineEnds;
    if ((now.isEdited || now.isRemembered) && merge.working) {
        content.starts = startsFrom(*merge.sides, *merge.working, static_cast<std::size_t>(now.markerSize));
        if (std::ranges::any_of(content.starts, [](const auto& start) { return start != MergeResult::Start{}; }))
            content.note = tr("This file was changed since git stopped. The result is what it holds.");
    } else if (!merge.working) {
        content.note =
            tr("The file is not there, or is no ordinary file. What you decide is written when you press Mark "
               "Resolved.");
    }
    shown_ = now.path;
    merging_ = now;
    seen_ = merge.stamp;
    kept_ = merge.working.value_or(std::string());
    view_->setContent(std::move(content));
    syntax_.readSides();
    syntax_.readResult();
    Q_EMIT filledChanged();
}

/// Returns the result, or tells the user why there are no bytes for it.
std::optional<std::string> MergePane::currentBytes()
{
    auto bytes = view_->bytes(store_.conflicts().markers(*merging_));
    if (!bytes)
        store_.window().tell(
            tr("The encoding of %1 has no sign for a character that you have written.").arg(inQuotes(shown_)));
    return bytes;
}

/// Writes what has been decided and written so far into the working file.
void MergePane::keep()
{
    // A question whether programs may run comes with what the user asks for, and not while a text is written.
    if (!store_.changes().asksFirst(Verb::takeSide))
        write();
}

void MergePane::write()
{
    if (shown_.empty() || isKeeping_ || !merging_ || !seen_ || !view_->isChanged())
        return;
    auto bytes = currentBytes();
    if (!bytes || *bytes == kept_)
        return;
    isKeeping_ = true;
    const std::string path = shown_;
    store_.conflicts().keepResult(
        *merging_, *bytes, seen_,
        [this, bytes = *bytes, path, guard = QPointer<MergePane>(this)](std::optional<gitkit::FileStamp> stamp) {
            if (guard && path == shown_)
                kept(bytes, stamp);
            else if (guard) {
                isKeeping_ = false;
                keep(); // of the file that is shown by now
            }
        });
}

void MergePane::kept(std::string bytes, std::optional<gitkit::FileStamp> stamp)
{
    isKeeping_ = false;
    if (!stamp) { // it was changed elsewhere, or cannot be written
        afterKeep_ = nullptr;
        follow();
        return;
    }
    seen_ = stamp;
    kept_ = std::move(bytes);
    if (const auto next = std::exchange(afterKeep_, nullptr))
        next();
    else
        keep(); // what came meanwhile
}

void MergePane::resolve()
{
    if (shown_.empty() || !merging_)
        return;
    const auto bytes = currentBytes();
    if (!bytes)
        return;
    const int left = view_->undecidedCount();
    // A side may have such lines of its own.
    const bool hasMarkers = view_->content().sides->markerSize <= usualMarkerSize && holdsConflictMarkers(*bytes);
    if (left == 0 && !hasMarkers) {
        resolveNow();
        return;
    }
    Confirmation question;
    question.title = left > 0 ? tr("%Ln conflict(s) in %1 are not decided", nullptr, left).arg(inQuotes(shown_))
                              : tr("%1 still has lines that look like conflict markers").arg(inQuotes(shown_));
    question.message = tr("It would be staged with conflict markers in it.");
    question.actionTitle = tr("Mark Resolved Anyway");
    question.action = [this, path = shown_, guard = QPointer<MergePane>(this)] {
        if (guard && shown_ == path)
            resolveNow();
    };
    question.risk = Confirmation::Risk::none;
    store_.window().ask(std::move(question));
}

void MergePane::resolveNow()
{
    if (isKeeping_) { // its stamp is needed
        afterKeep_ = [this] { resolveNow(); };
        return;
    }
    if (shown_.empty() || !merging_)
        return;
    if (auto bytes = currentBytes())
        store_.conflicts().resolve(*merging_, std::move(*bytes), seen_);
}

void MergePane::startOver()
{
    if (shown_.empty() || !merging_)
        return;
    write(); // so that it can be brought back
    const auto begin = [this] {
        if (merging_)
            store_.conflicts().startOver(*merging_);
    };
    if (isKeeping_)
        afterKeep_ = begin;
    else if (!view_->isChanged() || currentBytes() == kept_)
        begin();
}

void MergePane::hideEvent(QHideEvent* event)
{
    keep();
    QWidget::hideEvent(event);
}

} // namespace plovik

#include "moc_MergePane.cpp"
