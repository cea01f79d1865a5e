# Runs when the library is installed: puts the headers below the include directory, each under the path by which it is
# included.
cmake_policy(VERSION 3.25)
include(${TRUNNION_SOURCE_DIR}/cmake/headers.cmake)

cmake_path(ABSOLUTE_PATH TRUNNION_INCLUDE_DIR BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX})
trunnion_reached_headers(headers ${TRUNNION_SOURCE_DIR})
foreach(header IN LISTS headers)
  cmake_path(GET header PARENT_PATH folder)
  file(INSTALL ${TRUNNION_SOURCE_DIR}/${header} DESTINATION ${TRUNNION_INCLUDE_DIR}/${folder})
endforeach()
