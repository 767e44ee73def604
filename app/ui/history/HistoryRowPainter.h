// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Date.h"
#include "app/store/History.h"
#include "app/store/HistoryRow.h"
#include "app/ui/history/HistoryColumns.h"
#include "app/ui/history/RefBadges.h"
#include "app/ui/history/RelativeDate.h"
#include "app/ui/widgets/Theme.h"

#include <QCache>
#include <QHash>
#include <QLocale>
#include <QRawFont>
#include <QStaticText>
#include <QStringList>

#include <array>
#include <map>

namespace plovik {

/// Draws the texts and badges of history rows. Each list owns one. Main thread.
///
/// Shaping text costs far more than drawing it, so the layouts of recently shown rows are kept. A row's layout is made
/// again when its labels, its relative date or the columns have changed.
class HistoryRowPainter {
public:
    HistoryRowPainter() { reset(); }

    /// Reads the application's fonts and locale and what is chosen for the columns, and drops every kept layout.
    void reset();

    int rowHeight() const { return rowHeight_; }
    /// Returns the columns of a list of this width, whose graph has `lanes` lanes; 0 for one without a graph.
    HistoryColumns columns(double width, int lanes) const;

    /// Where a row is drawn.
    struct Place {
        double top = 0;
        double mirror = 0; ///< the row's width where it is read from right to left; 0 otherwise
        /// Returns the left edge of what stands at `left` in a row that is read from left to right.
        double at(double left, double width) const { return mirror > 0 ? mirror - left - width : left; }
    };
    /// Draws a row. Relative dates are relative to `now`.
    void paint(QPainter& painter, const HistoryRow& row, const HistoryColumns& columns, const Place& place,
               gitkit::Date now);

    /// From where to where a part of a row stands.
    struct Span {
        double left = 0;
        double right = 0;
    };
    Span subjectOf(const HistoryRow& row, const HistoryColumns& columns);

    /// Sets what is marked in the texts of rows, because a search looks for it.
    void setMarks(SearchMarks marks) { marks_ = std::move(marks); }

    /// Returns the tooltip of the part of the row under `x`, or an empty text when the part has none.
    QString toolTip(const HistoryRow& row, const HistoryColumns& columns, double x);

    /// Returns the label that stands alone under `x`, and its place in the row; nullopt elsewhere.
    std::optional<RefBadges::Found> labelAt(const HistoryRow& row, const HistoryColumns& columns, double x);

    /// Returns the labels that have collapsed into the badge under `x`; none elsewhere.
    std::vector<gitkit::RefLabel> collapsedLabels(const HistoryRow& row, const HistoryColumns& columns, double x);

private:
    struct RowLayout {
        std::vector<gitkit::RefLabel> labels;
        RefBadges badges;
        double subjectLeft = 0;
        QStaticText subject, author, date;
        QString initials;
        RelativeDate when;
        bool isSubjectCut = false;
    };

    RowLayout& layoutOf(const HistoryRow& row, const HistoryColumns& columns);
    std::unique_ptr<RowLayout> makeLayout(const gitkit::Commit& commit) const;
    QStaticText authorText(const std::string& name);
    void takeWidths();
    void showDate(RowLayout& layout, gitkit::Date date, gitkit::Date now);
    void drawAuthor(QPainter& painter, const RowLayout& layout, const HistoryColumns& columns, const Place& place,
                    const std::string& email) const;
    QStaticText dateText(const RelativeDate& when);
    void takeDigits();
    void drawHash(QPainter& painter, const HistoryColumns& columns, const Place& place, std::string_view hash) const;
    void markFound(QPainter& painter, const Place& place, double left, const QString& shown,
                   const QStringList& found) const;
    void drawCentred(QPainter& painter, double left, double top, const QStaticText& text) const;

    QLocale locale_;
    QFont font_, hashFont_;
    QRawFont hashRawFont_;
    std::array<quint32, 16> digitGlyphs_{};
    double digitWidth_ = 0;
    RefBadges::Fonts badgeFonts_;
    HistoryColumns::Widths widths_;
    double initialsSize_ = 18;
    bool hasGraph_ = true;
    double mostGraph_ = 0; ///< the width chosen for the graph; 0 when none is
    bool datesAreAbsolute_ = false;
    int rowHeight_ = 28;

    SearchMarks marks_;
    HistoryColumns columns_; ///< the columns of the kept layouts
    QCache<std::string, RowLayout> layouts_;
    QHash<std::string, QStaticText> authors_;             ///< few authors write most commits
    std::map<std::pair<int, qint64>, QStaticText> dates_; ///< commits of one day share a text
};

} // namespace plovik
