# One interface target carries every compiler flag; everything that is ours links it.
add_library(orvane_flags INTERFACE)
target_compile_features(orvane_flags INTERFACE cxx_std_20)
target_compile_options(orvane_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Wnon-virtual-dtor
  -Woverloaded-virtual -Wformat=2 -Wextra-semi -fvisibility=hidden
  $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond -Wlogical-op -Wsuggest-override>)
option(ORVANE_WARNINGS_AS_ERRORS "Treat warnings as errors" OFF)
if(ORVANE_WARNINGS_AS_ERRORS)
  target_compile_options(orvane_flags INTERFACE -Werror)
endif()
# Paths of the build machine stay out of what is built.
target_compile_options(orvane_flags INTERFACE -ffile-prefix-map=${CMAKE_SOURCE_DIR}=.)
if(ORVANE_SANITIZE)
  target_compile_options(orvane_flags INTERFACE -fsanitize=${ORVANE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(orvane_flags INTERFACE -fsanitize=${ORVANE_SANITIZE})
endif()
