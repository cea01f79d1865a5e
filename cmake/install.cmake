# Installation: library, headers, CMake package, pkg-config file.
#
#   cmake --install build/release --prefix /somewhere
#
# All three ways to use the library name the same include directory and the same compile options; the tests in
# tests/package hold them together.
include(CMakePackageConfigHelpers)

set(TRUNNION_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/trunnion)

install(TARGETS trunnion EXPORT trunnion-targets)
install(EXPORT trunnion-targets NAMESPACE trunnion:: DESTINATION ${TRUNNION_PACKAGE_DIR})

# Which headers go along is found out when installing: trunnion.h and all that it reaches.
install(CODE "set(TRUNNION_SOURCE_DIR \"${PROJECT_SOURCE_DIR}\")
set(TRUNNION_INCLUDE_DIR \"${CMAKE_INSTALL_INCLUDEDIR}\")")
install(SCRIPT ${PROJECT_SOURCE_DIR}/cmake/install_headers.cmake)

# A shared library has found its OpenGL already; a static one leaves that to whoever links it.
if(BUILD_SHARED_LIBS)
  set(TRUNNION_FIND_DEPENDENCIES "")
  set(TRUNNION_FIND_DESKTOP_DEPENDENCIES "")
  set(TRUNNION_PC_REQUIRES "")
  set(TRUNNION_PC_DEFINITION "")
  set(TRUNNION_DESKTOP_PC_REQUIRES "")
  set(TRUNNION_DESKTOP_PC_DEFINITION "")
else()
  set(TRUNNION_FIND_DEPENDENCIES "include(CMakeFindDependencyMacro)\nfind_dependency(OpenGL)\n")
  set(TRUNNION_FIND_DESKTOP_DEPENDENCIES "find_dependency(SDL2 CONFIG)")
  set(TRUNNION_PC_REQUIRES "gl")
  set(TRUNNION_PC_DEFINITION " -DTRUNNION_STATIC")
  set(TRUNNION_DESKTOP_PC_REQUIRES ", sdl2")
  set(TRUNNION_DESKTOP_PC_DEFINITION " -DTRUNNION_DESKTOP_STATIC")
endif()

configure_package_config_file(cmake/trunnion-config.cmake.in trunnion-config.cmake
                              INSTALL_DESTINATION ${TRUNNION_PACKAGE_DIR})
# Below 1.0 a new minor version may change the interface: 0.2 does not stand in for 0.1.
write_basic_package_version_file(trunnion-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/trunnion-config.cmake ${PROJECT_BINARY_DIR}/trunnion-config-version.cmake
        DESTINATION ${TRUNNION_PACKAGE_DIR})

# The options that decide results, as the target has them for this compiler.
set(TRUNNION_PC_OPTIONS "$<JOIN:$<TARGET_PROPERTY:trunnion,INTERFACE_COMPILE_OPTIONS>, >")
# Paths in the file are relative to the file, so that an installed tree can be moved.
file(RELATIVE_PATH TRUNNION_PC_PREFIX ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" TRUNNION_PC_PREFIX "${TRUNNION_PC_PREFIX}")
configure_file(cmake/trunnion.pc.in trunnion.pc.generate @ONLY)
file(GENERATE OUTPUT ${PROJECT_BINARY_DIR}/trunnion.pc INPUT ${PROJECT_BINARY_DIR}/trunnion.pc.generate)
install(FILES ${PROJECT_BINARY_DIR}/trunnion.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
