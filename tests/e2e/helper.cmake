# The helper as its users drive it, with mouse and keys, on a desktop of its own.

# Tests that wait for what takes half a minute and more. They are known to CTest only when asked for:
#   cmake -B BUILD -DORVANE_SLOW_TESTS=ON && ctest --test-dir BUILD -L slow
option(ORVANE_SLOW_TESTS "Register the tests that take minutes (label slow)" OFF)

# orvane_add_helper_test(NAME name FILE file [LABELS label...] [SETTINGS VARIABLE=value...] DESKTOP argument...): test_FILE.py under
# with-desktop.sh.
function(orvane_add_helper_test)
  cmake_parse_arguments(HELPER "" "NAME;FILE" "LABELS;SETTINGS;DESKTOP" ${ARGN})
  if(NOT HELPER_LABELS)
    set(HELPER_LABELS e2e)
  endif()
  add_test(NAME e2e.helper.${HELPER_NAME}
    COMMAND ${PROJECT_SOURCE_DIR}/tests/tools/with-desktop.sh ${HELPER_DESKTOP} -- /usr/bin/python3 -B -m unittest -v test_${HELPER_FILE}
    WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}/e2e/helper)
  set_tests_properties(e2e.helper.${HELPER_NAME} PROPERTIES LABELS "${HELPER_LABELS}" TIMEOUT 300 ENVIRONMENT
    "ORVANE_TEST_HELPER=$<TARGET_FILE:orvane-helper>;ORVANE_TEST_ORVANE=$<TARGET_FILE:orvane>;ORVANE_TEST_SCREENSHOTS=${PROJECT_BINARY_DIR}/screenshots/${HELPER_NAME};${HELPER_SETTINGS}")
endfunction()

orvane_add_helper_test(NAME road.xembed FILE road DESKTOP --tray trayer)
orvane_add_helper_test(NAME road.statusnotifier FILE road DESKTOP --tray xfce4-panel)
orvane_add_helper_test(NAME windows.xembed FILE windows DESKTOP --tray trayer)
orvane_add_helper_test(NAME windows.statusnotifier FILE windows DESKTOP --tray xfce4-panel)
set_tests_properties(e2e.helper.windows.xembed e2e.helper.windows.statusnotifier PROPERTIES TIMEOUT 600)
orvane_add_helper_test(NAME screenreader FILE screenreader DESKTOP --accessibility)

foreach(name broken_preferences bus changes ending idle long_menu no_tray opening rough_handling services)
  orvane_add_helper_test(NAME ${name} FILE ${name} DESKTOP --wm openbox)
endforeach()
orvane_add_helper_test(NAME file_managers FILE file_managers DESKTOP --accessibility)
orvane_add_helper_test(NAME trays.xembed FILE trays SETTINGS ORVANE_TEST_TRAY=trayer DESKTOP --wm openbox)
orvane_add_helper_test(NAME trays.statusnotifier FILE trays SETTINGS ORVANE_TEST_TRAY=xfce4-panel DESKTOP --wm openbox)

# Creations are killed by strace, which does not go together with sanitizers.
if(NOT ORVANE_SANITIZE)
  find_program(ORVANE_STRACE strace REQUIRED)
  orvane_add_helper_test(NAME remains FILE remains DESKTOP --wm openbox)
  orvane_add_helper_test(NAME remains.xfwm4 FILE remains.Remains.test_what_a_killed_command_left_is_offered_and_removed
                         DESKTOP --wm xfwm4)
  orvane_add_helper_test(NAME remains.screenreader FILE remains_spoken DESKTOP --accessibility)
  set_tests_properties(e2e.helper.remains PROPERTIES TIMEOUT 600)
endif()

# Needs leave to mount a small disk for one program; not every container gives it.
execute_process(COMMAND /usr/bin/python3 -B ${CMAKE_CURRENT_LIST_DIR}/helper/smalldisk.py RESULT_VARIABLE ORVANE_NO_SMALL_DISK
                OUTPUT_QUIET ERROR_QUIET)
if(ORVANE_NO_SMALL_DISK EQUAL 0)
  orvane_add_helper_test(NAME disk FILE disk DESKTOP --wm openbox)
else()
  message(STATUS "e2e.helper.disk is not registered: this machine lets no program mount a disk of its own")
endif()

if(ORVANE_SLOW_TESTS)
  set(late "ORVANE_TEST_LATE=30")
  orvane_add_helper_test(NAME slow.late.xembed FILE trays.Trays.test_the_host_is_late LABELS slow
                         SETTINGS ORVANE_TEST_TRAY=trayer ${late} DESKTOP --wm openbox)
  orvane_add_helper_test(NAME slow.late.statusnotifier FILE trays.Trays.test_the_host_is_late LABELS slow
                         SETTINGS ORVANE_TEST_TRAY=xfce4-panel ${late} DESKTOP --wm openbox)
  orvane_add_helper_test(NAME slow.no_tray FILE no_tray LABELS slow SETTINGS ORVANE_TEST_LONG=1 DESKTOP --wm openbox)
endif()
