# README.md holds what PROGRAM prints, and SOURCE if one is given, word for word.
cmake_minimum_required(VERSION 3.25)

file(READ ${README} readme)
function(require_quoted text what)
  string(FIND "${readme}" "${text}" position)
  if(position EQUAL -1)
    message(FATAL_ERROR "README.md does not quote ${what}:\n${text}")
  endif()
endfunction()

execute_process(COMMAND ${PROGRAM} OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
require_quoted("\n```\n${output}```\n" "the output of ${PROGRAM}")
if(SOURCE)
  file(READ ${SOURCE} source)
  require_quoted("\n```cpp\n${source}```\n" ${SOURCE})
endif()
