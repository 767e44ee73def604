// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace plovik {

/// The text with what lets people in taken out of the remote addresses in it: of web addresses everything before the
/// host, since tokens stand there as user names too, of others the password; and the headers that git is told to send.
/// For whatever is shown or copied. Linear in the text's length; bytes that are not UTF-8 stay as they are.
std::string withoutSecrets(std::string_view text);
QString withoutSecrets(const QString& text);

} // namespace plovik
