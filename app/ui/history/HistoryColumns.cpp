// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/history/HistoryColumns.h"

#include <QAction>
#include <QCoreApplication>
#include <QMenu>

namespace plovik {

namespace {

constexpr double margin = 12;

struct ColumnTexts {
    Q_DECLARE_TR_FUNCTIONS(HistoryColumns)
};

} // namespace

QString titleOf(HistoryColumn column)
{
    switch (column) {
    case HistoryColumn::graph:
        return ColumnTexts::tr("Graph");
    case HistoryColumn::author:
        return ColumnTexts::tr("Author");
    case HistoryColumn::date:
        return ColumnTexts::tr("Date");
    case HistoryColumn::hash:
        break;
    }
    return ColumnTexts::tr("Hash");
}

const Setting<double>& widthSetting(HistoryColumn column)
{
    switch (column) {
    case HistoryColumn::graph:
        return settings::historyGraphWidth;
    case HistoryColumn::author:
        return settings::historyAuthorWidth;
    case HistoryColumn::date:
        return settings::historyDateWidth;
    case HistoryColumn::hash:
        break;
    }
    return settings::historyHashWidth;
}

const Setting<bool>& shownSetting(HistoryColumn column)
{
    switch (column) {
    case HistoryColumn::graph:
        return settings::historyShowsGraph;
    case HistoryColumn::author:
        return settings::historyShowsAuthor;
    case HistoryColumn::date:
        return settings::historyShowsDate;
    case HistoryColumn::hash:
        break;
    }
    return settings::historyShowsHash;
}

void addColumnChoices(QMenu& menu)
{
    const auto addChoice = [&menu](const QString& title, const Setting<bool>& setting) {
        QAction* const action = menu.addAction(title);
        action->setCheckable(true);
        action->setChecked(Settings::shared().value(setting));
        QObject::connect(action, &QAction::toggled, &menu,
                         [&setting](bool isOn) { Settings::shared().set(setting, isOn); });
    };
    for (const HistoryColumn column : historyColumns)
        addChoice(titleOf(column), shownSetting(column));
    menu.addSeparator();
    addChoice(ColumnTexts::tr("Absolute Dates"), settings::historyAbsoluteDates);
    menu.addSeparator();
    menu.addAction(ColumnTexts::tr("Reset Columns"), &menu, [] {
        for (const HistoryColumn column : historyColumns) {
            Settings::shared().set(widthSetting(column), widthSetting(column).fallback);
            Settings::shared().set(shownSetting(column), shownSetting(column).fallback);
        }
    });
}

HistoryColumns HistoryColumns::fitting(double width, double graphWidth, const Widths& widths)
{
    HistoryColumns columns;
    columns.graphWidth = graphWidth;
    columns.subjectLeft = graphWidth > 0 ? graphWidth + graphGap : margin;

    double room = width - margin - columns.subjectLeft - widths.leastSubject;
    const auto fits = [&room](double wanted) {
        if (wanted <= 0 || room < wanted + gap)
            return 0.0;
        room -= wanted + gap;
        return wanted;
    };
    const double date = fits(widths.date);
    const double author = fits(widths.author);
    // A hash may be short enough where the author is not, but it matters less.
    const double hash = widths.author > author ? 0 : fits(widths.hash);

    double right = width - margin;
    const auto place = [&right](double wanted, double& partLeft, double& partRight) {
        partRight = right;
        partLeft = right - wanted;
        right = wanted > 0 ? partLeft - gap : right;
    };
    place(hash, columns.hashLeft, columns.hashRight);
    place(date, columns.dateLeft, columns.dateRight);
    place(author, columns.authorLeft, columns.authorRight);
    columns.subjectRight = right;
    return columns;
}

std::vector<HistoryColumns::Edge> HistoryColumns::edges() const
{
    std::vector<Edge> edges;
    if (graphWidth > 0)
        edges.push_back({HistoryColumn::graph, graphWidth + graphGap / 2});
    const auto add = [&edges](HistoryColumn column, double left, double right) {
        if (right > left)
            edges.push_back({column, left - gap / 2});
    };
    add(HistoryColumn::author, authorLeft, authorRight);
    add(HistoryColumn::date, dateLeft, dateRight);
    add(HistoryColumn::hash, hashLeft, hashRight);
    return edges;
}

double HistoryColumns::widthAt(HistoryColumn column, double x) const
{
    switch (column) {
    case HistoryColumn::graph:
        return x - graphGap / 2;
    case HistoryColumn::author:
        return authorRight - x - gap / 2;
    case HistoryColumn::date:
        return dateRight - x - gap / 2;
    case HistoryColumn::hash:
        break;
    }
    return hashRight - x - gap / 2;
}

} // namespace plovik
