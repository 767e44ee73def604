// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/inspector/BlameReading.h"

#include <utility>

namespace plovik {

BlameReading blameReading(BlameLines lines, const BlameRequest& request)
{
    BlameReading reading{.state = lines.state, .stamp = std::move(lines.stamp)};
    if (lines.state != BlameLines::State::lines)
        return reading;
    reading.document = std::make_shared<const BlameDocument>(lines.lines, lines.tabWidth, request.tabWidth);
    if (request.shown)
        reading.rows = reading.document->rowsLike(*request.shown, request.rows);
    return reading;
}

} // namespace plovik
