# SPDX-License-Identifier: GPL-3.0-or-later
# Interface target with the warnings that every target of the project compiles under.
#
# They are errors only where PLOVIK_WERROR says so, which our test preset does: another compiler or a newer Qt warns of
# more, and that must not stop a distribution's build.
option(PLOVIK_WERROR "Treat warnings as errors" OFF)

# A local name may be that of a constant in another source of the folder, so a unity build does not warn of shadows.
add_library(plovik_warnings INTERFACE)
target_compile_options(plovik_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion $<$<NOT:$<BOOL:${PLOVIK_UNITY}>>:-Wshadow> $<$<BOOL:${PLOVIK_WERROR}>:-Werror>)
# What Qt deprecated after 6.4 has no replacement in 6.4, which is the oldest that is supported.
target_compile_definitions(plovik_warnings INTERFACE QT_WARN_DEPRECATED_UP_TO=0x060400)
