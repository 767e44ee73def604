// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/Theme.h"

#include "app/ui/widgets/LabelAccessible.h"
#include "app/ui/widgets/MenuAccessible.h"
#include "app/ui/widgets/Style.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QApplication>
#include <QFontDatabase>
#include <QPalette>

#include <algorithm>
#include <array>
#include <cmath>

namespace plovik {

namespace {

std::optional<Theme> inForce;
int generationInForce = 0;

Theme makeLight()
{
    Theme theme;
    theme.content = 0xFFFFFF;
    theme.sidebar = 0xF4F5F7;
    theme.bars = 0xFAFBFC;
    theme.separator = 0xE2E5E9;
    theme.text = 0x1F2328;
    theme.secondaryText = 0x5E6772;
    theme.selection = 0xDFEAFC;
    theme.accent = 0x2F6FD6;
    theme.onAccent = 0xFFFFFF;
    theme.destructive = 0xC93434;
    theme.badge = 0xE6E9ED;
    theme.badgeText = 0x565F69;
    theme.control = 0xFFFFFF;
    theme.controlBorder = 0x868E98;
    theme.quietBorder = 0xDDE1E6;
    theme.controlHover = 0xF4F6F8;
    theme.controlPressed = 0xE8EBEF;
    theme.disabledText = 0x9AA2AB;
    theme.field = 0xFFFFFF;
    theme.indicatorBorder = 0x868E98;
    theme.addedLine = 0xE7F6EC;
    theme.addedWords = 0xB4E6C3;
    theme.removedLine = 0xFDEEEE;
    theme.removedWords = 0xF6C6C6;
    theme.found = 0xFFECA3;
    theme.foundCurrent = 0xFFD470;
    theme.moved = 0x8240B0;
    theme.foundBorder = 0xB9770E;
    theme.checker = 0xEDEFF2;
    theme.syntaxKeyword = 0x7A2E8E;
    theme.syntaxType = 0x0F5470;
    theme.syntaxString = 0x1F5A2B;
    theme.syntaxNumber = 0x8A3B00;
    theme.syntaxComment = 0x505A65;
    theme.syntaxPreprocessor = 0x86285A;
    theme.syntaxFunction = 0x2450A8;
    theme.syntaxName = 0x6B4400;
    theme.hunkHeader = 0xF1F5FB;
    theme.hunkHeaderText = 0x536B8A;
    theme.gutter = 0xF7F8FA;
    theme.gutterText = 0x606973;
    theme.tagBadge = 0xFFF4CF;
    theme.tagBadgeText = 0x7A5A00;
    theme.blameNew = 0xFBE3BF;
    theme.blameOld = 0xF7F8FA;
    theme.blameText = 0x5A5F66;
    theme.blameLine = 0xE3DFD8;
    theme.statusAdded = 0x136A2C;
    theme.statusModified = 0x7E5200;
    theme.statusDeleted = 0xAE2A27;
    theme.statusRenamed = 0x2357B0;
    theme.statusConflicted = 0x8239B0;
    theme.statusUntracked = 0x59626C;
    theme.warning = 0xFFF8E1;
    theme.warningText = 0x6B4E00;
    theme.lanes = {0x2F6FD6, 0x9A52C7, 0x2B9A4A, 0xE07B1A, 0xD9447F, 0x2493A5, 0xCF3B3B, 0x5B59C9};
    return theme;
}

Theme makeDark()
{
    Theme theme;
    theme.content = 0x1D1F23;
    theme.sidebar = 0x17181B;
    theme.bars = 0x1A1C1F;
    theme.separator = 0x2E3137;
    theme.text = 0xDFE2E7;
    theme.secondaryText = 0x9AA2AD;
    theme.selection = 0x28364D;
    theme.accent = 0x5A9CF5;
    theme.onAccent = 0x10151D;
    theme.destructive = 0xF07F7F;
    theme.badge = 0x2A2D32;
    theme.badgeText = 0xA3ABB6;
    theme.control = 0x1D1F23;
    theme.controlBorder = 0x6A717C;
    theme.quietBorder = 0x34383F;
    theme.controlHover = 0x25282D;
    theme.controlPressed = 0x2D3137;
    theme.disabledText = 0x626973;
    theme.field = 0x15161A;
    theme.indicatorBorder = 0x767D88;
    theme.addedLine = 0x1B3326;
    theme.addedWords = 0x1E5437;
    theme.removedLine = 0x3C2326;
    theme.removedWords = 0x7C3439;
    theme.found = 0x443A16;
    theme.foundCurrent = 0x5C4400;
    theme.moved = 0xC792F0;
    theme.foundBorder = 0xE8B64A;
    theme.checker = 0x2A2D32;
    theme.syntaxKeyword = 0xDDAEF5;
    theme.syntaxType = 0x8FD3E3;
    theme.syntaxString = 0xAEDB9E;
    theme.syntaxNumber = 0xF2BF88;
    theme.syntaxComment = 0xB4BCC6;
    theme.syntaxPreprocessor = 0xF0AECF;
    theme.syntaxFunction = 0xA6C8FA;
    theme.syntaxName = 0xE3CE92;
    theme.hunkHeader = 0x20262F;
    theme.hunkHeaderText = 0x8FA6C4;
    theme.gutter = 0x191B1F;
    theme.gutterText = 0x949CA7;
    theme.tagBadge = 0x4A3D16;
    theme.tagBadgeText = 0xF0D58A;
    theme.blameNew = 0x54401D;
    theme.blameOld = 0x191B1F;
    theme.blameText = 0xB0B3B8;
    theme.blameLine = 0x3A3733;
    theme.statusAdded = 0x5CCB7C;
    theme.statusModified = 0xE3B04B;
    theme.statusDeleted = 0xF79292;
    theme.statusRenamed = 0x86B6F8;
    theme.statusConflicted = 0xCD9BEF;
    theme.statusUntracked = 0xA9B1BB;
    theme.warning = 0x352E18;
    theme.warningText = 0xF0D58A;
    theme.lanes = {0x5A9CF5, 0xC084EB, 0x4FC471, 0xF2A04D, 0xF27BAB, 0x58BFD0, 0xF07F7F, 0x8F8DF2};
    theme.isDark = true;
    return theme;
}

/// Every text has at least 7 to 1 and every border 4.5 to 1.
void heighten(Theme& theme)
{
    const QColor ink = theme.isDark ? Qt::white : Qt::black;
    theme.isHighContrast = true;
    theme.content = theme.sidebar = theme.bars = theme.field = theme.control = theme.isDark ? Qt::black : Qt::white;
    theme.text = ink;
    theme.secondaryText = theme.isDark ? 0xD5D9DF : 0x2B2F36;
    theme.separator = theme.quietBorder = theme.isDark ? 0x8A919B : 0x6B727B;
    theme.controlBorder = theme.indicatorBorder = theme.isDark ? 0xAEB5BF : 0x4A5058;
    theme.controlHover = theme.isDark ? 0x22262C : 0xE8EBEF;
    theme.controlPressed = theme.isDark ? 0x30353D : 0xD5DAE0;
    theme.disabledText = theme.isDark ? 0x9AA2AD : 0x5E6772;
    theme.selection = theme.isDark ? 0x123A6B : 0xBBD6FF;
    theme.accent = theme.isDark ? 0x8EC0FF : 0x0B4BA8;
    theme.onAccent = theme.isDark ? Qt::black : Qt::white;
    theme.gutter = theme.hunkHeader = theme.isDark ? 0x111317 : 0xF1F3F6;
    theme.badge = theme.isDark ? 0x22262C : 0xE6E9ED;
    for (QColor* text : {&theme.badgeText, &theme.gutterText, &theme.hunkHeaderText, &theme.tagBadgeText,
                         &theme.blameText, &theme.warningText, &theme.syntaxComment, &theme.statusUntracked})
        *text = Theme::mixed(*text, ink, 0.6F);
    for (QColor* text :
         {&theme.statusAdded, &theme.statusModified, &theme.statusDeleted, &theme.statusRenamed,
          &theme.statusConflicted, &theme.syntaxKeyword, &theme.syntaxType, &theme.syntaxString, &theme.syntaxNumber,
          &theme.syntaxPreprocessor, &theme.syntaxFunction, &theme.syntaxName, &theme.destructive})
        *text = Theme::mixed(*text, ink, 0.35F);
    for (QColor& lane : theme.lanes)
        lane = Theme::mixed(lane, ink, 0.25F);
}

/// Takes the desktop's accent, darker or lighter where it could not be read, and as much of it behind what is selected
/// as leaves that readable.
void takeAccent(Theme& theme, const QColor& accent)
{
    constexpr double readable = 4.5;
    const QColor ink = theme.isDark ? Qt::white : Qt::black;
    const auto canBeRead = [&theme](const QColor& color) {
        return std::ranges::all_of(std::array{theme.content, theme.bars, theme.onAccent},
                                   [&](const QColor& around) { return Theme::contrast(color, around) >= readable; });
    };
    theme.accent = accent;
    for (float share = 0; share < 1 && !canBeRead(theme.accent); share += 0.05F)
        theme.accent = Theme::mixed(accent, ink, share);
    const std::array letters{theme.secondaryText, theme.statusAdded,      theme.statusModified, theme.statusDeleted,
                             theme.statusRenamed, theme.statusConflicted, theme.statusUntracked};
    const auto isReadable = [&theme](const QColor& letter) {
        return Theme::contrast(letter, theme.selection) >= readable;
    };
    float share = 0.25F;
    do {
        theme.selection = Theme::mixed(theme.content, theme.accent, share);
        share -= 0.02F;
    } while (share > 0 && !std::ranges::all_of(letters, isReadable));
}

QPalette paletteOf(const Theme& theme)
{
    QPalette palette;
    palette.setColor(QPalette::Window, theme.bars);
    palette.setColor(QPalette::WindowText, theme.text);
    palette.setColor(QPalette::Base, theme.content);
    palette.setColor(QPalette::AlternateBase, theme.bars);
    palette.setColor(QPalette::Text, theme.text);
    palette.setColor(QPalette::PlaceholderText, theme.secondaryText);
    palette.setColor(QPalette::Button, theme.control);
    palette.setColor(QPalette::ButtonText, theme.text);
    palette.setColor(QPalette::BrightText, theme.statusDeleted);
    palette.setColor(QPalette::Highlight, theme.selection);
    palette.setColor(QPalette::HighlightedText, theme.text);
    palette.setColor(QPalette::Link, theme.accent);
    palette.setColor(QPalette::LinkVisited, theme.accent);
    palette.setColor(QPalette::ToolTipBase, theme.isDark ? theme.badge : theme.content);
    palette.setColor(QPalette::ToolTipText, theme.text);
    palette.setColor(QPalette::Light, theme.controlHover);
    palette.setColor(QPalette::Midlight, theme.controlHover);
    palette.setColor(QPalette::Mid, theme.controlBorder);
    palette.setColor(QPalette::Dark, theme.separator);
    palette.setColor(QPalette::Shadow, theme.isDark ? QColor(Qt::black) : theme.controlBorder);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText})
        palette.setColor(QPalette::Disabled, role, theme.disabledText);
    return palette;
}

