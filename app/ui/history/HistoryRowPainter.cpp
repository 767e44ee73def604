// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/history/HistoryRowPainter.h"

#include "app/store/ShownText.h"
#include "app/ui/history/GraphCell.h"
#include "app/ui/history/RowText.h"
#include "app/ui/widgets/Initials.h"
#include "app/ui/widgets/RowPainting.h"

#include <QDateTime>
#include <QFontMetricsF>
#include <QGlyphRun>

#include <algorithm>
#include <cmath>

namespace plovik {

using namespace Qt::StringLiterals;

namespace {

constexpr int keptLayouts = 400;
constexpr int keptAuthors = 400;
constexpr std::size_t keptDates = 400;
constexpr double badgeGap = 6;
constexpr double mostOfListForGraph = 0.3; ///< unless another width is chosen
constexpr double initialsGap = 7;
constexpr double titleRoom = 4;         ///< around the title above a column
constexpr double leastForInitials = 90; ///< in a narrower column the name needs the room
constexpr double shortHash = 7;         ///< digits
constexpr const char* hexDigits = "0123456789abcdef";

QStaticText shaped(const QString& text, const QFont& font)
{
    QStaticText result(text);
    result.setTextFormat(Qt::PlainText);
    result.prepare({}, font);
    return result;
}

struct FittedText {
    QStaticText text;
    bool isCut = false;
};

FittedText fitted(const QString& text, const QFont& font, double width)
{
    QStaticText whole = shaped(text, font);
    if (whole.size().width() <= width)
        return {whole, false};
    return {shaped(QFontMetricsF(font).elidedText(text, Qt::ElideRight, std::max(0.0, width)), font), true};
}

/// Returns what a name leaves to the circle before it, with the gap between them.
double initialsRoom(const HistoryColumns& columns, double size)
{
    const double width = columns.authorRight - columns.authorLeft;
    return width < leastForInitials ? 0 : size + initialsGap;
}

/// Returns the width of the widest text that tells date and time.
double widestTime(const QFont& font, const QLocale& locale)
{
    const QDateTime widest(QDate(2028, 10, 28), QTime(20, 58));
    const gitkit::Date date{std::chrono::seconds(widest.toSecsSinceEpoch())};
    return std::ceil(QFontMetricsF(font).horizontalAdvance(shortTime(date, locale)));
}

/// Returns the width of the widest text in the date column.
double widestDate(const QFont& font, const QLocale& locale)
{
    const QFontMetricsF metrics(font);
    const QString date = locale.toString(QDate(2028, 10, 28), QLocale::ShortFormat);
    return std::ceil(std::max(metrics.horizontalAdvance(date),
                              metrics.horizontalAdvance(RelativeDate{RelativeDate::Unit::minutes, 59}.text(locale))));
}

} // namespace

void HistoryRowPainter::reset()
{
    locale_ = QLocale();
    font_ = Theme::font();
    hashFont_ = Theme::fixedFont(-0.75);
    badgeFonts_ = RefBadges::Fonts::current();
    const QFontMetricsF metrics(font_);
    rowHeight_ = std::max(28, static_cast<int>(std::ceil(metrics.height())) + 10);
    takeDigits();
    takeWidths();
    layouts_.setMaxCost(keptLayouts);
    layouts_.clear();
    authors_.clear();
    dates_.clear();
}

void HistoryRowPainter::takeWidths()
{
    const Settings& settings = Settings::shared();
    datesAreAbsolute_ = settings.value(settings::historyAbsoluteDates);
    hasGraph_ = settings.value(settings::historyShowsGraph);
    mostGraph_ = settings.value(settings::historyGraphWidth);
    const auto chosen = [&settings](HistoryColumn column, double usual) {
        const double width = settings.value(widthSetting(column));
        if (!settings.value(shownSetting(column)))
            return 0.0;
        return width > 0 ? width : std::max(usual, textWidth(titleOf(column), Theme::font(-1.5)) + titleRoom);
    };
    const double lineHeight = QFontMetricsF(font_).height();
    widths_.leastSubject = std::max(220.0, std::ceil(lineHeight * 13));
    initialsSize_ = std::max(18.0, std::ceil(lineHeight * 1.1));
    const double author = std::max(160.0, std::ceil(lineHeight * 8));
    widths_.author = chosen(HistoryColumn::author, author);
    widths_.date =
        chosen(HistoryColumn::date, datesAreAbsolute_ ? widestTime(font_, locale_) : widestDate(font_, locale_));
    widths_.hash = chosen(HistoryColumn::hash, std::ceil(shortHash * digitWidth_));
}

HistoryColumns HistoryRowPainter::columns(double width, int lanes) const
{
    if (lanes == 0 || !hasGraph_)
        return HistoryColumns::fitting(width, 0, widths_);
    const double most = mostGraph_ > 0 ? mostGraph_ : width * mostOfListForGraph;
    const double wanted = mostGraph_ > 0 ? GraphLanes::widestFor(lanes) : GraphLanes::widthFor(lanes);
    return HistoryColumns::fitting(
        width, std::clamp(wanted, GraphLanes::widthFor(1), std::max(most, GraphLanes::widthFor(1))), widths_);
}

HistoryRowPainter::RowLayout& HistoryRowPainter::layoutOf(const HistoryRow& row, const HistoryColumns& columns)
{
    if (columns != columns_) {
        columns_ = columns;
        layouts_.clear();
        authors_.clear();
    }
    RowLayout* kept = layouts_.object(row.commit.hash);
    if (kept && kept->labels == row.commit.refs)
        return *kept;
    auto layout = makeLayout(row.commit);
    layout->author = authorText(row.commit.authorName);
    layout->initials = initialsOf(shownLine(row.commit.authorName));
    layouts_.insert(row.commit.hash, layout.release());
    return *layouts_.object(row.commit.hash);
}

std::unique_ptr<HistoryRowPainter::RowLayout> HistoryRowPainter::makeLayout(const gitkit::Commit& commit) const
{
    auto layout = std::make_unique<RowLayout>();
    const double room = columns_.subjectRight - columns_.subjectLeft;
    layout->labels = commit.refs;
    layout->badges = RefBadges(commit.refs, room * 0.6, badgeFonts_);
    layout->subjectLeft = columns_.subjectLeft;
    if (!commit.refs.empty())
        layout->subjectLeft += layout->badges.width() + badgeGap;
    FittedText subject = fitted(shownLine(commit.subject), font_, columns_.subjectRight - layout->subjectLeft);
    layout->subject = subject.text;
    layout->isSubjectCut = subject.isCut;
    return layout;
}

/// Makes the text of the date where it is another one than that of the layout.
void HistoryRowPainter::showDate(RowLayout& layout, gitkit::Date date, gitkit::Date now)
{
    if (datesAreAbsolute_) {
        if (layout.date.text().isEmpty())
            layout.date = shaped(shortTime(date, locale_), font_);
        return;
    }
    const RelativeDate when = RelativeDate::between(date, now);
    if (when != layout.when || layout.date.text().isEmpty()) {
        layout.when = when;
        layout.date = dateText(when);
    }
}

QStaticText HistoryRowPainter::authorText(const std::string& name)
{
    const auto known = authors_.constFind(name);
    if (known != authors_.constEnd())
        return *known;
    if (authors_.size() >= keptAuthors)
        authors_.clear();
    const QStaticText text = fitted(shownLine(name), font_,
                                    columns_.authorRight - columns_.authorLeft - initialsRoom(columns_, initialsSize_))
                                 .text;
    authors_.insert(name, text);
    return text;
}

QStaticText HistoryRowPainter::dateText(const RelativeDate& when)
{
    const std::pair key(static_cast<int>(when.unit), when.count);
    const auto known = dates_.find(key);
    if (known != dates_.end())
        return known->second;
    if (dates_.size() >= keptDates)
        dates_.clear();
    return dates_.emplace(key, shaped(when.text(locale_), font_)).first->second;
}

// Every row has another hash, so caching shaped hashes would not help. The sixteen digits have one width, so their
// glyphs can be placed without shaping.

void HistoryRowPainter::takeDigits()
{
    hashRawFont_ = QRawFont::fromFont(hashFont_);
    const QList<quint32> glyphs = hashRawFont_.glyphIndexesForString(QLatin1StringView(hexDigits));
    std::copy_n(glyphs.begin(), std::min<qsizetype>(glyphs.size(), std::ssize(digitGlyphs_)), digitGlyphs_.begin());
    const QList<QPointF> advances = hashRawFont_.advancesForGlyphIndexes(glyphs);
    digitWidth_ = 0;
    for (const QPointF& advance : advances)
        digitWidth_ = std::max(digitWidth_, advance.x());
}

/// Draws as many digits as there is room for, a short hash at least.
void HistoryRowPainter::drawHash(QPainter& painter, const HistoryColumns& columns, const Place& place,
                                 std::string_view hash) const
{
    std::array<quint32, 64> glyphs{};
    std::array<QPointF, 64> places;
    const auto fitting =
        static_cast<std::size_t>(std::max(shortHash, (columns.hashRight - columns.hashLeft) / digitWidth_ + 0.01));
    const std::size_t count = std::min({hash.size(), glyphs.size(), fitting});
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t digit = std::string_view(hexDigits).find(hash[i]);
        if (digit != std::string_view::npos)
            glyphs[i] = digitGlyphs_[digit];
        places[i] = {static_cast<double>(i) * digitWidth_, 0};
    }
    const double digitsWidth = static_cast<double>(count) * digitWidth_;
    for (const std::string& beginning : marks_.hashes) {
        if (hash.starts_with(beginning))
            painter.fillRect(QRectF(place.at(columns.hashLeft, digitsWidth), place.top + 4,
                                    digitWidth_ * static_cast<double>(std::min(beginning.size(), count)),
                                    rowHeight_ - 8),
                             Theme::current().found);
    }
    QGlyphRun run;
    run.setRawFont(hashRawFont_);
    run.setRawData(glyphs.data(), places.data(), static_cast<int>(count));
    const double height = hashRawFont_.ascent() + hashRawFont_.descent();
    const double baseline = place.top + std::round((rowHeight_ - height) / 2 + hashRawFont_.ascent());
    painter.drawGlyphRun(QPointF(std::round(place.at(columns.hashLeft, digitsWidth)), baseline), run);
}

