// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/history/HistoryColumns.h"

namespace plovik {

namespace {

constexpr double margin = 12;
constexpr double gap = 20;
constexpr double graphGap = 16;
constexpr double leastSubject = 220;

} // namespace

HistoryColumns HistoryColumns::fitting(double width, double graphWidth, const Widths& widths)
{
    HistoryColumns columns;
    columns.graphWidth = graphWidth;
    columns.subjectLeft = graphWidth > 0 ? graphWidth + graphGap : margin;

    double room = width - margin - columns.subjectLeft - leastSubject;
    const auto fits = [&room](double wanted) {
        if (room < wanted + gap)
            return 0.0;
        room -= wanted + gap;
        return wanted;
    };
    const double date = fits(widths.date);
    const double hash = fits(widths.hash);
    const double author = fits(widths.author);

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

} // namespace plovik
