# Fuzzers of the core.
add_library(fuzz_core INTERFACE)
target_include_directories(fuzz_core INTERFACE ${PROJECT_SOURCE_DIR}/fuzz ${PROJECT_SOURCE_DIR}/tests)
target_link_libraries(fuzz_core INTERFACE core)

orvane_add_fuzzer(NAME keys_fuzzer SOURCES core/keys_fuzzer.cpp CORPUS keys LIBRARIES fuzz_core)
orvane_add_fuzzer(NAME names_fuzzer SOURCES core/names_fuzzer.cpp CORPUS names LIBRARIES fuzz_core)