void HistoryRowPainter::drawAuthor(QPainter& painter, const RowLayout& layout, const HistoryColumns& columns,
                                   const Place& place, const std::string& email) const
{
    const double room = initialsRoom(columns, initialsSize_);
    if (room > 0) {
        const double size = room - initialsGap;
        const QRectF square(place.at(columns.authorLeft, size), place.top + std::floor((rowHeight_ - size) / 2), size,
                            size);
        const QPen pen = painter.pen();
        paintInitials(painter, square, layout.initials, email);
        painter.setFont(font_);
        painter.setPen(pen);
    }
    markFound(painter, place, columns.authorLeft + room, layout.author.text(), marks_.authors);
    const double left = place.at(columns.authorLeft + room, layout.author.size().width());
    drawCentred(painter, std::round(left), place.top, layout.author);
}

/// Tints what a search has found in a text of which all is shown in one direction.
void HistoryRowPainter::markFound(QPainter& painter, const Place& place, double left, const QString& shown,
                                  const QStringList& found) const
{
    if (shown.isRightToLeft())
        return;
    const QFontMetricsF metrics(font_);
    for (const QString& text : found) {
        for (qsizetype at = shown.indexOf(text, 0, Qt::CaseInsensitive); at >= 0 && !text.isEmpty();
             at = shown.indexOf(text, at + text.size(), Qt::CaseInsensitive))
        {
            const double before = metrics.horizontalAdvance(shown.first(at));
            const double width = metrics.horizontalAdvance(shown.first(at + text.size())) - before;
            const double whole = metrics.horizontalAdvance(shown);
            const QRectF mark(place.at(left, whole) + before, place.top + 4, width, rowHeight_ - 8);
            painter.fillRect(mark, Theme::current().found);
        }
    }
}

