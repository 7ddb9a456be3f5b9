# The program `orvane-helper`.
add_executable(orvane-helper
  main.cpp
  wiring/DesktopHotKeys.cpp
  wiring/DesktopSession.cpp
  wiring/MissingStatusBar.cpp
  wiring/StatedHotKeys.cpp
  wiring/UnfinishedCreations.cpp)
target_compile_definitions(orvane-helper PRIVATE ORVANE_VERSION="${PROJECT_VERSION}" QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII)
target_link_libraries(orvane-helper PRIVATE core platform_posix platform_propertylist platform_qt platform_qtdbus platform_xembed
  platform_x11 platform_filemanagers platform_wayland)
install(TARGETS orvane-helper RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
# Where the program looks for its resources: share/orvane beside its folder. There they lie beside the translations, which are built.
if(IS_SYMLINK ${CMAKE_BINARY_DIR}/share/orvane)
  file(REMOVE ${CMAKE_BINARY_DIR}/share/orvane)
endif()
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/share/orvane)
foreach(resource MainMenu.ui PromptWindow.ui SGKeyCodes.plist ORVMenuBar.png ORVMenuBar@2x.png icons presets)
  file(CREATE_LINK ${CMAKE_SOURCE_DIR}/resources/${resource} ${CMAKE_BINARY_DIR}/share/orvane/${resource} SYMBOLIC)
endforeach()
include(${CMAKE_SOURCE_DIR}/resources/translations/translations.cmake)
add_dependencies(orvane-helper translations)
