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

orvane_add_e2e_tests(FOLDER create NAMES commands create dry_run languages names preferences scripts together)
if(NOT ORVANE_SANITIZE) # sanitizers bring libraries and system calls of their own
  find_program(ORVANE_STRACE strace REQUIRED)
  orvane_add_e2e_tests(FOLDER create NAMES program)
endif()

# As distributions build it: what is found and said in other languages depends on the C library, which is another one then.
if(ORVANE_LINKS_STATICALLY)
  add_executable(orvane_dynamic ${PROJECT_SOURCE_DIR}/CommandLine/main.cpp)
  target_compile_definitions(orvane_dynamic PRIVATE ORVANE_VERSION="${PROJECT_VERSION}")
  target_link_libraries(orvane_dynamic PRIVATE commandline)
  add_dependencies(orvane_dynamic orvane-bus commandline_catalogues)
  set_target_properties(orvane_dynamic PROPERTIES RUNTIME_OUTPUT_DIRECTORY $<TARGET_FILE_DIR:orvane>)
  add_test(NAME e2e.create.languages-dynamic COMMAND ${Python3_EXECUTABLE} -B -m unittest -v test_languages
           WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}/e2e/create)
  set_tests_properties(e2e.create.languages-dynamic PROPERTIES LABELS e2e TIMEOUT 600 ENVIRONMENT "ORVANE=$<TARGET_FILE:orvane_dynamic>")
endif()
