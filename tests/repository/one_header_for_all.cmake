# trunnion/trunnion.h includes every public header and nothing else.
cmake_minimum_required(VERSION 3.25)
include(${SOURCE_DIR}/cmake/headers.cmake)

trunnion_public_headers(public ${SOURCE_DIR})
file(STRINGS ${SOURCE_DIR}/trunnion/trunnion.h included REGEX "^#include ")
list(TRANSFORM included REPLACE "^#include \"([^\"]+)\".*" "\\1")

set(missing ${public})
list(REMOVE_ITEM missing ${included})
set(surplus ${included})
list(REMOVE_ITEM surplus ${public})
if(missing OR surplus)
  message(FATAL_ERROR "trunnion/trunnion.h lacks: ${missing}\nand includes without need: ${surplus}")
endif()
