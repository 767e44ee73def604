// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <filesystem>
#include <vector>

class QMimeData;

namespace plovik {

/// Returns the address of a repository that `text` is, without the blanks around it: a URL that git can fetch from, or
/// host:path of ssh. Returns an empty string for any other text.
QString cloneAddress(const QString& text);

/// What a drop on a window asks for.
struct DroppedRepositories {
    std::vector<std::filesystem::path> folders = {}; ///< to be opened
    QString address = {};                            ///< to be cloned; empty for none

    bool isEmpty() const { return folders.empty() && address.isEmpty(); }
};

/// Returns the folders of this machine and the first address of a repository in what was dropped.
DroppedRepositories droppedRepositories(const QMimeData& dropped);

} // namespace plovik