QFont sized(QFont font, double pointsMore)
{
    // A desktop may give its font in pixels, so that it has no size in points.
    if (font.pointSizeF() > 0)
        font.setPointSizeF(std::max(1.0, font.pointSizeF() + pointsMore));
    else
        font.setPixelSize(std::max(1, font.pixelSize() + qRound(pointsMore * 4 / 3)));
    return font;
}

} // namespace

QColor Theme::chip(const QColor& letter) const
{
    // Letters on white are dark for contrast, and tints of such dark colours would all look grey.
    const QColor hue = isDark ? letter : QColor::fromHsv(letter.hsvHue(), letter.hsvSaturation(), 210);
    // The tint is opaque, so that the contrast of the letter is the same on every row.
    const float share = 0.2F;
    return mixed(content, hue, share);
}

const Theme& Theme::light()
{
    static const Theme theme = makeLight();
    return theme;
}

const Theme& Theme::dark()
{
    static const Theme theme = makeDark();
    return theme;
}

Theme Theme::of(const Choice& choice)
{
    Theme theme = choice.isDark ? dark() : light();
    if (choice.isHighContrast)
        heighten(theme);
    if (choice.accent && !choice.isHighContrast)
        takeAccent(theme, *choice.accent);
    return theme;
}

const Theme& Theme::current() { return inForce ? *inForce : light(); }

