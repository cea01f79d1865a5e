# Warnings and sanitizers of our own targets. Options that decide results belong to the library's target instead, so that
# they reach every user of it (see trunnion/CMakeLists.txt).
function(trunnion_compiler_options target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wfloat-conversion -Wno-overloaded-virtual)
  if(TRUNNION_WARNINGS_AS_ERRORS)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(TRUNNION_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=${TRUNNION_SANITIZE} -fno-omit-frame-pointer
                                             -fno-sanitize-recover=all)
    target_link_options(${target} PRIVATE -fsanitize=${TRUNNION_SANITIZE})
  endif()
endfunction()
