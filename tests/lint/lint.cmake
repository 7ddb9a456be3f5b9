# Checks of the sources as text, and of what the programs link.
find_program(ORVANE_BASH bash REQUIRED)

foreach(check includes words length format shell presets)
  add_test(NAME lint.${check} COMMAND ${ORVANE_BASH} ${CMAKE_CURRENT_LIST_DIR}/lint.sh ${check})
  set_tests_properties(lint.${check} PROPERTIES LABELS lint TIMEOUT 300 SKIP_RETURN_CODE 77)
endforeach()

# The checks themselves: each must find a planted fault.
add_test(NAME lint.finds-planted-faults COMMAND ${ORVANE_BASH} ${CMAKE_CURRENT_LIST_DIR}/lint_test.sh)
set_tests_properties(lint.finds-planted-faults PROPERTIES LABELS lint TIMEOUT 300)

add_test(NAME lint.dev-installs-what-is-missing COMMAND ${ORVANE_BASH} ${CMAKE_CURRENT_LIST_DIR}/dev_test.sh)
set_tests_properties(lint.dev-installs-what-is-missing PROPERTIES LABELS lint TIMEOUT 60)

# Every shared library costs start-up time. Sanitizers bring their own.
if(TARGET orvane AND NOT ORVANE_SANITIZE)
  add_test(NAME lint.orvane-libraries
    COMMAND ${ORVANE_BASH} ${CMAKE_CURRENT_LIST_DIR}/libraries.sh $<TARGET_FILE:orvane> libc libm ld-linux-x86-64 ld-linux-aarch64)
  set_tests_properties(lint.orvane-libraries PROPERTIES LABELS lint TIMEOUT 30)
endif()

# What misused memory could do is kept small.
if(NOT ORVANE_SANITIZE)
  set(orvane_programs $<TARGET_FILE:orvane> $<TARGET_FILE:orvane-bus>)
  if(TARGET orvane-helper)
    list(APPEND orvane_programs $<TARGET_FILE:orvane-helper>)
  endif()
  if(TARGET orvane-settings)
    list(APPEND orvane_programs $<TARGET_FILE:orvane-settings>)
  endif()
  add_test(NAME lint.hardening COMMAND ${ORVANE_BASH} ${CMAKE_CURRENT_LIST_DIR}/hardening.sh ${orvane_programs})
  set_tests_properties(lint.hardening PROPERTIES LABELS lint TIMEOUT 60)
endif()

# The texts of the command line in other languages: every one of them, and nothing else.
find_package(Python3 REQUIRED COMPONENTS Interpreter)
add_test(NAME lint.commandline-catalogues
  COMMAND ${Python3_EXECUTABLE} -B ${CMAKE_CURRENT_LIST_DIR}/catalogues_test.py ${PROJECT_SOURCE_DIR})
set_tests_properties(lint.commandline-catalogues PROPERTIES LABELS lint TIMEOUT 300)
