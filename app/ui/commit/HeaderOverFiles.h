// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/CommitKind.h"
#include "app/ui/widgets/SplitPane.h"

#include <QLayout>

namespace plovik {

class CommitFilesList;
class CommitHeader;

/// A commit's header with the list of its files below a divider. Until the user moves the divider, the header is as high
/// as its text, but leaves the list the height that it needs, or its fair part when there is not enough height for both.
/// Main thread.
class HeaderOverFiles : public SplitPane {
    Q_OBJECT

public:
    /// Takes ownership of all three; `summary` is placed above the files.
    HeaderOverFiles(gitkit::CommitKind kind, CommitHeader* header, QLayout* summary, CommitFilesList* files,
                    QWidget* parent = nullptr);

private:
    double share(double available) const;

    CommitHeader* header_;
    QLayout* summary_;
    CommitFilesList* files_;
};

} // namespace plovik
