// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/history/HistoryRowPainter.h"

#include "app/store/ShownText.h"
#include "app/ui/history/RowText.h"

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
    widths_.author = std::ceil(metrics.height() * 8);
    widths_.date = widestDate(font_, locale_);
    takeDigits();
    widths_.hash = std::ceil(7 * digitWidth_);
    layouts_.setMaxCost(keptLayouts);
    layouts_.clear();
    authors_.clear();
    dates_.clear();
}

HistoryColumns HistoryRowPainter::columns(double width, double graphWidth) const
{
    return HistoryColumns::fitting(width, graphWidth, widths_);
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

QStaticText HistoryRowPainter::authorText(const std::string& name)
{
    const auto known = authors_.constFind(name);
    if (known != authors_.constEnd())
        return *known;
    if (authors_.size() >= keptAuthors)
        authors_.clear();
    const QStaticText text = fitted(shownLine(name), font_, columns_.authorRight - columns_.authorLeft).text;
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

void HistoryRowPainter::drawHash(QPainter& painter, double left, double top, std::string_view hash) const
{
    std::array<quint32, 7> glyphs{};
    std::array<QPointF, 7> places;
    const std::size_t count = std::min(hash.size(), glyphs.size());
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t digit = std::string_view(hexDigits).find(hash[i]);
        if (digit != std::string_view::npos)
            glyphs[i] = digitGlyphs_[digit];
        places[i] = {static_cast<double>(i) * digitWidth_, 0};
    }
    QGlyphRun run;
    run.setRawFont(hashRawFont_);
    run.setRawData(glyphs.data(), places.data(), static_cast<int>(count));
    const double height = hashRawFont_.ascent() + hashRawFont_.descent();
    const double baseline = top + std::round((rowHeight_ - height) / 2 + hashRawFont_.ascent());
    painter.drawGlyphRun(QPointF(left, baseline), run);
}

void HistoryRowPainter::drawCentred(QPainter& painter, double left, double top, const QStaticText& text) const
{
    painter.drawStaticText(QPointF(left, top + std::round((rowHeight_ - text.size().height()) / 2)), text);
}

void HistoryRowPainter::paint(QPainter& painter, const HistoryRow& row, const HistoryColumns& columns, double top,
                              gitkit::Date now)
{
    const Theme& theme = Theme::current();
    RowLayout& layout = layoutOf(row, columns);
    const RelativeDate when = RelativeDate::between(row.commit.date, now);
    if (when != layout.when || layout.date.text().isEmpty()) {
        layout.when = when;
        layout.date = dateText(when);
    }

    layout.badges.paint(painter, {columns.subjectLeft, top + rowHeight_ / 2.0}, badgeFonts_, theme);
    painter.setFont(font_);
    painter.setPen(theme.text);
    drawCentred(painter, layout.subjectLeft, top, layout.subject);
    painter.setPen(theme.secondaryText);
    if (columns.authorRight > columns.authorLeft)
        drawCentred(painter, columns.authorLeft, top, layout.author);
    if (columns.dateRight > columns.dateLeft)
        drawCentred(painter, std::round(columns.dateRight - layout.date.size().width()), top, layout.date);
    if (columns.hashRight > columns.hashLeft)
        drawHash(painter, columns.hashLeft, top, row.commit.shortHash());
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

} // namespace plovik
