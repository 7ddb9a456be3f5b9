# The adapters on Qt Widgets, with real windows, window managers and keys.
find_package(Qt6 6.4 REQUIRED COMPONENTS Test)

add_library(qt_test_support STATIC desktop/qt/QtTestSupport.cpp)
target_link_libraries(qt_test_support PUBLIC platform_qt GTest::gtest)

orvane_add_desktop_test(NAME desktop_qt_prompt
  SOURCES desktop/qt/PromptKeysTest.cpp desktop/qt/PromptWindowTest.cpp
  LIBRARIES qt_test_support)
orvane_add_desktop_test(NAME desktop_qt_prompt_xfwm4 PROGRAM desktop_qt_prompt DESKTOP_ARGUMENTS --wm xfwm4)

orvane_add_desktop_test(NAME desktop_qt_windows
  SOURCES
    desktop/qt/AlertsTest.cpp
    desktop/qt/MainThreadTest.cpp
    desktop/qt/OpenPanelTest.cpp
    desktop/qt/PopUpMenusTest.cpp
    desktop/qt/ProgressTest.cpp
    desktop/qt/RemainsTest.cpp
    desktop/qt/TerminationTest.cpp
  LIBRARIES qt_test_support)
orvane_add_desktop_test(NAME desktop_qt_windows_xfwm4 PROGRAM desktop_qt_windows DESKTOP_ARGUMENTS --wm xfwm4)

set(built_resources ORVANE_TEST_BUILT_RESOURCES=${CMAKE_BINARY_DIR}/share/orvane)
orvane_add_desktop_test(NAME desktop_qt_looks
  SOURCES desktop/qt/LooksTest.cpp desktop/qt/LooksSupport.cpp
  LIBRARIES qt_test_support
  ENVIRONMENT ${built_resources})
add_dependencies(desktop_qt_looks translations)
orvane_add_desktop_test(NAME desktop_qt_looks_double PROGRAM desktop_qt_looks
  DESKTOP_ARGUMENTS --size 2560x1600 ENVIRONMENT QT_SCALE_FACTOR=2 ${built_resources})
orvane_add_desktop_test(NAME desktop_qt_looks_small PROGRAM desktop_qt_looks DESKTOP_ARGUMENTS --size 640x480
  ENVIRONMENT ${built_resources})
