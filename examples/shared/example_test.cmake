# What the tests of the examples have in common. PROGRAM is the example, WORK_DIR a folder of its tests, STEP the test:
# it starts in `dir`, an empty folder of its own.
get_filename_component(name ${PROGRAM} NAME)
set(dir ${WORK_DIR}/${STEP})
file(REMOVE_RECURSE ${dir})
file(MAKE_DIRECTORY ${dir})

# run_well(<argument>...): exit status 0 and nothing on standard error. What was printed comes back in `printed`.
function(run_well)
  execute_process(COMMAND ${PROGRAM} ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE error
                  WORKING_DIRECTORY ${dir})
  if(NOT status EQUAL 0 OR NOT error STREQUAL "")
    message(FATAL_ERROR "${ARGN}: exit status ${status}, standard error \"${error}\", output:\n${output}")
  endif()
  set(printed "${output}" PARENT_SCOPE)
endfunction()

# require_failure(<mention> <argument>...): exit status 1 and one line on standard error, which mentions what is wrong.
# What was printed until then comes back in `printed`.
function(require_failure mention)
  execute_process(COMMAND ${PROGRAM} ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE error
                  WORKING_DIRECTORY ${dir} TIMEOUT 60)
  if(NOT status EQUAL 1 OR NOT error MATCHES "^${name}: [^\n]*${mention}[^\n]*\n$")
    message(FATAL_ERROR "${ARGN}: exit status ${status}, output \"${output}\", standard error:\n${error}"
                        "instead of one line with \"${mention}\"")
  endif()
  set(printed "${output}" PARENT_SCOPE)
endfunction()

# refuse_files(<case>...): each case is "file|content|mention"; the file is refused before any figure is printed.
function(refuse_files)
  foreach(case IN LISTS ARGN)
    string(REGEX MATCH "^([^|]*)\\|([^|]*)\\|([^|]*)$" matched "${case}")
    file(WRITE ${dir}/${CMAKE_MATCH_1} "${CMAKE_MATCH_2}")
    require_failure("${CMAKE_MATCH_3}" ${dir}/${CMAKE_MATCH_1})
    if(printed)
      message(FATAL_ERROR "${CMAKE_MATCH_1}: figures of a file that could not be read: ${printed}")
    endif()
  endforeach()
endfunction()
