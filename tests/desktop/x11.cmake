# The adapters on X11, with a real X server, real key presses and other clients.
add_library(x11_test_support STATIC desktop/x11/X11TestDesk.cpp)
target_link_libraries(x11_test_support PUBLIC fakes platform_x11 GTest::gtest)

orvane_add_desktop_test(NAME desktop_x11
  SOURCES
    desktop/x11/HotKeyEventsContractTest.cpp
    desktop/x11/X11HotKeysTest.cpp
    desktop/x11/X11KeyboardLayoutsTest.cpp
  LIBRARIES x11_test_support platform_posix platform_propertylist GTest::gtest_main)
orvane_add_desktop_test(NAME desktop_x11_xfwm4 PROGRAM desktop_x11 DESKTOP_ARGUMENTS --wm xfwm4)
