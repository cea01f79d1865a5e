# Installation: library, headers, CMake package, pkg-config file.
include(GNUInstallDirs)
