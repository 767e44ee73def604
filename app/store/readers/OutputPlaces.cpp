// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/readers/OutputPlaces.h"

#include <QFile>
#include <QRegularExpression>

#include <algorithm>
#include <system_error>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

constexpr std::size_t mostPlaces = 2000;

bool isBelow(const std::filesystem::path& file, const std::filesystem::path& root)
{
    const auto ends = std::ranges::mismatch(root, file);
    return ends.in1 == root.end();
}

} // namespace

std::vector<OutputPlace> placesIn(const QString& text)
{
    static const QRegularExpression place(
        uR"((?<![^\s"'`(\[<>=,])([^\s"'`()\[\]<>:,]+):(\d{1,8})(?::(\d{1,6}))?(?!\w))"_s);
    std::vector<OutputPlace> places;
    for (auto found = place.globalMatch(text); found.hasNext() && places.size() < mostPlaces;) {
        const QRegularExpressionMatch match = found.next();
        const int line = match.captured(2).toInt();
        if (line > 0)
            places.push_back(
                {match.capturedStart(), match.capturedLength(), match.captured(1), line, match.captured(3).toInt()});
    }
    return places;
}

std::filesystem::path placedFile(const std::filesystem::path& root, const QString& name)
{
    return root / QFile::encodeName(name).toStdString();
}

QSet<QString> placedFiles(const PlacedFilesRequest& request, const std::stop_token& stop)
{
    std::error_code failed;
    const std::filesystem::path root = std::filesystem::canonical(request.root, failed);
    QSet<QString> files;
    for (const QString& name : request.names) {
        if (failed || stop.stop_requested())
            break;
        std::error_code missing;
        const std::filesystem::path file = std::filesystem::canonical(placedFile(root, name), missing);
        if (!missing && isBelow(file, root) && std::filesystem::is_regular_file(file, missing))
            files.insert(name);
    }
    return files;
}

} // namespace plovik
