// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/history/HistorySearchRow.h"

#include "app/settings/Settings.h"
#include "app/ui/widgets/IconButton.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPainter>
#include <QVBoxLayout>

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
    case Field::content:
        return HistorySearchRow::tr("Content");
    case Field::lines:
        return HistorySearchRow::tr("Lines");
    case Field::date:
        return HistorySearchRow::tr("Date");
    case Field::hash:
        return HistorySearchRow::tr("Hash");
    }
    return {};
}

QString hintOf(Field field)
{
    switch (field) {
    case Field::content:
        return HistorySearchRow::tr("Text that commits add or remove");
    case Field::lines:
        return HistorySearchRow::tr("Pattern of lines that commits add or remove");
    case Field::date:
        return HistorySearchRow::tr("2024, 2024-03 or 2024-03-15, or two with “..” between them");
    case Field::hash:
        return HistorySearchRow::tr("Beginning of a hash");
    default:
        return HistorySearchRow::tr("Search history");
    }
}

} // namespace

HistorySearchRow::HistorySearchRow(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), store_(store), field_(new QComboBox(this)), search_(new QLineEdit(this)),
      filters_(new IconButton(Icon::filter, tr("Only Matches"), this)), count_(new QLabel(this)),
      problem_(new QLabel(this))
{
    problem_->setTextFormat(Qt::PlainText);
    problem_->setWordWrap(true);
    problem_->setContentsMargins(2, 4, 2, 0);
    problem_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(12, 6, 12, 6);
    column->setSpacing(0);
    column->addWidget(makeFields());
    column->addWidget(problem_);

    const auto takeSetting = [this] {
        const bool filters = Settings::shared().value(settings::historySearchFilters);
        filters_->setChecked(filters);
        store_.history().setSearchesInGraph(!filters);
    };
    takeSetting();
    connect(&Settings::shared(), &Settings::changed, this, takeSetting);
    connect(filters_, &QAbstractButton::clicked, this,
            [](bool filters) { Settings::shared().set(settings::historySearchFilters, filters); });
    connect(field_, &QComboBox::activated, this, [this](int index) {
        store_.history().search(store_.history().historySearch.value(),
                                static_cast<Field>(field_->itemData(index).toInt()));
    });
    connect(search_, &QLineEdit::textEdited, this, [this](const QString& text) {
        store_.history().search(text, store_.history().historySearchField.value());
    });
    observe();
    showSearch();
    showCount();
    showProblem();
}

QWidget* HistorySearchRow::makeFields()
{
    for (const Field field : gitkit::HistoryFilter::allFields)
        field_->addItem(titleOf(field), static_cast<int>(field));
    field_->setAccessibleName(tr("History Search Field"));
    field_->setToolTip(tr("What to search in"));
    search_->setAccessibleName(tr("History Search"));
    search_->setToolTip(plainToolTip(tr("Terms can be combined: author:ada path:src/ content:\"a text\" lines:^include "
                                        "date:2024-03 hash:1a2b message:word\nReturn and Shift+Return go from match to "
                                        "match.")));
    search_->installEventFilter(this);
    filters_->setCheckable(true);
    filters_->setToolTip(
        plainToolTip(tr("Only Matches\nWhile this is off, all commits stay in the list, and those that "
                        "match are marked.")));
    count_->setForegroundRole(QPalette::PlaceholderText);
    count_->setTextFormat(Qt::PlainText);
    auto* const fields = new QWidget(this);
    auto* const row = new QHBoxLayout(fields);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    row->addWidget(field_);
    row->addWidget(search_, 1);
    row->addWidget(filters_);
    row->addWidget(count_);
    return fields;
}

void HistorySearchRow::observe()
{
    const auto follow = [this](auto shows, const auto&... fields) {
        (notifiers_.push_back(fields.addNotifier([this, shows] { (this->*shows)(); })), ...);
    };
    const History& history = store_.history();
    const HistoryMatches& matches = store_.matches();
    follow(&HistorySearchRow::showSearch, history.historySearch, history.historySearchField);
    follow(&HistorySearchRow::showCount, history.history, history.hasMoreHistory, history.isSearching,
           history.isOutdated, history.historyProblem, history.historySearch, history.searchesInGraph, matches.changes,
           matches.isSearching, store_.snapshot().hasLoaded, store_.snapshot().readProblem,
           store_.window().selectedCommit);
    follow(&HistorySearchRow::showProblem, history.searchProblem, history.searchesInGraph, matches.problem);
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
    const Field field = store_.history().historySearchField.value();
    field_->setCurrentIndex(field_->findData(static_cast<int>(field)));
    search_->setPlaceholderText(hintOf(field));
}

/// Says why the search fails, in git's words or ours.
void HistorySearchRow::showProblem()
{
    const QString own = store_.history().searchProblem.value();
    const QString text =
        own.isEmpty() && store_.history().searchesInGraph.value() ? store_.matches().problem.value() : own;
    problem_->setText(text);
    problem_->setAccessibleName(text);
    problem_->setVisible(!text.isEmpty());
    updateGeometry();
}

/// Returns how many commits match of those that are all in the list, and which of them is selected.
QString HistorySearchRow::countInGraph() const
{
    const HistoryMatches& matches = store_.matches();
    const auto count = static_cast<int>(matches.count());
    if (matches.isSearching.value())
        return count > 0 ? tr("Searching… %Ln found", nullptr, count) : tr("Searching…");
    const std::optional<std::string>& selected = store_.window().selectedCommit.value();
    const auto place = selected ? matches.placeOf(*selected) : std::nullopt;
    const QLocale locale;
    const QString all =
        matches.hasMore() ? tr("%1+", "number of matches").arg(locale.toString(count)) : locale.toString(count);
    if (place)
        return tr("%1 of %2", "number of a match, number of matches")
            .arg(locale.toString(static_cast<int>(*place) + 1), all);
    return matches.hasMore() ? tr("%Ln+ matches", nullptr, count) : tr("%Ln match(es)", nullptr, count);
}

void HistorySearchRow::showCount()
{
    if (store_.history().searchesInGraph.value() && store_.history().searched()) {
        count_->setText(countInGraph());
        return;
    }
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
    if (watched != search_ || event->type() != QEvent::KeyPress || !takeKey(*static_cast<QKeyEvent*>(event)))
        return QWidget::eventFilter(watched, event);
    return true;
}

bool HistorySearchRow::takeKey(const QKeyEvent& event)
{
    using Direction = HistoryMatches::Direction;
    switch (event.key()) {
    case Qt::Key_Escape:
        leaveSearch();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (search_->text().isEmpty())
            Q_EMIT finished();
        else
            store_.matches().step(event.modifiers() & Qt::ShiftModifier ? Direction::previous : Direction::next);
        return true;
    case Qt::Key_Down:
        Q_EMIT finished();
        return true;
    default:
        return false;
    }
}

/// Ends what goes on, then the search, and then leaves the line.
void HistorySearchRow::leaveSearch()
{
    if (store_.matches().isSearching.value())
        store_.matches().stop();
    else if (store_.history().isSearching.value() && !store_.history().isOutdated.value())
        store_.history().stopReading();
    else if (!search_->text().isEmpty())
        clearSearch();
    else
        Q_EMIT finished();
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
