# Sources of the core that belong to the hot key.
target_sources(core PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/HotKeyAdvice.cpp
  ${CMAKE_CURRENT_LIST_DIR}/HotKeyController.cpp
  ${CMAKE_CURRENT_LIST_DIR}/HotKeyNames.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SGHotKey.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SGHotKeyCenter.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SGIntegerValue.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SGKeyCodeTranslator.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SGKeyCombo.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SRRecorderControl.cpp)
