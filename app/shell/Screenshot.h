// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPropertyNotifier>

#include <filesystem>

class QWidget;

namespace plovik {

class RepositoryWindow;

/// Writes a picture of a window once everything in it is loaded, and then quits the application: with status 0, or with
/// status 1 and a sentence on standard error when the file cannot be written.
class Screenshot : public QObject {
    Q_OBJECT

public:
    /// `window` outlives this object.
    Screenshot(QWidget& window, std::filesystem::path file, QObject* parent);
    /// Waits until the repository's window has read everything.
    Screenshot(RepositoryWindow& window, std::filesystem::path file, QObject* parent);

private:
    void take();

    QWidget& window_;
    std::filesystem::path file_;
    QPropertyNotifier loaded_;
};

} // namespace plovik
