# Tests: e2e/oracle. A second implementation of the rules, its own tests, and random presets run through both.
find_package(Python3 COMPONENTS Interpreter REQUIRED)

add_test(NAME oracle.rules COMMAND ${Python3_EXECUTABLE} -B ${CMAKE_CURRENT_LIST_DIR}/oracle/test_rules.py)
set_tests_properties(oracle.rules PROPERTIES LABELS e2e TIMEOUT 60)

# More on demand: differential.py --orvane PROGRAM --cases 20000 --seed ANY
add_test(NAME oracle.differential
         COMMAND ${Python3_EXECUTABLE} -B ${CMAKE_CURRENT_LIST_DIR}/oracle/differential.py --orvane $<TARGET_FILE:orvane>
                 --cases 1500 --seed 1)
set_tests_properties(oracle.differential PROPERTIES LABELS e2e TIMEOUT 300)
