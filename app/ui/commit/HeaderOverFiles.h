// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace plovik {

class CommitFilesList;
class CommitHeader;

/// A commit's header with the list of its files below. The header is as high as its text, but leaves the list the
/// height that it needs, or its fair part when there is not enough height for both. Main thread.
class HeaderOverFiles : public QWidget {
    Q_OBJECT

public:
    /// Takes ownership of all three; `summary` is placed between the two others.
    HeaderOverFiles(CommitHeader* header, QLayout* summary, CommitFilesList* files, QWidget* parent = nullptr);

    /// Divides the height again. Must be called when another commit is shown.
    void share();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    CommitHeader* header_;
    QLayout* summary_;
    CommitFilesList* files_;
};

} // namespace plovik
