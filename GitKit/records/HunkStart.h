// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <charconv>
#include <string_view>

namespace gitkit {

/// Where a hunk begins in the old and the new file, from its header "@@ -12,7 +12,9 @@ …"; 0 for a side that cannot be
/// read.
struct HunkStart {
    int old = 0;
    int now = 0;

    static HunkStart of(std::string_view header)
    {
        HunkStart start;
        bool hasOld = false;
        bool hasNew = false;
        while (!header.empty()) {
            const std::string_view word = header.substr(0, header.find(' '));
            if (!hasOld && word.starts_with('-')) {
                start.old = leadingNumber(word.substr(1));
                hasOld = true;
            } else if (!hasNew && word.starts_with('+')) {
                start.now = leadingNumber(word.substr(1));
                hasNew = true;
            }
            header.remove_prefix(word.size() < header.size() ? word.size() + 1 : header.size());
        }
        return start;
    }

    bool operator==(const HunkStart&) const = default;

private:
    static int leadingNumber(std::string_view text)
    {
        text = text.substr(0, text.find(','));
        int number = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        return error == std::errc{} && end == text.data() + text.size() ? number : 0;
    }
};

} // namespace gitkit
