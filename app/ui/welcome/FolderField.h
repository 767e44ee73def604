// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

#include <filesystem>

class QLineEdit;

namespace plovik {

/// A field for the folder of a new repository, and a button to choose it. "~" stands for the user's own folder. Main
/// thread.
class FolderField : public QWidget {
    Q_OBJECT

public:
    explicit FolderField(QWidget* parent);

    /// Returns the typed folder without dots and a slash at its end; an empty path where it is no whole one.
    std::filesystem::path folder() const;
    bool isEmpty() const;
    /// Returns a sentence that says why nothing new can be put into the folder: it has files, or is none. Returns an empty
    /// one for a folder that is missing or empty, and while nothing is typed.
    QString problemUnlessEmpty() const;
    /// Has names suggested in this folder.
    void startIn(const std::filesystem::path& parent) { parent_ = parent; }
    void setFolder(const std::filesystem::path& folder);
    /// Puts `name` into the folder that was chosen last, unless the user has typed a path.
    void suggest(const QString& name);

    /// Returns the folder where new repositories probably go: the one around the latest repository, or the user's own.
    static std::filesystem::path usualParent();

Q_SIGNALS:
    void changed();

private:
    void choose();

    QLineEdit* field_;
    std::filesystem::path parent_ = usualParent();
    QString name_;
    bool isTyped_ = false; ///< the user has written something into the field
};

} // namespace plovik
