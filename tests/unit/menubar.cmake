# Tests of the status-bar menu and of the application's delegate over fakes.
orvane_add_test(NAME menubar_test LABEL unit
  SOURCES
    unit/menubar/ActivatePresetTest.cpp
    unit/menubar/AppDelegateTest.cpp
    unit/menubar/MenuItemsTest.cpp
    unit/menubar/MenuTest.cpp)
