// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

#include <filesystem>
#include <stop_token>
#include <vector>

namespace plovik {

/// Something in the output of a command that looks like a place in a file: "src/a.cpp:12:5".
struct OutputPlace {
    qsizetype begin = 0; ///< in the text
    qsizetype length = 0;
    QString file; ///< as it stands there
    int line = 1;
    int column = 0; ///< 0 where none is named

    bool operator==(const OutputPlace&) const = default;
};

/// Returns the places in a text, in their order; of very many the first. Pure; any thread.
std::vector<OutputPlace> placesIn(const QString& text);

/// Asks which names are those of files below a folder.
struct PlacedFilesRequest {
    std::filesystem::path root;
    QStringList names;

    bool operator==(const PlacedFilesRequest&) const = default;
};

/// Returns those names that are regular files below the root, also through no link that leaves it. Blocks; for Latest.
QSet<QString> placedFiles(const PlacedFilesRequest& request, const std::stop_token& stop);

/// Returns the file that a name means, relative to a root or absolute.
std::filesystem::path placedFile(const std::filesystem::path& root, const QString& name);

} // namespace plovik
