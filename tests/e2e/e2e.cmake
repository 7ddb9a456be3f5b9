# End-to-end tests: the built program, driven as its users drive it. One CTest entry for each file of tests.
find_package(Python3 REQUIRED COMPONENTS Interpreter)

# orvane_add_e2e_tests(FOLDER folder NAMES name...): each test_NAME.py in the folder.
function(orvane_add_e2e_tests)
  cmake_parse_arguments(E2E "" "FOLDER" "NAMES" ${ARGN})
  foreach(name ${E2E_NAMES})
    set(test e2e.${E2E_FOLDER}.${name})
    add_test(NAME ${test} COMMAND ${Python3_EXECUTABLE} -B -m unittest -v test_${name}
             WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}/e2e/${E2E_FOLDER})
    set_tests_properties(${test} PROPERTIES LABELS e2e TIMEOUT 600 ENVIRONMENT "ORVANE=$<TARGET_FILE:orvane>")
  endforeach()
endfunction()

orvane_add_e2e_tests(FOLDER create NAMES commands create dry_run names preferences scripts together)
if(NOT ORVANE_SANITIZE) # sanitizers bring libraries and system calls of their own
  find_program(ORVANE_STRACE strace REQUIRED)
  orvane_add_e2e_tests(FOLDER create NAMES program)
endif()
