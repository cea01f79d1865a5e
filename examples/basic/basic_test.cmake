# Compiles a copy of the program, since the compiler writes beside the sources, and compares what it prints.
#   COMPILER, INTERPRETER, LIBRARY_DIR, LIBRARY_VERSION, PROJECT_DIR, WORK_DIR
cmake_minimum_required(VERSION 3.25)
file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR}/basic)
file(COPY ${PROJECT_DIR}/.project ${PROJECT_DIR}/.src DESTINATION ${WORK_DIR}/basic)

file(READ ${PROJECT_DIR}/.src/MMain.module source)
if(NOT source MATCHES "Library \"libtrunnion:${LIBRARY_VERSION}\"")
  message(FATAL_ERROR "the program does not ask for version ${LIBRARY_VERSION} of the library")
endif()

execute_process(COMMAND ${COMPILER} -ag ${WORK_DIR}/basic OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
set(ENV{LD_LIBRARY_PATH} ${LIBRARY_DIR})
set(ENV{LC_ALL} C) # a comma in place of the point elsewhere
string(REPLACE "/" "\\" directory "C:${WORK_DIR}")
execute_process(COMMAND ${INTERPRETER} ${WORK_DIR}/basic -- ${directory} OUTPUT_VARIABLE output ERROR_VARIABLE error
                RESULT_VARIABLE status TIMEOUT 60)

set(expected "version 100\nintegers -70000, 2147483647\nshort -3\nfloats 0.25, -1.5\n")
string(APPEND expected "texts \"spindle\", \"tool\"\nfolder data\nfolder more\nafter removal it does not open\n")
if(NOT status EQUAL 0 OR NOT error STREQUAL "" OR NOT output STREQUAL expected)
  message(FATAL_ERROR "exit status ${status}, standard error \"${error}\", output:\n${output}instead of:\n${expected}")
endif()
if(EXISTS ${WORK_DIR}/basic_example)
  message(FATAL_ERROR "the program has left its directory behind")
endif()
