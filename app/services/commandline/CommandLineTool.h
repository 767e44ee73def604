// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>
#include <QString>

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
    Q_DECLARE_TR_FUNCTIONS(plovik::CommandLineTool)

public:
    /// The folders in which everything is looked for. All are absolute.
    struct Places {
        std::filesystem::path programs;                 ///< the folder of the running application's program
        std::vector<std::filesystem::path> linkFolders; ///< in the order of preference; never empty
        std::vector<std::filesystem::path> searchPath;  ///< where terminals look for programs

        bool operator==(const Places&) const = default;
    };

    /// An entry with the tool's name in a link folder.
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

    /// The tool of this process lies beside its program. Links go into the user's own folder for programs, if terminals
    /// look into it, else into the machine's.
    CommandLineTool();
    CommandLineTool(Places places, Administrator administrator);

    /// Returns the places for a program in `programs`. The home folder and the PATH may be empty.
    static Places placesFor(std::filesystem::path programs, const std::filesystem::path& home,
                            const std::string& searchPath);

    /// Returns the tool beside the application's program, if it is there.
    std::optional<std::filesystem::path> bundled() const;
    /// Returns the tool if terminals find it in the application's own folder, so that no link is needed.
    std::optional<std::filesystem::path> packaged() const;
    /// Returns the first entry that exists in a link folder, whatever it leads to.
    std::optional<Installation> installation() const;

    /// Returns what is wrong with an installation that is not current. It is shown before the target, if there is one.
    static QString staleDescription(const Installation& installation);

    /// Makes the link, or makes it lead here. Returns false when the user dismissed the question for the
    /// administrator's password. Throws InstallError. Blocks while the user thinks; never call it on the main thread.
    bool install() const;

private:
    std::filesystem::path linkFolder() const;
    bool linkAsAdministrator(const std::filesystem::path& tool, const std::filesystem::path& link) const;

    Places places_;
    Administrator administrator_;
};

} // namespace plovik
