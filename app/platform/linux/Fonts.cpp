// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/Fonts.h"

#include <clocale>
#include <dlfcn.h>
#include <system_error>
#include <thread>

namespace plovik {

void beginReadingFonts()
{
    // The toolkit brings fontconfig along; where it does without, there is nothing to begin.
    const auto read = reinterpret_cast<int (*)()>(::dlsym(RTLD_DEFAULT, "FcInit"));
    if (!read)
        return;
    // Numbers in the configuration are read with the locale's decimal sign, so the toolkit must not be the one to set it
    // meanwhile.
    std::setlocale(LC_ALL, "");
    try {
        std::thread(read).detach();
    } catch (const std::system_error&) {
        return; // then the toolkit reads them
    }
}

} // namespace plovik
