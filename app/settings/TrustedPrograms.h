// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <filesystem>

/// Remembers which programs of a repository's configuration the user trusts, by the repository's root. Main thread.
namespace plovik::trustedPrograms {

/// Returns the fingerprint of the trusted programs; an empty text when none are.
QString fingerprint(const std::filesystem::path& root);

/// Replaces what was remembered for the root. The 500 latest are kept; the others are asked about again.
void trust(const std::filesystem::path& root, const QString& fingerprint);

} // namespace plovik::trustedPrograms
