// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace plovik {

/// An encoding of text whose units have several bytes. Git takes such files for binary.
struct WideEncoding {
    int bits = 16;
    bool isBigEndian = false;
    bool hasMark = false; ///< whether the file begins with a byte-order mark

    bool operator==(const WideEncoding&) const = default;
};

/// Guesses the encoding of a file from its first bytes: from the byte-order mark, else from the places of the zeros.
/// Returns nullopt for other files.
std::optional<WideEncoding> wideEncoding(std::string_view beginning);

/// Returns git's name for the encoding in a working-tree-encoding attribute.
std::string attributeName(const WideEncoding& encoding);

} // namespace plovik
