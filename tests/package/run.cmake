# One step of the package tests; CMakeLists.txt beside this file names the steps and passes the variables.
cmake_minimum_required(VERSION 3.25)
include(${SOURCE_DIR}/cmake/headers.cmake)

set(consumer ${SOURCE_DIR}/tests/package/consumer)
set(prefix ${WORK_DIR}/prefix)
set(build ${WORK_DIR}/${STEP})
file(REMOVE_RECURSE ${build})

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

function(configure source build)
  run(${CMAKE_COMMAND} -S ${source} -B ${build} -G ${GENERATOR} -DCMAKE_CXX_COMPILER=${COMPILER}
      -DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER} ${ARGN})
endfunction()

function(run_consumer program)
  execute_process(COMMAND ${program} OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
  if(NOT output STREQUAL "consumer: ok\n")
    message(FATAL_ERROR "the consumer printed: ${output}")
  endif()
endfunction()

function(build_consumer build)
  configure(${consumer} ${build} ${ARGN})
  run(${CMAKE_COMMAND} --build ${build})
  run_consumer(${build}/consumer)
endfunction()

function(require_failure mention)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(result EQUAL 0 OR NOT output MATCHES "${mention}")
    message(FATAL_ERROR "expected a failure that mentions \"${mention}\", got ${result}: ${output}")
  endif()
endfunction()

if(STEP STREQUAL install)
  file(REMOVE_RECURSE ${prefix})
  run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
  trunnion_internal_headers(internal ${SOURCE_DIR})
  list(FILTER internal EXCLUDE REGEX "/detail/")
  foreach(header IN LISTS internal)
    if(EXISTS ${prefix}/include/${header})
      message(FATAL_ERROR "${header} is installed, so a public header includes it")
    endif()
  endforeach()

elseif(STEP STREQUAL find_package)
  build_consumer(${build} -DCMAKE_PREFIX_PATH=${prefix} -DWANTED_VERSION=${VERSION})

elseif(STEP STREQUAL component)
  build_consumer(${build} -DCMAKE_PREFIX_PATH=${prefix} -DWITH_DESKTOP=ON)

elseif(STEP STREQUAL wrong_version)
  foreach(version 99.0 0.0.1)
    require_failure("version: ${VERSION}" ${CMAKE_COMMAND} -S ${consumer} -B ${build} -G ${GENERATOR}
                    -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_PREFIX_PATH=${prefix} -DWANTED_VERSION=${version})
  endforeach()

elseif(STEP STREQUAL pkg_config OR STEP STREQUAL pkg_config_desktop)
  set(package trunnion)
  set(definition "")
  if(STEP STREQUAL pkg_config_desktop)
    set(package trunnion-desktop)
    set(definition -DWITH_DESKTOP)
  endif()
  set(ENV{PKG_CONFIG_PATH} ${prefix}/${LIBDIR}/pkgconfig)
  execute_process(COMMAND pkg-config --cflags --libs "${package} = ${VERSION}" OUTPUT_VARIABLE flags
                  COMMAND_ERROR_IS_FATAL ANY)
  separate_arguments(flags UNIX_COMMAND "${flags}")
  foreach(option -ffp-contract=off -fsigned-char)
    if(NOT option IN_LIST flags)
      message(FATAL_ERROR "${package}.pc does not name ${option}")
    endif()
  endforeach()
  file(MAKE_DIRECTORY ${build})
  run(${COMPILER} -std=c++20 -Wall -Wextra -Werror ${definition} ${consumer}/main.cpp -o ${build}/consumer ${flags}
      -Wl,-rpath,${prefix}/${LIBDIR})
  run_consumer(${build}/consumer)
  require_failure("trunnion" pkg-config --print-errors --errors-to-stdout "${package} >= 99")

elseif(STEP STREQUAL subdirectory)
  # Configured only: what it would build is the library as this build has it.
  configure(${consumer} ${build} -DTRUNNION_SUBDIRECTORY=${SOURCE_DIR})

elseif(STEP STREQUAL static)
  # A second build of the library, quick rather than good, and a user of it that has to find OpenGL.
  configure(${SOURCE_DIR} ${build} -DBUILD_SHARED_LIBS=OFF -DTRUNNION_BUILD_TESTS=OFF -DTRUNNION_BUILD_EXAMPLES=OFF
            -DCMAKE_CXX_FLAGS=-O0)
  run(${CMAKE_COMMAND} --build ${build})
  run(${CMAKE_COMMAND} --install ${build} --prefix ${build}/prefix)
  build_consumer(${build}/consumer -DCMAKE_PREFIX_PATH=${build}/prefix)

else()
  message(FATAL_ERROR "no step ${STEP}")
endif()