void HistoryRowPainter::drawCentred(QPainter& painter, double left, double top, const QStaticText& text) const
{
    painter.drawStaticText(QPointF(left, top + std::round((rowHeight_ - text.size().height()) / 2)), text);
}

void HistoryRowPainter::paint(QPainter& painter, const HistoryRow& row, const HistoryColumns& columns,
                              const Place& place, gitkit::Date now)
{
    const Theme& theme = Theme::current();
    RowLayout& layout = layoutOf(row, columns);
    showDate(layout, row.commit.date, now);
    const auto draw = [&](double left, const QStaticText& text) {
        drawCentred(painter, std::round(place.at(left, text.size().width())), place.top, text);
    };

    const double middle = place.top + rowHeight_ / 2.0;
    if (place.mirror > 0)
        layout.badges.paintMirrored(painter, {place.mirror - columns.subjectLeft, middle}, badgeFonts_, theme);
    else
        layout.badges.paint(painter, {columns.subjectLeft, middle}, badgeFonts_, theme);
    painter.setFont(font_);
    painter.setPen(theme.text);
    markFound(painter, place, layout.subjectLeft, layout.subject.text(), marks_.subjects);
    draw(layout.subjectLeft, layout.subject);
    painter.setPen(theme.secondaryText);
    if (columns.authorRight > columns.authorLeft)
        drawAuthor(painter, layout, columns, place, row.commit.authorEmail);
    if (columns.dateRight > columns.dateLeft)
        draw(columns.dateRight - layout.date.size().width(), layout.date);
    if (columns.hashRight > columns.hashLeft)
        drawHash(painter, columns, place, row.commit.hash);
}

