// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/updates/ReleaseFeed.h"

#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

/// Whether an element is one of the translations that stand beside the English original.
bool isTranslation(const QXmlStreamReader& xml)
{
    const QStringView language = xml.attributes().value(u"http://www.w3.org/XML/1998/namespace"_s, u"lang"_s);
    return !language.isEmpty() && language != "C"_L1 && !language.startsWith("en"_L1);
}

/// The paragraphs and lists of a description as lines of plain text.
class Notes {
public:
    /// Reads up to the end of the element that the reader has just entered.
    QString read(QXmlStreamReader& xml)
    {
        for (int depth = 1; depth > 0 && !xml.atEnd();) {
            switch (xml.readNext()) {
            case QXmlStreamReader::StartElement:
                if (isTranslation(xml)) {
                    xml.skipCurrentElement();
                } else {
                    ++depth;
                    enter(xml.name());
                }
                break;
            case QXmlStreamReader::EndElement:
                --depth;
                leave(xml.name());
                break;
            case QXmlStreamReader::Characters:
                block_ += xml.text();
                break;
            default:
                break;
            }
        }
        return text_;
    }

private:
    void enter(QStringView element)
    {
        if (element == "ol"_L1 || element == "ul"_L1) {
            isNumbered_ = element == "ol"_L1;
            items_ = 0;
        } else if (element == "p"_L1 || element == "li"_L1) {
            block_.clear(); // the white space between blocks
        }
    }

    void leave(QStringView element)
    {
        if (element != "p"_L1 && element != "li"_L1)
            return;
        const bool isItem = element == "li"_L1;
        if (!text_.isEmpty())
            text_ += isItem && items_ > 0 ? u"\n"_s : u"\n\n"_s;
        if (isItem) {
            ++items_;
            text_ += isNumbered_ ? u"%1. "_s.arg(items_) : u"• "_s;
        }
        text_ += block_.simplified();
        block_.clear();
    }

    QString text_;
    QString block_;
    bool isNumbered_ = false;
    int items_ = 0; ///< of the list at hand
};

QUrl securePage(const QString& text)
{
    const QUrl url(text.trimmed(), QUrl::StrictMode);
    return url.isValid() && url.scheme() == "https"_L1 && !url.host().isEmpty() ? url : QUrl();
}

void readRelease(QXmlStreamReader& xml, std::vector<Release>& releases)
{
    const QXmlStreamAttributes attributes = xml.attributes();
    Release release;
    release.name = attributes.value(u"version"_s).trimmed().toString();
    const QStringView type = attributes.value(u"type"_s);
    release.isForEveryone = type.isEmpty() || type == "stable"_L1;
    while (xml.readNextStartElement()) {
        const QStringView kind = xml.attributes().value(u"type"_s);
        if (xml.name() == "description"_L1 && !isTranslation(xml))
            release.notes = Notes().read(xml);
        else if (xml.name() == "url"_L1 && (kind.isEmpty() || kind == "details"_L1))
            release.page = securePage(xml.readElementText(QXmlStreamReader::SkipChildElements));
        else
            xml.skipCurrentElement();
    }
    if (const std::optional<SemanticVersion> version = SemanticVersion::parse(release.name)) {
        release.version = *version;
        releases.push_back(std::move(release));
    }
}

void readReleases(QXmlStreamReader& xml, std::vector<Release>& releases)
{
    while (xml.readNextStartElement()) {
        if (xml.name() == "release"_L1)
            readRelease(xml, releases);
        else
            xml.skipCurrentElement();
    }
}

/// Goes to the root element; false when there is none, or a document type, whose entities a feed has no use for.
bool enterRoot(QXmlStreamReader& xml)
{
    while (!xml.atEnd()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        if (token == QXmlStreamReader::DTD)
            return false;
        if (token == QXmlStreamReader::StartElement)
            return true;
    }
    return false;
}

} // namespace

std::vector<Release> parseReleaseFeed(const QByteArray& bytes)
{
    QXmlStreamReader xml(bytes);
    if (!enterRoot(xml))
        return {};
    std::vector<Release> releases;
    if (xml.name() == "releases"_L1) {
        readReleases(xml, releases);
    } else if (xml.name() == "component"_L1) {
        while (xml.readNextStartElement()) {
            if (xml.name() == "releases"_L1)
                readReleases(xml, releases);
            else
                xml.skipCurrentElement();
        }
    }
    return xml.hasError() ? std::vector<Release>() : releases;
}

const Release* newerRelease(std::span<const Release> releases, const SemanticVersion& running)
{
    const Release* newest = nullptr;
    for (const Release& each : releases) {
        const bool isOffered = running.isPreRelease() || (each.isForEveryone && !each.version.isPreRelease());
        if (isOffered && each.version > (newest ? newest->version : running))
            newest = &each;
    }
    return newest;
}

} // namespace plovik
