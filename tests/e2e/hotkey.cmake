# The hot key end to end: real key presses, with the helper as it is started by its users.
find_program(ORVANE_SETXKBMAP setxkbmap REQUIRED)

# orvane_add_hotkey_test(NAME name FILE file DESKTOP argument... [ENVIRONMENT NAME=VALUE...]): test_FILE.py under with-desktop.sh.
function(orvane_add_hotkey_test)
  cmake_parse_arguments(HOTKEY "" "NAME;FILE" "DESKTOP;ENVIRONMENT" ${ARGN})
  add_test(NAME e2e.hotkey.${HOTKEY_NAME}
    COMMAND ${PROJECT_SOURCE_DIR}/tests/tools/with-desktop.sh ${HOTKEY_DESKTOP} -- /usr/bin/python3 -B -m unittest -v test_${HOTKEY_FILE}
    WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}/e2e/hotkey)
  set_tests_properties(e2e.hotkey.${HOTKEY_NAME} PROPERTIES LABELS e2e TIMEOUT 300 ENVIRONMENT
    "ORVANE_TEST_HELPER=$<TARGET_FILE:orvane-helper>;ORVANE_TEST_ORVANE=$<TARGET_FILE:orvane>;ORVANE_TEST_SCREENSHOTS=${PROJECT_BINARY_DIR}/screenshots/hotkey-${HOTKEY_NAME};${HOTKEY_ENVIRONMENT}")
endfunction()

orvane_add_hotkey_test(NAME keys FILE keys)
orvane_add_hotkey_test(NAME monitors FILE monitors DESKTOP --size 2560x800)
# Where a file manager is not installed its road is not tested.
foreach(program thunar pcmanfm-qt)
  find_program(ORVANE_PROGRAM_${program} ${program})
  if(ORVANE_PROGRAM_${program})
    orvane_add_hotkey_test(NAME road.${program} FILE road DESKTOP --accessibility ENVIRONMENT ORVANE_TEST_FILEMANAGER=${program})
  else()
    message(STATUS "No test of the hot key with ${program} in front: it is not installed")
  endif()
endforeach()

# The same on compositors, with input that the compositor takes from a program; where they start (see desktop/wayland.cmake).
if(TARGET wayland_test_support)
  add_executable(wayland_keys ${CMAKE_CURRENT_LIST_DIR}/hotkey/wayland_keys.cpp)
  target_link_libraries(wayland_keys PRIVATE wayland_test_support)
  find_program(ORVANE_GRIM grim)
  # KWin takes pictures of its own; KWin 6 only where it draws with OpenGL, for which it needs a graphics card's device.
  if(ORVANE_KWIN_STARTS AND NOT ORVANE_KWIN_TAKES_PICTURES)
    execute_process(COMMAND ${PROJECT_SOURCE_DIR}/tests/tools/with-kwin.sh -- gdbus call --session --dest org.freedesktop.DBus
                            --object-path / --method org.freedesktop.DBus.NameHasOwner org.kde.KWin.ScreenShot2
      TIMEOUT 60 OUTPUT_VARIABLE answer ERROR_QUIET)
    if(answer MATCHES "true")
      set(ORVANE_KWIN_TAKES_PICTURES ON CACHE INTERNAL "tests can look at KWin's screen")
    endif()
  endif()
  foreach(compositor sway kwin)
    string(TOUPPER ${compositor} upper)
    if(ORVANE_${upper}_STARTS AND ORVANE_PROGRAM_thunar AND ((compositor STREQUAL sway AND ORVANE_GRIM) OR (compositor STREQUAL kwin AND ORVANE_KWIN_TAKES_PICTURES)))
      foreach(part Road Environment)
        string(TOLOWER e2e.hotkey.${part}.${compositor} test)
        add_test(NAME ${test}
          COMMAND ${PROJECT_SOURCE_DIR}/tests/tools/with-${compositor}.sh -- /usr/bin/python3 -B
                  ${CMAKE_CURRENT_SOURCE_DIR}/e2e/hotkey/test_wayland_road.py -v ${part})
        set_tests_properties(${test} PROPERTIES LABELS e2e TIMEOUT 300 ENVIRONMENT
          "ORVANE_TEST_COMPOSITOR=${compositor};ORVANE_TEST_WAYLAND_KEYS=$<TARGET_FILE:wayland_keys>;ORVANE_TEST_HELPER=$<TARGET_FILE:orvane-helper>;ORVANE_TEST_ORVANE=$<TARGET_FILE:orvane>;ORVANE_TEST_SCREENSHOTS=${PROJECT_BINARY_DIR}/screenshots/hotkey-${compositor}")
      endforeach()
    else()
      message(STATUS "No test of the hot key's whole road on ${compositor}: it does not start or takes no pictures, or thunar or grim is missing")
    endif()
  endforeach()
endif()

# Where programs get no hot keys: the chooser, and on GNOME a key that the user binds.
function(orvane_add_chooser_test name compositor file)
  add_test(NAME e2e.hotkey.${name}
    COMMAND ${PROJECT_SOURCE_DIR}/tests/tools/with-${compositor}.sh -- /usr/bin/python3 -B
            ${CMAKE_CURRENT_SOURCE_DIR}/e2e/hotkey/test_${file}.py -v)
  set_tests_properties(e2e.hotkey.${name} PROPERTIES LABELS e2e TIMEOUT 300 ENVIRONMENT
    "ORVANE_TEST_COMPOSITOR=${compositor};ORVANE_TEST_HELPER=$<TARGET_FILE:orvane-helper>;ORVANE_TEST_ORVANE=$<TARGET_FILE:orvane>;ORVANE_TEST_SCREENSHOTS=${PROJECT_BINARY_DIR}/screenshots/hotkey-${compositor}")
endfunction()
foreach(compositor gnome weston)
  string(TOUPPER ${compositor} upper)
  if(ORVANE_${upper}_STARTS)
    orvane_add_chooser_test(chooser.${compositor} ${compositor} chooser_road)
  endif()
endforeach()
if(ORVANE_GNOME_STARTS AND EXISTS /usr/libexec/gsd-media-keys)
  orvane_add_chooser_test(boundkey.gnome gnome gnome_key)
else()
  message(STATUS "No test of a key that is bound in GNOME's settings: GNOME Shell does not start, or gnome-settings-daemon is missing")
endif()
