// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace plovik {

/// Makes a text of others fit for the end of a sentence in an alert: one line of bounded length, without control
/// characters, with an ellipsis in each place of `secret`.
QString alertText(QString foreign, const QString& secret);

} // namespace plovik
