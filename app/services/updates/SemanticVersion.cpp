// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/updates/SemanticVersion.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

std::optional<SemanticVersion::Identifier> identifierOf(const QString& text)
{
    static const QRegularExpression number(QRegularExpression::anchoredPattern(u"[0-9]+"_s));
    if (!number.match(text).hasMatch())
        return text.toStdString();
    bool fits = false;
    const std::uint64_t value = text.toULongLong(&fits);
    return fits ? std::optional<SemanticVersion::Identifier>(value) : std::nullopt;
}

} // namespace

std::strong_ordering SemanticVersion::operator<=>(const SemanticVersion& other) const
{
    if (const auto order = numbers <=> other.numbers; order != 0)
        return order;
    if (isPreRelease() != other.isPreRelease())
        return isPreRelease() ? std::strong_ordering::less : std::strong_ordering::greater;
    return preRelease <=> other.preRelease;
}

std::optional<SemanticVersion> SemanticVersion::parse(QStringView text)
{
    static const QRegularExpression form(QRegularExpression::anchoredPattern(
        u"v?([0-9]+)(?:\\.([0-9]+))?(?:\\.([0-9]+))?"
        "(?:[-~]([0-9A-Za-z-]+(?:\\.[0-9A-Za-z-]+)*))?(?:\\+[0-9A-Za-z-]+(?:\\.[0-9A-Za-z-]+)*)?"_s));
    const QRegularExpressionMatch match = form.match(text.toString());
    if (!match.hasMatch())
        return std::nullopt;

    SemanticVersion version;
    for (std::size_t i = 0; i < version.numbers.size(); ++i) {
        const QString digits = match.captured(static_cast<int>(i) + 1);
        bool fits = true;
        if (!digits.isEmpty())
            version.numbers[i] = digits.toULongLong(&fits);
        if (!fits)
            return std::nullopt;
    }
    for (const QString& each : match.captured(4).split(u'.', Qt::SkipEmptyParts)) {
        const std::optional<Identifier> identifier = identifierOf(each);
        if (!identifier)
            return std::nullopt;
        version.preRelease.push_back(*identifier);
    }
    return version;
}

} // namespace plovik
