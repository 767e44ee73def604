// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/AdministratorCommand.h"

namespace plovik {

std::string shellQuoted(std::string_view text)
{
    std::string quoted = "'";
    for (const char character : text) {
        if (character == '\'')
            quoted += R"('\'')";
        else
            quoted += character;
    }
    return quoted + '\'';
}

} // namespace plovik
