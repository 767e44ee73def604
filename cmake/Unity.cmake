# SPDX-License-Identifier: GPL-3.0-or-later
# Compiles the sources of a folder together, which reads Qt's headers once for all of them.
#
# A folder is one unit (or, with a size, several), whatever is added to another folder. So names in anonymous namespaces
# are unique within a folder.
option(PLOVIK_UNITY "Compile the sources of a folder together" OFF)

# plovik_unity(TARGET [SIZE]): at most SIZE sources in one unit. Call it where the target is made.
function(plovik_unity target)
  if(NOT PLOVIK_UNITY)
    return()
  endif()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
  get_target_property(sources ${target} SOURCES)
  list(FILTER sources INCLUDE REGEX "/[^/]*\\.cpp$")
  list(SORT sources)
  foreach(source IN LISTS sources)
    cmake_path(ABSOLUTE_PATH source)
    cmake_path(GET source PARENT_PATH folder)
    cmake_path(RELATIVE_PATH folder BASE_DIRECTORY ${CMAKE_SOURCE_DIR})
    string(MAKE_C_IDENTIFIER ${folder} group)
    if(ARGC GREATER 1)
      if(NOT DEFINED seen_${group})
        set(seen_${group} 0)
      endif()
      math(EXPR seen_${group} "${seen_${group}} + 1")
      math(EXPR part "(${seen_${group}} - 1) / ${ARGV1}")
      string(APPEND group _${part})
    endif()
    set_source_files_properties(${source} PROPERTIES UNITY_GROUP ${group})
  endforeach()
endfunction()
