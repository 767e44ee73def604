// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/FileDiff.h"

#include "app/ui/diff/DiffExtras.h"
#include "app/ui/diff/DiffFinder.h"
#include "app/ui/diff/DiffSectionView.h"
#include "app/ui/diff/DiffView.h"
#include "app/ui/diff/syntax/DiffFilesLoader.h"
#include "app/ui/widgets/FocusRing.h"

#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace plovik {

FileDiff::FileDiff(RepositoryStore& store, int room, QWidget* parent)
    : QWidget(parent), view_(new DiffView(this)), extras_(new DiffExtras(store, *view_, this)),
      files_(new DiffFilesLoader(store, this)), finder_(new DiffFinder(*view_, this)), room_(room)
{
    view_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view_->setActionsAvailable(false);
    takeFocusRing(*view_);
    connect(files_, &DiffFilesLoader::textsLoaded, view_, &DiffView::setTexts);
    connect(files_, &DiffFilesLoader::syntaxLoaded, view_, &DiffView::setSyntax);
    connect(view_, &DiffView::laidOut, this, &FileDiff::take);
    connect(view_, &DiffView::left, this, &FileDiff::leaveRequested);
    connect(view_, &DiffView::walkEnded, this, &FileDiff::walkEnded);
    connect(view_, &DiffView::allLinesRequested, this, &FileDiff::allLinesRequested);
}

void FileDiff::setDiff(const std::string& path, gitkit::ParsedDiff diff, const std::string& revision)
{
    DiffContent content;
    content.name = tr("Diff");
    content.path = path;
    content.revision = revision;
    content.diff = std::move(diff);
    const bool isFirst = !followed_;
    extras_->show({std::move(content)}, isFirst ? DiffPlace::start : DiffPlace::kept);
    std::vector<const DiffContent*> shown{&extras_->contents().front()};
    files_->load(shown);
    followSection();
    take();
}

void FileDiff::followSection()
{
    DiffSectionView* const now = &section();
    if (now == std::exchange(followed_, now))
        return;
    setFocusProxy(now);
    connect(now, &DiffSectionView::contentHeightChanged, this, [this](int shift) {
        if (shift != 0)
            Q_EMIT shifted(shift);
    });
    connect(now, &DiffSectionView::revealRequested, this,
            [this, now](const QRect& area) { Q_EMIT revealRequested(area.translated(now->mapTo(this, QPoint()))); });
}

void FileDiff::fit(int width, int room)
{
    room_ = room;
    if (width != this->width())
        resize(width, height());
    const int all = followed_ ? std::max(height(), room) : room;
    if (view_->size() != QSize(width, all))
        view_->setGeometry(0, 0, width, all);
}

/// Pictures take what height the view around gives them, so the view of the diff is never lower than that; what is below
/// the lines is cut off by this widget.
void FileDiff::take()
{
    if (!followed_)
        return;
    const int wanted = section().height();
    if (wanted == height())
        return;
    resize(width(), wanted);
    view_->resize(width(), std::max(wanted, room_));
    Q_EMIT heightChanged();
}

DiffSectionView& FileDiff::section() const { return *view_->sections().front(); }
DiffController& FileDiff::controller() const { return section().controller(); }

bool FileDiff::isInUse() const
{
    return followed_ &&
           (section().hasFocus() || !controller().selection().isEmpty() || view_->isAncestorOf(focusWidget()));
}

} // namespace plovik

#include "moc_FileDiff.cpp"
