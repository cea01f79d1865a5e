# Only trunnion/platform includes headers of an operating system: everything else includes the library, the C++ standard
# library, the compiler's own names of the processor's instructions, and OpenGL.
cmake_minimum_required(VERSION 3.25)
set(allowed
    algorithm any array atomic barrier bit bitset cassert cctype cerrno cfenv cfloat charconv chrono cinttypes
    climits clocale cmath compare complex concepts condition_variable csetjmp csignal cstdarg cstddef cstdint
    cstdio cstdlib cstring ctime cuchar cwchar cwctype deque exception execution filesystem format forward_list
    fstream functional future initializer_list iomanip ios iosfwd iostream istream iterator latch limits list
    locale map memory memory_resource mutex new numbers numeric optional ostream queue random ranges ratio regex
    semaphore set shared_mutex source_location span sstream stack stdexcept stop_token streambuf string
    string_view syncstream system_error thread tuple type_traits typeindex typeinfo unordered_map unordered_set
    utility valarray variant vector version
    emmintrin.h immintrin.h
    GL/gl.h)

file(GLOB_RECURSE files RELATIVE ${SOURCE_DIR} ${SOURCE_DIR}/trunnion/*.h ${SOURCE_DIR}/trunnion/*.cpp)
list(FILTER files EXCLUDE REGEX "^trunnion/platform/")
set(wrong "")
foreach(file IN LISTS files)
  file(STRINGS ${SOURCE_DIR}/${file} lines REGEX "^ *# *include *<")
  foreach(line IN LISTS lines)
    string(REGEX REPLACE "^ *# *include *<([^>]*)>.*" "\\1" header "${line}")
    if(NOT header IN_LIST allowed)
      string(APPEND wrong "\n${file} includes <${header}>")
    endif()
  endforeach()
endforeach()
if(wrong)
  message(FATAL_ERROR "only trunnion/platform may include these headers:${wrong}")
endif()
