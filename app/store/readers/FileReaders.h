// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/BlameLine.h"
#include "GitKit/records/ConfiguredProgram.h"
#include "GitKit/records/DiffSection.h"
#include "GitKit/records/DiffSides.h"
#include "GitKit/records/FileChange.h"
#include "GitKit/records/FileRevision.h"
#include "GitKit/records/LineRange.h"
#include "GitKit/records/SideSizes.h"
#include "GitKit/records/Submodule.h"
#include "app/store/readers/Streamed.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace gitkit {
class GitRepository;
} // namespace gitkit

namespace plovik {

// What views read of files, for Latest and Streamed. All functions may be called on any thread, block, and throw gitkit::GitError.

struct WorkingDiffRequest {
    gitkit::FileChange file;
    gitkit::DiffReading reading = {};
    bool operator==(const WorkingDiffRequest&) const = default;
};
std::vector<gitkit::DiffSection> readWorkingDiff(const gitkit::GitRepository& repo, const WorkingDiffRequest& request);

struct FileHistoryRequest {
    std::string path;                            ///< in `revision`, as bytes
    std::string revision;                        ///< full hash
    std::optional<gitkit::LineRange> lines = {}; ///< in `revision`; all of the file without
    bool operator==(const FileHistoryRequest&) const = default;
};
/// Starts git. For Streamed.
StreamSource<gitkit::FileRevision> openFileHistory(const gitkit::GitRepository& repo,
                                                   const FileHistoryRequest& request);

/// Asks for the two files of a diff; a file is read when it has up to `limit` bytes. Of a submodule, asks for the commits
/// from the one to the other.
struct DiffFilesRequest {
    gitkit::DiffSource source;
    std::size_t limit = 0;
    std::string submodule = {}; ///< its path; empty for a file
    bool operator==(const DiffFilesRequest&) const = default;
};
struct DiffFiles {
    gitkit::SideSizes sizes = {};
    gitkit::DiffSides sides = {};
    std::optional<gitkit::SubmoduleLog> submodule = {};
};
DiffFiles readDiffFiles(const gitkit::GitRepository& repo, const DiffFilesRequest& request);

/// Identifies what a blame of the working tree was made from. The blame is the same while the stamp is.
struct BlameStamp {
    std::string head; ///< hash of the commit that is checked out
    std::filesystem::file_time_type changed;
    std::uintmax_t size = 0;
    std::vector<gitkit::ConfiguredProgram> keptOff = {}; ///< without these it was read
    bool operator==(const BlameStamp&) const = default;
};
struct BlameSource {
    std::string path;                                    ///< as bytes
    std::optional<std::string> revision;                 ///< nullopt for the working tree
    std::string head;                                    ///< hash of the commit that is checked out
    std::optional<BlameStamp> known = {};                ///< the stamp of a known blame of the same file
    std::vector<gitkit::ConfiguredProgram> keptOff = {}; ///< programs that are kept off, such as the file's filter
    bool operator==(const BlameSource&) const = default;
};
/// The blame of a file, or why there is none.
struct BlameLines {
    enum class State { unchanged, lines, empty, binary, utf16, utf32, missing, untracked, folder, submodule };

    State state = State::lines;
    std::vector<gitkit::BlameLine> lines = {};
    std::optional<BlameStamp> stamp = {}; ///< only for a file of the working tree
    std::optional<int> tabWidth = {};     ///< in columns, if the working tree says so of the file
};
BlameLines readBlame(const gitkit::GitRepository& repo, const BlameSource& source);

} // namespace plovik
