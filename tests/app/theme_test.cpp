// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/ThemeFollowing.h"

#include <QApplication>
#include <QLabel>

#include <gtest/gtest.h>

#include <vector>

namespace plovik {
namespace {

struct TextUse {
    const char* name;
    QColor text;
    std::vector<QColor> backgrounds;
};

/// Every colour that is used for text, with everything that it is drawn on.
std::vector<TextUse> textUses(const Theme& theme)
{
    const std::vector<QColor> surfaces{theme.content, theme.sidebar, theme.bars, theme.selection};
    std::vector<TextUse> uses{
        {"text", theme.text, surfaces},
        {"text on lines",
         theme.text,
         {theme.addedLine, theme.addedWords, theme.removedLine, theme.removedWords, theme.controlPressed, theme.field,
          theme.found, theme.foundCurrent}},
        {"secondary text", theme.secondaryText, surfaces},
        {"placeholder", theme.secondaryText, {theme.field}},
        {"on accent", theme.onAccent, {theme.accent, theme.destructive}},
        {"accent", theme.accent, {theme.content, theme.bars}},
        {"badge", theme.badgeText, {theme.badge}},
        {"hunk header", theme.hunkHeaderText, {theme.hunkHeader}},
        {"gutter", theme.gutterText, {theme.gutter, theme.addedLine, theme.removedLine}},
        {"tag", theme.tagBadgeText, {theme.tagBadge}},
        {"blame", theme.blameText, {theme.blameNew, theme.blameOld}},
        {"author of a line", theme.text, {theme.blameNew, theme.blameOld}},
        {"warning", theme.warningText, {theme.warning}},
    };
    for (const QColor& status : {theme.statusAdded, theme.statusModified, theme.statusDeleted, theme.statusRenamed,
                                 theme.statusConflicted, theme.statusUntracked})
        uses.push_back({"status letter", status, {theme.content, theme.selection, theme.chip(status)}});
    for (const QColor& code : {theme.syntaxKeyword, theme.syntaxType, theme.syntaxString, theme.syntaxNumber,
                               theme.syntaxComment, theme.syntaxPreprocessor, theme.syntaxFunction, theme.syntaxName})
        uses.push_back({"code",
                        code,
                        {theme.content, theme.addedLine, theme.addedWords, theme.removedLine, theme.removedWords,
                         theme.found, theme.foundCurrent}});
    return uses;
}

/// The themes as the desktop can choose them.
std::vector<Theme> themes()
{
    std::vector<Theme> all;
    for (const bool isDark : {false, true}) {
        all.push_back(Theme::of({.isDark = isDark}));
        all.push_back(Theme::of({.isDark = isDark, .isHighContrast = true}));
        for (const char* accent : {"#ffd900", "#202020", "#f6f6f6", "#e62d42"})
            all.push_back(Theme::of({.isDark = isDark, .accent = QColor(accent)}));
    }
    return all;
}

TEST(Theme, TextStandsOutFromEverythingItIsDrawnOn)
{
    for (const Theme& theme : themes()) {
        const double least = theme.isHighContrast ? 7 : 4.5;
        for (const TextUse& use : textUses(theme)) {
            for (const QColor& background : use.backgrounds) {
                // Code on marked words keeps its hues, and what they mean.
                const bool isCode =
                    std::string_view(use.name) == "code" || std::string_view(use.name) == "status letter";
                EXPECT_GE(Theme::contrast(use.text, background), isCode ? 4.5 : least)
                    << (theme.isDark ? "dark: " : "light: ") << theme.accent.name().toStdString() << ' ' << use.name
                    << ' ' << use.text.name().toStdString() << " on " << background.name().toStdString();
            }
        }
    }
}

TEST(Theme, BordersAndFocusAreSeen)
{
    for (const Theme& theme : themes()) {
        for (const QColor& around : {theme.content, theme.bars, theme.sidebar, theme.field}) {
            EXPECT_GE(Theme::contrast(theme.controlBorder, around), 3) << theme.isDark << around.name().toStdString();
            EXPECT_GE(Theme::contrast(theme.indicatorBorder, around), 3) << theme.isDark << around.name().toStdString();
            EXPECT_GE(Theme::contrast(theme.accent, around), 3) << theme.isDark << around.name().toStdString();
        }
    }
}

TEST(Theme, MarksInsteadOfTextStandOutFromTheirGrounds)
{
    for (const Theme& theme : themes()) {
        for (const QColor& ground : {theme.addedLine, theme.addedWords, theme.removedLine, theme.removedWords})
            EXPECT_GE(Theme::contrast(theme.moved, ground), 3) << ground.name().toStdString();
        for (const QColor& mark : {theme.statusAdded, theme.statusDeleted, theme.foundBorder})
            EXPECT_GE(Theme::contrast(mark, theme.content), 3) << mark.name().toStdString();
    }
}

TEST(Theme, LaneColoursAreEightAndAreSeenOnTheList)
{
    for (const Theme* theme : {&Theme::light(), &Theme::dark()}) {
        for (int lane = 0; lane < 8; ++lane) {
            EXPECT_GE(Theme::contrast(theme->lane(lane), theme->content), 2.5) << lane;
            EXPECT_NE(theme->lane(lane), theme->lane(lane + 1)) << lane;
        }
        EXPECT_EQ(theme->lane(11), theme->lane(3));
    }
}

/// Puts the application's font and theme back.
struct ApplicationLook {
    const QFont font = QApplication::font();
    ~ApplicationLook()
    {
        QApplication::setFont(font);
        Theme::apply(Theme::light(), *qApp);
    }
};

TEST(Theme, FontsAndColoursThatWidgetsHaveOfTheirOwnFollowTheDesktop)
{
    const ApplicationLook look;
    QWidget window;
    auto* const label = new QLabel(&window);
    label->setForegroundRole(QPalette::PlaceholderText);
    auto* const bold = new QLabel(&window);
    followFont(*bold, 5);
    followFont(*bold, 2, QFont::Bold);
    followColor(*bold, QPalette::WindowText, &Theme::warningText);
    window.show();
    QFont larger = look.font;
    larger.setPointSizeF(20);
    QApplication::setFont(larger);
    EXPECT_EQ(bold->font().pointSizeF(), 22);
    EXPECT_TRUE(bold->font().bold());
    for (const Theme* theme : {&Theme::dark(), &Theme::light()}) {
        Theme::apply(*theme, *qApp);
        QApplication::processEvents();
        EXPECT_EQ(bold->palette().color(QPalette::WindowText), theme->warningText);
        EXPECT_EQ(label->palette().color(label->foregroundRole()), theme->secondaryText);
    }
}

} // namespace
} // namespace plovik
