# Tests of the hot key over fakes, and of the list of key names that is shipped.
orvane_add_test(NAME hotkeys_test LABEL unit
  SOURCES
    unit/hotkeys/HotKeyCenterTest.cpp
    unit/hotkeys/HotKeyControllerTest.cpp
    unit/hotkeys/HotKeyStatementTest.cpp
    unit/hotkeys/HotKeyTest.cpp
    unit/hotkeys/KeyCodesFileTest.cpp
    unit/hotkeys/KeyComboTest.cpp
    unit/hotkeys/KeyNamesTest.cpp
    ${PROJECT_SOURCE_DIR}/HelperSource/wiring/StatedHotKeys.cpp
  LIBRARIES platform_posix platform_propertylist)
target_compile_definitions(hotkeys_test PRIVATE ORVANE_KEY_CODES="${CMAKE_SOURCE_DIR}/resources/SGKeyCodes.plist")
