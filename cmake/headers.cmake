# Which headers there are, for the installation and for the checks of the repository.
cmake_policy(VERSION 3.25)

# trunnion_reached_headers(<variable> <source dir>): trunnion.h and every header of the library that it includes, itself
# or through another: what a user of the library needs.
function(trunnion_reached_headers variable source_dir)
  set(reached "")
  set(waiting trunnion/trunnion.h)
  while(waiting)
    list(POP_FRONT waiting header)
    list(APPEND reached ${header})
    file(STRINGS ${source_dir}/${header} lines REGEX "^#include \"trunnion/")
    foreach(line IN LISTS lines)
      string(REGEX REPLACE "^#include \"([^\"]+)\".*" "\\1" included "${line}")
      if(NOT included IN_LIST reached AND NOT included IN_LIST waiting)
        list(APPEND waiting ${included})
      endif()
    endforeach()
  endwhile()
  set(${variable} ${reached} PARENT_SCOPE)
endfunction()

# The inside of the platform layer: what the rest of the library asks of an operating system.
set(TRUNNION_PLATFORM_INTERNALS trunnion/platform/directories.h trunnion/platform/drive_map.h trunnion/platform/files.h trunnion/platform/settings.h)

# trunnion_public_headers(<variable> <source dir>): the headers meant for users.
function(trunnion_public_headers variable source_dir)
  file(GLOB_RECURSE headers RELATIVE ${source_dir} ${source_dir}/trunnion/*.h)
  list(FILTER headers EXCLUDE REGEX "/detail/")
  list(REMOVE_ITEM headers trunnion/trunnion.h ${TRUNNION_PLATFORM_INTERNALS})
  set(${variable} ${headers} PARENT_SCOPE)
endfunction()
