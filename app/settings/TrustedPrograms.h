// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <filesystem>

/// Remembers by a repository's root which programs of its configuration the user trusts, and which are to be kept off
/// without a question. Main thread.
namespace plovik::trustedPrograms {

// These return the fingerprint of the programs; an empty text when nothing is remembered.

QString trusted(const std::filesystem::path& root);
QString keptOff(const std::filesystem::path& root);

// These replace what was remembered for the root. The 500 latest are kept; the others are asked about again.

void trust(const std::filesystem::path& root, const QString& fingerprint);
void keepOff(const std::filesystem::path& root, const QString& fingerprint);

} // namespace plovik::trustedPrograms
