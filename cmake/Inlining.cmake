# SPDX-License-Identifier: GPL-3.0-or-later
# plovik_waits(TARGET): for what waits for git or the disk. Clang copies functions into their callers until a third of the
# time that it compiles goes there, which code that computes or paints gains by and this does not.
function(plovik_waits target)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    target_compile_options(${target} PRIVATE "SHELL:-mllvm -inline-threshold=20")
  endif()
endfunction()
