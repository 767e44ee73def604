// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace plovik {

/// What others wrote, made fit for the end of a sentence in an alert: one line without control characters, of bounded
/// length, and with an ellipsis wherever `secret` stood.
QString alertText(QString foreign, const QString& secret);

} // namespace plovik
