// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <filesystem>
#include <functional>

/// The commit message that is being written for each repository. It is kept until it is committed: across windows,
/// launches and crashes. Main thread.
namespace plovik::commitDrafts {

struct Draft {
    QString subject;
    QString body;
    bool amends = false;
    QString head = {}; ///< hash of HEAD when it was written

    bool isEmpty() const { return subject.isEmpty() && body.isEmpty(); }
    bool operator==(const Draft&) const = default;
};

/// Returns what was kept last for the repository at `root`; empty when there is nothing, or nothing readable. Reads one
/// small file unless the draft was kept in this run.
Draft read(const std::filesystem::path& root);

/// Keeps a draft; an empty one removes what was kept. Returns at once: another thread writes the files, one draft after
/// the other. A draft whose file cannot be written is kept for this run, and what
/// was in the file stays there; the first time, `failed` is called in the main thread with the reason.
void keep(const std::filesystem::path& root, const Draft& draft, std::function<void(const QString&)> failed = {});

/// Waits until all drafts are in their files.
void finishWriting();

/// Returns the path of the file for a repository's draft.
QString fileFor(const std::filesystem::path& root);

} // namespace plovik::commitDrafts
