# The helper as its users drive it, with mouse and keys, on a desktop of its own.

# orvane_add_helper_test(NAME name FILE file DESKTOP argument...): test_FILE.py under with-desktop.sh.
function(orvane_add_helper_test)
  cmake_parse_arguments(HELPER "" "NAME;FILE" "DESKTOP" ${ARGN})
  add_test(NAME e2e.helper.${HELPER_NAME}
    COMMAND ${PROJECT_SOURCE_DIR}/tests/tools/with-desktop.sh ${HELPER_DESKTOP} -- /usr/bin/python3 -B -m unittest -v test_${HELPER_FILE}
    WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}/e2e/helper)
  set_tests_properties(e2e.helper.${HELPER_NAME} PROPERTIES LABELS e2e TIMEOUT 300 ENVIRONMENT
    "ORVANE_TEST_HELPER=$<TARGET_FILE:orvane-helper>;ORVANE_TEST_ORVANE=$<TARGET_FILE:orvane>;ORVANE_TEST_SCREENSHOTS=${PROJECT_BINARY_DIR}/screenshots/${HELPER_NAME}")
endfunction()

orvane_add_helper_test(NAME road.xembed FILE road DESKTOP --tray trayer)
orvane_add_helper_test(NAME road.statusnotifier FILE road DESKTOP --tray xfce4-panel)
