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

# trunnion_internal_headers(<variable> <source dir>): headers that are not meant for users: those in the folders named
# detail, and those that say so ("Internal: ...") at their top.
function(trunnion_internal_headers variable source_dir)
  file(GLOB_RECURSE headers RELATIVE ${source_dir} ${source_dir}/trunnion/*.h)
  set(internal "")
  foreach(header IN LISTS headers)
    file(STRINGS ${source_dir}/${header} mark LIMIT_COUNT 1 REGEX "^// Internal:")
    if(mark OR header MATCHES "/detail/")
      list(APPEND internal ${header})
    endif()
  endforeach()
  set(${variable} ${internal} PARENT_SCOPE)
endfunction()

# trunnion_public_headers(<variable> <source dir>): the headers meant for users, but for trunnion.h, which includes them.
function(trunnion_public_headers variable source_dir)
  file(GLOB_RECURSE headers RELATIVE ${source_dir} ${source_dir}/trunnion/*.h)
  trunnion_internal_headers(internal ${source_dir})
  list(REMOVE_ITEM headers trunnion/trunnion.h ${internal})
  set(${variable} ${headers} PARENT_SCOPE)
endfunction()
