// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/Picture.h"

#include "app/store/ShownText.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFileInfo>
#include <QImageReader>
#include <QXmlStreamReader>

#include <algorithm>

namespace plovik {

using namespace Qt::StringLiterals;

namespace {

/// The longer side of an image that is kept, which is enough for a large screen.
constexpr int longestSide = 2560;
/// How many megabytes a file may take while it is read, which is a picture of 64 million pixels.
constexpr int mostMemory = 256;
constexpr qint64 mostPixels = qint64{mostMemory} * 1024 * 1024 / 4;
/// The largest drawing in bytes. A larger one may take too long to draw.
constexpr qsizetype mostDrawingText = qsizetype{4} << 20;
constexpr int mostReferences = 30;
constexpr int mostIcons = 64;

const QStringList& formats()
{
    static const QStringList known{u"png"_s, u"jpg"_s, u"jpeg"_s, u"gif"_s, u"webp"_s,
                                   u"bmp"_s, u"ico"_s, u"cur"_s,  u"svg"_s};
    return known;
}

QString suffixOf(std::string_view path) { return QFileInfo(exactText(path)).suffix().toLower(); }

/// Goes to the largest image of an icon, which holds the same picture in several sizes.
void goToLargest(QImageReader& reader)
{
    int largest = 0;
    int widest = 0;
    for (int index = 0; index < std::min(reader.imageCount(), mostIcons); ++index) {
        if (reader.jumpToImage(index) && reader.size().width() > widest) {
            widest = reader.size().width();
            largest = index;
        }
    }
    reader.jumpToImage(largest);
}

QString unreadable()
{
    return QCoreApplication::translate(
        "Diff", "This picture cannot be shown: it is damaged, or in a format that is not known here.");
}

/// Returns whether a drawing can be drawn in a bounded time from nothing but itself. References to references multiply,
/// and pictures that are stored elsewhere may be devices or pipes.
bool isHarmless(const QByteArray& text)
{
    if (text.size() > mostDrawingText)
        return false;
    int references = 0;
    QXmlStreamReader reader(text);
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (reader.name() == u"use"_s && ++references > mostReferences)
            return false;
        if (reader.name() != u"image"_s)
            continue;
        for (const QXmlStreamAttribute& attribute : reader.attributes()) {
            if (attribute.name() == u"href"_s && !attribute.value().trimmed().startsWith(u"data:"_s))
                return false;
        }
    }
    return !reader.hasError();
}

QSize limited(QSize size)
{
    if (size.width() <= longestSide && size.height() <= longestSide)
        return size;
    return size.scaled(longestSide, longestSide, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
}

} // namespace

bool isPictureName(std::string_view path)
{
    const QString suffix = suffixOf(path);
    return formats().contains(suffix) && suffix != u"svg"_s;
}

bool isTextPictureName(std::string_view path)
{
    if (suffixOf(path) != u"svg"_s)
        return false;
    static const bool canRead = QImageReader::supportedImageFormats().contains("svg");
    return canRead;
}

Picture readPicture(const std::string& bytes)
{
    static const bool isLimited = (QImageReader::setAllocationLimit(mostMemory), true);
    Q_UNUSED(isLimited)
    QByteArray data = QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()));
    QBuffer buffer(&data);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    // A file's name may not fit its content.
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QString format = QString::fromLatin1(reader.format());
    Picture picture;
    picture.isVector = format == u"svg"_s;
    if (!formats().contains(format) || (picture.isVector && !isHarmless(data))) {
        picture.problem = unreadable();
        return picture;
    }
    if (format == u"ico"_s || format == u"cur"_s)
        goToLargest(reader);
    const QSize size = reader.size();
    const bool isTurned = reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
    picture.pixels = isTurned ? size.transposed() : size;
    if (!picture.isVector && qint64{size.width()} * size.height() > mostPixels) {
        picture.problem = QCoreApplication::translate("Diff", "This picture has too many pixels to be shown.");
        return picture;
    }
    if (size.isValid() && limited(size) != size)
        reader.setScaledSize(limited(size));
    if (!reader.read(&picture.image)) {
        picture.problem = unreadable();
        return picture;
    }
    if (!size.isValid())
        picture.pixels = picture.image.size();
    if (const QSize kept = limited(picture.image.size()); kept != picture.image.size())
        picture.image = picture.image.scaled(kept, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return picture;
}

} // namespace plovik
