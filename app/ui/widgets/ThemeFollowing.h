// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/widgets/Theme.h"

#include <QPalette>

#include <functional>

class QWidget;

/// Fonts and colours that stay right when the application's font or theme changes, for what Qt does not hand down by
/// itself. A colour that the palette has needs none of this: a label in the secondary colour takes
/// setForegroundRole(QPalette::PlaceholderText), a separator setBackgroundRole(QPalette::Dark). Main thread.
namespace plovik {

/// Gives `widget` the application's font at a size relative to the ordinary one, in points. A later call for the same
/// widget replaces an earlier one.
void followFont(QWidget& widget, double pointsMore, QFont::Weight weight = QFont::Normal);
/// Gives `widget` the font that `make` returns, now and after each change.
void followFont(QWidget& widget, std::function<QFont()> make);

/// Puts a colour of the theme in the palette of `widget`, in one role. A later call for the same widget replaces an
/// earlier one.
void followColor(QWidget& widget, QPalette::ColorRole role, QColor Theme::* color);

/// Tells what follows the theme that another one is in force; for Theme::apply() alone.
void tellThemeFollowers();

} // namespace plovik
