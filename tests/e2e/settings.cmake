# The settings program as its users drive it, with mouse and keys, on a desktop of its own.
set(orvane_settings_tests ${CMAKE_CURRENT_LIST_DIR}/settings)
set(orvane_settings_programs ORVANE_TEST_SETTINGS=$<TARGET_FILE:orvane-settings> ORVANE_TEST_HELPER=$<TARGET_FILE:orvane-helper>
  ORVANE_TEST_ORVANE=$<TARGET_FILE:orvane>)

# orvane_add_settings_test(NAME name TOOL script [ARGUMENTS argument...]): test_NAME.py on such a desktop.
function(orvane_add_settings_test)
  cmake_parse_arguments(SETTINGS "" "NAME;TOOL" "ARGUMENTS" ${ARGN})
  add_test(NAME e2e.settings.${SETTINGS_NAME}
    COMMAND ${PROJECT_SOURCE_DIR}/tests/tools/${SETTINGS_TOOL} ${SETTINGS_ARGUMENTS} --
            /usr/bin/python3 -B ${orvane_settings_tests}/test_${SETTINGS_NAME}.py -v)
  set_tests_properties(e2e.settings.${SETTINGS_NAME} PROPERTIES LABELS e2e TIMEOUT 600 ENVIRONMENT
    "ORVANE_TEST_SCREENSHOTS=${PROJECT_BINARY_DIR}/screenshots/settings;${orvane_settings_programs}")
endfunction()

foreach(name dialogs road safety screenreader)
  orvane_add_settings_test(NAME ${name} TOOL with-desktop.sh ARGUMENTS --accessibility)
endforeach()
find_program(ORVANE_PCMANFM_QT pcmanfm-qt)
if(ORVANE_PCMANFM_QT)
  orvane_add_settings_test(NAME drops TOOL with-desktop.sh ARGUMENTS --accessibility)
else()
  message(STATUS "e2e.settings.drops is not registered: pcmanfm-qt is not installed")
endif()
find_program(ORVANE_WTYPE wtype)
if(ORVANE_SWAY_STARTS AND ORVANE_WTYPE)
  orvane_add_settings_test(NAME wayland TOOL with-sway.sh)
endif()
