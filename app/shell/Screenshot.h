// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPropertyNotifier>

#include <filesystem>

class QWidget;

namespace plovik {

class RepositoryWindow;

/// Writes a picture of a window once all of it is there, and then quits the application: with
/// status 0, or with 1 and a sentence on standard error when the file cannot be written.
class Screenshot : public QObject {
    Q_OBJECT

public:
    /// `window` outlives this object.
    Screenshot(QWidget& window, std::filesystem::path file, QObject* parent);
    /// Waits for what the repository's window reads.
    Screenshot(RepositoryWindow& window, std::filesystem::path file, QObject* parent);

private:
    void take();

    QWidget& window_;
    std::filesystem::path file_;
    QPropertyNotifier loaded_;
};

} // namespace plovik
