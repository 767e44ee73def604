// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace gitkit {

/// What a file with patches holds.
struct PatchContents {
    std::vector<std::string> paths; ///< that it changes, as bytes; old names of renames, too
    int mails = 0;                  ///< commits that it holds as mails; 0 for changes alone

    bool operator==(const PatchContents&) const = default;
};

/// How a patch becomes changes.
enum class PatchWay {
    exact,    ///< of the files of the working tree; all of it or nothing
    threeWay, ///< where it does not fit, by merging what it was made from; also staged
};

/// A pack of the files of a commit.
enum class ArchiveFormat { zip, tarGz };

/// What is missing from a pack.
struct LeftOut {
    bool submodules = false; ///< they are empty folders in it
    bool marked = false;     ///< attributes leave files out

    bool operator==(const LeftOut&) const = default;
};

} // namespace gitkit
