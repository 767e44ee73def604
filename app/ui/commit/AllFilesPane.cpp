// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/AllFilesPane.h"

#include "app/settings/Settings.h"
#include "app/ui/commit/AllFilesFinder.h"
#include "app/ui/commit/AllFilesView.h"
#include "app/ui/diff/DiffOptionsBar.h"
#include "app/ui/diff/FindBar.h"

#include <QKeyEvent>
#include <QVBoxLayout>

namespace plovik {

AllFilesPane::AllFilesPane(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), view_(new AllFilesView(store)), options_(new DiffOptionsBar(this)),
      finder_(new AllFilesFinder(store, *view_, this))
{
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(view_, 1);
    view_->viewport()->installEventFilter(this);
    view_->setBarReserve(options_->width());
    connect(options_, &DiffOptionsBar::wholeFileToggled, view_, &AllFilesView::setShowsWholeFile);
    connect(options_, &DiffOptionsBar::findRequested, this, &AllFilesPane::find);
    connect(view_, &AllFilesView::showsWholeFileChanged, options_, &DiffOptionsBar::setWholeFile);
    connect(&Settings::shared(), &Settings::changed, this, [this](const QString& key) {
        if (key == QLatin1String(settings::diffIgnoresWhiteSpace.key))
            finder_->restart();
    });
}

void AllFilesPane::setReading(std::shared_ptr<const CommitReading> reading)
{
    if (reading == view_->reading())
        return;
    view_->setReading(std::move(reading));
    finder_->restart();
}

void AllFilesPane::addOption(QAbstractButton* button)
{
    options_->addOption(button);
    view_->setBarReserve(options_->width());
    placeOptions();
}

void AllFilesPane::placeOptions()
{
    const QPoint topRight = view_->viewport()->mapTo(this, QPoint(view_->viewport()->width(), 0));
    options_->move(topRight.x() - options_->width(), topRight.y());
    options_->raise();
}

bool AllFilesPane::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == view_->viewport() && (event->type() == QEvent::Resize || event->type() == QEvent::Show))
        placeOptions();
    return QWidget::eventFilter(watched, event);
}

void AllFilesPane::find()
{
    const QString text = view_->selectedText();
    if (!findBar_) {
        findBar_ = new FindBar(*finder_, this);
        layout()->addWidget(findBar_);
        connect(findBar_, &FindBar::focusReturned, view_, &AllFilesView::focusCurrent);
    }
    // A search finds no text of several lines.
    findBar_->open(text.contains(u'\n') ? QString() : text);
}

/// Returns whether a key means these diffs, which it does here even if the window has it for something else.
bool AllFilesPane::isMine(const QKeyEvent& event) const { return isFindKey(findBar_, event); }

bool AllFilesPane::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride && isMine(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void AllFilesPane::keyPressEvent(QKeyEvent* event)
{
    if (!isMine(*event)) {
        QWidget::keyPressEvent(event);
        return;
    }
    handleFindKey(findBar_, *event, [this] { find(); });
}

} // namespace plovik

#include "moc_AllFilesPane.cpp"
