// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <array>
#include <string_view>

namespace plovik {

/// The colour scheme that the user wants.
enum class AppAppearance { system, light, dark };

inline constexpr std::array allAppearances{AppAppearance::system, AppAppearance::light, AppAppearance::dark};

/// The stored form: "system", "light", "dark".
QString rawValue(AppAppearance appearance);
QString displayName(AppAppearance appearance);
/// Returns the system's for an unknown name.
AppAppearance appearanceNamed(const QString& rawName);
/// Returns the one in the settings.
AppAppearance storedAppearance();

} // namespace plovik
