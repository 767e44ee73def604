// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/SearchTerms.h"

#include "GitKit/Text.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <ctime>
#include <utility>

namespace gitkit {

namespace {

using Field = HistoryFilter::Field;

/// Returns the beginning of a local day.
Date localDay(std::chrono::year_month_day day)
{
    std::tm time{};
    time.tm_year = static_cast<int>(day.year()) - 1900;
    time.tm_mon = static_cast<int>(static_cast<unsigned>(day.month())) - 1;
    time.tm_mday = static_cast<int>(static_cast<unsigned>(day.day()));
    time.tm_isdst = -1;
    return Date{std::chrono::seconds{std::mktime(&time)}};
}

std::chrono::year_month_day localDayOf(Date date)
{
    const std::time_t seconds = date.time_since_epoch().count();
    std::tm time{};
    localtime_r(&seconds, &time);
    return std::chrono::year{time.tm_year + 1900} / (time.tm_mon + 1) / time.tm_mday;
}

std::optional<int> digits(std::string_view text, std::size_t count)
{
    int number = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isNumber = text.size() == count && error == std::errc() && stop == text.data() + text.size();
    return isNumber && text.front() != '-' ? std::optional(number) : std::nullopt;
}

DateRange daysFrom(std::chrono::year_month_day first, std::chrono::year_month_day next)
{
    return {localDay(first), localDay(next)};
}

std::optional<DateRange> calendarTime(std::string_view text)
{
    using namespace std::chrono;
    const auto yearNumber = digits(text.substr(0, 4), 4);
    if (!yearNumber)
        return std::nullopt;
    const year_month_day first = year{*yearNumber} / 1 / 1;
    if (text.size() == 4)
        return daysFrom(first, first + years{1});
    const auto monthNumber = text.size() >= 7 && text[4] == '-' ? digits(text.substr(5, 2), 2) : std::nullopt;
    if (!monthNumber || *monthNumber < 1 || *monthNumber > 12)
        return std::nullopt;
    const year_month_day ofMonth = first.year() / *monthNumber / 1;
    if (text.size() == 7)
        return daysFrom(ofMonth, ofMonth + months{1});
    const auto dayNumber = text.size() == 10 && text[7] == '-' ? digits(text.substr(8, 2), 2) : std::nullopt;
    const year_month_day day = ofMonth.year() / ofMonth.month() / dayNumber.value_or(0);
    if (!dayNumber || !day.ok())
        return std::nullopt;
    return daysFrom(day, sys_days(day) + days{1});
}

std::optional<DateRange> oneTime(std::string_view text, Date now)
{
    using std::chrono::days, std::chrono::sys_days;
    const sys_days today(localDayOf(now));
    if (text == "today")
        return daysFrom(today, today + days{1});
    if (text == "yesterday")
        return daysFrom(today - days{1}, today);
    return calendarTime(text);
}

std::string inLowerCase(std::string_view text)
{
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return lower;
}

void find(SearchTerms& terms, SearchTerms::Fault fault, std::string_view about)
{
    if (terms.fault == SearchTerms::Fault::none) {
        terms.fault = fault;
        terms.faulty = about;
    }
}

void addDate(SearchTerms& terms, std::string_view text, Date now)
{
    if (const std::optional<DateRange> range = dateRange(text, now))
        terms.dates.push_back(*range);
    else
        find(terms, SearchTerms::Fault::date, text);
}

void addHash(SearchTerms& terms, std::string_view text)
{
    terms.hashes.push_back(inLowerCase(text));
    if (terms.hashes.back().find_first_not_of("0123456789abcdef") != std::string::npos)
        find(terms, SearchTerms::Fault::hash, text);
}

void addChange(SearchTerms& terms, std::string& kind, std::string_view text)
{
    if (terms.looksAtChanges())
        find(terms, SearchTerms::Fault::twoContents, text);
    kind = text;
}

void add(SearchTerms& terms, Field field, std::string_view text, Date now)
{
    if (text.empty())
        return;
    switch (field) {
    case Field::message:
        terms.messages.emplace_back(text);
        break;
    case Field::author:
        terms.authors.emplace_back(text);
        break;
    case Field::path:
        terms.paths.emplace_back(text);
        break;
    case Field::content:
        addChange(terms, terms.content, text);
        break;
    case Field::lines:
        addChange(terms, terms.lines, text);
        break;
    case Field::date:
        addDate(terms, text, now);
        break;
    case Field::hash:
        addHash(terms, text);
        break;
    }
}

/// A word that begins with a key: its field, what follows the colon, and how long it is in the text.
struct KeyedWord {
    Field field;
    std::string_view value;
    std::size_t length;
};

/// Returns the keyed word at the beginning of a text. Its value may stand in quotation marks.
std::optional<KeyedWord> keyedWord(std::string_view text)
{
    const std::size_t colon = text.find(':');
    const auto field =
        colon == std::string_view::npos ? std::nullopt : HistoryFilter::fieldNamed(text.substr(0, colon));
    if (!field)
        return std::nullopt;
    const std::string_view after = text.substr(colon + 1);
    if (after.starts_with('"')) {
        const std::size_t end = after.find('"', 1);
        if (end != std::string_view::npos && end > 1)
            return KeyedWord{*field, after.substr(1, end - 1), colon + 1 + end + 1};
    }
    const std::string_view value = after.substr(0, after.find(' '));
    if (value.empty())
        return std::nullopt;
    return KeyedWord{*field, value, colon + 1 + value.size()};
}

} // namespace

Date currentSecond() { return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()); }

std::optional<DateRange> dateRange(std::string_view text, Date now)
{
    const std::size_t dots = text.find("..");
    if (dots == std::string_view::npos)
        return oneTime(text, now);
    const std::string_view first = trimmed(text.substr(0, dots));
    const std::string_view last = trimmed(text.substr(dots + 2));
    const std::optional<DateRange> from = first.empty() ? DateRange() : oneTime(first, now);
    const std::optional<DateRange> to = last.empty() ? DateRange() : oneTime(last, now);
    if (!from || !to || (first.empty() && last.empty()))
        return std::nullopt;
    return DateRange{from->from, to->to};
}

bool SearchTerms::hold(const Commit& commit) const
{
    const auto isIn = [&](const DateRange& range) { return commit.date >= range.from && commit.date < range.to; };
    const auto begins = [&](const std::string& hash) { return commit.hash.starts_with(hash); };
    return (dates.empty() || std::ranges::any_of(dates, isIn)) &&
           (hashes.empty() || std::ranges::any_of(hashes, begins));
}

SearchTerms searchTerms(const HistoryFilter& filter, Date now)
{
    SearchTerms terms;
    std::string rest;
    std::string_view left = filter.text;
    bool hasKeys = false;
    while (!left.empty()) {
        const bool atWord = rest.empty() || rest.back() == ' ';
        if (const auto word = atWord ? keyedWord(left) : std::nullopt) {
            add(terms, word->field, word->value, now);
            left.remove_prefix(word->length);
            left.remove_prefix(left.starts_with(' ') ? 1 : 0);
            hasKeys = true;
            continue;
        }
        rest += left.front();
        left.remove_prefix(1);
    }
    add(terms, filter.field, hasKeys ? trimmed(rest) : std::string_view(filter.text), now);
    return terms;
}

} // namespace gitkit
