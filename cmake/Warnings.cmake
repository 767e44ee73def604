# SPDX-License-Identifier: GPL-3.0-or-later
# Interface target with the warnings that every target of the project compiles under.
add_library(plovik_warnings INTERFACE)
target_compile_options(plovik_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
