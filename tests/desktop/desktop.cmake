# orvane_add_desktop_test(NAME name SOURCES file... LIBRARIES library... [DESKTOP_ARGUMENTS argument...] [ENVIRONMENT NAME=VALUE...]
# [PROGRAM name]): one test program with its own main, one CTest entry for the whole of it, on a desktop of its own. With PROGRAM no
# program is built: the named one runs once more, on another desktop. Tests find the resources' folder in ORVANE_TEST_RESOURCES and leave
# pictures in the folder ORVANE_TEST_SCREENSHOTS.
function(orvane_add_desktop_test)
  cmake_parse_arguments(TEST "" "NAME;PROGRAM" "SOURCES;LIBRARIES;DESKTOP_ARGUMENTS;ENVIRONMENT" ${ARGN})
  if(NOT TEST_PROGRAM)
    set(TEST_PROGRAM ${TEST_NAME})
    add_executable(${TEST_NAME} ${TEST_SOURCES})
    target_link_libraries(${TEST_NAME} PRIVATE fakes ${TEST_LIBRARIES} GTest::gtest)
  endif()
  add_test(NAME ${TEST_NAME}
    COMMAND ${PROJECT_SOURCE_DIR}/tests/tools/with-desktop.sh ${TEST_DESKTOP_ARGUMENTS} -- $<TARGET_FILE:${TEST_PROGRAM}>)
  set_tests_properties(${TEST_NAME} PROPERTIES LABELS desktop TIMEOUT 300
    ENVIRONMENT "ORVANE_TEST_RESOURCES=${PROJECT_SOURCE_DIR}/resources;ORVANE_TEST_SCREENSHOTS=${PROJECT_BINARY_DIR}/screenshots;${TEST_ENVIRONMENT}")
endfunction()
