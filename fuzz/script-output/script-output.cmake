# Fuzzer of what scripts write.
orvane_add_fuzzer(NAME script_output_fuzzer SOURCES script-output/script_output_fuzzer.cpp CORPUS script-output LIBRARIES core)
