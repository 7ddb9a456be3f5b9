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
# One section for each function, so that the linker can leave out what nobody uses and put together what is used together.
target_compile_options(orvane_flags INTERFACE $<$<CONFIG:Release,RelWithDebInfo>:-ffunction-sections -fdata-sections>)
# What users get fails early where memory is misused; what developers get checks every index of the library's containers.
if(NOT ORVANE_SANITIZE)
  target_compile_options(orvane_flags INTERFACE
    $<$<CONFIG:Release,RelWithDebInfo>:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2 -fstack-protector-strong>)
  target_link_options(orvane_flags INTERFACE LINKER:-z,relro,-z,now,-z,noexecstack)
endif()
# g++ 12 sees overlaps in std::string's own code that cannot happen when it optimises (GCC bug 105651, fixed in 13).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(orvane_flags INTERFACE $<$<CONFIG:Release,RelWithDebInfo>:-Wno-restrict>)
endif()
target_compile_definitions(orvane_flags INTERFACE $<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)
if(ORVANE_SANITIZE)
  target_compile_options(orvane_flags INTERFACE -fsanitize=${ORVANE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(orvane_flags INTERFACE -fsanitize=${ORVANE_SANITIZE})
endif()

# orvane_precompile_qt(TARGET MODULE...): the headers of these modules of Qt are read once for the whole target, which takes a third
# off a build of everything. Sources name what they need all the same: other builds, above all the release, do without.
option(ORVANE_PRECOMPILE_QT "Read Qt's headers once for each library" OFF)
function(orvane_precompile_qt target)
  if(ORVANE_PRECOMPILE_QT)
    list(TRANSFORM ARGN REPLACE "(.+)" "<Qt\\1>")
    target_precompile_headers(${target} PRIVATE ${ARGN})
  endif()
endfunction()
