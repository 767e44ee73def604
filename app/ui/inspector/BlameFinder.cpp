// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/inspector/BlameFinder.h"

#include "app/ui/diff/ShownLine.h"
#include "app/ui/inspector/BlameList.h"

#include <QElapsedTimer>
#include <QTimerEvent>

#include <algorithm>

namespace plovik {

namespace {

/// How long a slice of a search may take, in milliseconds.
constexpr qint64 blameSliceTime = 6;

} // namespace

BlameFinder::BlameFinder(BlameList& list, QObject* parent) : Finder(parent), list_(list)
{
    connect(list_.model(), &QAbstractItemModel::modelReset, this, [this] {
        if (!query_.text.isEmpty())
            restart();
    });
}

BlameFinder::~BlameFinder() { list_.setFound(nullptr); }

void BlameFinder::search(const Query& query)
{
    if (query == query_)
        return;
    query_ = query;
    matcher_ = QStringMatcher(query.text, query.cases);
    from_ = found_.current >= 0 ? found_.runs[static_cast<std::size_t>(found_.current)].row : list_.topRow();
    revealsFirst_ = true;
    restart();
}

void BlameFinder::restart()
{
    list_.setFound(nullptr);
    found_ = {};
    next_ = 0;
    timer_.stop();
    if (!query_.text.isEmpty()) {
        timer_.start(0, this);
        runSlice();
    }
    Q_EMIT changed();
}

void BlameFinder::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == timer_.timerId())
        runSlice();
}

void BlameFinder::runSlice()
{
    const std::shared_ptr<const BlameDocument>& document = list_.document();
    const int rows = document ? document->rowCount() : 0;
    QElapsedTimer clock;
    clock.start();
    for (; next_ < rows && !isCut() && clock.elapsed() < blameSliceTime; ++next_) {
        const QString text = textOf(document->text(next_));
        for (qsizetype at = matcher_.indexIn(text); at >= 0; at = matcher_.indexIn(text, at + query_.text.size()))
            found_.runs.push_back({next_, at, at + query_.text.size()});
    }
    list_.setFound(&found_);
    const bool isDone = next_ >= rows || isCut();
    if (isDone)
        timer_.stop();
    if (revealsFirst_ && count() > 0 && (isDone || found_.runs.back().row >= from_)) {
        const auto first = std::ranges::lower_bound(found_.runs, from_, {}, &DiffFound::Run::row);
        revealsFirst_ = false;
        goTo(first == found_.runs.end() ? 0 : static_cast<int>(first - found_.runs.begin()));
        return;
    }
    Q_EMIT changed();
}

void BlameFinder::step(int direction)
{
    if (count() == 0)
        return;
    int next = found_.current + direction;
    if (found_.current < 0)
        next = direction > 0 ? 0 : count() - 1;
    const bool wraps = next < 0 || next >= count();
    goTo((next + count()) % count());
    if (wraps)
        Q_EMIT wrapped(direction);
}

void BlameFinder::goTo(int match)
{
    found_.current = match;
    list_.setFound(&found_);
    list_.reveal(found_.runs[static_cast<std::size_t>(match)]);
    Q_EMIT changed();
}

} // namespace plovik

#include "moc_BlameFinder.cpp"
