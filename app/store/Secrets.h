// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace plovik {

/// Returns the text with its secrets masked, for everything that is shown or copied. Masks everything before the host
/// of a web address, since user names can be tokens too; the passwords of other addresses; the parameters and fragments of
/// addresses; and the headers that git is told to send. Takes time linear in the text's length. Bytes that are not UTF-8 stay as they are.
std::string withoutSecrets(std::string_view text);
QString withoutSecrets(const QString& text);

} // namespace plovik