int Theme::generation() { return generationInForce; }

double Theme::contrast(const QColor& one, const QColor& other)
{
    const auto luminance = [](const QColor& color) {
        const auto linear = [](double part) {
            return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
    };
    const auto [dark, bright] = std::minmax({luminance(one), luminance(other)});
    return (bright + 0.05) / (dark + 0.05);
}

QColor Theme::mixed(const QColor& one, const QColor& other, float share)
{
    const auto mix = [share](float from, float to) { return from + (to - from) * share; };
    return QColor::fromRgbF(mix(one.redF(), other.redF()), mix(one.greenF(), other.greenF()),
                            mix(one.blueF(), other.blueF()));
}

void Theme::apply(const Theme& theme, QApplication& application)
{
    const bool isFirst = !inForce;
    inForce = theme;
    ++generationInForce;
    if (isFirst) {
        application.setStyle(new Style);
        installLabelAccessibility();
        installMenuAccessibility();
    }
    application.setPalette(paletteOf(*inForce));
    tellThemeFollowers();
}

QFont Theme::font(double pointsMore, QFont::Weight weight)
{
    QFont font = sized(QApplication::font(), pointsMore);
    font.setWeight(weight);
    return font;
}

int Theme::scaled(int pixels)
{
    constexpr double ordinaryPoints = 11;
    return qRound(pixels * std::max(1.0, QApplication::font().pointSizeF() / ordinaryPoints));
}

QFont Theme::fixedFont(double pointsMore)
{
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    const QFont ordinary = QApplication::font();
    if (ordinary.pointSizeF() > 0)
        fixed.setPointSizeF(ordinary.pointSizeF());
    return sized(fixed, pointsMore);
}

} // namespace plovik
