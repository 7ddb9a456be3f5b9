# The settings window with real keys and pointer, over real files.
add_library(settings_window_support STATIC desktop/settings/SettingsWindowDesk.cpp)
target_link_libraries(settings_window_support PUBLIC settings_window qt_test_support fakes Qt6::Test)

set(settings_programs ORVANE_TEST_PROGRAM=$<TARGET_FILE:orvane> ORVANE_TEST_SETTINGS=$<TARGET_FILE:orvane-settings>)
orvane_add_desktop_test(NAME desktop_settings_window
  SOURCES
    desktop/settings/SafetyTest.cpp
    desktop/settings/StartTest.cpp
    desktop/settings/WindowTest.cpp
  LIBRARIES settings_window_support
  ENVIRONMENT ${settings_programs})
add_dependencies(desktop_settings_window orvane orvane-settings)
orvane_add_desktop_test(NAME desktop_settings_window_xfwm4 PROGRAM desktop_settings_window DESKTOP_ARGUMENTS --wm xfwm4
  ENVIRONMENT ${settings_programs})

orvane_add_desktop_test(NAME desktop_settings_fluency SOURCES desktop/settings/FluencyTest.cpp LIBRARIES settings_window_support)

orvane_add_desktop_test(NAME desktop_settings_looks SOURCES desktop/settings/LooksTest.cpp LIBRARIES settings_window_support)
orvane_add_desktop_test(NAME desktop_settings_looks_double PROGRAM desktop_settings_looks
  DESKTOP_ARGUMENTS --size 2560x1600 ENVIRONMENT QT_SCALE_FACTOR=2)

# Texts in all languages and letters of twice the size, on a screen of the usual size for that.
orvane_add_desktop_test(NAME desktop_settings_fit SOURCES desktop/settings/SentencesTest.cpp desktop/settings/TextsFitTest.cpp LIBRARIES settings_window_support
  DESKTOP_ARGUMENTS --size 2560x1600
  ENVIRONMENT ORVANE_TEST_BUILT_RESOURCES=${CMAKE_BINARY_DIR}/share/orvane)
add_dependencies(desktop_settings_fit translations)
