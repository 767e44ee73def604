// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace plovik {

/// An encoding of text whose units are several bytes, so that git takes its files for binary.
struct WideEncoding {
    int bits = 16;
    bool isBigEndian = false;
    bool hasMark = false; ///< begins with a byte-order mark

    bool operator==(const WideEncoding&) const = default;
};

/// What a file is written in that begins like this: told by its byte-order mark, else by where its zeros stand.
std::optional<WideEncoding> wideEncoding(std::string_view beginning);

/// What git calls the encoding in a working-tree-encoding attribute.
std::string attributeName(const WideEncoding& encoding);

} // namespace plovik
