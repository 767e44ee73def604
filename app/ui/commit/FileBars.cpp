// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/FileBars.h"

#include "app/ui/commit/FileBar.h"

#include <algorithm>
#include <utility>

namespace plovik {

FileBars::FileBars(QWidget* viewport) : QObject(viewport), viewport_(viewport) {}

void FileBars::show(std::size_t first, std::size_t end, const std::function<void(std::size_t file, FileBar& bar)>& fill)
{
    for (auto at = shown_.begin(); at != shown_.end();) {
        const bool stays = (at->first >= first && at->first < end) || at->second->hasFocus();
        if (!stays)
            hide(at->second);
        at = stays ? std::next(at) : shown_.erase(at);
    }
    for (std::size_t file = first; file < end; ++file) {
        if (shown_.contains(file))
            continue;
        FileBar* const bar = shown_[file] = spare();
        bar->setReserve(reserve_);
        fill(file, *bar);
        bar->show();
        bar->raise();
    }
}

void FileBars::hide(FileBar* bar)
{
    bar->hide();
    spare_.push_back(bar);
}

FileBar* FileBars::spare()
{
    if (!spare_.empty()) {
        FileBar* const bar = spare_.back();
        spare_.pop_back();
        return bar;
    }
    auto* const bar = new FileBar(viewport_);
    connect(bar, &FileBar::foldRequested, this, [this, bar](bool isFolded, bool isForAll) {
        const auto mine = std::ranges::find(shown_, bar, &std::pair<const std::size_t, FileBar*>::second);
        if (mine != shown_.end())
            Q_EMIT foldRequested(mine->first, isFolded, isForAll);
    });
    return bar;
}

void FileBars::hideAll()
{
    for (const auto& [file, bar] : std::exchange(shown_, {}))
        hide(bar);
}

FileBar* FileBars::of(std::size_t file) const
{
    const auto found = shown_.find(file);
    return found == shown_.end() ? nullptr : found->second;
}

std::pair<std::size_t, FileBar*> FileBars::at(const QPoint& place) const
{
    const auto hit = std::ranges::find_if(
        shown_, [&](const auto& bar) { return bar.second->geometry().contains(place) || bar.second->hasFocus(); });
    if (hit == shown_.end())
        return {};
    return {hit->first, hit->second};
}

void FileBars::setReserve(int width)
{
    reserve_ = width;
    for (const auto& [file, bar] : shown_)
        bar->setReserve(width);
}

} // namespace plovik

#include "moc_FileBars.cpp"
