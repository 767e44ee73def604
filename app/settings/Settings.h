// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace plovik {

/// One stored preference: its key, and what holds when nothing sensible is stored.
template <typename Value>
struct Setting {
    const char* key;
    Value fallback;
};

namespace settings {

// Layout, kept across launches and shared by all windows.
inline constexpr Setting<double> sidebarWidth{"sidebarWidth", 0};
inline constexpr Setting<double> commitFilesWidth{"commitFilesWidth", 0};     ///< 0: by the room there is
inline constexpr Setting<double> commitHeaderHeight{"commitHeaderHeight", 0}; ///< 0: as its text needs
inline constexpr Setting<double> stashHeaderHeight{"stashHeaderHeight", 0};
inline constexpr Setting<double> historyDetailHeight{"historyDetailHeight", 330};
inline constexpr Setting<bool> historySearchFilters{"historySearchFilters", true}; ///< otherwise all rows stay
inline constexpr Setting<double> historyGraphWidth{"historyGraphWidth", 0}; ///< 0: as wide as needed, as the next three
inline constexpr Setting<double> historyAuthorWidth{"historyAuthorWidth", 0};
inline constexpr Setting<double> historyDateWidth{"historyDateWidth", 0};
inline constexpr Setting<double> historyHashWidth{"historyHashWidth", 0};
inline constexpr Setting<bool> historyShowsGraph{"historyShowsGraph", true};
inline constexpr Setting<bool> historyShowsAuthor{"historyShowsAuthor", true};
inline constexpr Setting<bool> historyShowsDate{"historyShowsDate", true};
inline constexpr Setting<bool> historyShowsHash{"historyShowsHash", true};
inline constexpr Setting<bool> historyAbsoluteDates{"historyAbsoluteDates", false};
inline constexpr Setting<double> splitFilesWidth{"splitFilesWidth", 260};
inline constexpr Setting<double> stashesDetailHeight{"stashesDetailHeight", 340};
inline constexpr Setting<double> timelineDetailHeight{"timelineDetailHeight", 380};
inline constexpr Setting<double> workingCopyListWidth{"workingCopyListWidth", 380};
inline constexpr Setting<double> mergeResultHeight{"mergeResultHeight", 0}; ///< 0: a share of the room
inline constexpr Setting<double> blameGutterWidth{"blameGutterWidth", 0};   ///< 0: as wide as needed
inline constexpr Setting<double> inspectorWidth{"inspectorWidth", 420};
inline constexpr Setting<double> commandLogHeight{"commandLogHeight", 250};
inline constexpr Setting<double> commandLogListWidth{"commandLogListWidth", 520};
inline constexpr Setting<bool> commandLogHidesReads{"commandLogHidesReads", false};
inline constexpr Setting<bool> sidebarBranchesExpanded{"sidebarBranchesExpanded", true};
inline constexpr Setting<bool> sidebarRemotesExpanded{"sidebarRemotesExpanded", true};
inline constexpr Setting<bool> sidebarTagsExpanded{"sidebarTagsExpanded", false};
inline constexpr Setting<bool> sidebarWorktreesExpanded{"sidebarWorktreesExpanded", true};
inline constexpr Setting<bool> sidebarSubmodulesExpanded{"sidebarSubmodulesExpanded", true};
inline constexpr Setting<const char*> lastRepositoryWindowFrame{"lastRepositoryWindowFrame", ""};
inline constexpr Setting<const char*> settingsWindowPlace{"settingsWindowPlace", ""}; ///< "x y"

// Preferences.
inline constexpr Setting<const char*> appearance{"appearance", "system"};
inline constexpr Setting<const char*> codeFontName{"codeFontName", ""};
inline constexpr Setting<double> codeFontSize{"codeFontSize", 0}; ///< 0: as suits the desktop's ordinary font
inline constexpr Setting<double> tabWidth{"tabWidth", 8}; ///< in columns, for files of which nothing else is said
inline constexpr Setting<const char*> externalEditorPath{"externalEditorPath", ""}; ///< empty: the desktop's default
inline constexpr Setting<bool> keepsIndexes{"keepIndexOfLargeRepositories", true};
inline constexpr Setting<bool> checksSpelling{"checkSpelling", true};
inline constexpr Setting<bool> filesAsTree{"filesAsTree", false};
inline constexpr Setting<bool> commitShowsAllFiles{"commitShowsAllFiles", false};
inline constexpr Setting<bool> diffSideBySide{"diffSideBySide", false};
inline constexpr Setting<bool> diffWraps{"diffWraps", false};
inline constexpr Setting<bool> diffIgnoresWhiteSpace{"diffIgnoresWhiteSpace", false};
inline constexpr Setting<const char*> ownCommands{"ownCommands", ""};           ///< in JSON, see OwnCommands.h
inline constexpr Setting<const char*> settledQuestions{"settledQuestions", ""}; ///< their kinds, with spaces between
inline constexpr Setting<const char*> webHosts{"webHosts", ""};             ///< a line each: host, kind of its server
inline constexpr Setting<const char*> messageLinks{"messageLinks", ""};     ///< a line each: pattern, address
inline constexpr Setting<const char*> pictureMode{"pictureMode", "beside"}; ///< or "swipe", "onion"

// Commit messages written with a language model. The keys to the services are never stored here.
inline constexpr Setting<bool> aiEnabled{"aiEnabled", false};
inline constexpr Setting<const char*> aiProvider{"aiProvider", "anthropic"};
inline constexpr Setting<const char*> aiModelAnthropic{"aiModel.anthropic", ""}; ///< empty: the provider's default
inline constexpr Setting<const char*> aiModelOpenAI{"aiModel.openAI", ""};       ///< likewise
inline constexpr Setting<const char*> aiCommitPrompt{
    "aiCommitPrompt",
    "Write a git commit message for the staged changes you are given.\n\n"
    "The first line is a subject of at most 72 characters in the imperative mood, without a trailing period. "
    "If the change needs explaining, follow it with a blank line and a short body that says what changed and why.\n\n"
    "Reply with the commit message only, with no code fences and no commentary."};

} // namespace settings

/// The user's preferences and layout sizes, in the user's configuration folder. Main thread only. A value of the wrong
/// type reads as the setting's fallback; a folder that cannot be written to keeps changes for this run.
class Settings : public QObject {
    Q_OBJECT

public:
    static Settings& shared();

    double value(const Setting<double>& setting) const;
    bool value(const Setting<bool>& setting) const;
    QString value(const Setting<const char*>& setting) const;
    QVariant value(const QString& key) const;

    /// Stores and, when the value differs, announces it.
    void set(const Setting<double>& setting, double value);
    void set(const Setting<bool>& setting, bool value);
    void set(const Setting<const char*>& setting, const QString& value);
    void set(const QString& key, const QVariant& value);

    /// Writes now what would be written soon anyway; false when it could not be. A later call tries again.
    bool save();
    /// The file, for showing.
    QString path() const;

Q_SIGNALS:
    void changed(const QString& key);

private:
    Settings() = default;
};

} // namespace plovik
