// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <array>
#include <string_view>

namespace plovik {

/// Which colour scheme the user wants.
enum class AppAppearance { system, light, dark };

inline constexpr std::array allAppearances{AppAppearance::system, AppAppearance::light, AppAppearance::dark};

/// The stored form: "system", "light", "dark".
QString rawValue(AppAppearance appearance);
QString displayName(AppAppearance appearance);
/// Anything unknown means the system's.
AppAppearance appearanceNamed(const QString& rawName);
/// What the settings hold.
AppAppearance storedAppearance();

} // namespace plovik