HistoryRowPainter::Span HistoryRowPainter::subjectOf(const HistoryRow& row, const HistoryColumns& columns)
{
    const RowLayout& layout = layoutOf(row, columns);
    return {layout.subjectLeft, layout.subjectLeft + layout.subject.size().width()};
}

QString HistoryRowPainter::toolTip(const HistoryRow& row, const HistoryColumns& columns, double x)
{
    const gitkit::Commit& commit = row.commit;
    const RowLayout& layout = layoutOf(row, columns);
    if (x >= columns.hashLeft && x < columns.hashRight)
        return shownText(commit.hash);
    if (x >= columns.dateLeft && x < columns.dateRight)
        return absoluteDate(commit.date, locale_);
    if (x >= columns.authorLeft && x < columns.authorRight)
        return shownText(commit.authorName) + u" <"_s + shownText(commit.authorEmail) + u">"_s;
    if (x >= columns.subjectLeft && x < layout.subjectLeft)
        return layout.badges.namesAt(x - columns.subjectLeft, commit.refs);
    if (x >= layout.subjectLeft && x < columns.subjectRight && layout.isSubjectCut)
        return shownText(commit.subject);
    return {};
}

std::optional<RefBadges::Found> HistoryRowPainter::labelAt(const HistoryRow& row, const HistoryColumns& columns,
                                                           double x)
{
    std::optional<RefBadges::Found> found =
        layoutOf(row, columns).badges.labelAt(x - columns.subjectLeft, row.commit.refs);
    if (found)
        found->left += columns.subjectLeft;
    return found;
}

std::vector<gitkit::RefLabel> HistoryRowPainter::collapsedLabels(const HistoryRow& row, const HistoryColumns& columns,
                                                                 double x)
{
    const RowLayout& layout = layoutOf(row, columns);
    return layout.badges.collapsedAt(x - columns.subjectLeft, row.commit.refs);
}

} // namespace plovik
