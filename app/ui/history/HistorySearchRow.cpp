// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/history/HistorySearchRow.h"

#include "app/ui/widgets/Theme.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>

namespace plovik {

using Field = gitkit::HistoryFilter::Field;

namespace {

QString titleOf(Field field)
{
    switch (field) {
    case Field::message:
        return HistorySearchRow::tr("Message");
    case Field::author:
        return HistorySearchRow::tr("Author");
    case Field::path:
        return HistorySearchRow::tr("Path");
    }
    return {};
}

} // namespace

HistorySearchRow::HistorySearchRow(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), store_(store), field_(new QComboBox(this)), search_(new QLineEdit(this)),
      count_(new QLabel(this))
{
    for (const Field field : gitkit::HistoryFilter::allFields)
        field_->addItem(titleOf(field), static_cast<int>(field));
    field_->setAccessibleName(tr("History Search Field"));
    field_->setToolTip(tr("What to search in"));
    search_->setAccessibleName(tr("History Search"));
    search_->setPlaceholderText(tr("Search history"));
    search_->installEventFilter(this);
    count_->setForegroundRole(QPalette::PlaceholderText);
    count_->setTextFormat(Qt::PlainText);

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(12, 6, 12, 6);
    row->setSpacing(8);
    row->addWidget(field_);
    row->addWidget(search_, 1);
    row->addWidget(count_);

    connect(field_, &QComboBox::activated, this, [this](int index) {
        store_.history().search(store_.history().historySearch.value(),
                                static_cast<Field>(field_->itemData(index).toInt()));
    });
    connect(search_, &QLineEdit::textEdited, this, [this](const QString& text) {
        store_.history().search(text, store_.history().historySearchField.value());
    });
    notifiers_.push_back(store_.history().historySearch.addNotifier([this] { showSearch(); }));
    notifiers_.push_back(store_.history().historySearchField.addNotifier([this] { showSearch(); }));
    notifiers_.push_back(store_.history().history.addNotifier([this] { showCount(); }));
    notifiers_.push_back(store_.history().hasMoreHistory.addNotifier([this] { showCount(); }));
    notifiers_.push_back(store_.history().isSearching.addNotifier([this] { showCount(); }));
    notifiers_.push_back(store_.history().isOutdated.addNotifier([this] { showCount(); }));
    notifiers_.push_back(store_.snapshot().hasLoaded.addNotifier([this] { showCount(); }));
    notifiers_.push_back(store_.history().historyProblem.addNotifier([this] { showCount(); }));
    notifiers_.push_back(store_.snapshot().readProblem.addNotifier([this] { showCount(); }));
    showSearch();
    showCount();
}

void HistorySearchRow::focusSearch()
{
    search_->setFocus(Qt::ShortcutFocusReason);
    search_->selectAll();
}

void HistorySearchRow::clearSearch() { store_.history().search({}, store_.history().historySearchField.value()); }

void HistorySearchRow::setGrowing(bool isGrowing)
{
    isGrowing_ = isGrowing;
    showCount();
}

void HistorySearchRow::showSearch()
{
    if (search_->text() != store_.history().historySearch.value())
        search_->setText(store_.history().historySearch.value());
    field_->setCurrentIndex(field_->findData(static_cast<int>(store_.history().historySearchField.value())));
}

void HistorySearchRow::showCount()
{
    const auto shown = static_cast<int>(store_.history().history.value().size());
    if (store_.history().isSearching.value()) {
        const bool isFound = shown > 0 && !store_.history().isOutdated.value();
        count_->setText(isFound ? tr("Searching… %Ln found", nullptr, shown) : tr("Searching…"));
        return;
    }
    // A history that could not be read has no number of commits.
    const bool isRead = store_.snapshot().hasLoaded.value() && store_.history().historyProblem.value().isEmpty();
    const bool isKnown = shown > 0 || (isRead && store_.snapshot().readProblem.value().isEmpty());
    const bool areMore =
        store_.history().hasMoreHistory.value() || isGrowing_ || store_.history().isReadingToEnd.value();
    const QString text = areMore ? tr("%Ln+ commits", nullptr, shown) : tr("%Ln commit(s)", nullptr, shown);
    count_->setText(isKnown ? text : QString());
}

bool HistorySearchRow::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != search_ || event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_Escape:
        if (store_.history().isSearching.value() && !store_.history().isOutdated.value())
            store_.history().stopReading();
        else if (!search_->text().isEmpty())
            clearSearch();
        else
            Q_EMIT finished();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Down:
        Q_EMIT finished();
        return true;
    default:
        return QWidget::eventFilter(watched, event);
    }
}

void HistorySearchRow::paintEvent(QPaintEvent*)
{
    const Theme& theme = Theme::current();
    QPainter painter(this);
    painter.fillRect(rect(), theme.bars);
    painter.fillRect(0, height() - 1, width(), 1, theme.separator);
}

} // namespace plovik

#include "moc_HistorySearchRow.cpp"
