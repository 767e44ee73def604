#include "app/views/diff/DiffPane.h"

#include "app/store/RepositoryStore.h"
#include "app/views/EmptyState.h"
#include "app/views/diff/DiffView.h"

#include <QStackedLayout>

#include <utility>

namespace plovik {

DiffPane::DiffPane(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), store_(store), view_(new DiffView), empty_(new EmptyState), pages_(new QStackedLayout(this))
{
    pages_->addWidget(empty_);
    pages_->addWidget(view_);
    setFocusProxy(view_);
}

void DiffPane::showDiffs(std::vector<DiffContent> contents, DiffPlace place)
{
    view_->setContents(std::move(contents), place);
    pages_->setCurrentWidget(view_);
}

void DiffPane::showSentence(const QString& title, const QString& description)
{
    empty_->setText(title, description);
    pages_->setCurrentWidget(empty_);
}

bool DiffPane::isSentenceShown() const { return pages_->currentWidget() == empty_; }

} // namespace plovik
