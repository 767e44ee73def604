// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/updates/SemanticVersion.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

std::optional<SemanticVersion::Identifier> identifierOf(const QString& text)
{
    if (!std::ranges::all_of(text, [](QChar each) { return each >= u'0' && each <= u'9'; }))
        return text.toStdString();
    bool fits = false;
    const std::uint64_t value = text.toULongLong(&fits);
    return fits ? std::optional<SemanticVersion::Identifier>(value) : std::nullopt;
}

} // namespace

std::strong_ordering SemanticVersion::operator<=>(const SemanticVersion& other) const
{
    if (const int order = QVersionNumber::compare(numbers, other.numbers); order != 0)
        return order <=> 0;
    if (isPreRelease() != other.isPreRelease())
        return isPreRelease() ? std::strong_ordering::less : std::strong_ordering::greater;
    return preRelease <=> other.preRelease;
}

std::optional<SemanticVersion> SemanticVersion::parse(const QString& text)
{
    static const QRegularExpression form(QRegularExpression::anchoredPattern(
        u"v?([0-9]+(?:\\.[0-9]+){0,2})"
        "(?:[-~]([0-9A-Za-z-]+(?:\\.[0-9A-Za-z-]+)*))?(?:\\+[0-9A-Za-z-]+(?:\\.[0-9A-Za-z-]+)*)?"_s));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;

    qsizetype end = 0;
    SemanticVersion version{.numbers = QVersionNumber::fromString(match.capturedView(1), &end).normalized(),
                            .preRelease = {}};
    if (end != match.capturedLength(1))
        return std::nullopt;
    for (const QString& each : match.captured(2).split(u'.', Qt::SkipEmptyParts)) {
        const std::optional<Identifier> identifier = identifierOf(each);
        if (!identifier)
            return std::nullopt;
        version.preRelease.push_back(*identifier);
    }
    return version;
}

} // namespace plovik
