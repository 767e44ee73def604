// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <filesystem>

/// The commit message that is being written for each repository, kept until it is committed: across windows, launches
/// and crashes. Main thread.
namespace plovik::commitDrafts {

struct Draft {
    QString subject;
    QString body;

    bool isEmpty() const { return subject.isEmpty() && body.isEmpty(); }
    bool operator==(const Draft&) const = default;
};

/// What was kept last for the repository at `root`; empty when there is nothing, or nothing readable. Reads one small
/// file unless the draft was kept in this run.
Draft read(const std::filesystem::path& root);

/// Keeps a draft; an empty one removes what was kept. Returns at once: a thread of its own writes the file, draft after
/// draft. Where nothing can be written the draft is kept for this run.
void keep(const std::filesystem::path& root, const Draft& draft);

/// Waits until what was kept is in its file.
void finishWriting();

/// Where the draft of a repository is kept.
QString fileFor(const std::filesystem::path& root);

} // namespace plovik::commitDrafts
