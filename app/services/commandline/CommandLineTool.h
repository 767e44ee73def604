// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace plovik {

/// The command line tool that comes with the application, and the link by which a terminal finds it.
///
/// A value without state: every call looks at the disk afresh. Any thread.
class CommandLineTool {
public:
    /// Where everything is looked for. All folders are absolute.
    struct Places {
        std::filesystem::path programs;                 ///< the folder of the running application's program
        std::vector<std::filesystem::path> linkFolders; ///< in the order of preference; never empty
        std::vector<std::filesystem::path> searchPath;  ///< where terminals look for programs

        bool operator==(const Places&) const = default;
    };

    /// What stands under the tool's name in a link folder.
    struct Installation {
        std::filesystem::path path;
        std::optional<std::filesystem::path> target; ///< as the link stores it; none for what is no link
        bool isCurrent = false;                      ///< leads to this application's own tool

        bool operator==(const Installation&) const = default;
    };

    /// what() is a sentence for the user.
    struct InstallError : std::runtime_error {
        using std::runtime_error::runtime_error;
    };

    /// Runs a command with the administrator's rights, as runAsAdministrator() does.
    using Administrator = std::function<bool(const std::vector<std::string>& command)>;

    /// Of this process: beside its program; the user's own folder for programs where terminals look into it, then the
    /// machine's.
    CommandLineTool();
    CommandLineTool(Places places, Administrator administrator);

    /// The places for a program in `programs`, a home folder and a PATH, either of which may be empty.
    static Places placesFor(std::filesystem::path programs, const std::filesystem::path& home,
                            const std::string& searchPath);

    /// The tool beside the application's program; none in an application that has none.
    std::optional<std::filesystem::path> bundled() const;
    /// The tool, when terminals find it in the application's own folder: it was installed there, and no link is needed.
    std::optional<std::filesystem::path> packaged() const;
    /// The first link folder's entry that exists, wherever it leads.
    std::optional<Installation> installation() const;

    /// What is wrong with an installation that is not current, ready to be shown; followed by its target, if any.
    static std::string staleDescription(const Installation& installation);

    /// Makes the link, or makes it lead here. False when the user dismissed the question for the administrator's
    /// password. Throws InstallError. Blocks, as long as the user thinks: never call it on the main thread.
    bool install() const;

private:
    std::filesystem::path linkFolder() const;
    bool linkAsAdministrator(const std::filesystem::path& tool, const std::filesystem::path& link) const;

    Places places_;
    Administrator administrator_;
};

} // namespace plovik
