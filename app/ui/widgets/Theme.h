// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QFont>

#include <array>
#include <optional>

class QApplication;

namespace plovik {

/// The table of all colours, with a light and a dark value for each. Text has a contrast of at least 4.5 to 1. Main
/// thread.
struct Theme {
    QColor content, sidebar, bars; ///< backgrounds
    QColor separator;
    QColor text, secondaryText;
    QColor selection; ///< behind unchanged text
    QColor accent, onAccent;
    QColor destructive;      ///< behind the title, in onAccent, of a button that loses something
    QColor badge, badgeText; ///< counts and muted badges
    QColor control, controlBorder, controlHover, controlPressed, disabledText;
    QColor quietBorder;            ///< around what is no control: muted badges, guides
    QColor field, indicatorBorder; ///< inside of text fields; border of an empty check box
    QColor addedLine, addedWords, removedLine, removedWords;
    QColor moved;                            ///< beside moved lines, on the gutters of added and removed ones
    QColor found, foundCurrent, foundBorder; ///< behind what a search has found, and around the one it stands at
    QColor checker;                          ///< every other square behind a picture
    QColor syntaxKeyword, syntaxType, syntaxString, syntaxNumber; ///< code, on every line and mark of a diff
    QColor syntaxComment, syntaxPreprocessor, syntaxFunction, syntaxName;
    QColor hunkHeader, hunkHeaderText;
    QColor gutter, gutterText;
    QColor tagBadge, tagBadgeText;
    QColor blameNew, blameOld, blameText, blameLine; ///< behind the newest and the oldest lines, on both, between runs
    QColor statusAdded, statusModified, statusDeleted, statusRenamed, statusConflicted, statusUntracked; ///< letters
    QColor warning, warningText; ///< the bar that says what could not be read
    std::array<QColor, 8> lanes; ///< blue, purple, green, orange, pink, teal, red, indigo
    bool isDark = false;
    bool isHighContrast = false;

    const QColor& lane(int column) const { return lanes[static_cast<std::size_t>(column) % lanes.size()]; }

    /// Returns the tint behind a status letter of this colour.
    QColor chip(const QColor& letter) const;

    static const Theme& light();
    static const Theme& dark();
    /// What the user or the desktop chooses.
    struct Choice {
        bool isDark = false;
        bool isHighContrast = false;
        std::optional<QColor> accent = {}; ///< made darker or lighter until text in it can be read
    };
    static Theme of(const Choice& choice);
    /// Returns the theme in force. Widgets get QEvent::PaletteChange when it changes; most need only roles of the
    /// palette or the functions of ThemeFollowing.h.
    static const Theme& current();
    /// Grows whenever another theme is put in force.
    static int generation();
    /// Puts a theme in force, in the palette and the style of the whole application.
    static void apply(const Theme& theme, QApplication& application);

    /// How far two colours stand apart, from 1 to 21: text needs 4.5, borders and focus need 3.
    static double contrast(const QColor& one, const QColor& other);
    /// Returns the colour that has `share` of `other` and the rest of `one`.
    static QColor mixed(const QColor& one, const QColor& other, float share);

    /// Returns the application's font at a size relative to the ordinary one, in points.
    static QFont font(double pointsMore = 0, QFont::Weight weight = QFont::Normal);
    /// Returns a length in pixels as it is beside the application's font: larger only beside a large one.
    static int scaled(int pixels);
    /// Returns the desktop's fixed font at a size relative to the ordinary one, in points.
    static QFont fixedFont(double pointsMore = 0);
};

} // namespace plovik
